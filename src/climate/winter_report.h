// The report of step 5, which shows how each zone's depletion curve was adjusted for the winter.
#pragma once

#include "climate/climate_state.h"
#include "climate/winter_change.h"
#include "engine/run_state.h"
#include "reports/report_lines.h"

#include <string>

namespace nivora {

/// The file that receives the report.
inline constexpr const char* k_winter_report_name = "NVR_DfGN.out";

/// The results of the first pass for a zone.
struct AdjustedZone {
    int zone = 0;
    ZoneWinter winter;
    float change = 0.0F;  ///< cm or inches; below 0 is a deficit
    float gain = 0.0F;
    WinterShift shift = {};
};

class WinterReport {
public:
    /// @param now date and time that head and pages bear
    WinterReport(const BasinState& basin, const RunState& run, const ClimateState& climate, double now);

    /// Writes a zone's block and, after every fourth zone and the last one, the end of the page.
    void add(const AdjustedZone& zone);

    [[nodiscard]] const std::string& written() const { return lines_.written(); }

private:
    void write_head(const BasinState& basin);
    void write_winter(const AdjustedZone& zone);
    void write_sums(int zone, std::size_t step);
    void write_curve(const AdjustedZone& zone);
    void end_page(int zone);

    ReportLines lines_;
    const RunState& run_;
    const ClimateState& climate_;
    double now_;
    int zones_;
    int page_ = 1;
};

}  // namespace nivora
