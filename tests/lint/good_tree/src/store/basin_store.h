#pragma once

#include "base/text.h"

#include <SQLiteCpp/Database.h>
#include <sqlite3.h>
