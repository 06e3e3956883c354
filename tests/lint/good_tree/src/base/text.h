#pragma once

#include <string>

// "store/basin_store.h" in a comment is no include.
