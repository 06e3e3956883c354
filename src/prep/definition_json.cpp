// The keys of a definition, and their values in both directions. docs/basin-definition.schema.json describes
// the same form.
#include "base/calendar.h"
#include "base/number_text.h"
#include "base/single.h"
#include "base/text.h"
#include "prep/basin_definition.h"
#include "prep/date_pattern.h"
#include "prep/located_json.h"
#include "prep/simulation_names.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <optional>
#include <set>
#include <utility>

namespace nivora {
namespace {

using Json = nlohmann::ordered_json;

constexpr int k_form = 1;  ///< of this text; a later form has another number
constexpr std::size_t k_most_zones = 16;
constexpr double k_any_number = std::numeric_limits<double>::max();
constexpr std::array<const char*, 3> k_unit_names{"not fixed", "Metric", "English"};  // from -1
constexpr std::array<const char*, 2> k_distribution_names{"Basinwide", "By Zone"};
constexpr std::array<const char*, 2> k_temperature_names{"Average", "Max/Min"};
constexpr std::array<const char*, 4> k_directions{"northEast", "southEast", "northWest", "southWest"};

/// The bounds of a number, or the longest text.
struct Limits {
    double low = -k_any_number;
    double high = k_any_number;
};

/// A member of a definition that holds one of some words, by its code.
template <std::size_t Count>
struct Words {
    const std::array<const char*, Count>& names;
    int first = 0;  ///< the code of the first word
};

constexpr Words<3> k_units{.names = k_unit_names, .first = -1};
constexpr Words<2> k_distributions{.names = k_distribution_names};
constexpr Words<2> k_temperatures{.names = k_temperature_names};

constexpr Limits k_latitudes{-90.0, 90.0};
constexpr Limits k_longitudes{-180.0, 180.0};
constexpr Limits k_positive{0.0, k_any_number};
constexpr Limits k_singles{-3.4028234663852886e38, 3.4028234663852886e38};
constexpr Limits k_integers{-32768.0, 32767.0};
constexpr Limits k_longs{-2147483648.0, 2147483647.0};

struct Text {
    std::size_t longest = 0;
    bool required = false;
};

struct Day {};
/// A day with an optional time part: text if it has none, otherwise the count of days since 1899-12-30.
struct Moment {};

// Each description below names the members of an object once, for reading and for writing.

template <typename Object, typename Self>
void describe_basin(Object& object, Self& basin) {
    object.member("name", basin.name, Text{50});
    object.member("description", basin.description, Text{255});
    object.member("units", basin.units, k_units);
    object.member("referenceElevation", basin.reference_elevation, Limits{});
    object.member("latitude", basin.latitude, k_latitudes);
    object.member("longitude", basin.longitude, k_longitudes);
}

template <typename Object, typename Self>
void describe_zone(Object& object, Self& zone) {
    object.member("id", zone.id, Text{8});
    object.member("area", zone.area, k_positive);
    object.member("elevation", zone.elevation, Limits{});
    object.member("notes", zone.notes, Text{255});
    object.object("aspects", [&](auto& aspects) {
        for (std::size_t i = 0; i < k_directions.size(); ++i) {
            aspects.object(k_directions.at(i), [&](auto& aspect) {
                aspect.member("share", zone.aspects.at(i).share, Limits{});
                aspect.member("elevation", zone.aspects.at(i).elevation, Limits{});
            });
        }
    });
}

template <typename Object, typename Self>
void describe_simulation(Object& object, Self& row) {
    object.member("name", row.name, Text{255, true});
    object.member("runNumber", row.run_number, k_integers);
    object.member("start", row.start, Day{});
    object.member("end", row.end, Day{});
    object.member("units", row.units, k_units);
    object.member("temperatureValues", row.temperature_values, k_temperatures);
    object.member("temperature", row.temperature, k_distributions);
    object.member("precipitation", row.precipitation, k_distributions);
    object.member("lapseRate", row.lapse_rate, k_distributions);
    object.member("runoffCoefficients", row.runoff_coefficients, k_distributions);
    object.member("criticalTemperature", row.critical_temperature, k_distributions);
    object.member("recession", row.recession, k_distributions);
    object.member("initialRunoff", row.initial_runoff, k_singles);
    object.member("precipitationThreshold", row.precipitation_threshold, k_singles);
    object.member("initialX", row.initial_x, Limits{});
    object.member("initialY", row.initial_y, Limits{});
    object.member("comments", row.comments, Text{65535});
}

template <typename Object, typename Self>
void describe_edit(Object& object, Self& edit) {
    object.member("variable", edit.variable, k_longs);
    object.member("start", edit.start, Day{});
    object.member("end", edit.end, Day{});
    object.member("action", edit.action, k_longs);
    object.member("factor", edit.factor, k_singles);
    object.member("zones", edit.zones, k_longs);
}

template <typename Object, typename Self>
void describe_scenario(Object& object, Self& scenario) {
    object.member("simulation", scenario.index.simulation, Text{255, true});
    object.member("name", scenario.index.scenario, Text{255, true});
    object.member("winterEnd", scenario.index.winter_end_date, Moment{});
    object.member("created", scenario.index.creation_date, Moment{});
    object.member("comments", scenario.index.comments, Text{65535});
    object.list("edits", scenario.edits, [](auto& element, auto& edit) { describe_edit(element, edit); });
}

template <typename Object, typename Self>
void describe_definition(Object& object, Self& definition) {
    object.object("basin", [&](auto& basin) { describe_basin(basin, definition.basin); });
    object.list("zones", definition.zones, [](auto& zone, auto& row) { describe_zone(zone, row); });
    object.list("simulations", definition.simulations,
                [](auto& simulation, auto& row) { describe_simulation(simulation, row); });
    object.list("scenarios", definition.scenarios,
                [](auto& scenario, auto& row) { describe_scenario(scenario, row); });
}

/// A Single as a number of JSON: the shortest digits that read back to it.
double readable_number(float value) {
    const double shortest = std::strtod(shortest_text(value).c_str(), nullptr);
    return static_cast<float>(shortest) == value ? shortest : as_double(value);
}
double readable_number(double value) { return value; }

std::optional<DayCount> day_of(const Json& json) {
    std::string reason;
    return json.is_string() ? DatePattern{}.day(json.get_ref<const std::string&>(), reason) : std::nullopt;
}

/// Writes the members of an object. A value without content is null, so that a reader sees what can be set.
class Writer {
public:
    explicit Writer(Json& json) : json_(json) { json_ = Json::object(); }

