// The results table of a run in memory, column by column, and the two orders in which stages walk its rows.
#pragma once

#include "base/calendar.h"
#include "base/single.h"

#include <cstdint>
#include <span>
#include <vector>

namespace nivora {

/// One entry per zone and day. Columns are named and ordered as the fields of the table `SimResults`; a name
/// that ends in CC is the same quantity under a changed climate. A missing value is NaN, and nothing else is
/// NaN. Depths are cm or inches of water, discharges m³/s or ft³/s, temperatures °C or °F.
struct SimResults {
    std::vector<std::int16_t> Zone;
    std::vector<DayCount> Date;
    std::vector<float> ActualQ;
    std::vector<float> TMax, TMaxCC, Tmin, TminCC, TAvg, TAvgCC;
    std::vector<float> Precip, PrecipCC;
    std::vector<float> SCA, SCACC, SCAclim, SCAclimWA, SCAclimWAMA;  // 0 to 1
    std::vector<float> ZoneDD, ZoneDDCC;                             // degree days, never below 0
    std::vector<float> LR, LRCC;                                     // degrees per 100 m or 1000 ft
    std::vector<float> Tcrit, TcritCC;                               // degrees above the degree-day base
    std::vector<float> AN, ANCC;                                     // depth per degree day
    std::vector<float> CS, CSCC, CR, CRCC;
    std::vector<float> LagTime, LagTimeCC;  // hours
    std::vector<float> RCA, RCACC;          // whole numbers
    std::vector<float> NetRad, NetRadCC;
    std::vector<double> Xcoeff, XcoeffCC, YCoeff, YCoeffCC;
    std::vector<float> Cpr, SumAT, NewMelt, M1S, aT, SnowOnStore, ZonalMelt;
    std::vector<float> TotalMelt;  // basin input of the day before, on the first zone's row
    std::vector<double> DailyQ;    // computed discharge, on the first zone's row
    std::vector<float> MDCincl, MDCexcl, MDCexclWA, MDCexclWAnew, MeltOffset;
    std::vector<double> DailyQPresent;
    std::vector<float> AZMincl, AZMexcl, AZMexclWA, AZMwork;

    /// Calls the visitor with each column, in the order of the table's fields.
    template <typename Self, typename Visitor>
    static void visit(Self& t, Visitor&& column) {
        column(t.Zone), column(t.Date), column(t.ActualQ), column(t.TMax), column(t.TMaxCC), column(t.Tmin);
        column(t.TminCC), column(t.TAvg), column(t.TAvgCC), column(t.Precip), column(t.PrecipCC),
            column(t.SCA);
        column(t.SCACC), column(t.SCAclim), column(t.SCAclimWA), column(t.SCAclimWAMA), column(t.ZoneDD);
        column(t.ZoneDDCC), column(t.LR), column(t.LRCC), column(t.Tcrit), column(t.TcritCC), column(t.AN);
        column(t.ANCC), column(t.CS), column(t.CSCC), column(t.CR), column(t.CRCC), column(t.LagTime);
        column(t.LagTimeCC), column(t.RCA), column(t.RCACC), column(t.NetRad), column(t.NetRadCC);
        column(t.Xcoeff), column(t.XcoeffCC), column(t.YCoeff), column(t.YCoeffCC), column(t.Cpr);
        column(t.SumAT), column(t.NewMelt), column(t.M1S), column(t.aT), column(t.SnowOnStore);
        column(t.ZonalMelt), column(t.TotalMelt), column(t.DailyQ), column(t.MDCincl), column(t.MDCexcl);
        column(t.MDCexclWA), column(t.MDCexclWAnew), column(t.MeltOffset), column(t.DailyQPresent);
        column(t.AZMincl), column(t.AZMexcl), column(t.AZMexclWA), column(t.AZMwork);
    }

    [[nodiscard]] std::size_t size() const { return Zone.size(); }

    /// Sets the number of rows; new rows hold zone 0, day 0 and missing values.
    void resize(std::size_t rows);
};

/// One column of the table as a stage uses it: to read, or to read and write.
using Column = std::span<const float>;
using FieldColumn = std::span<float>;
using DoubleColumn = std::span<const double>;
using DoubleFieldColumn = std::span<double>;

/// Positions of rows, in the order in which a stage walks them.
using RowOrder = std::vector<std::uint32_t>;

/// The rows of a period in the two orders in which stages walk them. Rows alike keep their order.
struct RunRows {
    RowOrder by_zone;  ///< all days of zone 1, then all days of zone 2 ...
    RowOrder by_day;   ///< all zones of day 1, then all zones of day 2 ...
};

[[nodiscard]] RunRows run_rows(const SimResults& results, DayCount first, DayCount last);

/// Whether a climate step works on the columns of the changed climate, as every step but 1 and 3 does.
[[nodiscard]] constexpr bool uses_changed_climate(int climate_step) {
    return climate_step >= 2 && climate_step != 3;
}

}  // namespace nivora
