#include "tests/climate/climate_run_fixture.h"

#include <set>

namespace nivora {
namespace {

namespace fs = std::filesystem;

using Names = std::set<std::string>;

/// Two zones and twelve days on which every input matters, in winter and in summer: rain and snow on partial
/// cover, frost and melt, a lapse rate, a lag, and a recession that depends on the discharge.
struct LivelyDays : SmallBasin {
    LivelyDays() : SmallBasin(2, first_day(), 12) {
        simulation.initial_runoff = 10.0F;
        for (PhysicalRow& row : physical) {
            const auto day = static_cast<std::size_t>(row.date - first_day());
            row.tavg =
                std::array{3.0F, -1.0F, 4.0F, 2.0F, -2.0F, 5.0F, 6.0F, 2.0F, 7.0F, -1.0F, 8.0F, 9.0F}.at(day);
            row.precip =
                std::array{0.5F, 1.0F, 2.0F, 0.0F, 1.0F, 0.5F, 1.0F, 2.0F, 0.5F, 1.5F, 0.0F, 1.0F}.at(day);
            row.sca =
                std::array{0.9F, 0.9F, 0.8F, 0.8F, 0.7F, 0.7F, 0.6F, 0.6F, 0.5F, 0.4F, 0.3F, 0.2F}.at(day);
            row.runoff = 10.0F + static_cast<float>(day % 3);
        }
        for (ParameterRow& row : parameters) {
            row.tcrit = 2.5F;
            row.lapse_rate = 0.3F;
            row.cs = 0.7F;
            row.cr = 0.8F;
            row.rca = std::int16_t{0};
            row.lag_hours = 12.0F;
            row.xcoeff = 0.8;
            row.ycoeff = 0.02;
        }
    }

    static DayCount first_day() { return date_of(2001, 3, 26); }
    static DayCount winter_end() { return date_of(2001, 3, 31); }
};

/// The SQL expression that changes a column, to see whether a step reads it.
std::string poke(const std::string& column) {
    if (column.starts_with("RCA")) return "1 - " + column;
    // Turns snow into rain. The opposite would change nothing: the snow would melt on the day it falls.
    if (column.starts_with("Tcrit")) return column + " - 100";
    if (column.starts_with("LagTime")) return column + " + 3";
    return column + " * 1.125 + 0.0625";
}

class StepColumnsTest : public ClimateRunTest {
protected:
    void run_before(int number) {
        ScenarioRow row = SixDays{}.plus_one;
        row.start = LivelyDays::first_day();
        row.end = LivelyDays::first_day() + 11;
        open(LivelyDays{}, static_cast<double>(LivelyDays::winter_end()), {row});
        run_to(number - 1);
        fs::copy_file(file, folder / "before.mdb");
        run_before_ = run;
        climate_before_ = climate;
    }

    void set_back() {
        fs::copy_file(folder / "before.mdb", file, fs::copy_options::overwrite_existing);
        run = run_before_;
        climate = climate_before_;
    }

    /// The columns whose change alters at least one of the `computed` columns of a step.
    Names read_by(int number, const Names& computed) {
        run_before(number);
        return readers(number, computed);
    }

    Names readers(int number, const Names& computed) {
        set_back();
        take(number);
        const SimResults plain = results();
        const auto plain_statistics = climate.statistics.at(static_cast<std::size_t>(number));
        Names found;
        for (const Field& field : sim_results_table().fields) {
            const std::string name = field.name;
            if (name == "Zone" || name == "Date") continue;
            set_back();
            change("UPDATE SimResults SET " + name + " = " + poke(name));
            take(number);
            for (const std::string& changed : differing_columns(plain, results())) {
                if (computed.contains(changed) && changed != name) found.insert(name);
            }
            const auto& statistics = climate.statistics.at(static_cast<std::size_t>(number));
            if (statistics && statistics->measured_volume != plain_statistics->measured_volume)
                measured_from_.insert(name);
        }
        return found;
    }

    /// Runs a step; the first one runs on the existing results.
    void take(int number) {
        if (number == 1) {
            climate.reuse_results = true;
            dialogs.then(Answer::Yes);
        }
        ASSERT_EQ(step(number), StepOutcome::Done);
    }

    Names measured_from_;
    RunState run_before_;
    ClimateState climate_before_;
};

const Names k_present{"TAvg", "Precip", "LR",      "Tcrit",  "CS",     "CR",
                      "AN",   "RCA",    "LagTime", "Xcoeff", "YCoeff", "SCA"};

/// The inputs of the changed climate, and a cover column.
Names changed_inputs(const std::string& cover) {
    Names names;
    for (const std::string& name : k_present) {
        if (name != "SCA") names.insert(name + "CC");
    }
    names.insert(cover);
    return names;
}

TEST_F(StepColumnsTest, StepOneReadsThePresentClimate) {
    run_before(2);
    EXPECT_EQ(readers(1, {"DailyQ"}), k_present);
    EXPECT_EQ(measured_from_, Names{"ActualQ"});
}

TEST_F(StepColumnsTest, StepTwoReadsTheChangedClimateWithTheObservedCover) {
    EXPECT_EQ(read_by(2, {"DailyQ"}), changed_inputs("SCACC"));
    EXPECT_EQ(measured_from_, Names{"ActualQ"});
}

TEST_F(StepColumnsTest, StepThreeReadsThePresentClimate) {
    EXPECT_EQ(read_by(3, {"DailyQPresent"}), k_present);
    EXPECT_EQ(measured_from_, Names{"ActualQ"});
}

TEST_F(StepColumnsTest, StepFourReadsTheChangedClimateWithThePresentCover) {
    EXPECT_EQ(read_by(4, {"SumAT", "NewMelt", "M1S", "Cpr"}),
              (Names{"TAvgCC", "PrecipCC", "LRCC", "TcritCC", "ANCC", "RCACC", "SCA"}));
}

TEST_F(StepColumnsTest, StepSixReadsTheChangedClimateWithTheAdjustedCover) {
    EXPECT_EQ(read_by(6, {"DailyQ"}), changed_inputs("SCAclimWAMA"));
    EXPECT_EQ(measured_from_, Names{"DailyQPresent"});
}

}  // namespace
}  // namespace nivora
