#pragma once

#include "plots/plot_state.h"
#include "widgets/nivora_window.h"

#include <QtWidgets/QLabel>
