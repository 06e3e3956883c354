#include "prep/data_check.h"

#include "base/number_text.h"
#include "base/single.h"
#include "base/text.h"
#include "store/daily_table.h"
#include "store/schema.h"
#include "store/table_io.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <optional>
#include <string_view>

namespace nivora {
namespace {

constexpr std::size_t k_tmax = 0;
constexpr std::size_t k_tmin = 1;
constexpr std::size_t k_tavg = 2;
constexpr std::size_t k_precipitation = 3;
constexpr std::size_t k_cover = 4;
constexpr std::size_t k_runoff = 5;

constexpr double k_least_rise = 0.05;         // of the snow cover
constexpr double k_temperature_jump = 20.0;   // °C
constexpr double k_degrees_fahrenheit = 1.8;  // per °C
constexpr double k_discharge_ratio = 5.0;
constexpr std::int64_t k_stuck_temperature = 5;  // days
constexpr std::int64_t k_stuck_discharge = 10;
constexpr Period k_all_days{-200000, 200000};

/// Rows of a zone: positions from the first up to, not including, the last.
struct ZoneRows {
    int zone;
    std::size_t first;
    std::size_t behind;
};

std::string counted(std::int64_t count, const char* thing) {
    return fmt::format("{} {}{}", count, thing, count == 1 ? "" : "s");
}
std::string days_text(const DataFinding& finding) { return counted(finding.days(), "day"); }

/// A field as the subject of a sentence. Its name in the file is not that in the editor for the snow cover.
std::string subject_of(const DataFinding& finding) {
    if (finding.checked_field == k_cover) return "The snow cover";
    return std::string{finding.field()};
}

/// A whole number that a finding tells: exact below 2^24, far more than a zone has rows.
std::string rows_text(const DataFinding& finding) {
    return counted(static_cast<std::int64_t>(finding.from), "row");
}

/// Values that a sentence tells.
struct Told {
    double from = 0.0;
    double to = 0.0;
};

class DataLook {
public:
    DataLook(const DailyRows& rows, const DataCheckSetting& setting) : rows_(rows), setting_(setting) {
        if (rows.size() == 0) return;
        const auto [least, greatest] = std::minmax_element(rows.date.begin(), rows.date.end());
        record_ = {*least, *greatest};
        check_.days = record_.days();
        mean_discharge_ = mean_of(k_runoff);
        for (int zone = 1; zone <= setting.zones; ++zone) look_at(zone);
    }

    [[nodiscard]] DataCheck take() { return std::move(check_); }

private:
    [[nodiscard]] double value(std::size_t field, std::size_t row) const { return rows_.fields[field][row]; }
    [[nodiscard]] DayCount date(std::size_t row) const { return rows_.date[row]; }
    /// Whether a row is that of the day after the row before it.
    [[nodiscard]] bool follows(std::size_t row) const { return date(row) == date(row - 1) + 1; }

    [[nodiscard]] double mean_of(std::size_t field) const {
        double sum = 0.0;
        double count = 0.0;
        for (std::size_t row = 0; row < rows_.size() && rows_.zone[row] <= 1; ++row) {
            if (rows_.zone[row] < 1 || is_missing(value(field, row))) continue;
            sum += value(field, row);
            count += 1.0;
        }
        return count > 0.0 ? sum / count : 0.0;
    }

    void add(DataFault fault, int zone, std::size_t field, const Period& days, const Told& told = {}) {
        check_.findings.push_back({.first = static_cast<std::int32_t>(days.start),
                                   .last = static_cast<std::int32_t>(days.end),
                                   .from = static_cast<float>(told.from),
                                   .to = static_cast<float>(told.to),
                                   .zone = static_cast<std::int16_t>(zone),
                                   .fault = fault,
                                   .checked_field = static_cast<std::uint8_t>(field)});
    }

