#pragma once

#include "plots/plot_state.h"
#include "prep/prep_state.h"
