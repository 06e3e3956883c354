// The windows whose positions are saved, with their numbers in the settings.
#pragma once

namespace nivora {

enum class WindowNumber {
    frmNVR = 1,
    SimOptions = 2,
    frmData = 3,
    Results = 4,
    frmPopulate = 5,
    frmLongTermAvg = 6,
    frmCC = 7,
    frmCtrlClim = 8,
    frmTimeLagDist = 9,
    frmNVRPlot = 10,
    frmFileDisp = 11,
    frmNVRHelp = 12,
    frmPrint = 13,
    frmLineAtt = 14,
    // Windows from here on keep their place until the program ends.
    frmParameterChange = 20,
    frmRuns = 21,
    frmDataCheck = 22,
    frmTableImport = 23,
    frmTableExport = 24
};

}  // namespace nivora