    /// The rules go through a zone one after another; the list is by day.
    void sort_from(std::size_t first) {
        std::stable_sort(check_.findings.begin() + static_cast<std::ptrdiff_t>(first), check_.findings.end(),
                         [](const DataFinding& a, const DataFinding& b) { return a.first < b.first; });
    }

    void look_at(int zone) {
        const auto begin = std::lower_bound(rows_.zone.begin(), rows_.zone.end(), zone);
        const auto end = std::upper_bound(rows_.zone.begin(), rows_.zone.end(), zone);
        const ZoneRows rows{zone, static_cast<std::size_t>(begin - rows_.zone.begin()),
                            static_cast<std::size_t>(end - rows_.zone.begin())};
        const std::size_t first_finding = check_.findings.size();
        find_gaps(rows);
        find_doubled(rows);
        for (std::size_t field = 0; field < k_checked_fields.size(); ++field) {
            if (field == k_runoff && zone != 1)
                continue;  // the measured discharge is that of the whole basin
            find_missing(rows, field);
        }
        find_cover(rows);
        find_extremes(rows);
        for (const std::size_t field : {k_tmax, k_tmin, k_tavg}) {
            find_temperature_jumps(rows, field);
            find_constant(rows, field, k_stuck_temperature);
        }
        if (zone == 1) {
            find_discharge_jumps(rows);
            find_constant(rows, k_runoff, k_stuck_discharge);
            find_zero_discharge(rows);
        }
        sort_from(first_finding);
    }

    void find_gaps(const ZoneRows& rows) {
        DayCount next = record_.start;
        const auto gap_before = [&](DayCount day) {
            if (day > next) add(DataFault::Gap, rows.zone, k_no_field, {next, day - 1});
        };
        for (std::size_t row = rows.first; row < rows.behind; ++row) {
            gap_before(date(row));
            next = std::max(next, date(row) + 1);
        }
        gap_before(record_.end + 1);
    }

    void find_doubled(const ZoneRows& rows) {
        std::optional<Period> days;
        for (std::size_t row = rows.first + 1; row < rows.behind; ++row) {
            if (date(row) != date(row - 1)) continue;
            if (days && date(row) > days->end + 1) {
                add(DataFault::Doubled, rows.zone, k_no_field, *days);
                days.reset();
            }
            if (!days) days = Period{date(row), date(row)};
            days->end = date(row);
        }
        if (days) add(DataFault::Doubled, rows.zone, k_no_field, *days);
    }

    /// Calls `found` with the first and the last row of each run of rows, on days on end, that have a
    /// property.
    template <typename Has, typename Found>
    void for_runs(const ZoneRows& rows, Has&& has, Found&& found) const {
        std::optional<std::size_t> first;
        for (std::size_t row = rows.first; row <= rows.behind; ++row) {
            const bool ends = row == rows.behind || (row > rows.first && !follows(row)) || !has(row);
            if (first && ends) {
                found(*first, row - 1);
                first.reset();
            }
            if (row < rows.behind && !first && has(row)) first = row;
        }
    }

    [[nodiscard]] bool has_values(const ZoneRows& rows, std::size_t field) const {
        for (std::size_t row = rows.first; row < rows.behind; ++row) {
            if (!is_missing(value(field, row))) return true;
        }
        return false;
    }

    /// Whether a zone may lack a field on all days, since no run of a usual simulation reads it: the values
    /// of a basin without a gauge, the other kind of temperature, and what the first zone gives for the whole
    /// basin.
    [[nodiscard]] bool may_lack(const ZoneRows& rows, std::size_t field) const {
        if (field == k_runoff) return true;
        if (field == k_cover) return false;
        if (rows.zone > 1) return true;
        if (field == k_tavg) return has_values(rows, k_tmax) && has_values(rows, k_tmin);
        return field != k_precipitation && has_values(rows, k_tavg);
    }

