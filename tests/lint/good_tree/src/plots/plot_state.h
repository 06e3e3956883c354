#pragma once

#include "climate/climate_run.h"
