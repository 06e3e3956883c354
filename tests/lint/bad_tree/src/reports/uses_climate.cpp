#include "climate/climate_run.h"