    void find_missing(const ZoneRows& rows, std::size_t field) {
        if (!has_values(rows, field) && may_lack(rows, field)) return;
        for_runs(
            rows, [&](std::size_t row) { return is_missing(value(field, row)); },
            [&](std::size_t first, std::size_t last) {
                add(DataFault::Missing, rows.zone, field, {date(first), date(last)});
            });
    }

    void find_cover(const ZoneRows& rows) {
        for_runs(
            rows, [&](std::size_t row) { return value(k_cover, row) < 0.0 || value(k_cover, row) > 1.0; },
            [&](std::size_t first, std::size_t last) {
                add(DataFault::CoverRange, rows.zone, k_cover, {date(first), date(last)},
                    {.from = value(k_cover, first)});
            });
        const auto rises = [&](std::size_t row) {
            return row > rows.first && follows(row) && value(k_cover, row) > value(k_cover, row - 1) &&
                   setting_.melt_months.at(static_cast<std::size_t>(civil_date(date(row)).month));
        };
        for_runs(rows, rises, [&](std::size_t first, std::size_t last) {
            const double from = value(k_cover, first - 1);
            const double to = value(k_cover, last);
            if (to - from <= k_least_rise) return;
            add(DataFault::CoverRises, rows.zone, k_cover, {date(first), date(last)},
                {.from = from, .to = to});
        });
    }

    void find_extremes(const ZoneRows& rows) {
        for_runs(
            rows, [&](std::size_t row) { return value(k_tmin, row) > value(k_tmax, row); },
            [&](std::size_t first, std::size_t last) {
                add(DataFault::Extremes, rows.zone, k_tmin, {date(first), date(last)},
                    {.from = value(k_tmin, first), .to = value(k_tmax, first)});
            });
    }

    void add_jump(const ZoneRows& rows, std::size_t field, std::size_t row) {
        add(DataFault::Jump, rows.zone, field, {date(row), date(row)},
            {.from = value(field, row - 1), .to = value(field, row)});
    }

    void find_temperature_jumps(const ZoneRows& rows, std::size_t field) {
        const double limit = k_temperature_jump * (setting_.english ? k_degrees_fahrenheit : 1.0);
        for (std::size_t row = rows.first + 1; row < rows.behind; ++row) {
            if (follows(row) && std::abs(value(field, row) - value(field, row - 1)) > limit)
                add_jump(rows, field, row);
        }
    }

    /// More than fivefold, and by more than the mean: small rivers double in a shower.
    void find_discharge_jumps(const ZoneRows& rows) {
        for (std::size_t row = rows.first + 1; row < rows.behind; ++row) {
            if (!follows(row)) continue;
            const double less = std::min(value(k_runoff, row), value(k_runoff, row - 1));
            const double more = std::max(value(k_runoff, row), value(k_runoff, row - 1));
            if (less > 0.0 && more > k_discharge_ratio * less && more - less > mean_discharge_)
                add_jump(rows, k_runoff, row);
        }
    }

    void find_constant(const ZoneRows& rows, std::size_t field, std::int64_t least_days) {
        const auto same = [&](std::size_t row) {
            return row > rows.first && follows(row) && value(field, row) == value(field, row - 1) &&
                   value(field, row) != 0.0;
        };
        for_runs(rows, same, [&](std::size_t first, std::size_t last) {
            const std::int64_t days = date(last) - date(first) + 2;
            if (days < least_days) return;
            add(DataFault::Constant, rows.zone, field, {date(first) - 1, date(last)},
                {.from = value(field, first)});
        });
    }

    void find_zero_discharge(const ZoneRows& rows) {
        for_runs(
            rows, [&](std::size_t row) { return value(k_runoff, row) == 0.0; },
            [&](std::size_t first, std::size_t last) {
                add(DataFault::ZeroDischarge, rows.zone, k_runoff, {date(first), date(last)});
            });
    }