    template <typename Value, typename Rule>
    void member(const char* key, const std::optional<Value>& value, const Rule& rule) {
        json_[key] = value ? json_of(*value, rule) : Json{};
    }
    template <typename Value, typename Rule>
    void member(const char* key, const Value& value, const Rule& rule) {
        json_[key] = json_of(value, rule);
    }
    template <typename Describe>
    void object(const char* key, const Describe& describe) {
        Writer inner{json_[key]};
        describe(inner);
    }
    template <typename Row, typename Describe>
    void list(const char* key, const std::vector<Row>& rows, const Describe& describe) {
        Json& array = json_[key] = Json::array();
        for (const Row& row : rows) {
            Writer inner{array.emplace_back()};
            describe(inner, row);
        }
    }

private:
    static Json json_of(const std::string& text, const Text& /*unused*/) { return text; }
    static Json json_of(DayCount day, const Day& /*unused*/) { return iso_date_text(day); }
    static Json json_of(double date, const Moment& /*unused*/) {
        const bool whole = date == std::floor(date) && std::abs(date) <= k_largest_day;
        return whole ? Json(iso_date_text(static_cast<DayCount>(date))) : Json(date);
    }
    template <typename Code, std::size_t Count>
    static Json json_of(Code code, const Words<Count>& words) {
        const int place = static_cast<int>(code) - words.first;
        // A code that no word stands for is written as it is, and refused when it is read.
        if (place < 0 || place >= static_cast<int>(Count)) return static_cast<int>(code);
        return words.names.at(static_cast<std::size_t>(place));
    }
    template <typename Number>
    static Json json_of(Number number, const Limits& /*unused*/) {
        if constexpr (std::is_integral_v<Number>) {
            return number;
        } else {
            return is_missing(number) ? Json{} : Json(readable_number(number));
        }
    }

    Json& json_;
};

/// Reads the members of an object, and collects what can't be taken.
class Reader {
public:
    Reader(const LocatedJson& text, const Json& json, std::string place,
           std::vector<DefinitionProblem>& problems)
        : text_(text), json_(json), place_(std::move(place)), problems_(problems) {
        if (!json_.is_object()) report(place_, "an object in braces is expected here");
    }
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;
    ~Reader() {
        if (!json_.is_object()) return;
        for (const auto& [key, value] : json_.items()) {
            if (!known_.contains(key)) report(member_place(place_, key), "this key is not known here");
        }
    }

    void report(const std::string& place, std::string reason) {
        const auto line = text_.lines.find(place);
        problems_.push_back({.line = line == text_.lines.end() ? 0 : line->second,
                             .place = place,
                             .reason = std::move(reason)});
    }
    /// A problem of a member of this object.
    void report_member(const char* key, std::string reason) {
        const std::string place = member_place(place_, key);
        if (text_.lines.contains(place)) return report(place, std::move(reason));
        report(place_, fmt::format("{}: {}", key, reason));
    }

    /// The value of a key; nothing if it is missing or null.
    const Json* find(const char* key) {
        known_.insert(key);
        if (!json_.is_object()) return nullptr;
        const auto found = json_.find(key);
        return found == json_.end() || found->is_null() ? nullptr : &*found;
    }

