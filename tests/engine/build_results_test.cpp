#include "engine/build_results.h"

#include "tests/engine/engine_fixture.h"
#include "tests/support/temporary_folder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <set>

namespace nivora {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsNan;

TEST(FebruaryDays, FollowTheYearOfTheEnd) {
    EXPECT_EQ(february_days(date_of(2001, 1, 1), date_of(2001, 12, 31)), 28);
    EXPECT_EQ(february_days(date_of(2004, 1, 1), date_of(2004, 12, 31)), 29);
    EXPECT_EQ(february_days(date_of(2003, 11, 1), date_of(2004, 4, 30)), 29);
    EXPECT_EQ(february_days(date_of(2004, 11, 1), date_of(2005, 4, 30)), 28);
}

TEST(FebruaryDays, FollowTheYearOfAStartBeforeMarchOfAnEarlierYear) {
    EXPECT_EQ(february_days(date_of(2004, 1, 1), date_of(2005, 4, 30)), 29);
    EXPECT_EQ(february_days(date_of(2003, 1, 1), date_of(2004, 4, 30)), 28);
    EXPECT_EQ(february_days(date_of(2003, 2, 28), date_of(2004, 4, 30)), 28);
    EXPECT_EQ(february_days(date_of(2003, 3, 1), date_of(2004, 4, 30)), 29);
    EXPECT_EQ(february_days(date_of(2004, 2, 1), date_of(2007, 4, 30)), 29);
}

TEST(FebruaryDays, OfACenturyAre29EveryFourHundredYears) {
    EXPECT_EQ(february_days(date_of(1900, 3, 1), date_of(1900, 12, 31)), 28);
    EXPECT_EQ(february_days(date_of(2000, 3, 1), date_of(2000, 12, 31)), 29);
    EXPECT_EQ(february_days(date_of(2100, 3, 1), date_of(2100, 12, 31)), 28);
}

class BuildResults : public ::testing::Test {
protected:
    TemporaryFolder folder;
    std::filesystem::path path = folder / "basin.mdb";
    RunState run;
    ScriptedDialogs dialogs;
    bool scenario_applied = false;
    int scenario_status = 0;

    BuiltResults build(const SmallBasin& content, bool commit = true) {
        std::filesystem::remove(path);
        content.write(path);
        return rebuild(commit);
    }

    BuiltResults rebuild(bool commit = true) {
        const BasinState basin = opened_basin(path);
        run.InitialRunoff = basin.current_simulation()->initial_runoff.value_or(0.0F);
        run.RunStart = basin.current_simulation()->start.value();
        run.RunEnd = basin.current_simulation()->end.value();
        BasinDatabase database{path, Access::ReadWrite};
        BuiltResults built =
            Build_SimResults(database, basin, run, dialogs, [this](BasinDatabase&, SimResults&) {
                scenario_applied = true;
                return scenario_status;
            });
        if (commit && built.replacement) built.replacement->commit(built.results);
        built.replacement.reset();
        return built;
    }

    SimResults stored() {
        BasinDatabase database{path, Access::ReadOnly};
        return load_results(database);
    }

