#pragma once

#include "session/session.h"

#include <QMainWindow>
