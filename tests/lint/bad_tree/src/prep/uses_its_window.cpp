#include "prep/windows/frmData.h"
