// The texts of the legend and of the headings in the text export: names of series with their values.
#pragma once

#include "plots/plot.h"

namespace nivora {

/// Fills `legend` and the curves' `heading` from the curves, bars and labels of a plot. Values are those of
/// whole curves, so that a zoom leaves them as they are.
void name_curves(Plot& plot);

}  // namespace nivora