    const DailyRows& rows_;
    const DataCheckSetting& setting_;
    Period record_;
    double mean_discharge_ = 0.0;
    DataCheck check_;
};

/// Zones with rows that the basin does not have, before zone 1 or after its last one.
void add_other_zones(BasinDatabase& database, int zones, DataCheck& check) {
    std::vector<DataFinding> before;
    for (const ZoneExtent& extent : zone_extents(database, k_physical_data)) {
        if (extent.zone >= 1 && extent.zone <= zones) continue;
        DataFinding finding{.fault = DataFault::OtherZone};
        finding.zone = static_cast<decltype(finding.zone)>(extent.zone);
        finding.first = static_cast<std::int32_t>(extent.first);
        finding.last = static_cast<std::int32_t>(extent.last);
        finding.from = static_cast<float>(extent.rows);
        (finding.zone < 1 ? before : check.findings).push_back(finding);
    }
    check.findings.insert(check.findings.begin(), before.begin(), before.end());
}

}  // namespace

const char* data_fault_text(DataFault fault) {
    switch (fault) {
        case DataFault::Gap: return "Gap";
        case DataFault::Doubled: return "Doubled row";
        case DataFault::OtherZone: return "No such zone";
        case DataFault::Missing: return "Missing value";
        case DataFault::CoverRange: return "Cover outside 0 to 1";
        case DataFault::CoverRises: return "Cover rises in melt";
        case DataFault::Extremes: return "Tmin above Tmax";
        case DataFault::Jump: return "Jump";
        case DataFault::Constant: return "Constant";
        case DataFault::ZeroDischarge: return "Discharge of zero";
    }
    return "";
}

std::string finding_text(const DataFinding& finding) {
    const std::string from = seven_digit_text(as_double(finding.from));
    const std::string to = seven_digit_text(as_double(finding.to));
    switch (finding.fault) {
        case DataFault::Gap: return fmt::format("The zone has no row on {}.", days_text(finding));
        case DataFault::Doubled:
            return fmt::format("The zone has more than one row on {}.", days_text(finding));
        case DataFault::OtherZone:
            return fmt::format("The basin has no zone {}, but {} of it.", finding.zone, rows_text(finding));
        case DataFault::Missing:
            return fmt::format("{} has no value on {}.", subject_of(finding), days_text(finding));
        case DataFault::CoverRange:
            return fmt::format("The snow cover is {}, which is not between 0 and 1.", from);
        case DataFault::CoverRises:
            return fmt::format("The snow cover grows from {} to {} in the melt season.", from, to);
        case DataFault::Extremes:
            return fmt::format("The minimum temperature, {}, is above the maximum, {}.", from, to);
        case DataFault::Jump:
            return fmt::format("{} goes from {} to {} in a day.", subject_of(finding), from, to);
        case DataFault::Constant:
            return fmt::format("{} is {} on {} on end.", subject_of(finding), from, days_text(finding));
        case DataFault::ZeroDischarge:
            return fmt::format("The measured discharge is 0 on {}.", days_text(finding));
    }
    return {};
}

bool covers(const DataFinding& finding, const DailyPlace& place) {
    return finding.zone == place.zone && finding.first <= place.day && place.day <= finding.last &&
           same_name(finding.field(), place.field);
}

DataCheck check_daily_rows(const DailyRows& rows, const DataCheckSetting& setting) {
    return DataLook{rows, setting}.take();
}

DataCheck check_daily_data(BasinDatabase& database, const DataCheckSetting& setting) {
    DailyRows rows =
        read_daily_rows(database, k_physical_data, k_checked_fields, 1, setting.zones, k_all_days);
    // A number that another program wrote with 64 bits is a Single to a run: a cover of 1.00000001 is 1.
    for (std::vector<double>& field : rows.fields) {
        for (double& value : field) value = as_double(static_cast<float>(value));
    }
    DataCheck check = check_daily_rows(rows, setting);
    add_other_zones(database, setting.zones, check);
    return check;
}

}  // namespace nivora
