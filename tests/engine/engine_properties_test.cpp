#include "engine/run_driver.h"
#include "engine/runoff_custom_lag.h"
#include "engine/runoff_simulation.h"
#include "engine/snow_melt.h"
#include "engine/zone_inputs.h"
#include "tests/engine/engine_fixture.h"
#include "tests/support/ok_dialogs.h"
#include "tests/support/random_trials.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <map>
#include <numeric>
#include <random>

namespace nivora {
namespace {

constexpr int k_trials = 60;

/// Rules that hold for any basin, checked on random ones.
class EngineProperties : public RandomTrials<EngineTest> {
protected:
    void spread_over(std::vector<float>& column, double low, double high) {
        for (float& value : column) value = static_cast<float>(between(low, high));
    }

    /// A basin over the end of a winter, with random weather and parameters.
    void random_basin() {
        const int zones = whole_between(1, 4);
        start(zones, date_of(2001, whole_between(1, 12), whole_between(1, 28)), whole_between(2, 60));
        const auto distribution = [&] {
            return by_chance(0.5) ? Distribution::Basinwide : Distribution::ByZone;
        };
        Simulation& options = simulation();
        options.units = static_cast<Units>(whole_between(0, 1));
        options.temperature_values = static_cast<std::int16_t>(whole_between(0, 1));
        options.temperature = distribution(), options.precipitation = distribution();
        options.lapse_rate = distribution(), options.runoff_coefficients = distribution();
        options.critical_temperature = distribution();
        options.precipitation_threshold = static_cast<float>(between(0.5, 3.0));
        basin.latitude_text = by_chance(0.5) ? "46.5" : "-33";
        const double base = options.units == Units::English ? 32.0 : 0.0;
        for (Zone& zone : basin.zones) zone.area = between(1.0, 1000.0);
        basin.basin_area_text = basin_area_text(basin.zones);
        spread_over(table.TAvg, base - 15.0, base + 15.0);
        spread_over(table.TMax, base - 5.0, base + 20.0);
        spread_over(table.Tmin, base - 20.0, base + 5.0);
        spread_over(table.LR, -0.2, 1.2);
        spread_over(table.Tcrit, 0.0, 4.0);
        spread_over(table.AN, 0.1, 0.8);
        spread_over(table.CS, 0.1, 1.0);
        spread_over(table.CR, 0.1, 1.0);
        spread_over(table.ActualQ, 1.0, 50.0);
        for (float& lag : table.LagTime) lag = static_cast<float>(whole_between(0, 36));
        for (float& rain : table.Precip) rain = by_chance(0.4) ? static_cast<float>(between(0.0, 5.0)) : 0.0F;
        for (float& cover : table.SCA) {
            cover = by_chance(0.3) ? static_cast<float>(whole_between(0, 1))
                                   : static_cast<float>(between(0.0, 1.0));
        }
        for (float& rain_switch : table.RCA) rain_switch = static_cast<float>(whole_between(0, 1));
        for (double& x : table.Xcoeff) x = between(0.5, 1.4);
        for (double& y : table.YCoeff) y = between(0.0, 0.1);
        run.NoSnow = by_chance(0.3);
    }

    /// The discharge that releases one zone's daily inputs in m³/s with a lag for each day (x = y = 0).
    std::vector<double> released(const std::vector<double>& inputs, const std::vector<float>& lags) {
        start(1, date_of(2001, 6, 1), static_cast<int>(inputs.size()));
        for (auto* column : {&table.M1S, &table.ZoneDD}) fill(*column, 0.0);
        for (std::size_t day = 0; day < inputs.size(); ++day) {
            table.Cpr[day] = static_cast<float>(inputs[day] / 100.0);
            table.LagTime[day] = lags[day];
        }
        EXPECT_TRUE(runoff_simulation());
        return table.DailyQ;
    }

    std::vector<double> random_inputs() {
        std::vector<double> inputs(static_cast<std::size_t>(whole_between(4, 40)));
        // Sixteenths of a centimetre, so that both the input and its rain are exact Singles.
        for (double& input : inputs) input = by_chance(0.3) ? 0.0 : 100.0 / 16.0 * whole_between(0, 160);
        return inputs;
    }

