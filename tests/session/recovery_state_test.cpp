#include "session/recovery_state.h"

#include "base/durable_file.h"
#include "base/scripted_dialogs.h"
#include "session/recovery_keeper.h"
#include "tests/support/temporary_folder.h"

#include <gmock/gmock.h>
#include <pthread.h>

#include <sys/resource.h>

#include <cmath>
#include <csignal>
#include <fstream>

namespace nivora {
namespace {

using testing::HasSubstr;

/// A state with a value of every kind.
RecoveryState full_state() {
    RecoveryState state;
    state.basin_file = "/home/ana/brook \\ of\nAlder.mdb";
    state.known_content = FileContent{.size = 4096, .digest = 18446744073709551615U};
    state.change_counter = 7;
    state.Basin_Changed = true;
    state.Output_Valid = true;
    state.results_time = 46000.25;
    state.basin_name = "Aldér Fork";
    state.basin_description = "two\nlines and a \\";
    state.zones_text = "2";
    state.reference_elevation_text = "1e400";
    state.ZoneCount = 2;
    state.zones = {{.id = "A", .area = 0.1, .notes = ""}, {.id = "B", .elevation = 2100.3}};
    Simulation simulation;
    simulation.name = "run 1";
    simulation.units = Units::English;
    simulation.initial_runoff = 0.1F;
    simulation.initial_x = 1.05;
    simulation.comments = "kept";
    state.simulations = {simulation};
    state.current_row = 0;
    state.run.RunTitle = "Year round Simulation";
    state.run.NoSnow = true;
    state.run.LagDistribution = {2.0F, 0.25F, 0.75F};
    state.run.CoefficientR2 = std::nanf("");
    state.run.EndingStores[0] = {1.5F, 2.5F};
    state.run.notes = {{.kind = NoteKind::SnowMeltStopped, .zones = {1, 2}, .days = 3}};
    return state;
}

std::string text_of(const RecoveryState& state) {
    return recovery_text(46000.5, recovery_lines(state), "PhysicalData", "v TMax 12 3.5\n");
}

std::string why_refused(const std::string& text) {
    try {
        static_cast<void>(read_recovery_text(text));
    } catch (const RecoveryError& error) {
        return error.what();
    }
    return "accepted";
}

TEST(RecoveryStateTest, AStateIsReadAsItWasWritten) {
    const RecoveryState written = full_state();
    const RecoveryState read = read_recovery_text(text_of(written));
    EXPECT_EQ(recovery_lines(read), recovery_lines(written));
    EXPECT_EQ(read.time, 46000.5);
    EXPECT_EQ(read.basin_file, written.basin_file);
    EXPECT_EQ(read.basin_description, written.basin_description);
    EXPECT_EQ(read.known_content, written.known_content);
    EXPECT_EQ(read.zones.at(0).area, 0.1);
    EXPECT_EQ(read.zones.at(0).notes, "") << "an empty text is not a missing one";
    EXPECT_FALSE(read.zones.at(1).notes);
    EXPECT_FALSE(read.zones.at(1).area);
    EXPECT_EQ(read.simulations.at(0).units, Units::English);
    EXPECT_EQ(read.simulations.at(0).initial_runoff, 0.1F);
    EXPECT_EQ(read.run.LagDistribution[2], 0.75F);
    EXPECT_TRUE(std::isnan(read.run.CoefficientR2));
    EXPECT_EQ(read.run.EndingStores[0], (std::vector<float>{1.5F, 2.5F}));
    EXPECT_EQ(read.run.notes.at(0).zones, (std::vector<int>{1, 2}));
    EXPECT_EQ(read.edited_table, "PhysicalData");
    EXPECT_EQ(read.daily_edits, "v TMax 12 3.5\n");
}

TEST(RecoveryStateTest, EveryBeginningOfAStateIsRefused) {
    const std::string whole = text_of(full_state());
    for (std::size_t size = 0; size < whole.size(); ++size)
        EXPECT_NE(why_refused(whole.substr(0, size)), "accepted") << "with " << size << " bytes";
    EXPECT_EQ(why_refused(whole), "accepted");
}

TEST(RecoveryStateTest, EveryChangedByteIsRefused) {
    const std::string whole = text_of(full_state());
    for (std::size_t at = 0; at < whole.size(); ++at) {
        std::string changed = whole;
        changed[at] = static_cast<char>(changed[at] ^ 1);
        EXPECT_NE(why_refused(changed), "accepted") << "at " << at;
    }
}

TEST(RecoveryStateTest, AnIncompleteStateAndAnotherChecksumAreTold) {
    std::string whole = text_of(full_state());
    EXPECT_EQ(why_refused(whole.substr(0, whole.size() - 1)), "is not complete");
    whole.back() = '!';
    EXPECT_EQ(why_refused(whole), "is damaged: its checksum is wrong");
    EXPECT_EQ(why_refused("something else"), "is not a recovery file of Nivora");
}

TEST(RecoveryStateTest, AStateOfAnotherFormIsTold) {
    std::string text = text_of(full_state());
    const std::string form = "form " + std::to_string(k_recovery_form);
    text.replace(text.find(form), form.size(), "form 99");
    EXPECT_THAT(why_refused(text), HasSubstr("another version of Nivora (form 99, this version reads 1)"));
}

TEST(RecoveryStateTest, AFileThatIsNotThereIsNoState) {
    const TemporaryFolder folder;
    EXPECT_FALSE(read_recovery_file(folder / "recovery.state"));
}

class RecoveryKeeperTest : public testing::Test {
protected:
    [[nodiscard]] RecoveryState kept() const { return read_recovery_file(keeper_.file()).value(); }

