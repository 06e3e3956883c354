#include "session/data_commands.h"

#include "base/scripted_dialogs.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

namespace nivora {
namespace {

class DataCommandsTest : public testing::Test {
protected:
    TemporaryFolder folder_;
    ScriptedDialogs dialogs_;
    Desktop desktop_;
    Session session_{dialogs_, desktop_};
};

TEST_F(DataCommandsTest, AMissingWorkingFileEndsTheCommandSilently) {
    session_.basin.Work_File = folder_ / "gone.mdb";
    EXPECT_EQ(choose_data_entry(session_, DataEntry::Parameters), DataOutcome::Stopped);
    EXPECT_EQ(choose_daily_variables(session_, 0), DataOutcome::Stopped);
    EXPECT_TRUE(dialogs_.messages().empty());
}

TEST_F(DataCommandsTest, TheEntriesWorkOnTheWorkingFile) {
    session_.basin.Work_File = folder_ / "new.mdb";
    BasinDatabase::create_template(session_.basin.Work_File);
    dialogs_.then(Answer::No);  // the record has no days yet
    EXPECT_EQ(choose_daily_variables(session_, 0), DataOutcome::Stopped);
    ASSERT_EQ(dialogs_.messages().size(), 1U);
    EXPECT_EQ(dialogs_.messages()[0].message.text, "The physical data table is missing days.  Add?");
}

}  // namespace
}  // namespace nivora
