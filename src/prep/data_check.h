// A look through the daily variables for what is likely to be wrong. Nothing is changed.
#pragma once

#include "store/daily_rows.h"

#include <array>
#include <cstddef>
#include <string>
#include <vector>

namespace nivora {

enum class DataFault {
    Gap,           ///< days without a row between the first and the last day of the record
    Missing,       ///< a field without a value, but for one that the zone has on no day and that no run needs
    CoverRange,    ///< snow cover below 0 or above 1
    CoverRises,    ///< snow cover that grows by more than 0.05 in the melt season
    Extremes,      ///< a minimum temperature above the maximum
    Jump,          ///< a temperature or a discharge that changes more than weather explains
    Constant,      ///< the same value for so many days that a sensor may have stuck
    ZeroDischarge  ///< a measured discharge of 0
};
inline constexpr std::array k_data_faults{
    DataFault::Gap,      DataFault::Missing, DataFault::CoverRange, DataFault::CoverRises,
    DataFault::Extremes, DataFault::Jump,    DataFault::Constant,   DataFault::ZeroDischarge};

/// "Gap", "Missing value", "Cover outside 0 to 1" ...
[[nodiscard]] const char* data_fault_text(DataFault fault);

/// Days on end of one zone and field that have the same fault.
struct DataFinding {
    DataFault fault = DataFault::Gap;
    int zone = 0;
    std::string field = {};  ///< of `PhysicalData`; empty for a gap
    DayCount first = 0;
    DayCount last = 0;
    std::string text = {};  ///< one sentence

    [[nodiscard]] std::int64_t days() const { return last - first + 1; }
};

/// What a look found.
struct DataCheck {
    std::vector<DataFinding> findings;  ///< by zone, then by day; the first `k_most_findings`
    std::size_t total = 0;              ///< also those that are left out
    std::int64_t days = 0;              ///< from the first to the last day of the record
};
inline constexpr std::size_t k_most_findings = 10000;

/// What the rules need beside the rows.
struct DataCheckSetting {
    int zones = 1;
    std::array<bool, 13> melt_months = {};  ///< by month, 1 to 12
    bool english = false;
};

/// The fields that are looked at, in the order in which `check_daily_rows` expects them.
inline constexpr std::array<std::string_view, 6> k_checked_fields{"Tmax",   "Tmin", "Tavg",
                                                                  "Precip", "SCA",  "Runoff"};

/// @param rows of `PhysicalData` with the checked fields
[[nodiscard]] DataCheck check_daily_rows(const DailyRows& rows, const DataCheckSetting& setting);

/// Looks through the daily variables of a basin. @throws StoreError
[[nodiscard]] DataCheck check_daily_data(BasinDatabase& database, const DataCheckSetting& setting);

}  // namespace nivora
