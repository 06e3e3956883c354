#include "search/study_command.h"

#include "base/durable_file.h"
#include "base/iso_date.h"
#include "base/text.h"
#include "engine/named_run.h"
#include "studies/evaluator.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>

namespace nivora {
namespace {

constexpr const char* k_wrong_option = "The study can't begin";

/// A basin that was read, or null after a report.
std::shared_ptr<const StudyBasin> read_source(const StudySource& source, const StudyCommand& command,
                                              BatchDialogs& dialogs) {
    BasinState basin;
    const OpenBasin open = open_to_read(source.basin, command.wait, Check::All);
    if (!select_by_name(open.database(), source.basin, source.simulation, basin, dialogs)) return nullptr;
    RunRequest request;
    request.RunKind = k_year_round_simulation;
    request.NoSnow = command.no_snow;
    auto read = read_study_basin(open.database(), basin, request);
    if (const auto* problem = std::get_if<Message>(&read)) {
        dialogs.message(*problem);
        return nullptr;
    }
    return std::get<std::shared_ptr<const StudyBasin>>(read);
}

bool read_ranges(StudyCase& one, const StudyCommand& command, BatchDialogs& dialogs) {
    for (const std::string& text : command.free) {
        auto range = read_free_range(text, one.basin->inputs);
        if (const auto* problem = std::get_if<std::string>(&range)) {
            dialogs.report_problem(k_wrong_option, fmt::format("--free {}: {}.", text, *problem));
            return false;
        }
        one.ranges.push_back(std::get<FreeRange>(range));
    }
    return true;
}

Period whole_period(const StudyBasin& basin) { return {basin.run.RunStart, basin.run.RunEnd}; }

bool is_within(const std::optional<Period>& asked, const StudyBasin& basin, const char* option,
               BatchDialogs& dialogs) {
    const Period whole = whole_period(basin);
    if (!asked || (asked->start >= whole.start && asked->end <= whole.end)) return true;
    dialogs.report_problem(k_wrong_option, fmt::format("{}: {} is not within the simulation '{}', {}.",
                                                       option, iso_period_text(*asked),
                                                       basin.basin.Current_Sim_Name, iso_period_text(whole)));
    return false;
}

bool add_case(std::vector<StudyCase>& cases, const StudySource& source, const StudyCommand& command,
              BatchDialogs& dialogs) {
    StudyCase one{.name = source.simulation,
                  .basin = read_source(source, command, dialogs),
                  .ranges = {},
                  .fit = {},
                  .check = {}};
    if (!one.basin || !read_ranges(one, command, dialogs)) return false;
    cases.push_back(std::move(one));
    return true;
}

std::optional<std::vector<StudyCase>> read_cases(const StudyCommand& command, BatchDialogs& dialogs) {
    std::vector<StudyCase> cases;
    if (!add_case(cases, command.source, command, dialogs)) return std::nullopt;
    StudyCase& first = cases.front();
    if (!is_within(command.fit, *first.basin, "--fit", dialogs) ||
        !is_within(command.check, *first.basin, "--check", dialogs))
        return std::nullopt;
    first.fit = command.fit ? *command.fit : whole_period(*first.basin);
    first.check = command.check;
    for (const StudySource& source : command.with) {
        if (!add_case(cases, source, command, dialogs)) return std::nullopt;
        cases.back().fit = whole_period(*cases.back().basin);
    }
    for (const StudySource& source : command.check_with) {
        if (!add_case(cases, source, command, dialogs)) return std::nullopt;
        cases.back().check = whole_period(*cases.back().basin);
    }
    return cases;
}

std::optional<std::vector<const Objective*>> read_objectives(const std::vector<std::string>& texts,
                                                             BatchDialogs& dialogs) {
    std::vector<const Objective*> chosen;
    for (const std::string& text : texts) {
        const Objective* objective = find_objective(text);
        if (objective == nullptr) {
            std::string names;
            for (const Objective& one : objectives())
                names += fmt::format("{}{}", names.empty() ? "" : ", ", one.name);
            dialogs.report_problem(k_wrong_option,
                                   fmt::format("'{}' is not an objective. There are: {}.", text, names));
            return std::nullopt;
        }
        if (std::find(chosen.begin(), chosen.end(), objective) != chosen.end()) {
            dialogs.report_problem(k_wrong_option, fmt::format("The objective '{}' was given twice.", text));
            return std::nullopt;
        }
        chosen.push_back(objective);
    }
    return chosen;
}

/// Why the measured discharge of the fit days has no such measure; empty if it may have.
std::string measured_problem(const StudyProblem& problem, bool reported_only) {
    const std::vector<double>& measured = problem.fit_days().measured;
    if (measured.empty())
        return "None of the days to fit has a measured discharge. Choose other days with --fit.";
    if (reported_only ||
        std::any_of(measured.begin(), measured.end(), [&](double q) { return q != measured.front(); }))
        return {};
    for (const Objective* objective : problem.objectives()) {
        if (objective->best == 1.0) {
            return fmt::format(
                "The measured discharge is constant on the days to fit, so that '{}' is not defined. Choose "
                "other days with --fit.",
                objective->name);
        }
    }
    return {};
}

std::unique_ptr<const StudyProblem> checked_problem(std::vector<StudyCase> cases,
                                                    std::vector<const Objective*> objectives,
                                                    bool reported_only, BatchDialogs& dialogs) {
    auto problem = std::make_unique<const StudyProblem>(std::move(cases), std::move(objectives));
    if (const std::string text = measured_problem(*problem, reported_only); !text.empty()) {
        dialogs.report_problem(k_wrong_option, text);
        return nullptr;
    }
    return problem;
}

}  // namespace

std::optional<Period> read_iso_period(std::string_view text) {
    const std::size_t dots = text.find("..");
    if (dots == std::string_view::npos) return std::nullopt;
    const auto first = read_iso_date(text.substr(0, dots));
    const auto last = read_iso_date(text.substr(dots + 2));
    if (!first || !last || *first > *last) return std::nullopt;
    return Period{*first, *last};
}

std::string iso_period_text(const Period& period) {
    return fmt::format("{}..{}", iso_date_text(period.start), iso_date_text(period.end));
}

std::unique_ptr<const StudyProblem> study_problem_or_throw(const StudyCommand& command,
                                                           BatchDialogs& dialogs) {
    auto chosen = read_objectives(command.objectives, dialogs);
    if (!chosen) return nullptr;
    auto cases = read_cases(command, dialogs);
    if (!cases) return nullptr;
    return checked_problem(std::move(*cases), std::move(*chosen), command.reported_only, dialogs);
}

std::unique_ptr<const StudyProblem> with_reported(const StudyProblem& problem,
                                                  const std::vector<std::string>& names,
                                                  BatchDialogs& dialogs) {
    auto chosen = read_objectives(names, dialogs);
    return chosen ? checked_problem(problem.cases(), std::move(*chosen), true, dialogs) : nullptr;
}

std::unique_ptr<const StudyProblem> study_problem(const StudyCommand& command, BatchDialogs& dialogs) {
    try {
        return study_problem_or_throw(command, dialogs);
    } catch (const StoreError& error) {
        dialogs.report_problem("The basin can't be read", error.what());
    } catch (const FileError& error) {
        dialogs.report_problem("The basin can't be read", error.what());
    }
    return nullptr;
}

std::string study_options_line(const StudyProblem& problem, const StudyCommand& command,
                               std::size_t evaluations) {
    nlohmann::ordered_json options = nlohmann::ordered_json::object();
    for (const FreeRange& range : problem.ranges()) options["free"].push_back(range.text);
    for (const Objective* objective : problem.objectives()) options["objective"].push_back(objective->name);
    for (const StudyCase& one : problem.cases()) {
        options["simulation"].push_back(one.name);
        options["fit"].push_back(one.fit ? iso_period_text(*one.fit) : "");
    }
    options["no snow"] = command.no_snow;
    options["evaluations"] = evaluations;
    options["seed"] = command.seed;
    return options.dump(-1, ' ', true, nlohmann::ordered_json::error_handler_t::replace);
}

}  // namespace nivora
