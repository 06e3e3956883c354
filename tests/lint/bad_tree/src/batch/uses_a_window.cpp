#include "plots/windows/frmNVRPlot.h"
