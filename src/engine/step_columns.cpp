#include "engine/step_columns.h"

namespace nivora {
namespace {

/// Step 6 uses the cover that step 5 computed; steps 4 and 5 use the observed cover.
Column changed_cover(SimResults& t, int climate_step) {
    if (climate_step == 2) return t.SCACC;
    return climate_step == 6 ? t.SCAclimWAMA : t.SCA;
}

}  // namespace

StepColumns step_columns(SimResults& t, int climate_step) {
    const bool changed = uses_changed_climate(climate_step);
    return {.maximum_temperature = changed ? t.TMaxCC : t.TMax,
            .minimum_temperature = changed ? t.TminCC : t.Tmin,
            .average_temperature = changed ? t.TAvgCC : t.TAvg,
            .precipitation = changed ? t.PrecipCC : t.Precip,
            .degree_days = changed ? t.ZoneDDCC : t.ZoneDD,
            .lapse_rate = changed ? t.LRCC : t.LR,
            .critical_temperature = changed ? t.TcritCC : t.Tcrit,
            .degree_day_factor = changed ? t.ANCC : t.AN,
            .snow_coefficient = changed ? t.CSCC : t.CS,
            .rain_coefficient = changed ? t.CRCC : t.CR,
            .lag_hours = changed ? t.LagTimeCC : t.LagTime,
            .rain_switch = changed ? t.RCACC : t.RCA,
            .recession_x = changed ? t.XcoeffCC : t.Xcoeff,
            .recession_y = changed ? t.YCoeffCC : t.YCoeff,
            .cover = changed ? changed_cover(t, climate_step) : Column{t.SCA},
            .sum_at = t.SumAT,
            .at = t.aT,
            .rain = t.Cpr,
            .snow_on_store = t.SnowOnStore,
            .new_melt = t.NewMelt,
            .runoff_melt = t.M1S,
            .curve_including = t.MDCincl,
            .curve_excluding = t.MDCexcl,
            .zonal_melt = t.ZonalMelt,
            .total_melt = t.TotalMelt,
            .measured = t.ActualQ,
            .measured_present = climate_step == 6 ? DoubleColumn{t.DailyQPresent} : DoubleColumn{},
            .computed = climate_step == 3 ? t.DailyQPresent : t.DailyQ};
}

}  // namespace nivora
