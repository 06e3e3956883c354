// The extent of the daily variables, which is determined when a basin is opened.
#include "base/scripted_dialogs.h"
#include "session/basin_life.h"
#include "store/table_io.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

namespace nivora {
namespace {

class RecordExtentTest : public testing::Test {
protected:
    RecordExtentTest() {
        BasinDatabase::create_template(program_ / "null.mdb");
        BasinDatabase::create_template(user_ / "alder.mdb");
        const std::vector<PhysicalRow> rows{
            {.zone = 2, .date = 30000}, {.zone = 1, .date = 29999}, {.zone = 1, .date = 30007}};
        BasinDatabase database{user_ / "alder.mdb", Access::ReadWrite};
        add_rows<PhysicalRow>(database, template_table(k_physical_data), rows);
    }

    TemporaryFolder program_;
    TemporaryFolder user_;
    ScriptedDialogs dialogs_;
    Desktop desktop_;
    Session session_{dialogs_, desktop_};
    BasinLife life_{session_, program_.path()};
};

TEST_F(RecordExtentTest, IsKnownOnceABasinIsOpen) {
    life_.start();
    dialogs_.then_file(user_ / "alder.mdb");
    life_.open();
    EXPECT_EQ(session_.prep.record.count, 3);
    EXPECT_EQ(session_.prep.record.zones, 2);
    EXPECT_EQ(session_.prep.record.first, 29999);
    EXPECT_EQ(session_.prep.record.last, 30007);
}

TEST_F(RecordExtentTest, IsEmptyForANewBasin) {
    life_.start();
    dialogs_.then_file(user_ / "alder.mdb");
    life_.open();
    life_.new_basin();
    EXPECT_EQ(session_.prep.record.count, 0);
    EXPECT_EQ(session_.prep.record.zones, 0);
}

}  // namespace
}  // namespace nivora