    TemporaryFolder folder_;
    RecoveryKeeper keeper_{folder_ / "recovery.state"};
    RecoveryState state_ = full_state();
    DailyEdits edits_;
};

TEST_F(RecoveryKeeperTest, TheLastStateIsInTheFile) {
    for (int i = 0; i < 100; ++i) {
        state_.basin_name = "name " + std::to_string(i);
        keeper_.keep(state_, edits_);
    }
    keeper_.finish();
    EXPECT_EQ(kept().basin_name, "name 99");
    EXPECT_EQ(folder_.entries().size(), 1U) << "no part is left";
}

TEST_F(RecoveryKeeperTest, AnEqualStateIsNotWrittenAgain) {
    keeper_.keep(state_, edits_);
    keeper_.finish();
    std::filesystem::remove(keeper_.file());
    keeper_.keep(state_, edits_);
    keeper_.finish();
    EXPECT_FALSE(std::filesystem::exists(keeper_.file()));
}

TEST_F(RecoveryKeeperTest, ARemovedStateIsWrittenAgainWithAllEdits) {
    edits_.begin("PhysicalData");
    edits_.add_value("TMax", 1, 2.5);
    keeper_.keep(state_, edits_);
    EXPECT_TRUE(keeper_.remove());
    EXPECT_FALSE(std::filesystem::exists(keeper_.file()));
    keeper_.keep(state_, edits_);
    keeper_.finish();
    EXPECT_EQ(kept().daily_edits, "v TMax 1 2.5\n");
}

TEST_F(RecoveryKeeperTest, EditsAreAddedUpUntilTheEditorCloses) {
    edits_.begin("PhysicalData");
    std::string all;
    for (int row = 1; row <= 50; ++row) {
        edits_.add_value("TMax", row, 0.5);
        all += "v TMax " + std::to_string(row) + " 0.5\n";
        keeper_.keep(state_, edits_);
        if (row % 7 == 0) keeper_.finish();
    }
    keeper_.finish();
    EXPECT_EQ(kept().daily_edits, all);
    EXPECT_EQ(kept().edited_table, "PhysicalData");
    edits_.end();
    keeper_.keep(state_, edits_);
    keeper_.finish();
    EXPECT_EQ(kept().daily_edits, "");
    edits_.begin("run 1");
    edits_.add_value("Tcrit", 4, 1.0);
    keeper_.keep(state_, edits_);
    keeper_.finish();
    EXPECT_EQ(kept().daily_edits, "v Tcrit 4 1\n");
    EXPECT_EQ(kept().edited_table, "run 1");
}

TEST_F(RecoveryKeeperTest, TheTypedValueFollowsTheEditsAndGivesWayToTheNext) {
    edits_.begin("PhysicalData");
    edits_.add_value("TMax", 1, 2.5);
    for (const double value : {1.0, 12.0, 12.5}) {
        edits_.type_value("TMax", 2, value);
        keeper_.keep(state_, edits_);
        if (value == 12.0) keeper_.finish();
    }
    keeper_.finish();
    EXPECT_EQ(kept().daily_edits, "v TMax 1 2.5\nv TMax 2 12.5\n");
    edits_.type_nothing();
    edits_.add_value("TMax", 2, 12.5);
    keeper_.keep(state_, edits_);
    keeper_.finish();
    EXPECT_EQ(kept().daily_edits, "v TMax 1 2.5\nv TMax 2 12.5\n");
    edits_.type_value("TMax", 3, 4.0);
    edits_.type_nothing();
    keeper_.keep(state_, edits_);
    keeper_.finish();
    EXPECT_EQ(kept().daily_edits, "v TMax 1 2.5\nv TMax 2 12.5\n");
}

TEST_F(RecoveryKeeperTest, AWriteThatFailedIsTriedAgain) {
    // No file can replace a folder, which holds for every user.
    std::filesystem::create_directory(keeper_.file());
    keeper_.keep(state_, edits_);
    keeper_.finish();
    EXPECT_TRUE(std::filesystem::is_directory(keeper_.file()));
    EXPECT_THAT(keeper_.fault(), HasSubstr("it is a folder"));
    std::filesystem::remove(keeper_.file());
    keeper_.keep(state_, edits_);
    keeper_.finish();
    EXPECT_EQ(kept().basin_name, state_.basin_name);
}

TEST_F(RecoveryKeeperTest, AStateThatTheDiskHasNoRoomForLeavesTheOneBefore) {
    keeper_.keep(state_, edits_);
    keeper_.finish();
    const auto old = std::filesystem::file_size(keeper_.file());
    const auto usual_action = std::signal(SIGXFSZ, SIG_IGN);
    rlimit usual{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &usual), 0);
    state_.basin_description = std::string(2000, 'x');
    for (rlim_t room = 0; room < old + 2000; room += 97) {
        state_.basin_name = "wants " + std::to_string(room);
        const rlimit small{room, usual.rlim_max};
        setrlimit(RLIMIT_FSIZE, &small);
        keeper_.keep(state_, edits_);
        keeper_.finish();
        setrlimit(RLIMIT_FSIZE, &usual);
        EXPECT_NE(keeper_.fault(), "") << room;
        EXPECT_EQ(kept().basin_name, "Aldér Fork") << room;
        EXPECT_EQ(folder_.entries().size(), 1U) << "no part is left with room for " << room;
    }
    keeper_.keep(state_, edits_);
    keeper_.finish();
    std::signal(SIGXFSZ, usual_action);
    EXPECT_EQ(kept().basin_description, state_.basin_description);
}

TEST_F(RecoveryKeeperTest, AFaultIsToldUntilAWriteSucceedsOrNothingIsKept) {
    for (const bool removed : {false, true}) {
        std::filesystem::create_directory(keeper_.file());
        state_.basin_name += "x";
        keeper_.keep(state_, edits_);
        keeper_.finish();
        EXPECT_NE(keeper_.fault(), "");
        std::filesystem::remove(keeper_.file());
        if (removed) {
            EXPECT_TRUE(keeper_.remove());
        } else {
            keeper_.keep(state_, edits_);
            keeper_.finish();
        }
        EXPECT_EQ(keeper_.fault(), "");
        std::filesystem::remove(keeper_.file());
    }
}

TEST_F(RecoveryKeeperTest, WithoutAThreadTheStateIsWrittenAtOnce) {
    pthread_attr_t usual;
    ASSERT_EQ(pthread_getattr_default_np(&usual), 0);
    pthread_attr_t endless = usual;
    constexpr std::size_t k_no_room = std::size_t{1} << 46U;
    ASSERT_EQ(pthread_attr_setstacksize(&endless, k_no_room), 0);
    ASSERT_EQ(pthread_setattr_default_np(&endless), 0);
    edits_.begin("PhysicalData");
    edits_.add_value("TMax", 1, 2.5);
    keeper_.keep(state_, edits_);
    ASSERT_EQ(pthread_setattr_default_np(&usual), 0);
    EXPECT_EQ(kept().daily_edits, "v TMax 1 2.5\n");
    edits_.add_value("TMax", 2, 3.5);
    keeper_.keep(state_, edits_);  // by a thread, which has all edits
    keeper_.finish();
    EXPECT_EQ(kept().daily_edits, "v TMax 1 2.5\nv TMax 2 3.5\n");
}

TEST_F(RecoveryKeeperTest, AnEndingKeeperWritesWhatItHasGot) {
    {
        RecoveryKeeper keeper{folder_ / "another.state"};
        keeper.keep(state_, edits_);
    }
    EXPECT_EQ(read_recovery_file(folder_ / "another.state")->basin_name, state_.basin_name);
}

}  // namespace
}  // namespace nivora
