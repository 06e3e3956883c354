#include "shell/frmNVR.h"
