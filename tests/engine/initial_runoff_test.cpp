#include "engine/build_results.h"
#include "tests/engine/engine_fixture.h"
#include "tests/support/temporary_folder.h"

#include <gmock/gmock.h>

#include <cmath>

namespace nivora {
namespace {

/// The questions about the initial runoff, which is 10 here.
class InitialRunoff : public ::testing::Test {
protected:
    TemporaryFolder folder;
    std::filesystem::path path = folder / "basin.mdb";
    RunState run;
    ScriptedDialogs dialogs;

    /// Builds the results of a basin whose data include the day before the run; returns the status.
    int build(SmallBasin content) {
        std::filesystem::remove(path);
        content.write(path);
        const BasinState basin = opened_basin(path);
        run.InitialRunoff = content.simulation.initial_runoff.value();
        BasinDatabase database{path, Access::ReadWrite};
        BuiltResults built = Build_SimResults(database, basin, run, dialogs, nullptr);
        rows_in_memory = built.results.size();
        if (built.replacement) built.replacement->commit(built.results);
        return built.Status;
    }

    /// A run of two days in one zone with a measured discharge on its first day.
    static SmallBasin alone(float measured, float initial = 10.0F) {
        SmallBasin content{1, k_first, 2};
        content.physical[0].runoff = measured;
        content.simulation.initial_runoff = initial;
        return content;
    }

    /// A run of two days in two zones, each with a measured discharge on the day before.
    static SmallBasin after(float before1, float before2) {
        SmallBasin content{2, k_first - 1, 3};
        content.simulation.start = k_first;
        content.physical[0].runoff = before1;
        content.physical[3].runoff = before2;
        return content;
    }

    std::size_t rows_in_memory = 0;

    std::size_t rows_in_file() {
        BasinDatabase database{path, Access::ReadOnly};
        return load_results(database).size();
    }

