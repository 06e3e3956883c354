#pragma once

#include "climate/climate_run.h"

#include <QPainter>
#include <QStyleHints>