    template <typename Value, typename Rule>
    void member(const char* key, std::optional<Value>& value, const Rule& rule) {
        const Json* const json = find(key);
        if (json != nullptr) value = read<Value>(key, *json, rule);
    }
    template <typename Value, typename Rule>
    void member(const char* key, Value& value, const Rule& rule) {
        const Json* const json = find(key);
        if (json != nullptr) {
            if (const auto given = read<Value>(key, *json, rule)) value = *given;
        } else if constexpr (std::is_same_v<Rule, Text>) {
            if (rule.required) report_member(key, "this text is required");
        }
    }
    template <typename Describe>
    void object(const char* key, const Describe& describe) {
        const Json* const json = find(key);
        if (json == nullptr) return;
        Reader inner{text_, *json, member_place(place_, key), problems_};
        describe(inner);
    }
    template <typename Row, typename Describe>
    void list(const char* key, std::vector<Row>& rows, const Describe& describe) {
        const Json* const json = find(key);
        if (json == nullptr) return;
        const std::string place = member_place(place_, key);
        if (!json->is_array()) return report(place, "a list in square brackets is expected here");
        rows.reserve(json->size());
        for (std::size_t i = 0; i < json->size(); ++i) {
            Reader inner{text_, (*json)[i], element_place(place, i), problems_};
            describe(inner, rows.emplace_back());
        }
    }

private:
    template <typename Value>
    std::optional<Value> read(const char* key, const Json& json, const Text& rule) {
        if (!json.is_string()) return refuse<Value>(key, "a text is expected");
        const auto& text = json.get_ref<const std::string&>();
        if (first_characters(text, rule.longest).size() < text.size())
            return refuse<Value>(key, fmt::format("a text has at most {} characters here", rule.longest));
        if (rule.required && trimmed(text).empty()) return refuse<Value>(key, "this text is required");
        return text;
    }
    template <typename Value>
    std::optional<Value> read(const char* key, const Json& json, const Day& /*unused*/) {
        const auto day = day_of(json);
        if (!day) return refuse<Value>(key, "a date such as \"1998-04-13\", of 1900 to 2300, is expected");
        return *day;
    }
    template <typename Value>
    std::optional<Value> read(const char* key, const Json& json, const Moment& /*unused*/) {
        if (json.is_number()) {
            const auto date = json.get<double>();
            if (std::abs(date) <= k_largest_day) return date;
        } else if (const auto day = day_of(json)) {
            return static_cast<double>(*day);
        }
        return refuse<Value>(
            key, "a date such as \"1998-04-13\", or a number of days since 1899-12-30, is expected");
    }
    template <typename Value, std::size_t Count>
    std::optional<Value> read(const char* key, const Json& json, const Words<Count>& words) {
        for (std::size_t i = 0; i < Count; ++i) {
            if (json.is_string() && same_name(words.names.at(i), json.get_ref<const std::string&>()))
                return static_cast<Value>(words.first + static_cast<int>(i));
        }
        std::string names;
        for (const char* const name : words.names)
            names += fmt::format("{}\"{}\"", names.empty() ? "" : ", ", name);
        return refuse<Value>(key, fmt::format("one of {} is expected", names));
    }
    template <typename Value>
    std::optional<Value> read(const char* key, const Json& json, const Limits& limits) {
        if (!json.is_number()) return refuse<Value>(key, "a number is expected");
        const auto number = json.get<double>();
        if (number < limits.low || number > limits.high) {
            return refuse<Value>(
                key, limits.low == k_positive.low && limits.high == k_positive.high
                         ? std::string{"the number can't be below 0"}
                         : fmt::format("the number is not within {} and {}", limits.low, limits.high));
        }
        if constexpr (std::is_integral_v<Value>) {
            if (number != std::floor(number)) return refuse<Value>(key, "a whole number is expected");
        }
        return static_cast<Value>(number);
    }

    template <typename Value>
    std::optional<Value> refuse(const char* key, std::string reason) {
        report_member(key, std::move(reason));
        return std::nullopt;
    }

    const LocatedJson& text_;
    const Json& json_;
    std::string place_;
    std::vector<DefinitionProblem>& problems_;
    std::set<std::string> known_ = {};
};

/// The rules that more than one value has a part in.
class Rules {
public:
    Rules(const LocatedJson& text, BasinDefinition& definition, std::vector<DefinitionProblem>& problems)
        : text_(text), definition_(definition), problems_(problems) {}

    void check() {
        check_zones();
        for (std::size_t i = 0; i < definition_.simulations.size(); ++i) check_simulation(i);
        for (std::size_t i = 0; i < definition_.scenarios.size(); ++i) check_scenario(i);
    }

private:
    void report(const std::string& place, std::string reason) {
        const auto line = text_.lines.find(place);
        problems_.push_back({.line = line == text_.lines.end() ? 0 : line->second,
                             .place = place,
                             .reason = std::move(reason)});
    }

