#include "widgets/nivora_window.h"
