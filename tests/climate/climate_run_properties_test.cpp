#include "tests/climate/climate_run_fixture.h"
#include "tests/support/printed_seed.h"

#include <random>
#include <set>

namespace nivora {
namespace {

using testing::IsSubsetOf;

constexpr int k_basins = 200;
constexpr double k_degrees = 3.0;

/// A small northern basin over the end of a winter and the start of a summer: a cover that only shrinks, its
/// own melt rate in each zone, random weather.
class RandomBasin {
public:
    explicit RandomBasin(std::uint32_t seed) : random_(seed) {
        const int zones = whole(1, 4);
        days_ = whole(12, 40);
        first_ = date_of(2001, 3, 31) - whole(3, days_ - 6);
        winter_end_ = first_ + whole(0, days_ - 3);
        small_ = std::make_unique<SmallBasin>(zones, first_, days_);
        draw_physical();
        draw_parameters();
        small_->simulation.initial_runoff = small_->physical.front().runoff;
    }

    [[nodiscard]] const SmallBasin& small() const { return *small_; }
    [[nodiscard]] DayCount winter_end() const { return winter_end_; }
    [[nodiscard]] DayCount last_day() const { return first_ + days_ - 1; }
    [[nodiscard]] ScenarioRow warmer(double degrees) const {
        ScenarioRow row = SixDays{}.plus_one;
        row.start = first_;
        row.end = last_day();
        row.factor = static_cast<float>(degrees);
        return row;
    }
    double real(double low, double high) { return std::uniform_real_distribution<>{low, high}(random_); }

private:
    int whole(int low, int high) { return std::uniform_int_distribution<>{low, high}(random_); }

    void draw_physical() {
        std::vector<float> temperature;
        std::vector<float> precipitation;
        for (int day = 0; day < days_; ++day) {
            temperature.push_back(static_cast<float>(real(-4.0, 6.0) + 0.25 * day));
            precipitation.push_back(whole(0, 9) < 4 ? static_cast<float>(real(0.0, 3.0)) : 0.0F);
        }
        double cover = 1.0;
        int zone = 0;
        for (PhysicalRow& row : small_->physical) {
            const auto day = static_cast<std::size_t>(row.date - first_);
            if (row.zone != zone) cover = real(0.6, 1.0);
            zone = row.zone;
            cover = std::max(0.0, cover - (day > 3 ? real(0.0, 0.08) : 0.0));
            row.sca = static_cast<float>(cover);
            row.tavg = temperature.at(day);
            row.precip = precipitation.at(day);
            row.runoff = static_cast<float>(real(5.0, 20.0));
        }
    }

    void draw_parameters() {
        const double lapse = real(0.0, 0.7);
        const auto lag = static_cast<float>(6 * whole(0, 5));
        const auto switched = static_cast<std::int16_t>(whole(0, 1));
        for (ParameterRow& row : small_->parameters) {
            row.tcrit = 2.0F;
            row.lapse_rate = static_cast<float>(lapse);
            row.an = static_cast<float>(real(0.3, 0.6));
            row.cs = static_cast<float>(real(0.6, 0.9));
            row.cr = static_cast<float>(real(0.6, 0.9));
            row.rca = switched;
            row.lag_hours = lag;
            row.xcoeff = 0.8;
            row.ycoeff = 0.02;
        }
    }

    std::mt19937 random_;
    int days_ = 0;
    DayCount first_ = 0;
    DayCount winter_end_ = 0;
    std::unique_ptr<SmallBasin> small_;
};

/// Columns that the model stages write; below, the columns that the zone inputs spread over the zones.
const std::set<std::string> k_model{"SumAT",   "aT",  "Cpr",       "SnowOnStore",
                                    "NewMelt", "M1S", "ZonalMelt", "TotalMelt"};
const std::set<std::string> k_present_inputs{"TAvg", "LR", "ZoneDD", "Precip", "Tcrit", "CS", "CR"};
const std::set<std::string> k_changed_inputs{"TAvgCC",  "LRCC", "ZoneDDCC", "PrecipCC",
                                             "TcritCC", "CSCC", "CRCC"};

std::set<std::string> owned_by(int step) {
    std::set<std::string> names;
    const auto add = [&](const std::set<std::string>& more) { names.insert(more.begin(), more.end()); };
    if (step != 5) add(k_model);
    if (step == 3) add(k_present_inputs);
    if (step == 2 || step == 4 || step == 6) add(k_changed_inputs);
    switch (step) {
        case 2: add({"DailyQ"}); break;
        case 3: add({"DailyQPresent", "MDCincl", "MDCexcl"}); break;
        case 4: names.erase("ZonalMelt"), names.erase("TotalMelt"); break;
        case 5:
            add({"SCAclim", "MDCexclWA", "MDCexclWAnew", "MeltOffset", "SCAclimWA", "SCAclimWAMA"});
            break;
        default: add({"DailyQ", "AZMincl", "AZMexcl", "AZMwork", "AZMexclWA"}); break;
    }
    return names;
}

class ClimatePropertiesTest : public ClimateRunTest {
protected:
    /// Opens a random basin with a scenario that adds `degrees` on every day.
    void open_random(const RandomBasin& random, double degrees) {
        std::filesystem::remove(file);
        run = RunState{};
        open(random.small(), static_cast<double>(random.winter_end()), {random.warmer(degrees)});
    }

