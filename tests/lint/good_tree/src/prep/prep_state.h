#pragma once

#include "base/text.h"
#include "store/basin_store.h"
