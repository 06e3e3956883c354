#include "batch/response_command.h"

#include "base/durable_file.h"
#include "base/number_text.h"
#include "batch/commands.h"
#include "batch/json.h"
#include "batch/scenario_edit.h"
#include "batch/selected_simulation.h"
#include "engine/run_driver.h"
#include "store/basin_opening.h"
#include "studies/response.h"

#include <fmt/format.h>

#include <algorithm>
#include <ostream>

namespace nivora {
namespace {

constexpr const char* k_unknown = "not known";

/// The evaluations of a basin, as they are printed.
struct PrintedResponse {
    std::string basin;
    std::string simulation;
    DayCount winter_end = 0;
    Units units = Units::Metric;
    std::shared_ptr<const StudyBasin> study;
    std::vector<ClimateResponse> responses;

    [[nodiscard]] bool all_done() const {
        return std::all_of(responses.begin(), responses.end(), [](const auto& each) { return each.done; });
    }
    [[nodiscard]] FlowFigures figures(const std::vector<double>& flow) const {
        return flow_figures(study->measured.dates, flow);
    }
};

/// Reads the basin; nothing after a report.
std::optional<PrintedResponse> read_basin_of(const ResponseCommand& command, BatchDialogs& dialogs) {
    Desktop no_desktop;
    Session session{dialogs, no_desktop};
    const OpenBasin open = open_to_read(command.basin, command.wait, Check::All);
    if (!select_in(session, open.database(), command.basin, command.simulation, dialogs)) return std::nullopt;
    RunRequest request;
    request.RunKind = k_year_round_simulation;
    auto read = read_study_basin(open.database(), session.basin, request);
    if (const auto* problem = std::get_if<Message>(&read)) {
        dialogs.message(*problem);
        return std::nullopt;
    }
    PrintedResponse response{.basin = session.basin.basin_name,
                             .simulation = session.basin.Current_Sim_Name,
                             .winter_end = read_iso_date(command.winter_end).value_or(0),
                             .units = session.basin.Units_Code,
                             .study = std::get<std::shared_ptr<const StudyBasin>>(read),
                             .responses = {}};
    if (const std::string problem = winter_end_problem(*response.study, response.winter_end);
        !problem.empty()) {
        dialogs.report_problem("Invalid dates", problem);
        return std::nullopt;
    }
    return response;
}

std::string shown(std::optional<float> value) { return value ? single_text(*value) : k_unknown; }

std::string shown_date(const std::optional<double>& date) {
    return date ? iso_date_text(whole_day(*date)) : k_unknown;
}

std::string flow_text(const FlowFigures& figures) {
    return fmt::format("{:>14}{:>14}{:>12}", shown_date(figures.centre_of_mass),
                       is_missing(figures.highest) ? k_unknown : iso_date_text(figures.highest_day),
                       is_missing(figures.highest) ? k_unknown : seven_digit_text(figures.highest));
}

std::string volumes_text(const ClimateState& state, SummaryRow row) {
    return fmt::format("{:>12}{:>12}{:>12}", shown(state.summary(row, SummarySeason::Winter)),
                       shown(state.summary(row, SummarySeason::Summer)),
                       shown(state.summary(row, SummarySeason::Year)));
}

/// The first evaluation that was done: the present climate is the same in all.
const ClimateResponse* first_done(const PrintedResponse& printed) {
    const auto found = std::find_if(printed.responses.begin(), printed.responses.end(),
                                    [](const ClimateResponse& each) { return each.done; });
    return found == printed.responses.end() ? nullptr : &*found;
}

void print_response(const PrintedResponse& printed, std::ostream& out) {
    const UnitWords& words = unit_words(printed.units);
    out << fmt::format("Response of '{}' to changes of its climate; the winter ends on {}\n",
                       printed.simulation, iso_date_text(printed.winter_end));
    out << "Basin Name:  " << printed.basin << '\n';
    out << fmt::format("Runoff in 10^6 {}³, highest day in {}, changes of the temperature in {}\n\n",
                       words.length_letter, words.discharge, words.temperature);
    out << fmt::format("{:>11}{:>15}{:>12}{:>12}{:>12}{:>14}{:>14}{:>12}{:>7}\n", "Temperature",
                       "Precipitation", "Winter", "Summer", "Year", "Centre", "Highest day", "Highest",
                       "Notes");
    if (const ClimateResponse* present = first_done(printed)) {
        out << fmt::format("{:>26}{}{}\n", "present climate",
                           volumes_text(present->state, SummaryRow::Computed),
                           flow_text(printed.figures(present->flows.present)));
    }
    for (const ClimateResponse& response : printed.responses) {
        out << fmt::format("{:>11}{:>15}", single_text(response.change.degrees),
                           single_text(response.change.precipitation));
        if (response.done) {
            out << volumes_text(response.state, SummaryRow::ClimateAffected)
                << flow_text(printed.figures(response.flows.changed))
                << fmt::format("{:>7}", response.notes.size());
        } else {
            out << "  not done: " << response.problem;
        }
        out << '\n';
    }
}

Json volumes_json(const ClimateState& state, SummaryRow row) {
    const auto cell = [&](SummarySeason season) {
        const auto value = state.summary(row, season);
        return value ? Json(*value) : Json(nullptr);
    };
    return {{"Winter", cell(SummarySeason::Winter)},
            {"Summer", cell(SummarySeason::Summer)},
            {"Year", cell(SummarySeason::Year)}};
}

void add_figures(Json& json, const FlowFigures& figures) {
    json["centreOfMass"] =
        figures.centre_of_mass ? Json(iso_date_text(whole_day(*figures.centre_of_mass))) : Json(nullptr);
    const bool known = !is_missing(figures.highest);
    json["highestDay"] = known ? Json(iso_date_text(figures.highest_day)) : Json(nullptr);
    json["highest"] = known ? Json(static_cast<float>(figures.highest)) : Json(nullptr);
}

Json point_json(const PrintedResponse& printed, const ClimateResponse& response) {
    Json json{{"temperature", response.change.degrees},
              {"precipitation", response.change.precipitation},
              {"done", response.done}};
    if (!response.done) {
        json["problem"] = response.problem;
        return json;
    }
    json["runoff"] = volumes_json(response.state, SummaryRow::ClimateAffected);
    add_figures(json, printed.figures(response.flows.changed));
    json["notes"] = notes_json(response.notes, printed.units);
    return json;
}

Json response_json(const PrintedResponse& response) {
    Json json{{"simulation", response.simulation},
              {"winterEnd", iso_date_text(response.winter_end)},
              {"present", nullptr},
              {"points", Json::array()}};
    if (const ClimateResponse* present = first_done(response)) {
        json["present"] = {{"runoff", volumes_json(present->state, SummaryRow::Computed)}};
        add_figures(json["present"], response.figures(present->flows.present));
    }
    for (const ClimateResponse& each : response.responses)
        json["points"].push_back(point_json(response, each));
    return json;
}

}  // namespace

int response_command(const ResponseCommand& command, BatchDialogs& dialogs, std::ostream& out) {
    try {
        auto response = read_basin_of(command, dialogs);
        if (!response) return k_failed;
        StudyPool pool{command.threads};
        response->responses = evaluate_all(response->study, response->winter_end,
                                           all_pairs(command.temperature, command.precipitation), pool);
        if (command.json) {
            out << printed(response_json(*response));
        } else {
            print_response(*response, out);
        }
        return response->all_done() ? k_done : k_failed;
    } catch (const StoreError& error) {
        dialogs.report_problem("The basin can't be read", error.what());
    } catch (const FileError& error) {
        dialogs.report_problem("The basin can't be read", error.what());
    }
    return k_failed;
}

}  // namespace nivora