    [[nodiscard]] RowOrder summer_rows(const SimResults& table, int zone) const {
        RowOrder rows;
        for (const std::uint32_t row : run_rows(table, run.RunStart, run.RunEnd).by_zone) {
            if (table.Zone[row] == zone) rows.push_back(row);
        }
        return rows;
    }

    /// The rows of a table inside or outside a period.
    static SimResults rows_within(const SimResults& table, DayCount first, DayCount last, bool within) {
        SimResults picked;
        std::vector<std::size_t> rows;
        for (std::size_t row = 0; row < table.size(); ++row) {
            if ((table.Date[row] >= first && table.Date[row] <= last) == within) rows.push_back(row);
        }
        picked.resize(rows.size());
        SimResults::visit(picked, [&, position = 0](auto& column) mutable {
            int at = 0;
            SimResults::visit(table, [&](const auto& source) {
                if (at++ != position) return;
                using Value = typename std::remove_reference_t<decltype(column)>::value_type;
                for (std::size_t row = 0; row < rows.size(); ++row)
                    column[row] = static_cast<Value>(source[rows[row]]);
            });
            ++position;
        });
        return picked;
    }
};

TEST_F(ClimatePropertiesTest, AStepChangesItsOwnColumnsOnTheDaysOfItsPeriodAlone) {
    std::mt19937 seeds{printed_seed()};
    for (int basin_number = 0; basin_number < k_basins; ++basin_number) {
        const auto seed = static_cast<std::uint32_t>(seeds());
        SCOPED_TRACE(seed);
        RandomBasin random{seed};
        open_random(random, random.real(-k_degrees, k_degrees));
        run_to(1);
        SimResults before = results();
        for (int number = 2; number <= 6; ++number) {
            run_to(number, number);
            SimResults after = results();
            EXPECT_THAT(differing_columns(before, after), IsSubsetOf(owned_by(number))) << "step " << number;
            EXPECT_EQ(differing_columns(rows_within(before, run.RunStart, run.RunEnd, false),
                                        rows_within(after, run.RunStart, run.RunEnd, false)),
                      std::vector<std::string>{})
                << "step " << number;
            before = std::move(after);
        }
        if (HasFailure()) return;
    }
}

TEST_F(ClimatePropertiesTest, AScenarioWithoutEffectLeavesTheWinterAndTheCoverAsTheyWere) {
    std::mt19937 seeds{printed_seed()};
    int zones_compared = 0;
    for (int basin_number = 0; basin_number < k_basins; ++basin_number) {
        const auto seed = static_cast<std::uint32_t>(seeds());
        SCOPED_TRACE(seed);
        const RandomBasin random{seed};
        open_random(random, 0.0);
        run_to(1);
        const SimResults present = results();
        run_to(2, 2);
        const SimResults changed = results();
        EXPECT_THAT(differing_columns(present, changed), IsSubsetOf(k_changed_inputs));
        EXPECT_EQ(run.FinalQ[1], run.FinalQ[2]);
        EXPECT_EQ(climate.statistics[1]->computed_volume, climate.statistics[2]->computed_volume);
        run_to(5, 3);
        const SimResults summer = results();
        for (int zone = 1; zone <= basin.ZoneCount; ++zone) {
            const RowOrder rows = summer_rows(summer, zone);
            const auto index = static_cast<std::size_t>(zone);
            // A winter that stored nothing has no gain. Where the cover ended, step 5 writes its end marks
            // over the remaining days.
            const bool stored = run.WinterPrecip[index][1] != run.ClimateSums[index][1][1];
            if (!stored || !(summer.SCA[rows.back()] > 0.0F)) continue;
            // With a gain of 1 the zone's last day is not written.
            for (std::size_t day = 0; day + 1 < rows.size(); ++day) {
                EXPECT_EQ(summer.SCAclim[rows[day]], summer.SCA[rows[day]]) << zone << " day " << day;
                EXPECT_EQ(summer.MDCexclWA[rows[day]], summer.MDCexcl[rows[day]]) << zone << " day " << day;
            }
            ++zones_compared;
        }
        if (HasFailure()) return;
    }
    EXPECT_GT(zones_compared, k_basins / 2);
}

/// What an evaluation leaves behind.
struct Left {
    bool done = false;
    SimResults table;
    RunState run;
    ClimateState climate;
    BasinState basin;
    std::vector<std::string> messages;
    std::string report;
};

class StepsTogetherTest : public ClimatePropertiesTest {
protected:
    static constexpr int k_trials = 60;

