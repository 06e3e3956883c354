#include "plots/plot_state.h"
