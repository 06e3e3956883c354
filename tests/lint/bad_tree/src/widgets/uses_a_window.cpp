#include "windows/prep/frmData.h"
