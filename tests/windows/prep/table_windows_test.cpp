// The import and the export of a table in windows of their own.
#include "base/durable_file.h"
#include "tests/windows/prep/prep_window_fixture.h"
#include "windows/prep/frmTableExport.h"
#include "windows/prep/frmTableImport.h"

namespace nivora {
namespace {

using testing::HasSubstr;

/// Zones of two days each, 1 and 2 October 1980, without precipitation.
class TableImportAloneTest : public PrepWindowTest {
protected:
    TableImportAloneTest() {
        {
            BasinDatabase database = file_.open();
            BasinDescription basin = read_basin_description(database);
            basin.zones = k_zones;
            basin.units = Units::Metric;
            write_basin_description(database, basin);
        }
        add_physical(1, 2);
        session_.file_names.begin_in(program_.path());
    }

    void open_import() {
        window_ = std::make_unique<frmTableImport>(context());
        show_window();
    }
    std::filesystem::path file_with(const char* name, std::string_view text) {
        const auto file = program_ / name;
        write_whole_file(file, text);
        return file;
    }
    /// Chooses a file as the user does.
    void choose_file(const std::filesystem::path& file) {
        dialogs_.then_file(file);
        QTest::mouseClick(find<QPushButton>("cmdFile"), Qt::LeftButton);
    }
    std::string told() { return from_qt(find<QLabel>("lblTold")->text()); }
    void press_import() { press(1); }
    [[nodiscard]] std::string precipitation() const {
        return stored(
            "SELECT group_concat(IFNULL(Precip, '-'), ' ') FROM "
            "(SELECT Precip FROM PhysicalData ORDER BY Zone, Date)");
    }
};

TEST_F(TableImportAloneTest, BeforeAFileIsChosenNothingCanBeImported) {
    open_import();
    EXPECT_FALSE(button(0)->isEnabled());
    EXPECT_FALSE(button(1)->isEnabled());
    EXPECT_EQ(from_qt(find<QLabel>("lblFile")->text()), "No file is chosen.");
}

TEST_F(TableImportAloneTest, ASecondImportOfTheSameFileChangesNothing) {
    open_import();
    choose_file(file_with("long.csv", "Zone,Date,Precip\n1,1980-10-01,5\n"));
    press_import();
    session_.basin.Output_Valid = true;
    press_import();
    EXPECT_EQ(told(), "Nothing to import: the table has all of these values.");
    EXPECT_TRUE(session_.basin.Output_Valid) << "no question was asked either";
}

TEST_F(TableImportAloneTest, AFileThatVanishesAfterItWasChosenImportsNothing) {
    open_import();
    const auto file = file_with("long.csv", "Zone,Date,Precip\n1,1980-10-01,5\n");
    choose_file(file);
    std::filesystem::remove(file);
    press_import();
    EXPECT_THAT(told(), HasSubstr("Nothing is imported."));
    EXPECT_EQ(precipitation(), "- - - -");
}

TEST_F(TableImportAloneTest, TheWindowsLeadToTheirHelp) {
    open_import();
    key(Qt::Key_F1);
    window_ = std::make_unique<frmTableExport>(context());
    show_window();
    key(Qt::Key_F1);
    EXPECT_THAT(desktop_.topics, testing::ElementsAre(76, 77));
}

}  // namespace
}  // namespace nivora