    void TearDown() override {
        EXPECT_EQ(dialogs.complaints(), std::vector<std::string>{});
        EXPECT_EQ(dialogs.answers_left(), 0U);
    }
};

TEST_F(InitialRunoff, FarFromTheFirstMeasuredDischargeIsAskedAbout) {
    dialogs.then(Answer::Ok);

    EXPECT_EQ(build(alone(8.25F, 12.5F)), 0);

    ASSERT_EQ(dialogs.messages().size(), 1U);
    expect_message(dialogs.messages()[0],
                   "There is a significant difference between your InitialRunoffValue {12.5} and day #1's "
                   "Measured Runoff {8.25}.  Continue?",
                   "Warning, possible data problem");
    EXPECT_EQ(dialogs.messages()[0].message.buttons, Buttons::OkCancel);
    EXPECT_EQ(rows_in_file(), 2U);
}

TEST_F(InitialRunoff, ARefusalStopsTheRunWithTheTableEmptied) {
    EXPECT_EQ(build(alone(10.0F)), 0);
    EXPECT_EQ(rows_in_file(), 2U);
    dialogs.then(Answer::Cancel);

    const BasinState basin = opened_basin(path);
    run.InitialRunoff = 100.0F;
    {
        BasinDatabase database{path, Access::ReadWrite};
        BuiltResults built = Build_SimResults(database, basin, run, dialogs, nullptr);
        EXPECT_EQ(built.Status, 1);
        EXPECT_EQ(built.results.size(), 0U);
        if (built.replacement) built.replacement->commit(built.results);
    }

    BasinDatabase database{path, Access::ReadOnly};
    EXPECT_TRUE(database.has_table("SimResults"));
    EXPECT_EQ(load_results(database).size(), 0U);
}

TEST_F(InitialRunoff, MayDifferByAFifthOfTheMeasuredDischarge) {
    EXPECT_EQ(build(alone(10.0F, 12.0F)), 0);
    EXPECT_EQ(build(alone(10.0F, 8.0F)), 0);
    EXPECT_TRUE(dialogs.messages().empty());

    dialogs.then(Answer::Ok).then(Answer::Ok);
    EXPECT_EQ(build(alone(10.0F, std::nextafter(12.0F, 20.0F))), 0);
    EXPECT_EQ(build(alone(10.0F, std::nextafter(8.0F, 0.0F))), 0);
    EXPECT_EQ(dialogs.messages().size(), 2U);
}

TEST_F(InitialRunoff, AboveAMeasuredDischargeOf0IsAlwaysAskedAbout) {
    dialogs.then(Answer::Ok);

    EXPECT_EQ(build(alone(0.0F, 0.001F)), 0);

    ASSERT_EQ(dialogs.messages().size(), 1U);
    EXPECT_EQ(dialogs.messages()[0].message.text,
              "There is a significant difference between your InitialRunoffValue {0.001} and day #1's "
              "Measured Runoff {0}.  Continue?");
}

TEST_F(InitialRunoff, Of0WithAMeasuredDischargeOf0IsNotAskedAbout) { EXPECT_EQ(build(alone(0.0F, 0.0F)), 0); }

TEST_F(InitialRunoff, BesideANegativeMeasuredDischargeIsAskedAboutEvenIfTheyAreEqual) {
    dialogs.then(Answer::Ok);

    EXPECT_EQ(build(alone(-5.0F, -5.0F)), 0);  // 0 > -5 x 0.2

    EXPECT_EQ(dialogs.messages().size(), 1U);
}

TEST_F(InitialRunoff, IsComparedWithNoMeasuredDischargeWhereItIsMissing) {
    EXPECT_EQ(build(alone(k_missing, 500.0F)), 0);
    EXPECT_TRUE(dialogs.messages().empty());
}

TEST_F(InitialRunoff, OtherThanTheDayBeforeIsAskedAbout) {
    dialogs.then(Answer::Ok);

    EXPECT_EQ(build(after(9.5F, 77.0F)), 0);

    ASSERT_EQ(dialogs.messages().size(), 1U);
    expect_message(dialogs.messages()[0],
                   "The InitialRunoffValue for this simulation {10} is different than that found in the "
                   "basin database {9.5}.  Continue?",
                   "Inconsistent data");
    EXPECT_EQ(dialogs.messages()[0].message.buttons, Buttons::OkCancel);
    EXPECT_EQ(rows_in_file(), 4U);
}

TEST_F(InitialRunoff, ARefusalAboutTheDayBeforeEmptiesTheTableToo) {
    dialogs.then(Answer::Cancel);

    EXPECT_EQ(build(after(9.5F, 9.5F)), 1);

    EXPECT_EQ(rows_in_file(), 0U);
}

TEST_F(InitialRunoff, EqualToTheDayBeforeIsNotComparedWithTheFirstDay) {
    SmallBasin content = after(10.0F, 10.0F);
    content.physical[1].runoff = 1000.0F;

    EXPECT_EQ(build(content), 0);
    EXPECT_TRUE(dialogs.messages().empty());
}

TEST_F(InitialRunoff, IsASingleAsTheDayBeforeIs) {
    SmallBasin content = after(12.3F, 12.3F);
    content.simulation.initial_runoff = 12.3F;

    EXPECT_EQ(build(content), 0);
    EXPECT_TRUE(dialogs.messages().empty());
}

TEST_F(InitialRunoff, ABasinOfOneZoneNeverLooksAtTheDayBefore) {
    SmallBasin content{1, k_first - 1, 3};
    content.simulation.start = k_first;
    content.physical[0].runoff = 5.0F;  // the day before
    content.physical[1].runoff = 11.0F;

    EXPECT_EQ(build(content), 0);
    EXPECT_TRUE(dialogs.messages().empty());
}

TEST_F(InitialRunoff, ADayBeforeThatOnlyOneOfTwoZonesHasDoesNotCount) {
    SmallBasin content = after(5.0F, 5.0F);
    content.physical.erase(content.physical.begin() + 3);

    EXPECT_EQ(build(content), 0);
    EXPECT_TRUE(dialogs.messages().empty());
}

TEST_F(InitialRunoff, TheDayBeforeNeedsNoParameters) {
    SmallBasin content = after(9.5F, 9.5F);
    content.parameters.erase(content.parameters.begin() + 3);
    content.parameters.erase(content.parameters.begin());
    dialogs.then(Answer::Ok);

    EXPECT_EQ(build(content), 0);

    ASSERT_EQ(dialogs.messages().size(), 1U);
    EXPECT_EQ(dialogs.messages()[0].message.title, "Inconsistent data");
}

TEST_F(InitialRunoff, AMissingDischargeOnTheDayBeforeIsComparedWithNothing) {
    SmallBasin content = after(k_missing, 5.0F);
    content.physical[1].runoff = 1000.0F;  // the first day is not compared either

    EXPECT_EQ(build(content), 0);
    EXPECT_TRUE(dialogs.messages().empty());
}

TEST_F(InitialRunoff, ADischargeOfMinus99OnTheDayBeforeCountsAsNone) {
    EXPECT_EQ(build(after(-99.0F, -99.0F)), 0);
    EXPECT_TRUE(dialogs.messages().empty());
}

}  // namespace
}  // namespace nivora
