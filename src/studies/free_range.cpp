#include "studies/free_range.h"

#include "base/iso_date.h"
#include "base/number_text.h"
#include "base/text.h"

#include <fmt/format.h>

#include <charconv>
#include <cmath>
#include <system_error>
#include <utility>

namespace nivora {
namespace {

constexpr std::string_view k_form = "VARIABLE:ACTION:LOW..HIGH:ZONES[:FIRST..LAST]";
constexpr std::size_t k_least_parts = 4;
constexpr std::size_t k_most_parts = 5;

std::vector<std::string_view> split(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    for (;;) {
        const std::size_t end = text.find(separator);
        parts.push_back(trimmed(text.substr(0, end)));
        if (end == std::string_view::npos) return parts;
        text.remove_prefix(end + 1);
    }
}

/// The two sides of LOW..HIGH; nothing without the dots.
std::optional<std::pair<std::string_view, std::string_view>> sides_of(std::string_view text) {
    const std::size_t dots = text.find("..");
    if (dots == std::string_view::npos) return std::nullopt;
    return std::pair{trimmed(text.substr(0, dots)), trimmed(text.substr(dots + 2))};
}

std::string variable_names() {
    std::string names;
    for (const StudyVariable variable : k_study_variables) {
        if (!names.empty()) names += ", ";
        names += fmt::format("{} ({})", study_variable_text(variable), study_variable_field(variable));
    }
    return names;
}

/// A variable's name may stand in the plural.
std::string read_variable(FreeRange& range, std::string_view text) {
    auto variable = study_variable(text);
    if (!variable && text.ends_with('s')) variable = study_variable(text.substr(0, text.size() - 1));
    if (!variable) {
        return fmt::format("'{}' is not a variable that a study can change; they are {}", text,
                           variable_names());
    }
    range.variable = *variable;
    return {};
}

std::string read_action(FreeRange& range, std::string_view text) {
    constexpr std::array<std::pair<std::string_view, AdjustAction>, 3> k_actions{
        {{"set", AdjustAction::Set}, {"add", AdjustAction::Add}, {"multiply", AdjustAction::Multiply}}};
    for (const auto& [name, action] : k_actions) {
        if (!same_name(name, text)) continue;
        range.action = action;
        return {};
    }
    return fmt::format("'{}' is not an action: give set, add or multiply", text);
}

std::string number_problem(std::string_view text) {
    double value = 0.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool whole = end == text.data() + text.size() && error != std::errc::invalid_argument;
    return fmt::format("'{}' is not a {}number", text, whole ? "finite " : "");
}

std::string read_limits(FreeRange& range, std::string_view text) {
    const auto sides = sides_of(text);
    if (!sides || sides->first.empty() || sides->second.empty())
        return fmt::format("'{}' is not a range such as 0.7..1.4", text);
    const auto low = exact_number(sides->first);
    const auto high = exact_number(sides->second);
    if (!low || !high) return number_problem(low ? sides->second : sides->first);
    if (!std::isfinite(*low) || !std::isfinite(*high))
        return fmt::format("'{}' is not a range between finite numbers", text);
    if (*low > *high) return fmt::format("the range '{}' is reversed: the lower number comes first", text);
    range.low = *low;
    range.high = *high;
    return {};
}

/// A zone's number from its letter or number; 0 for any other text.
std::size_t zone_number(std::string_view text) {
    if (text.size() == 1) {
        const char letter = text.front();
        if (letter >= 'A' && letter <= 'P') return static_cast<std::size_t>(letter - 'A') + 1;
        if (letter >= 'a' && letter <= 'p') return static_cast<std::size_t>(letter - 'a') + 1;
    }
    const auto number = exact_number(text);
    if (!number || *number < 1.0 || *number > k_most_zones || *number != std::floor(*number)) return 0;
    return static_cast<std::size_t>(*number);
}

std::string read_zones(FreeRange& range, std::string_view text, std::size_t zones) {
    if (same_name(text, "All")) {
        for (std::size_t zone = 1; zone <= zones; ++zone) range.zones.at(zone) = true;
        return {};
    }
    for (const std::string_view part : split(text, ',')) {
        const std::size_t zone = zone_number(part);
        if (zone == 0)
            return fmt::format("'{}' is not a zone: give All, or letters or numbers with commas", part);
        if (zone > zones) return fmt::format("the basin has no zone '{}'", part);
        range.zones.at(zone) = true;
    }
    return {};
}

std::string read_days(FreeRange& range, std::string_view text) {
    const auto sides = sides_of(text);
    if (!sides) return fmt::format("'{}' is not a period such as 1996-04-01..1996-09-30", text);
    const auto first = read_iso_date(sides->first);
    const auto last = read_iso_date(sides->second);
    if (!first || !last)
        return fmt::format("'{}' is not a date such as 1996-04-01", first ? sides->second : sides->first);
    if (*first > *last) return fmt::format("the period '{}' ends before it starts", text);
    range.days = Period{*first, *last};
    return {};
}

/// A period without a day of the simulation would change nothing.
std::string period_problem_of(const FreeRange& range, const BasinInputs& inputs) {
    if (!range.days || !inputs.start || !inputs.end) return {};
    if (range.days->start <= *inputs.end && range.days->end >= *inputs.start) return {};
    return fmt::format("the simulation, from {} to {}, has no day from {} to {}",
                       iso_date_text(*inputs.start), iso_date_text(*inputs.end),
                       iso_date_text(range.days->start), iso_date_text(range.days->end));
}

/// What the simulation's options forbid.
std::string use_problem(const FreeRange& range, const BasinInputs& inputs) {
    const VariableUse use = variable_use(range.variable, inputs);
    const char* name = study_variable_text(range.variable);
    if (use == VariableUse::None) return fmt::format("the simulation does not use '{}'", name);
    if (use != VariableUse::FirstZone) return {};
    for (std::size_t zone = 1; zone <= inputs.zones; ++zone) {
        if (!range.zones.at(zone))
            return fmt::format("the simulation has '{}' basinwide: its zones must be All", name);
    }
    return {};
}

}  // namespace

std::variant<FreeRange, std::string> read_free_range(std::string_view text, const BasinInputs& inputs) {
    const auto parts = split(text, ':');
    if (parts.size() < k_least_parts || parts.size() > k_most_parts)
        return fmt::format("'{}' is not of the form {}", text, k_form);
    FreeRange range;
    range.text = std::string{trimmed(text)};
    std::string problem = read_variable(range, parts[0]);
    if (problem.empty()) problem = read_action(range, parts[1]);
    if (problem.empty()) problem = read_limits(range, parts[2]);
    if (problem.empty()) problem = read_zones(range, parts[3], inputs.zones);
    if (problem.empty() && parts.size() == k_most_parts) problem = read_days(range, parts[4]);
    if (problem.empty()) problem = period_problem_of(range, inputs);
    if (problem.empty()) problem = use_problem(range, inputs);
    if (!problem.empty()) return problem;
    return range;
}

}  // namespace nivora
