#include "../store/basin_store.h"
#include "text.h"
#include <store/basin_store.h>
#include "tests/support/folder.h"
#include HEADER