    void TearDown() override {
        EXPECT_EQ(dialogs.complaints(), std::vector<std::string>{});
        EXPECT_EQ(dialogs.answers_left(), 0U);
    }
};

TEST_F(BuildResults, FillsTheRowsFromVariablesAndParameters) {
    SmallBasin basin{1, k_first, 1};
    PhysicalRow& v = basin.physical[0];
    v.runoff = 10.5F, v.tmax = 1.5F, v.tmin = -2.5F, v.tavg = 3.25F;
    v.precip = 4.5F, v.sca = 0.625F, v.net_radiation = 7.5F;
    ParameterRow& p = basin.parameters[0];
    p.tcrit = 0.75F, p.lag_hours = 9.5F, p.lapse_rate = 0.65F, p.an = 0.45F, p.cs = 0.8F, p.cr = 0.9F;
    p.rca = std::int16_t{2}, p.xcoeff = 0.1, p.ycoeff = 0.02;

    const SimResults t = build(basin).results;

    const auto both = [](const auto& present, const auto& changed, auto value) {
        EXPECT_THAT(present, ElementsAre(value));
        EXPECT_THAT(changed, ElementsAre(value));
    };
    ASSERT_EQ(t.size(), 1U);
    EXPECT_EQ(t.Zone[0], 1);
    EXPECT_EQ(t.Date[0], k_first);
    EXPECT_EQ(t.ActualQ[0], 10.5F);
    both(t.TMax, t.TMaxCC, 1.5F);
    both(t.Tmin, t.TminCC, -2.5F);
    both(t.TAvg, t.TAvgCC, 3.25F);
    both(t.Precip, t.PrecipCC, 4.5F);
    both(t.SCA, t.SCACC, 0.625F);
    both(t.LR, t.LRCC, 0.65F);
    both(t.Tcrit, t.TcritCC, 0.75F);
    both(t.AN, t.ANCC, 0.45F);
    both(t.CS, t.CSCC, 0.8F);
    both(t.CR, t.CRCC, 0.9F);
    both(t.LagTime, t.LagTimeCC, 9.5F);
    both(t.RCA, t.RCACC, 2.0F);
    both(t.NetRad, t.NetRadCC, 7.5F);
    both(t.Xcoeff, t.XcoeffCC, 0.1);
    both(t.YCoeff, t.YCoeffCC, 0.02);
    for (const auto* zero : {&t.SCAclim, &t.SCAclimWA, &t.SCAclimWAMA, &t.MDCincl, &t.MDCexcl, &t.MDCexclWA,
                             &t.MDCexclWAnew, &t.MeltOffset}) {
        EXPECT_THAT(*zero, ElementsAre(0.0F));
    }
    EXPECT_THAT(t.DailyQPresent, ElementsAre(0.0));
    for (const auto* missing :
         {&t.ZoneDD, &t.ZoneDDCC, &t.Cpr, &t.SumAT, &t.NewMelt, &t.M1S, &t.aT, &t.SnowOnStore, &t.ZonalMelt,
          &t.TotalMelt, &t.AZMincl, &t.AZMexcl, &t.AZMexclWA, &t.AZMwork}) {
        EXPECT_THAT(*missing, ElementsAre(IsNan()));
    }
    EXPECT_THAT(t.DailyQ, ElementsAre(IsNan()));
}

TEST_F(BuildResults, WithNoSnowTheCoverIs0ButThatOfTheChangedClimateStaysObserved) {
    SmallBasin basin{1, k_first, 2};
    basin.physical[0].sca = 0.5F;
    basin.physical[1].sca = k_missing;
    run.NoSnow = true;

    const SimResults t = build(basin).results;

    EXPECT_THAT(t.SCA, Each(0.0F));
    EXPECT_THAT(t.SCACC, ElementsAre(0.5F, IsNan()));
}

TEST_F(BuildResults, MissingValuesStayMissing) {
    SmallBasin basin{1, k_first, 1};
    basin.physical[0] = PhysicalRow{};
    basin.physical[0].zone = 1;
    basin.physical[0].date = k_first;
    basin.parameters[0] = ParameterRow{};
    basin.parameters[0].zone = 1;
    basin.parameters[0].date = k_first;

    const BuiltResults built = build(basin);

    EXPECT_EQ(built.Status, 0);
    for (const SimResults& t : {built.results, stored()}) {
        for (const auto* column : {&t.ActualQ, &t.TMax, &t.TAvg, &t.Precip, &t.SCA, &t.LR, &t.Tcrit, &t.AN,
                                   &t.CS, &t.CR, &t.LagTime, &t.RCA, &t.RCACC, &t.NetRad}) {
            EXPECT_THAT(*column, ElementsAre(IsNan()));
        }
        EXPECT_THAT(t.Xcoeff, ElementsAre(IsNan()));
    }
    EXPECT_TRUE(dialogs.messages().empty());  // a missing measured value raises no question
}

TEST_F(BuildResults, RowsComeByZoneAndDayHoweverTheyAreStored) {
    SmallBasin basin{2, k_first, 2};
    std::reverse(basin.physical.begin(), basin.physical.end());
    std::swap(basin.parameters[0], basin.parameters[3]);

    const SimResults t = build(basin).results;

    EXPECT_THAT(t.Zone, ElementsAre(1, 1, 2, 2));
    EXPECT_THAT(t.Date, ElementsAre(k_first, k_first + 1, k_first, k_first + 1));
}

TEST_F(BuildResults, ADayThatOneOfTheTablesLacksIsDroppedForItsZone) {
    SmallBasin basin{2, k_first, 3};
    basin.physical.erase(basin.physical.begin() + 1);      // zone 1, day 2
    basin.parameters.erase(basin.parameters.begin() + 3);  // zone 2, day 1

    const BuiltResults built = build(basin);

    EXPECT_EQ(built.Status, 0);
    EXPECT_THAT(built.results.Zone, ElementsAre(1, 1, 2, 2));
    EXPECT_THAT(built.results.Date, ElementsAre(k_first, k_first + 2, k_first + 1, k_first + 2));
    EXPECT_TRUE(dialogs.messages().empty());
}

TEST_F(BuildResults, OnlyThePeriodOfTheSimulationCounts) {
    SmallBasin basin{1, k_first, 5};
    basin.simulation.start = k_first + 1;
    basin.simulation.end = k_first + 3;

    EXPECT_THAT(build(basin).results.Date, ElementsAre(k_first + 1, k_first + 2, k_first + 3));
}

TEST_F(BuildResults, TheParameterTableIsFoundByAnyNameInAnyCase) {
    SmallBasin basin{1, k_first, 1};
    basin.simulation.name = "Gletsch \"'2001'\" ; --";
    EXPECT_EQ(build(basin).results.size(), 1U);

    basin.simulation.name = "SPRING";
    std::filesystem::remove(path);
    basin.write(path);
    BasinDatabase{path, Access::ReadWrite}.execute("UPDATE SimulationIndex SET SimName = 'Spring'");
    EXPECT_EQ(rebuild().results.size(), 1U);
}

TEST_F(BuildResults, SetsFebruaryForTheRun) {
    (void)build(SmallBasin{1, date_of(2003, 11, 1), 2});
    EXPECT_EQ(run.MonthDays[2], 28);

    SmallBasin crossing{1, date_of(2003, 11, 1), 2};
    crossing.simulation.end = date_of(2004, 4, 30);
    (void)build(crossing);
    EXPECT_EQ(run.MonthDays[2], 29);
}

TEST_F(BuildResults, WithoutACommonDayTheRunStopsAndTheOldTableStays) {
    SmallBasin basin{1, k_first, 2};
    (void)build(basin);
    {
        BasinDatabase database{path, Access::ReadWrite};
        clear_table(database, "Test");
    }

    const BuiltResults built = rebuild();

    EXPECT_EQ(built.Status, 1);
    ASSERT_EQ(dialogs.messages().size(), 1U);
    expect_stop(dialogs.messages()[0],
                "The current database is missing variables and/or parameters needed to run 'Test'!",
                "Run aborting, possible invalid simulation definition");
    EXPECT_EQ(stored().size(), 2U);
}

TEST_F(BuildResults, MakesTheTableWithItsFiftySevenFieldsInOrder) {
    (void)build(SmallBasin{1, k_first, 1});

    BasinDatabase database{path, Access::ReadOnly};
    const std::vector<Field> fields = database.table_fields("SimResults");
    const std::vector<std::string> names = {"Zone",
                                            "Date",
                                            "ActualQ",
                                            "TMax",
                                            "TMaxCC",
                                            "Tmin",
                                            "TminCC",
                                            "TAvg",
                                            "TAvgCC",
                                            "Precip",
                                            "PrecipCC",
                                            "SCA",
                                            "SCACC",
                                            "SCAclim",
                                            "SCAclimWA",
                                            "SCAclimWAMA",
                                            "ZoneDD",
                                            "ZoneDDCC",
                                            "LR",
                                            "LRCC",
                                            "Tcrit",
                                            "TcritCC",
                                            "AN",
                                            "ANCC",
                                            "CS",
                                            "CSCC",
                                            "CR",
                                            "CRCC",
                                            "LagTime",
                                            "LagTimeCC",
                                            "RCA",
                                            "RCACC",
                                            "NetRad",
                                            "NetRadCC",
                                            "Xcoeff",
                                            "XcoeffCC",
                                            "YCoeff",
                                            "YCoeffCC",
                                            "Cpr",
                                            "SumAT",
                                            "NewMelt",
                                            "M1S",
                                            "aT",
                                            "SnowOnStore",
                                            "ZonalMelt",
                                            "TotalMelt",
                                            "DailyQ",
                                            "MDCincl",
                                            "MDCexcl",
                                            "MDCexclWA",
                                            "MDCexclWAnew",
                                            "MeltOffset",
                                            "DailyQPresent",
                                            "AZMincl",
                                            "AZMexcl",
                                            "AZMexclWA",
                                            "AZMwork"};
    const std::set<std::string> doubles = {"Xcoeff",   "XcoeffCC", "YCoeff",
                                           "YCoeffCC", "DailyQ",   "DailyQPresent"};
    const std::set<std::string> integers = {"Zone", "RCA", "RCACC"};
    ASSERT_EQ(fields.size(), 57U);
    for (std::size_t i = 0; i < fields.size(); ++i) {
        EXPECT_EQ(fields[i].name, names[i]);
        const FieldType expected = names[i] == "Date"             ? FieldType::Date
                                   : doubles.count(names[i]) > 0  ? FieldType::Double
                                   : integers.count(names[i]) > 0 ? FieldType::Integer
                                                                  : FieldType::Single;
        EXPECT_EQ(fields[i].type, expected) << names[i];
    }
}

TEST_F(BuildResults, TheScenarioIsAppliedInStep1Alone) {
    for (int step = 0; step <= 6; ++step) {
        scenario_applied = false;
        run.ClimateStep = step;

        (void)build(SmallBasin{1, k_first, 1});

        EXPECT_EQ(scenario_applied, step == 1) << step;
    }
}

TEST_F(BuildResults, AScenarioThatIsRefusedStopsTheRun) {
    run.ClimateStep = 1;
    scenario_status = 1;

    const BuiltResults built = build(SmallBasin{1, k_first, 1});

    EXPECT_EQ(built.Status, 1);
    EXPECT_EQ(built.results.size(), 1U);
}

TEST_F(BuildResults, ALastRowOfAnotherZoneThanTheLastIsCalledFatalAndTheRunContinues) {
    for (const int zones : {1, 3}) {
        SmallBasin basin{2, k_first, 2};
        basin.header.zones = static_cast<std::int16_t>(zones);
        const std::size_t before = dialogs.messages().size();

        const BuiltResults built = build(basin);

        EXPECT_EQ(built.Status, 0);
        EXPECT_EQ(built.results.size(), 4U);
        ASSERT_EQ(dialogs.messages().size(), before + 1);
        expect_stop(dialogs.messages().back(),
                    "# of zones with variable and parameter values don't match basin definition",
                    "Fatal error");
    }
}

TEST_F(BuildResults, TheFatalErrorEndsTheBuildingBeforeTheScenario) {
    SmallBasin basin{2, k_first, 1};
    basin.header.zones = std::int16_t{1};
    run.ClimateStep = 1;

    EXPECT_EQ(build(basin).Status, 0);

    EXPECT_FALSE(scenario_applied);
    EXPECT_EQ(dialogs.messages().size(), 1U);
}

TEST_F(BuildResults, OnlyTheLastRowIsComparedWithTheNumberOfZones) {
    SmallBasin basin{3, k_first, 2};
    const auto of_zone_2 = [](const auto& row) { return row.zone == 2; };
    basin.physical.erase(std::remove_if(basin.physical.begin(), basin.physical.end(), of_zone_2),
                         basin.physical.end());

    EXPECT_THAT(build(basin).results.Zone, ElementsAre(1, 1, 3, 3));
    EXPECT_TRUE(dialogs.messages().empty());
}

}  // namespace
}  // namespace nivora
