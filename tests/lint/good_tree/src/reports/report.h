#pragma once

#include "engine/run_state.h"
