#pragma once

#include <string>

// A header that is only named in a comment, "store/basin_store.h", is not included.
