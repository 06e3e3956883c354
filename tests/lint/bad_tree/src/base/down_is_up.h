#pragma once

#include "store/basin_store.h"
