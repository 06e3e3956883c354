#include "climate/plotted_melt.h"

#include "climate/depletion_curves.h"
#include "store/daily_fields.h"
#include "store/transactions.h"

#include <array>
#include <numeric>
#include <utility>
#include <vector>

namespace nivora {
namespace {

struct MeltField {
    const char* name = "";
    std::vector<float> SimResults::*column = nullptr;
};

/// What the computation writes, and then what it reads.
constexpr std::size_t k_written_fields = 3;
constexpr std::array<MeltField, 8> k_fields{{
    {"AZMexcl", &SimResults::AZMexcl},
    {"AZMexclWA", &SimResults::AZMexclWA},
    {"AZMwork", &SimResults::AZMwork},
    {"SCA", &SimResults::SCA},
    {"MDCexcl", &SimResults::MDCexcl},
    {"SCAclim", &SimResults::SCAclim},
    {"MDCexclWA", &SimResults::MDCexclWA},
    {"MDCexclWAnew", &SimResults::MDCexclWAnew},
}};

DailyFields melt_fields(BasinDatabase& database, const Period& period) {
    DailySelection selection{.table = k_sim_results, .fields = {}, .period = period};
    for (const MeltField& field : k_fields)
        selection.fields.push_back({.name = field.name, .type = FieldType::Single});
    return {database, std::move(selection)};
}

SimResults results_of(const ZoneDays& days, int zone) {
    SimResults results;
    results.resize(days.dates.size());
    results.Date = days.dates;
    results.Zone.assign(days.dates.size(), static_cast<std::int16_t>(zone));
    for (std::size_t row = 0; row < results.size(); ++row) {
        for (std::size_t field = 0; field < k_fields.size(); ++field)
            (results.*k_fields[field].column)[row] =
                to_single_field(days.values[row * k_fields.size() + field]);
    }
    return results;
}

SimResults computed(const ZoneDays& days, int zone) {
    SimResults results = results_of(days, zone);
    RowOrder rows(results.size());
    std::iota(rows.begin(), rows.end(), std::uint32_t{0});
    accumulate_plotted_melt(results, rows);
    return results;
}

}  // namespace

void accumulate_plotted_melt(SimResults& results, std::span<const std::uint32_t> rows) {
    accumulate_melt(results.SCA, results.MDCexcl, results.AZMexcl, rows);
    Climate_Depletion_Curves(results, rows);
    accumulate_melt(results.SCA, results.MDCexclWAnew, results.AZMwork, rows);
}

SimResults plotted_melt(BasinDatabase& database, int zone, const Period& period) {
    return computed(melt_fields(database, period).read(zone), zone);
}

void store_plotted_melt(BasinDatabase& database, int zone, const Period& period) {
    atomically(database, [&] {
        DailyFields fields = melt_fields(database, period);
        const ZoneDays days = fields.read(zone);
        const SimResults results = computed(days, zone);
        for (std::size_t row = 0; row < results.size(); ++row) {
            for (std::size_t field = 0; field < k_written_fields; ++field)
                fields.store(days.rows[row], field, as_double((results.*k_fields[field].column)[row]));
        }
    });
}

}  // namespace nivora
