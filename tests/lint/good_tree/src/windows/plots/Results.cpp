#include "windows/plots/frmNVRPlot.h"
