#include "batch/calibrate_output.h"

#include "base/number_text.h"
#include "base/version.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <ostream>

namespace nivora {
namespace {

using DoubleJson = nlohmann::ordered_json;

std::string value_text(const std::optional<double>& value) { return value ? seven_digit_text(*value) : "-"; }

std::string number_text(double number) { return is_missing(number) ? "-" : seven_digit_text(number); }

DoubleJson value_json(const std::optional<double>& value) {
    return value ? DoubleJson(*value) : DoubleJson(nullptr);
}

DoubleJson measures_json(const StudyProblem& problem, const std::vector<std::optional<double>>& values) {
    DoubleJson json = DoubleJson::object();
    for (std::size_t i = 0; i < problem.objectives().size(); ++i)
        json[problem.objectives()[i]->name] = value_json(values[i]);
    return json;
}

DoubleJson set_json(const StudyProblem& problem, const FoundSet& set) {
    DoubleJson numbers = DoubleJson::array();
    for (std::size_t i = 0; i < problem.ranges().size(); ++i)
        numbers.push_back(
            {{"range", problem.ranges()[i].text},
             {"number", is_missing(set.numbers[i]) ? DoubleJson(nullptr) : DoubleJson(set.numbers[i])}});
    DoubleJson json{{"numbers", numbers}, {"fit", measures_json(problem, set.fit)}};
    if (!problem.check_days().measured.empty()) json["check"] = measures_json(problem, set.check);
    return json;
}

void print_days(const char* use, const StudyDays& days, std::ostream& out) {
    if (days.measured.empty() && days.missing == 0) return;
    out << fmt::format("{} {} days with a measured discharge", use, days.measured.size());
    if (days.missing > 0) out << fmt::format("; {} without one are left out", days.missing);
    out << '\n';
}

/// The first column is as wide as its longest text.
std::size_t first_width(const StudyProblem& problem) {
    std::size_t width = 24;
    for (const FreeRange& range : problem.ranges()) width = std::max(width, range.text.size() + 2);
    return width;
}

void print_best(const StudyProblem& problem, const FoundSets& found, std::ostream& out) {
    const FoundSet& best = found.sets.front();
    const std::size_t width = first_width(problem);
    const bool checks = !problem.check_days().measured.empty();
    out << fmt::format("\n{:{}}{:>14}{:>14}\n", "", width, "unchanged", "found");
    for (std::size_t i = 0; i < problem.ranges().size(); ++i) {
        out << fmt::format("{:{}}{:>14}{:>14}\n", problem.ranges()[i].text, width,
                           number_text(found.unchanged.numbers[i]), seven_digit_text(best.numbers[i]));
    }
    for (std::size_t i = 0; i < problem.objectives().size(); ++i) {
        const char* name = problem.objectives()[i]->name;
        out << fmt::format("{:{}}{:>14}{:>14}\n", fmt::format("{}, days to fit", name), width,
                           value_text(found.unchanged.fit[i]), value_text(best.fit[i]));
        if (!checks) continue;
        out << fmt::format("{:{}}{:>14}{:>14}\n", fmt::format("{}, days to check", name), width,
                           value_text(found.unchanged.check[i]), value_text(best.check[i]));
    }
}

void print_row(const StudyProblem& problem, const std::string& name, const FoundSet& set, std::ostream& out) {
    out << fmt::format("{:10}", name);
    for (const auto& value : set.fit) out << fmt::format("{:>18}", value_text(value));
    if (!problem.check_days().measured.empty()) {
        for (const auto& value : set.check) out << fmt::format("{:>18}", value_text(value));
    }
    for (const double number : set.numbers) out << fmt::format("{:>14}", number_text(number));
    out << '\n';
}

/// The front, a set a line; ranges are numbered, since their texts are long.
void print_front(const StudyProblem& problem, const FoundSets& found, std::ostream& out) {
    out << '\n';
    for (std::size_t i = 0; i < problem.ranges().size(); ++i)
        out << fmt::format("({}) {}\n", i + 1, problem.ranges()[i].text);
    out << fmt::format("\n{:10}", "Set");
    for (const Objective* objective : problem.objectives()) out << fmt::format("{:>18}", objective->name);
    if (!problem.check_days().measured.empty()) {
        for (const Objective* objective : problem.objectives())
            out << fmt::format("{:>18}", fmt::format("{}, check", objective->name));
    }
    for (std::size_t i = 0; i < problem.ranges().size(); ++i)
        out << fmt::format("{:>14}", fmt::format("({})", i + 1));
    out << '\n';
    print_row(problem, "unchanged", found.unchanged, out);
    for (std::size_t i = 0; i < found.sets.size(); ++i)
        print_row(problem, std::to_string(i + 1), found.sets[i], out);
}

}  // namespace

void print_found(const StudyProblem& problem, const FoundSets& found, std::ostream& out) {
    out << fmt::format("{} of simulation '{}', {} evaluations",
                       found.stopped ? "Stopped calibration" : "Calibration", problem.cases().front().name,
                       found.evaluations);
    if (found.failed > 0) out << fmt::format(", of which {} gave no result", found.failed);
    out << '\n';
    print_days("Fit:", problem.fit_days(), out);
    print_days("Check:", problem.check_days(), out);
    if (found.sets.empty()) {
        out << "No numbers of these ranges gave a result.\n";
    } else if (problem.objectives().size() == 1) {
        print_best(problem, found, out);
    } else {
        print_front(problem, found, out);
    }
}

std::string found_json(const StudyProblem& problem, const FoundSets& found, const std::string& options) {
    DoubleJson json{{"program", fmt::format("Nivora {}", k_version)},
                    {"options", DoubleJson::parse(options)},
                    {"evaluations", found.evaluations},
                    {"failed", found.failed},
                    {"stopped", found.stopped},
                    {"fitDays", problem.fit_days().measured.size()},
                    {"fitDaysLeftOut", problem.fit_days().missing},
                    {"checkDays", problem.check_days().measured.size()},
                    {"checkDaysLeftOut", problem.check_days().missing},
                    {"unchanged", set_json(problem, found.unchanged)},
                    {"sets", DoubleJson::array()}};
    for (const FoundSet& set : found.sets) json["sets"].push_back(set_json(problem, set));
    return json.dump(2, ' ', false, DoubleJson::error_handler_t::replace) + "\n";
}

}  // namespace nivora
