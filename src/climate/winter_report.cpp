#include "climate/winter_report.h"

#include "base/durable_file.h"
#include "base/number_text.h"
#include "reports/page_head.h"

namespace nivora {
namespace {

constexpr int k_zones_a_page = 4;
constexpr const char* k_change_pattern = "#####.###";

}  // namespace

WinterReport::WinterReport(const BasinState& basin, const RunState& run, const ClimateState& climate,
                           double now)
    : run_(run), climate_(climate), now_(now), zones_(basin.ZoneCount) {
    write_head(basin);
}

void WinterReport::write_head(const BasinState& basin) {
    lines_.end_line();
    lines_.text("Date:             ").date(whole_day(now_)).end_line();
    lines_.text("File:             ").user_text(path_text(basin.Basin_File)).end_line();
    lines_.text("Units:            ").line(basin.Units_Code == Units::Metric ? " (cm)" : " (in)");
    lines_.text("Climate Scenario: ").user_text(run_.ScenarioName).end_line();
    lines_.end_line();
}

void WinterReport::add(const AdjustedZone& zone) {
    const std::string rule(35, '=');
    lines_.end_line();
    lines_.text(rule).text(" Zone").number(zone.zone).text(" ").line(rule);
    write_winter(zone);
    lines_.end_line();
    lines_.text("Zone").number(zone.zone).end_line();
    write_curve(zone);
    if (zone.zone % k_zones_a_page == 0 || zone.zone == zones_) end_page(zone.zone);
}

void WinterReport::write_winter(const AdjustedZone& zone) {
    const double P = as_double(zone.winter.P);
    const double P_changed = as_double(zone.winter.P_changed);
    const double input = as_double(zone.winter.input);
    const double input_changed = as_double(zone.winter.input_changed);
    if (P_changed > 0.0) {
        lines_.text("Total P, Winter       [P]  = ").number(P).end_line();
        lines_.text("Total P, Winter(clim) [P'] = ").number(P_changed).end_line();
    }
    lines_.text("Winter - Total Zonal Input [i], Zone ")
        .number(zone.zone)
        .text(" = ")
        .number(input)
        .end_line();
    write_sums(zone.zone, 1);
    lines_.text("Winter(clim) - Total Zonal Input [i'], Zone ").number(zone.zone).text(" = ");
    lines_.number(input_changed).end_line();
    write_sums(zone.zone, 2);
    if (zone.gain > 1.0F) {
        lines_.line("Gain(g) = (P' - i')/(P - i)");
        // Intended: the first number is the sum of both winters' precipitation, although the gain is computed
        // with that of the changed one.
        lines_.text("     g  = (").number(P + P_changed).text("-").number(input_changed);
        lines_.text(")/(").number(P).text("-").number(input).line(")");
    }
    lines_.text("Winter Change (\x1eHW), Zone").number(zone.zone).text(" = ");
    lines_.line(format_number(as_double(zone.change), k_change_pattern));
}

void WinterReport::write_sums(int zone, std::size_t step) {
    const auto& sums = run_.ClimateSums.at(static_cast<std::size_t>(zone)).at(step);
    lines_.text("     Sum M·S     = ").number(as_double(sums[2])).end_line();
    lines_.text("     Sum M(1-S)  = ").number(as_double(sums[4])).end_line();
    lines_.text("     Sum P_rain  = ").number(as_double(sums[3])).end_line();
}

void WinterReport::write_curve(const AdjustedZone& zone) {
    const double change = as_double(zone.change);
    const double prior_melt = as_double(zone.shift.prior_melt);
    if (zone.gain > 1.0F) {
        lines_.text("   Winter change (surplus) ").number(change).line(" was accounted for by");
        lines_.text("   stretching MDCs by a factor of").number(as_double(zone.gain)).end_line();
        return;
    }
    lines_.text("   Winter change (deficit) of ").number(change);
    if (zone.shift.ShiftDays == k_never_covered) {
        lines_.line(" is greater than");
        lines_.text("   accumulated zonal melt of ").number(prior_melt).line(".  Snow coverage for");
        lines_.line("   this zone will disappear after the climate change");
        return;
    }
    const DayCount cut_day = zone.shift.cut_day.value();
    lines_.line(" was equaled/exceeded by");
    lines_.text("   accumulated zonal melt on ").date(cut_day).text(", a shift of ");
    lines_.number(zone.shift.ShiftDays).line(" days");
    lines_.text("   AZMexcl on ").date(cut_day).text(" = ").number(as_double(zone.shift.melt)).end_line();
    lines_.text("   Prior day's AZMexcl = ").number(prior_melt).end_line();
}

void WinterReport::end_page(int zone) {
    lines_.end_line();
    lines_.end_line();
    write_page_head(lines_, page_, now_);
    if (page_ <= zones_ / k_zones_a_page + 1) {
        // If the zones fill their pages, a head also follows the last zone.
        lines_.text("Climate Scenario: ").user_text(climate_.scenario).line(" (continued)");
        lines_.end_line();
    }
    if (zone == zones_) write_page_head(lines_, page_, now_);
}

}  // namespace nivora
