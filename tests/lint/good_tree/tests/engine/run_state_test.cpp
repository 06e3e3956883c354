#include "engine/run_state.h"
