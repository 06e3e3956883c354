#include "batch/commands.h"
#include "batch/json.h"
#include "store/basin_opening.h"
#include "store/basin_store.h"

#include <fmt/format.h>

#include <ostream>

namespace nivora {
namespace {

Json date_json(const std::optional<DayCount>& date) {
    return date ? Json(iso_date_text(*date)) : Json(nullptr);
}

template <typename Number>
Json number_json(const std::optional<Number>& number) {
    return number ? Json(*number) : Json(nullptr);
}

Json simulation_json(const Simulation& simulation) {
    return {{"Name", simulation.name},
            {"RunNumber", number_json(simulation.run_number)},
            {"StartDate", date_json(simulation.start)},
            {"EndDate", date_json(simulation.end)},
            {"Units", simulation.text(5)},
            {"TemperatureValues", simulation.text(6)},
            {"TemperatureDistribution", simulation.text(7)},
            {"PrecipitationDistribution", simulation.text(8)},
            {"LapseRateDistribution", simulation.text(9)},
            {"RunoffCoefficientDistribution", simulation.text(10)},
            {"CriticalTemperatureDistribution", simulation.text(11)},
            {"RecessionCoefficientDistribution", simulation.text(12)},
            {"InitialRunoff", number_json(simulation.initial_runoff)},
            {"PrecipitationThreshold", number_json(simulation.precipitation_threshold)},
            {"Comments", simulation.comments.value_or("")}};
}

std::string shown_date(const std::optional<DayCount>& date) { return date ? iso_date_text(*date) : "-"; }

std::string by_zone_list(const Simulation& simulation) {
    constexpr std::array<const char*, 6> k_names{"temperature",  "precipitation", "lapse-rate",
                                                 "coefficients", "tcrit",         "recession"};
    std::string list;
    for (std::size_t i = 0; i < k_names.size(); ++i) {
        if (simulation.value(static_cast<int>(i) + 7) != 1.0) continue;
        if (!list.empty()) list += ", ";
        list += k_names[i];
    }
    return list.empty() ? "everything basinwide" : "by zone: " + list;
}

std::string shown_cell(const std::string& text) { return text.empty() ? "blank" : text; }

}  // namespace

int simulations_command(const std::filesystem::path& basin, std::chrono::milliseconds wait, bool json,
                        BatchDialogs& dialogs, std::ostream& out) {
    try {
        const OpenBasin open = open_to_read(basin, wait, Check::Schema);
        BasinState state;
        read_basin(open.database(), state);
        if (json) {
            Json list = Json::array();
            for (const Simulation& simulation : state.simulations)
                list.push_back(simulation_json(simulation));
            out << printed(list);
            return k_done;
        }
        for (const Simulation& simulation : state.simulations) {
            out << fmt::format(
                "{}\n    {} to {}, {}, {} temperatures, {}\n    initial runoff {}, rain threshold {}\n",
                simulation.name, shown_date(simulation.start), shown_date(simulation.end), simulation.text(5),
                simulation.text(6), by_zone_list(simulation), shown_cell(simulation.text(13)),
                shown_cell(simulation.text(14)));
        }
        return k_done;
    } catch (const StoreError& error) {
        dialogs.report_problem("The basin can't be read", error.what());
        return k_failed;
    }
}

}  // namespace nivora