    /// Step 3 fails in an empty summer, step 5 before its start where its report cannot be written.
    enum class Obstacle { None, EmptySummer, NoReport };

    /// Opens the basin and evaluates it up to a step.
    Left evaluate(const RandomBasin& random, int last_step, Obstacle obstacle, bool together) {
        std::filesystem::remove(file);
        std::filesystem::remove(report);
        run = RunState{};
        open(random.small(),
             static_cast<double>(obstacle == Obstacle::EmptySummer ? random.last_day() : random.winter_end()),
             {random.warmer(k_degrees)});
        ScriptedDialogs answers;
        const bool step_5_starts = last_step >= 5 && obstacle == Obstacle::None;
        for (int zone = 1; step_5_starts && zone <= basin.ZoneCount; ++zone) answers.then_text("0");
        const ClimateContext answered{
            .run = {basin, run, answers},
            .climate = climate,
            .report_file = obstacle == Obstacle::NoReport ? folder / "missing" / "NVR_DfGN.out" : report,
            .now = context().now};
        Left left;
        if (together) {
            BasinDatabase database{file, Access::ReadWrite};
            left.done = run_climate_steps(database, answered, k_scenario, last_step);
        } else {
            left.done = true;
            for (int number = 1; left.done && number <= last_step; ++number) {
                const StepOutcome outcome = run_climate_step(answered, number);
                end_climate_step(answered, number, outcome);
                left.done = outcome == StepOutcome::Done;
            }
            if (left.done) end_climate(answered, false);
        }
        left.table = results();
        left.run = run, left.climate = climate, left.basin = basin;
        for (const AskedMessage& asked : answers.messages()) left.messages.push_back(asked.message.text);
        EXPECT_EQ(answers.complaints(), std::vector<std::string>{});
        EXPECT_EQ(answers.answers_left(), 0U);
        if (step_5_starts) left.report = read_whole_file(report, 1U << 20U);
        return left;
    }

    static void expect_equal(const Left& one, const Left& other) {
        EXPECT_EQ(one.done, other.done);
        EXPECT_EQ(differing_columns(one.table, other.table), std::vector<std::string>{});
        EXPECT_EQ(one.run.ClimateStep, other.run.ClimateStep);
        EXPECT_EQ(one.run.FinalQ, other.run.FinalQ);
        EXPECT_EQ(one.run.EndingStores, other.run.EndingStores);
        EXPECT_EQ(one.run.ClimateSums, other.run.ClimateSums);
        EXPECT_EQ(one.run.WinterPrecip, other.run.WinterPrecip);
        EXPECT_EQ(one.run.RunStart, other.run.RunStart);
        EXPECT_EQ(one.run.RunEnd, other.run.RunEnd);
        EXPECT_EQ(one.run.LastRunSimulation, other.run.LastRunSimulation);
        EXPECT_EQ(one.run.results_enabled, other.run.results_enabled);
        EXPECT_EQ(one.run.notes.size(), other.run.notes.size());
        EXPECT_EQ(one.climate.steps_done, other.climate.steps_done);
        EXPECT_EQ(one.climate.SummerStartDate, other.climate.SummerStartDate);
        for (std::size_t step = 1; step < one.climate.statistics.size(); ++step) {
            const auto& a = one.climate.statistics.at(step);
            const auto& b = other.climate.statistics.at(step);
            ASSERT_EQ(a.has_value(), b.has_value()) << "step " << step;
            if (!a) continue;
            EXPECT_EQ(a->computed_volume, b->computed_volume) << "step " << step;
            EXPECT_EQ(a->r2, b->r2) << "step " << step;
        }
        EXPECT_EQ(one.basin.Output_Valid, other.basin.Output_Valid);
        EXPECT_EQ(one.basin.Input_Changed, other.basin.Input_Changed);
        EXPECT_EQ(one.messages, other.messages);
        EXPECT_EQ(one.report, other.report);
    }
};

TEST_F(StepsTogetherTest, LeaveWhatStepsOneByOneLeaveUpToAnyStepOrObstacle) {
    std::mt19937 seeds{printed_seed()};
    for (int trial = 0; trial < k_trials && !HasFailure(); ++trial) {
        const auto seed = static_cast<std::uint32_t>(seeds());
        SCOPED_TRACE(seed);
        const int last_step = 1 + trial % 6;
        const auto obstacle = static_cast<Obstacle>(trial / 6 % 3);
        SCOPED_TRACE(testing::Message() << "step " << last_step << ", obstacle " << trial / 6 % 3);
        const Left one_by_one = evaluate(RandomBasin{seed}, last_step, obstacle, false);
        const Left together = evaluate(RandomBasin{seed}, last_step, obstacle, true);
        const bool stopped = (obstacle == Obstacle::EmptySummer && last_step >= 3) ||
                             (obstacle == Obstacle::NoReport && last_step >= 5);
        EXPECT_EQ(one_by_one.done, !stopped);
        expect_equal(one_by_one, together);
    }
}

}  // namespace
}  // namespace nivora
