#include "prep/daily_edits.h"

#include "base/single.h"
#include "store/table_io.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

namespace nivora {
namespace {

class DailyEditsTest : public testing::Test {
protected:
    DailyEditsTest() {
        BasinDatabase::create_template(file_);
        BasinDatabase database{file_, Access::ReadWrite};
        const std::vector<PhysicalRow> rows{{.zone = 1, .date = 35000, .runoff = 1.5F},
                                            {.zone = 1, .date = 35001, .runoff = 2.5F},
                                            {.zone = 2, .date = 35000, .runoff = 3.5F}};
        add_rows<PhysicalRow>(database, template_table(k_physical_data), rows);
    }

    std::vector<float> runoff() {
        BasinDatabase database{file_, Access::ReadOnly};
        std::vector<float> values;
        for (const auto& row : read_table<PhysicalRow>(database, template_table(k_physical_data)))
            values.push_back(row.runoff);
        return values;
    }

    void apply(const std::string& lines) {
        BasinDatabase database{file_, Access::ReadWrite};
        apply_daily_edits(database, "PhysicalData", lines);
    }

    TemporaryFolder folder_;
    std::filesystem::path file_ = folder_ / "basin.mdb";
    DailyEdits edits_;
};

TEST_F(DailyEditsTest, AreMadeAnewInTheirOrder) {
    edits_.begin("PhysicalData");
    edits_.add_value("Runoff", 1, 10.0);
    edits_.add_mass_edit("Runoff", 1, {35000, 35001}, MassEdit::Multiply, 2.0);
    edits_.add_mass_edit("Runoff", 2, {35000, 35000}, MassEdit::Add, 0.25);
    edits_.add_value("Runoff", 2, 7.0);
    EXPECT_EQ(count_daily_edits(edits_.lines()), 4U);
    apply(edits_.lines());
    // 10 * 2; 2.5 * 2 and then 7; 3.5 + 0.25
    EXPECT_EQ(runoff(), (std::vector<float>{20.0F, 7.0F, 3.75F}));
}

TEST_F(DailyEditsTest, AMissingValueStaysMissing) {
    edits_.begin("PhysicalData");
    edits_.add_value("Runoff", 3, static_cast<double>(k_missing));
    apply(edits_.lines());
    EXPECT_TRUE(is_missing(runoff().at(2)));
}

TEST_F(DailyEditsTest, ALineThatCannotBeReadRefusesAllOfThem) {
    for (const char* bad : {"v", "v Runoff", "v Runoff 1", "v Runoff one 2", "v Runoff 1 2x", "v NoField 1 2",
                            "x Runoff 1 2", "m Runoff 1 35000 35001 0", ""}) {
        EXPECT_THROW(apply("v Runoff 1 99\n" + std::string{bad} + "\n"), StoreError) << bad;
        EXPECT_EQ(runoff().at(0), 1.5F) << bad;
    }
    EXPECT_THROW(apply("v Runoff 1 99\nv Runoff 2 9"), StoreError) << "cut within a line";
    EXPECT_EQ(runoff().at(0), 1.5F);
}

TEST_F(DailyEditsTest, ATableThatIsGoneIsRefused) {
    BasinDatabase database{file_, Access::ReadWrite};
    EXPECT_THROW(apply_daily_edits(database, "no such table", "v Runoff 1 2\n"), StoreError);
}

TEST_F(DailyEditsTest, AnotherEditingBeginsAnew) {
    edits_.begin("PhysicalData");
    edits_.add_value("Runoff", 1, 10.0);
    const unsigned first = edits_.editing();
    edits_.begin("run 1");
    EXPECT_NE(edits_.editing(), first);
    EXPECT_TRUE(edits_.empty());
    EXPECT_EQ(edits_.table(), "run 1");
    edits_.end();
    EXPECT_EQ(edits_.table(), "");
}

}  // namespace
}  // namespace nivora
