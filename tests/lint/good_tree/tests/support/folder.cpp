#include "tests/support/folder.h"
