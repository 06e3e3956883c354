#include "widgets/nivora_window.h"
#include "windows/plots/frmNVRPlot.h"

#include <QApplication>
