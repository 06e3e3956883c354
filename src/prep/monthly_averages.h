// The long-term monthly averages that one window edits, inside one transaction.
#pragma once

#include "base/dialogs.h"
#include "prep/prep_state.h"
#include "store/database.h"

#include <array>
#include <filesystem>

namespace nivora {

/// Normal values of a month: maximum, minimum and average temperature, precipitation. NaN where missing.
using MonthValues = std::array<float, 4>;

/// The twelve months of each zone. All changes wait in one transaction for commit(); without it they are
/// rolled back.
class MonthlyAverages {
public:
    /// @throws StoreError where the table is missing or not as it should be
    MonthlyAverages(const std::filesystem::path& work_file, int zones);
    ~MonthlyAverages();
    MonthlyAverages(const MonthlyAverages&) = delete;
    MonthlyAverages& operator=(const MonthlyAverages&) = delete;

    [[nodiscard]] int zones() const { return zones_; }
    /// The values of a zone from 1 and a month from 1.
    [[nodiscard]] const MonthValues& values(int zone, int month) const;
    /// Stores one value, item 0 to 3; NaN for a missing one.
    void set_value(int zone, int month, std::size_t item, float value);

    /// Whether the basin has any daily variables.
    [[nodiscard]] bool has_physical_data();
    /// Averages all days of each zone and calendar month; months without data keep their values.
    /// @return false where there are no daily variables at all. @throws StoreError
    [[nodiscard]] bool recalculate();

    void commit();

private:
    BasinDatabase database_;
    int zones_;
    std::vector<std::array<MonthValues, 12>> rows_;
};

}  // namespace nivora
