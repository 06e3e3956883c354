#include "base/text.h"
