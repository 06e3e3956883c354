// A cell of a daily table, for a cursor that goes there.
#pragma once

#include "base/calendar.h"

#include <string>

namespace nivora {

struct DailyPlace {
    int zone = 1;
    DayCount day = 0;
    std::string field = {};  ///< of the table; the first one if empty
};

}  // namespace nivora
