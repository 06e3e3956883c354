#include "plots/windows/frmNVRPlot.h"
#include "widgets/nivora_window.h"

#include <QApplication>
