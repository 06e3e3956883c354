#include "plots/plot_state.h"
#include "session/session.h"

#include <CLI/CLI.hpp>
