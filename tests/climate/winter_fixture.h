// Small summers for the tests of how steps 5 and 6 change a depletion curve.
#pragma once

#include "climate/winter_adjustment.h"
#include "tests/engine/engine_fixture.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace nivora {

inline constexpr int k_no_fault = 0;

/// A summer that starts on 1 May 2001, after a winter that ended the day before. It starts without snow,
/// degree days and new snow. The winters of both climates store 10 of water: no change.
class WinterTest : public EngineTest {
protected:
    ClimateState climate;
    std::string report;

    void summer(int zones, int days) {
        start(zones, date_of(2001, 5, 1), days);
        climate.WinterEndDate = date_of(2001, 4, 30);
        climate.scenario = "Warmer";
        run.ScenarioName = "Warmer";
        run.ClimateStep = 5;
        fill(table.SumAT, 0.0);
        fill(table.NewMelt, 0.0);
        for (int zone = 1; zone <= std::min(zones, k_climate_zones); ++zone) winter(zone, 10, 10, 0, 0);
    }

    /// Precipitation and total zonal input of a winter under the present and the changed climate.
    void winter(int zone, double P, double P_changed, double input, double input_changed) {
        const auto index = static_cast<std::size_t>(zone);
        run.WinterPrecip.at(index)[1] = static_cast<float>(P);
        run.WinterPrecip.at(index)[2] = static_cast<float>(P_changed);
        run.ClimateSums.at(index)[1][1] = static_cast<float>(input);
        run.ClimateSums.at(index)[2][1] = static_cast<float>(input_changed);
    }

    /// 5 November 2001, 13:02:03
    static double report_time() {
        return static_cast<double>(date_of(2001, 11, 5)) + (13 * 3600 + 2 * 60 + 3) / 86400.0;
    }

    WinterContext context() { return {basin, run, climate, dialogs}; }

    /// Answers so many boxes with OK and the proposed text.
    void click_ok(int boxes) {
        for (int box = 0; box < boxes; ++box) dialogs.then_text("0");
    }

    void adjust() {
        click_ok(basin.ZoneCount);
        adjust_and_report();
    }

    /// Runs the step; `report` holds what it wrote, even after a fault.
    void adjust_and_report() {
        WinterReport written{basin, run, climate, report_time()};
        try {
            Winter_Adjustment(table, context(), written);
        } catch (const Fault&) {
            report = written.written();
            throw;
        }
        report = written.written();
    }

    /// The number of the fault that ends the step after so many boxes.
    int fault_of_adjusting(int boxes) {
        click_ok(boxes);
        try {
            adjust_and_report();
        } catch (const Fault& fault) {
            return fault.number();
        }
        return k_no_fault;
    }
};

using Floats = std::vector<float>;

}  // namespace nivora
