// A look through the daily variables for what is likely to be wrong. Nothing is changed.
#pragma once

#include "prep/daily_place.h"
#include "store/daily_rows.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace nivora {

enum class DataFault : std::uint8_t {
    Gap,           ///< days without a row between the first and the last day of the record
    Doubled,       ///< more than one row on a day
    OtherZone,     ///< rows of a zone that the basin does not have
    Missing,       ///< a field without a value, but for one that the zone has on no day and that no run needs
    CoverRange,    ///< snow cover below 0 or above 1
    CoverRises,    ///< snow cover that grows by more than 0.05 in the melt season
    Extremes,      ///< a minimum temperature above the maximum
    Jump,          ///< a temperature or a discharge that changes more than weather explains
    Constant,      ///< the same value for so many days that a sensor may have stuck
    ZeroDischarge  ///< a measured discharge of 0
};
inline constexpr std::array k_data_faults{
    DataFault::Gap,        DataFault::Doubled,      DataFault::OtherZone, DataFault::Missing,
    DataFault::CoverRange, DataFault::CoverRises,   DataFault::Extremes,  DataFault::Jump,
    DataFault::Constant,   DataFault::ZeroDischarge};

/// "Gap", "Missing value", "Cover outside 0 to 1" ...
[[nodiscard]] const char* data_fault_text(DataFault fault);

/// The fields that are looked at, in the order in which `check_daily_rows` expects them.
inline constexpr std::array<std::string_view, 6> k_checked_fields{"Tmax",   "Tmin", "Tavg",
                                                                  "Precip", "SCA",  "Runoff"};
inline constexpr std::uint8_t k_no_field = 255;

/// Days on end of one zone and field that have the same fault. Poor data have hundreds of thousands of them:
/// 20 bytes, and no texts before one is shown.
struct DataFinding {
    std::int32_t first = 0;  ///< day; of rows of another zone, the first of them
    std::int32_t last = 0;   ///< day
    float from = 0.0F;       ///< the value that the sentence tells; the number of rows of another zone
    float to = 0.0F;         ///< the second one, if it tells two
    std::int16_t zone = 0;
    DataFault fault = DataFault::Gap;
    std::uint8_t checked_field = k_no_field;  ///< position in `k_checked_fields`

    [[nodiscard]] std::int64_t days() const { return std::int64_t{last} - first + 1; }
    /// Of `PhysicalData`; empty for a finding about whole rows.
    [[nodiscard]] std::string_view field() const {
        return checked_field < k_checked_fields.size() ? k_checked_fields.at(checked_field)
                                                       : std::string_view{};
    }
};

/// The sentence that tells a finding.
[[nodiscard]] std::string finding_text(const DataFinding& finding);

/// Whether a cell of the daily table is among those of a finding.
[[nodiscard]] bool covers(const DataFinding& finding, const DailyPlace& place);

/// What a look found.
struct DataCheck {
    std::vector<DataFinding> findings;  ///< all of them, by zone, then by day
    std::int64_t days = 0;              ///< from the first to the last day of the record
};

/// A list of findings has so many rows at most.
inline constexpr std::size_t k_most_findings = 10000;

/// What the rules need beside the rows.
struct DataCheckSetting {
    int zones = 1;
    std::array<bool, 13> melt_months = {};  ///< by month, 1 to 12
    bool english = false;
};

/// @param rows of `PhysicalData` with the checked fields
[[nodiscard]] DataCheck check_daily_rows(const DailyRows& rows, const DataCheckSetting& setting);

/// Looks through the daily variables of a basin, whose numbers it takes as Singles as a run does.
/// @throws StoreError
[[nodiscard]] DataCheck check_daily_data(BasinDatabase& database, const DataCheckSetting& setting);

}  // namespace nivora