    static std::vector<double> cumulated(const std::vector<double>& values, std::size_t from = 0) {
        std::vector<double> sums(values.size());
        std::partial_sum(values.begin() + static_cast<std::ptrdiff_t>(from), values.end(),
                         sums.begin() + static_cast<std::ptrdiff_t>(from));
        return sums;
    }
};

/// Tolerance for the rounding of the former days' input to Singles.
double hair(double total) { return 1e-6 * total; }

TEST_F(EngineProperties, AfterItsFirstTwoDaysAConstantLagReleasesNoMoreThanCameIn) {
    try_often(k_trials, [&] {
        const std::vector<double> inputs = random_inputs();
        const auto lag = static_cast<float>(between(0.0, 41.0));
        const auto out = cumulated(released(inputs, std::vector<float>(inputs.size(), lag)), 2);
        const auto in = cumulated(inputs);
        for (std::size_t day = 2; day < in.size(); ++day) {
            EXPECT_LE(out[day], in[day] + hair(in[day])) << "lag " << lag << ", day " << day + 1;
        }
    });
}

TEST_F(EngineProperties, AConstantLagReleasesAllButTheLastTwoDaysInput) {
    try_often(k_trials, [&] {
        const std::vector<double> inputs = random_inputs();
        const auto lag = static_cast<float>(between(0.0, 41.0));
        const auto out = cumulated(released(inputs, std::vector<float>(inputs.size(), lag)));
        const auto in = cumulated(inputs);
        for (std::size_t day = 2; day < in.size(); ++day) {
            EXPECT_GE(out[day] + hair(in[day]) + 0.01 * static_cast<double>(day), in[day - 2])
                << "lag " << lag << ", day " << day + 1;
        }
    });
}

TEST_F(EngineProperties, ALongerLagNeverBringsWaterEarlier) {
    try_often(k_trials, [&] {
        std::vector<double> inputs = random_inputs();
        inputs[0] = 0.0;  // it also stands in for the days before the run, so it would count twice
        std::vector<float> lags(6);
        for (float& lag : lags) lag = static_cast<float>(between(0.0, 41.0));
        std::sort(lags.begin(), lags.end());
        std::vector<double> former;
        for (const float lag : lags) {
            const auto out = cumulated(released(inputs, std::vector<float>(inputs.size(), lag)));
            for (std::size_t day = 0; day < former.size(); ++day) {
                EXPECT_LE(out[day], former[day] + hair(former.back()) + 0.01 * static_cast<double>(day))
                    << "lag " << lag << ", day " << day + 1;
            }
            former = out;
        }
    });
}

/// The release of the inputs, worked out day by day as one would by hand. `oldest`, `yesterday` and `today`
/// are what is not yet released of the inputs of those days.
std::vector<double> released_on_paper(const std::vector<double>& inputs, const std::vector<float>& lags) {
    const std::size_t days = inputs.size();
    std::vector<double> out;
    double yesterday = inputs[0];
    double today = inputs[0];
    for (std::size_t day = 0; day < days; ++day) {
        double oldest = yesterday;
        yesterday = today;
        today = inputs[day];
        const bool first = day == 0;
        const double in_1 = inputs[day == 0 ? 0 : day - 1];
        const double in_2 = inputs[day < 2 ? 0 : day - 2];
        const double late = 0.25 + static_cast<double>(lags[day]) * (0.25 / 6.0);
        if (lags[day] > 18.0F) {
            const double share = late - 1.0;
            double part1 = share * in_2;
            if (part1 > oldest || (std::abs(part1 - oldest) > 0.01 && !first)) part1 = oldest;
            double part2 = (1.0 - share) * in_1;
            if (part2 > yesterday) {
                part2 = yesterday;
                yesterday = 0.0;
            } else {
                yesterday -= part2;
            }
            oldest = 0.0;
            out.push_back(part1 + part2);
            continue;
        }
        // The remembered lag is the last one above 0 from day 3 up to the next day.
        float remembered = 0.0F;
        for (std::size_t other = 2; other <= day + 1 && other < days && day > 0; ++other) {
            if (lags[other] > 0.0F) remembered = lags[other];
        }
        double part2 = in_1 * late;
        if (part2 >= yesterday) {
            part2 = yesterday;
            yesterday = 0.0;
        } else if (remembered > 18.0F) {
            yesterday -= part2;
        } else {
            if (!first) part2 = yesterday;
            yesterday = 0.0;
        }
        const double part3 = (1.0 - late) * inputs[day];
        today -= part3;
        const double rest = std::abs(oldest) > 0.001 && !first ? oldest : 0.0;
        out.push_back(part2 + part3 + rest);
    }
    return out;
}

TEST_F(EngineProperties, AnySequenceOfLagsGivesWhatTheBookkeepingOnPaperGives) {
    try_often(k_trials, [&] {
        const std::vector<double> inputs = random_inputs();
        std::vector<float> lags(inputs.size());
        for (float& lag : lags) {
            lag = by_chance(0.2) ? 0.0F : static_cast<float>(6 * whole_between(0, 7));
        }

        EXPECT_EQ(released(inputs, lags), released_on_paper(inputs, lags));
    });
}

TEST_F(EngineProperties, DegreeDaysAreNeverNegative) {
    try_often(k_trials, [&] {
        random_basin();
        ASSERT_TRUE(zone_inputs());
        for (const float degree_days : table.ZoneDD) EXPECT_GE(degree_days, 0.0F);
    });
}

TEST_F(EngineProperties, NewMeltNeverExceedsTheStoreNorRunoffTheMelt) {
    try_often(k_trials, [&] {
        random_basin();
        ASSERT_TRUE(zone_inputs());
        snow_melt();
        for (std::size_t row = 0; row < table.size(); ++row) {
            EXPECT_LE(table.NewMelt[row], table.SnowOnStore[row]);
            EXPECT_LE(table.NewMelt[row], table.aT[row]);
            EXPECT_GE(table.NewMelt[row], 0.0F);
            EXPECT_LE(table.M1S[row], table.NewMelt[row]);
            EXPECT_GE(table.M1S[row], 0.0F);
            EXPECT_LE(table.Cpr[row], table.Precip[row]);
            EXPECT_GE(table.MDCincl[row], table.MDCexcl[row]);
        }
        EXPECT_TRUE(dialogs.messages().empty());
    });
}

TEST_F(EngineProperties, TheRecessionCoefficientStaysBelow1) {
    try_often(k_trials, [&] {
        random_basin();
        // Without input a day's discharge is k times that of the day before.
        for (auto* column : {&table.Cpr, &table.M1S, &table.ZoneDD}) fill(*column, 0.0);
        table.Xcoeff[at(1, 1)] = 1.5;  // so that at least day 1 meets the limit
        table.YCoeff[at(1, 1)] = 0.0;
        run.InitialRunoff = static_cast<float>(between(0.01, 1000.0));
        dialogs.then(Answer::Ok);
        ASSERT_TRUE(runoff_simulation());
        double former = static_cast<double>(run.InitialRunoff);
        for (const double q : days(table.DailyQ, 1)) {
            EXPECT_LT(q, former);
            EXPECT_GT(q, 0.0);
            former = q;
        }
    });
}

TEST_F(EngineProperties, ACustomDistributionOfOneDayAtShare1SpreadsNothing) {
    try_often(k_trials, [&] {
        const std::vector<double> inputs = random_inputs();
        (void)released(inputs, std::vector<float>(inputs.size(), 6.0F));
        run.LagDistribution = {1.0F, 1.0F};
        ASSERT_TRUE(runoff_custom_lag());
        EXPECT_EQ(table.DailyQ, inputs);
    });
}

/// All values of a table by zone and day, as bit patterns.
std::map<std::pair<int, DayCount>, std::vector<std::uint64_t>> by_key(const SimResults& table) {
    std::map<std::pair<int, DayCount>, std::vector<std::uint64_t>> rows;
    for (std::size_t row = 0; row < table.size(); ++row) {
        auto& bits = rows[{table.Zone[row], table.Date[row]}];
        SimResults::visit(table, [&](const auto& column) {
            bits.push_back(std::bit_cast<std::uint64_t>(static_cast<double>(column[row])));
        });
    }
    return rows;
}

TEST_F(EngineProperties, ARunDoesNotDependOnTheOrderOfTheStoredRows) {
    try_often(k_trials, [&] {
        random_basin();
        run.LagDistribution =
            by_chance(0.3) ? std::array<float, 8>{3.0F, 0.5F, 0.3F, 0.2F} : std::array<float, 8>{};
        run.InitialRunoff = 5.0F;
        const RunState before = run;
        SimResults shuffled;
        shuffled.resize(table.size());
        std::vector<std::size_t> places(table.size());
        std::iota(places.begin(), places.end(), std::size_t{0});
        std::shuffle(places.begin(), places.end(), random);
        std::vector<std::vector<double>> columns;
        SimResults::visit(table,
                          [&](const auto& column) { columns.emplace_back(column.begin(), column.end()); });
        std::size_t number = 0;
        SimResults::visit(shuffled, [&](auto& column) {
            using Value = typename std::decay_t<decltype(column)>::value_type;
            const auto& from = columns[number++];
            for (std::size_t row = 0; row < places.size(); ++row) {
                column[row] = static_cast<Value>(from[places[row]]);
            }
        });

        StatisticsReach reach = StatisticsReach::Nothing;
        OkDialogs ok;  // a recession coefficient may reach its limit
        ASSERT_TRUE(Run_Model(table, {basin, run, ok}, reach));
        const RunState after = run;
        run = before;
        ASSERT_TRUE(Run_Model(shuffled, {basin, run, ok}, reach));

        EXPECT_EQ(by_key(shuffled), by_key(table));
        EXPECT_EQ(run.FinalQ, after.FinalQ);
        EXPECT_EQ(run.MeltSeasonStart, after.MeltSeasonStart);
    });
}

}  // namespace
}  // namespace nivora
