#include "prep/prep_state.h"
