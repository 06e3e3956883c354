#include "plots/run_summary.h"

#include "base/number_text.h"
#include "reports/run_figures.h"

#include <array>
#include <string_view>

namespace nivora {
namespace {

constexpr int k_winter_of_changed_climate = 2;
constexpr int k_summer_of_changed_climate = 6;

using Captions = std::array<std::string, 6>;

/// The captions in a system of units. Two blanks behind the "10" leave room for its exponent. Intended: in
/// English units an "f" stands for the "m", not "ft".
Captions original_captions(Units units) {
    Captions captions{"Measured Runoff Volume (10  m³)", "Average Measured Runoff  (m³/s)",
                      "Computed Runoff Volume (10  m³)", "Avg Computed Q   (m³/s)",
                      "Volume Difference (%)",           "Coefficient of Determination (R²)"};
    if (units != Units::English) return captions;
    for (std::size_t row = 0; row < 4; ++row) {
        std::string& caption = captions.at(row);
        caption[caption.find("m³")] = 'f';
    }
    return captions;
}

/// Replaces a word of the first four captions.
void replace_word(Captions& captions, std::string_view word, std::string_view other) {
    for (std::size_t row = 0; row < 4; ++row) {
        std::string& caption = captions.at(row);
        const std::size_t at = caption.find(word);
        if (at != std::string::npos) caption.replace(at, word.size(), other);
    }
}

/// Intended: the two rows of the computed discharge have different words at step 2.
Captions captions_of(PlotNumber plot, Units units, int step) {
    Captions captions = original_captions(units);
    if (plot == PlotNumber::RunoffComparison) replace_word(captions, "Measured", "Simulated");
    if (step == k_winter_of_changed_climate) {
        captions[2] = "CompClim " + captions[2].substr(9);
        replace_word(captions, "Computed", "CompCalc");
    }
    if (step == k_summer_of_changed_climate) {
        replace_word(captions, "Simulated", "PresentC");
        replace_word(captions, "Computed", "ChangedC");
    }
    return captions;
}

}  // namespace

std::vector<RunSummaryRow> run_summary(PlotNumber plot, Units units, const RunState& run) {
    const RunFigures figures = run_figures(run);
    const std::array values{figures.measured_volume,  figures.average_measured,  figures.computed_volume,
                            figures.average_computed, figures.volume_difference, figures.r2};
    constexpr std::array k_patterns{"#####.###", "#####.###",  "#####.###",
                                    "#####.###", "#####.####", "#####.####"};
    constexpr std::array k_lines{1, 1, 2, 2, 0, 0};
    const Captions captions = captions_of(plot, units, run.ClimateStep);
    std::vector<RunSummaryRow> rows;
    for (std::size_t row = 0; row < captions.size(); ++row) {
        RunSummaryRow& shown = rows.emplace_back();
        shown.caption = captions.at(row);
        if (const auto value = values.at(row))
            shown.value = format_number(as_double(*value), k_patterns.at(row));
        shown.line = k_lines.at(row);
        shown.millions = row == 0 || row == 2;
    }
    return rows;
}

}  // namespace nivora
