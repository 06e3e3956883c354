#include "search/response_study.h"

#include "base/iso_date.h"
#include "engine/named_run.h"
#include "search/study_digest.h"
#include "store/basin_opening.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <utility>
#include <variant>

namespace nivora {
namespace {

/// JSON whose numbers are Singles.
using SingleJson = nlohmann::basic_json<nlohmann::ordered_map, std::vector, std::string, bool, std::int64_t,
                                        std::uint64_t, float>;

std::string options_line(const ResponseStudy& study, const ResponsePlan& plan) {
    const UnitWords& words = unit_words(study.head.units);
    const SingleJson json{
        {"simulation", study.head.simulation},
        {"winterEnd", iso_date_text(study.head.winter_end)},
        {"temperature", plan.temperature},
        {"precipitation", plan.precipitation},
        {"units", fmt::format("10^6 {}³, {}, {}", words.length_letter, words.discharge, words.temperature)}};
    return json.dump(-1, ' ', false, SingleJson::error_handler_t::replace);
}

}  // namespace

std::optional<ResponseStudy> read_response_study(const ResponsePlan& plan, BatchDialogs& dialogs) {
    BasinState basin;
    const OpenBasin open = open_to_read(plan.basin, plan.wait, Check::All);
    if (!select_by_name(open.database(), plan.basin, plan.simulation, basin, dialogs)) return std::nullopt;
    RunRequest request;
    request.RunKind = k_year_round_simulation;
    auto read = read_study_basin(open.database(), basin, request);
    if (const auto* problem = std::get_if<Message>(&read)) {
        dialogs.message(*problem);
        return std::nullopt;
    }
    ResponseStudy study{.head = {.basin = basin.basin_name,
                                 .simulation = basin.Current_Sim_Name,
                                 .winter_end = read_iso_date(plan.winter_end).value_or(0),
                                 .units = basin.Units_Code},
                        .basin = std::get<std::shared_ptr<const StudyBasin>>(std::move(read)),
                        .pairs = all_pairs(plan.temperature, plan.precipitation)};
    if (const std::string problem = winter_end_problem(*study.basin, study.head.winter_end);
        !problem.empty()) {
        dialogs.report_problem("Invalid dates", problem);
        return std::nullopt;
    }
    return study;
}

StudyTitle response_title(const ResponseStudy& study, const ResponsePlan& plan, const RunSpan& span) {
    return {.kind = "response",
            .basin = basin_digest(*study.basin),
            .options = options_line(study, plan),
            .runs = study.pairs.size(),
            .span = span};
}

}  // namespace nivora
