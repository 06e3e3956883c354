// The results table of a run in memory, column by column, and the two orders in which stages walk its rows.
// Equations and rules: docs/model.md, section 15.
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

    /// Calls the visitor with the name of each field and its column, in the order of the table.
    template <typename Self, typename Visitor>
    static void visit_named(Self& t, Visitor&& field) {
        field("Zone", t.Zone);
        field("Date", t.Date);
        field("ActualQ", t.ActualQ);
        field("TMax", t.TMax);
        field("TMaxCC", t.TMaxCC);
        field("Tmin", t.Tmin);
        field("TminCC", t.TminCC);
        field("TAvg", t.TAvg);
        field("TAvgCC", t.TAvgCC);
        field("Precip", t.Precip);
        field("PrecipCC", t.PrecipCC);
        field("SCA", t.SCA);
        field("SCACC", t.SCACC);
        field("SCAclim", t.SCAclim);
        field("SCAclimWA", t.SCAclimWA);
        field("SCAclimWAMA", t.SCAclimWAMA);
        field("ZoneDD", t.ZoneDD);
        field("ZoneDDCC", t.ZoneDDCC);
        field("LR", t.LR);
        field("LRCC", t.LRCC);
        field("Tcrit", t.Tcrit);
        field("TcritCC", t.TcritCC);
        field("AN", t.AN);
        field("ANCC", t.ANCC);
        field("CS", t.CS);
        field("CSCC", t.CSCC);
        field("CR", t.CR);
        field("CRCC", t.CRCC);
        field("LagTime", t.LagTime);
        field("LagTimeCC", t.LagTimeCC);
        field("RCA", t.RCA);
        field("RCACC", t.RCACC);
        field("NetRad", t.NetRad);
        field("NetRadCC", t.NetRadCC);
        field("Xcoeff", t.Xcoeff);
        field("XcoeffCC", t.XcoeffCC);
        field("YCoeff", t.YCoeff);
        field("YCoeffCC", t.YCoeffCC);
        field("Cpr", t.Cpr);
        field("SumAT", t.SumAT);
        field("NewMelt", t.NewMelt);
        field("M1S", t.M1S);
        field("aT", t.aT);
        field("SnowOnStore", t.SnowOnStore);
        field("ZonalMelt", t.ZonalMelt);
        field("TotalMelt", t.TotalMelt);
        field("DailyQ", t.DailyQ);
        field("MDCincl", t.MDCincl);
        field("MDCexcl", t.MDCexcl);
        field("MDCexclWA", t.MDCexclWA);
        field("MDCexclWAnew", t.MDCexclWAnew);
        field("MeltOffset", t.MeltOffset);
        field("DailyQPresent", t.DailyQPresent);
        field("AZMincl", t.AZMincl);
        field("AZMexcl", t.AZMexcl);
        field("AZMexclWA", t.AZMexclWA);
        field("AZMwork", t.AZMwork);
    }

    /// The same without the names.
    template <typename Self, typename Visitor>
    static void visit(Self& t, Visitor&& column) {
        visit_named(t, [&](const char*, auto& values) { column(values); });
    }

    [[nodiscard]] std::size_t size() const { return Zone.size(); }

    /// Sets the number of rows; new rows hold zone 0, day 0 and missing values.
    void resize(std::size_t rows);
};

/// One column of the table for a stage: to read, or to read and write.
using Column = std::span<const float>;
using FieldColumn = std::span<float>;
using DoubleColumn = std::span<const double>;
using DoubleFieldColumn = std::span<double>;

/// Positions of rows, in the order in which a stage walks them.
using RowOrder = std::vector<std::uint32_t>;

/// The rows of a period in the two orders in which stages walk them. Equal rows keep their order.
struct RunRows {
    RowOrder by_zone;  ///< all days of zone 1, then all days of zone 2 ...
    RowOrder by_day;   ///< all zones of day 1, then all zones of day 2 ...
    /// The number of days where the rows are the whole table: zone 1 with all days in order, then zone 2, and
    /// so on, none missing. 0 for any other rows. A stage may then walk the columns zone by zone without the
    /// orders.
    std::size_t days_of_full_table = 0;
};

[[nodiscard]] RunRows run_rows(const SimResults& results, DayCount first, DayCount last);

}  // namespace nivora
