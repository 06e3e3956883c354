#include "search/study_digest.h"

#include "base/file_content.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <type_traits>

namespace nivora {
namespace {

template <typename Number>
void add(std::string& bytes, const std::vector<Number>& values) {
    static_assert(std::is_arithmetic_v<Number>);
    bytes.append(reinterpret_cast<const char*>(values.data()), values.size() * sizeof(Number));
    bytes += ';';
}

std::string inputs_text(const StudyBasin& basin) {
    const BasinInputs& in = basin.inputs;
    const RunState& run = basin.run;
    std::string text = fmt::format(
        "{} {} {} {} {} {} {} {} {} {} {} {}", in.zones, in.reference_elevation, in.basin_area,
        in.melt_season_start, in.units == Units::English, in.temperature_max_min, in.temperature_basinwide,
        in.precipitation_basinwide, in.lapse_rate_basinwide, in.critical_temperature_basinwide,
        in.runoff_coefficients_basinwide, in.precipitation_threshold.value_or(0.0F));
    text += fmt::format(" {} {} {} {} {}", run.RunStart, run.RunEnd, run.InitialRunoff, run.UpdateInterval,
                        run.NoSnow);
    for (const float share : run.LagDistribution) text += fmt::format(" {}", share);
    return text;
}

/// Whether a column, or its copy for a changed climate, is of the daily variables and not of the parameters.
bool is_variable(std::string_view name) {
    constexpr std::array<std::string_view, 9> k_variables{"Zone", "Date", "ActualQ", "TMax", "NetRad",
                                                          "Tmin", "TAvg", "Precip",  "SCA"};
    if (name.ends_with("CC")) name.remove_suffix(2);
    return std::find(k_variables.begin(), k_variables.end(), name) != k_variables.end();
}

std::string digest_of(std::string_view name, std::string_view bytes) {
    ContentDigest digest;
    digest.add(bytes);
    return fmt::format("{}:{:016x}-{}", name, digest.content().digest, digest.content().size);
}

}  // namespace

std::string basin_digest(const StudyBasin& basin) {
    std::string zones;
    add(zones, basin.inputs.areas);
    add(zones, basin.inputs.elevations);
    std::string variables;
    std::string parameters;
    SimResults::visit_named(basin.table, [&](std::string_view name, const auto& column) {
        add(is_variable(name) ? variables : parameters, column);
    });
    return digest_of("settings", inputs_text(basin)) + "," + digest_of("zones", zones) + "," +
           digest_of("variables", variables) + "," + digest_of("parameters", parameters);
}

std::string study_digest(const StudyProblem& problem) {
    std::string line;
    for (const StudyCase& one : problem.cases()) line += (line.empty() ? "" : " ") + basin_digest(*one.basin);
    return line;
}

}  // namespace nivora
