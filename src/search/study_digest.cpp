#include "search/study_digest.h"

#include "base/file_content.h"

#include <fmt/format.h>

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

}  // namespace

std::string basin_digest(const StudyBasin& basin) {
    std::string bytes = inputs_text(basin);
    add(bytes, basin.inputs.areas);
    add(bytes, basin.inputs.elevations);
    SimResults::visit(basin.table, [&](const auto& column) { add(bytes, column); });
    ContentDigest digest;
    digest.add(bytes);
    return fmt::format("{:016x}-{}", digest.content().digest, digest.content().size);
}

std::string study_digest(const StudyProblem& problem) {
    std::string line;
    for (const StudyCase& one : problem.cases()) line += (line.empty() ? "" : " ") + basin_digest(*one.basin);
    return line;
}

}  // namespace nivora
