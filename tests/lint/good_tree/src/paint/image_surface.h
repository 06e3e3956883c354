#pragma once

#include "plots/plot_state.h"

#include <QImage>
#include <QPainter>
#include <QStyleHints>