    void check_zones() {
        std::vector<Zone>& zones = definition_.zones;
        if (zones.empty() || zones.size() > k_most_zones)
            report("zones", fmt::format("a basin has 1 to 16 zones, and these are {}", zones.size()));
        std::set<std::string> names;
        for (std::size_t i = 0; i < zones.size() && i < k_most_zones; ++i) {
            if (zones[i].id.empty()) zones[i].id = zone_letter(static_cast<int>(i) + 1);
            if (!names.insert(folded_name(zones[i].id)).second)
                report(element_place("zones", i), fmt::format("a second zone has the id '{}'", zones[i].id));
        }
    }

    void check_simulation(std::size_t index) {
        const Simulation& row = definition_.simulations[index];
        const std::string place = element_place("simulations", index);
        if (row.name.empty()) return;
        if (row.name != trimmed(row.name) || simulation_name_problem(row.name) || is_fixed_table(row.name))
            report(member_place(place, "name"),
                   fmt::format("'{}' can't be the name of a simulation", row.name));
        if (!tables_.insert(folded_name(row.name)).second)
            report(member_place(place, "name"),
                   fmt::format("a second simulation has the name '{}'", row.name));
        if (row.start && row.end && *row.end < *row.start)
            report(member_place(place, "end"), "the simulation ends before it starts");
        const Units basin = definition_.basin.units.value_or(Units::NotFixed);
        const Units own = row.units.value_or(Units::NotFixed);
        if (basin != Units::NotFixed && own != Units::NotFixed && own != basin)
            report(member_place(place, "units"), "a basin and its simulations have the same units");
    }

    void check_scenario(std::size_t index) {
        const ScenarioDefinition& row = definition_.scenarios[index];
        const std::string place = element_place("scenarios", index);
        if (row.index.simulation.empty() || row.index.scenario.empty()) return;
        const bool known = std::any_of(
            definition_.simulations.begin(), definition_.simulations.end(),
            [&](const Simulation& simulation) { return same_name(simulation.name, row.index.simulation); });
        if (!known) {
            report(member_place(place, "simulation"),
                   fmt::format("there is no simulation '{}'", row.index.simulation));
        }
        const std::string& name = row.index.scenario;
        if (same_name(name, k_no_scenario)) {
            if (!row.edits.empty()) report(place, "'None' means no scenario, and has no edits");
            return;
        }
        if (name != trimmed(name) || simulation_name_problem(name) || is_fixed_table(name))
            report(member_place(place, "name"), fmt::format("'{}' can't be the name of a scenario", name));
        if (!tables_.insert(folded_name(name)).second) {
            report(member_place(place, "name"),
                   fmt::format("a simulation, or a scenario before it, has the name '{}' already", name));
        }
    }

    const LocatedJson& text_;
    BasinDefinition& definition_;
    std::vector<DefinitionProblem>& problems_;
    std::set<std::string> tables_ = {};
};

}  // namespace

BasinDefinition read_definition(std::string_view json) {
    const LocatedJson text = read_located_json(json);
    std::vector<DefinitionProblem> problems;
    if (!text.syntax_problem.empty())
        throw DefinitionFault({{.line = text.problem_line, .place = {}, .reason = text.syntax_problem}});
    for (const auto& [place, line] : text.second_keys)
        problems.push_back({.line = line, .place = place, .reason = "this key stands here a second time"});
    BasinDefinition definition;
    {
        Reader reader{text, text.value, {}, problems};
        const Json* const form = reader.find("definition");
        if (text.value.is_object() && (form == nullptr || *form != Json(k_form)))
            reader.report_member("definition", "the number 1 is expected, which names the form of this text");
        if (text.value.is_object() && reader.find("basin") == nullptr)
            reader.report_member("basin", "this object is required");
        describe_definition(reader, definition);
    }
    if (text.value.is_object()) Rules{text, definition, problems}.check();
    std::stable_sort(problems.begin(), problems.end(),
                     [](const auto& a, const auto& b) { return a.line < b.line; });
    if (!problems.empty()) throw DefinitionFault(std::move(problems));
    definition.basin.zones = static_cast<std::int16_t>(definition.zones.size());
    return definition;
}

std::string definition_text(const BasinDefinition& definition) {
    Json json;
    Writer writer{json};
    json["definition"] = k_form;
    describe_definition(writer, definition);
    try {
        return json.dump(2) + "\n";
    } catch (const Json::type_error&) {
        throw DefinitionFault(
            {{.line = 0, .place = {}, .reason = "the basin holds a text that is not UTF-8"}});
    }
}

}  // namespace nivora
