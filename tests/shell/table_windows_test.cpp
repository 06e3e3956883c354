// Import and export of tables, from the main window.
#include "base/durable_file.h"
#include "session/table_files.h"
#include "store/basin_marks.h"
#include "store/daily_rows.h"
#include "tests/shell/main_window_fixture.h"
#include "widgets/grid_view.h"
#include "widgets/qt_text.h"
#include "windows/prep/frmTableImport.h"

#include <gmock/gmock.h>

#include <QCheckBox>

namespace nivora {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

class TableWindowsTest : public MainWindowTest {
protected:
    TableWindowsTest() {
        open_sample();
        mark_saved(session_.basin);
        session_.basin.Output_Valid = false;
    }

    [[nodiscard]] std::filesystem::path path(const std::string& name) const { return user_ / name; }
    std::filesystem::path written(const std::string& name, const std::string& text) {
        write_bytes(path(name), text);
        return path(name);
    }
    /// Opens the window of an import on a file.
    void import_from(const std::filesystem::path& file, const std::function<void(QWidget&)>& act) {
        modal_.then("frmTableImport", [this, file, act](QWidget& window) {
            dialogs_.then_file(file);
            press(window, "Choose &file ...");
            act(window);
            press(window, "Do&ne");
        });
        choose("mnuImportTable");
    }
    static void press(QWidget& window, const char* caption) {
        for (QPushButton* button : window.findChildren<QPushButton*>()) {
            if (button->text() == QString::fromUtf8(caption)) return button->click();
        }
        ADD_FAILURE() << "no button " << caption;
    }
    static std::string told(const QWidget& window) {
        return from_qt(window.findChild<QLabel*>(QStringLiteral("lblTold"))->text());
    }
    static GridView& columns(const QWidget& window) {
        return *window.findChild<GridView*>(QStringLiteral("grdColumns"));
    }
    static GridView& refused(const QWidget& window) {
        return *window.findChild<GridView*>(QStringLiteral("grdRefused"));
    }
    static std::string cell(const GridView& grid, int row, int column) {
        return from_qt(grid.model()->index(row, column).data().toString());
    }
    static void say(const GridView& grid, int row, int column, const char* text) {
        EXPECT_TRUE(grid.model()->setData(grid.model()->index(row, column), QString::fromUtf8(text)));
    }
    static QComboBox& list(const QWidget& window, const char* name) {
        return *window.findChild<QComboBox*>(QString::fromUtf8(name));
    }
    std::string stored(const std::string& field, const std::string& zone, const std::string& day) {
        BasinDatabase database{session_.basin.Work_File, Access::ReadWrite};
        SQLite::Statement query{database.sql(), "SELECT " + field + " FROM PhysicalData WHERE Zone = " +
                                                    zone + " AND Date = " + std::to_string(*read_date(day))};
        if (!query.executeStep()) return "no row";
        return query.getColumn(0).isNull() ? "-" : query.getColumn(0).getString();
    }
};

TEST_F(TableWindowsTest, ALongFileIsShownCheckedAndImported) {
    const auto file = written("days.csv",
                              "Zone,Day,Precip (mm),remark\n"
                              "A,01.10.1997,5,x\n"
                              "B,01.10.1997,12.5,y\n");
    import_from(file, [&](QWidget& window) {
        EXPECT_THAT(told(window), StartsWith("Say what each column is."));
        EXPECT_EQ(cell(columns(window), 0, 1), "Zone");
        EXPECT_EQ(cell(columns(window), 1, 1), "(not read)") << "this name is not known";
        EXPECT_EQ(cell(columns(window), 2, 1), "Precip");
        EXPECT_EQ(cell(columns(window), 2, 4), "12.5");
        EXPECT_EQ(cell(columns(window), 3, 3), "x");
        say(columns(window), 1, 1, "Date");
        press(window, "Chec&k");
        EXPECT_THAT(told(window), HasSubstr("refused: 0 new, 0 changed, 0 equal, 2 refused"));
        EXPECT_FALSE(refused(window).isHidden());
        EXPECT_EQ(cell(refused(window), 0, 0), "2");
        list(window, "cboDates").setCurrentText(QStringLiteral("DD.MM.YYYY"));
        press(window, "Chec&k");
        EXPECT_EQ(told(window), "An import would give: 0 new, 2 changed, 0 equal, 0 refused.");
        EXPECT_TRUE(refused(window).isHidden());
        EXPECT_NE(stored("Precip", "2", "10/01/1997"), "1.25");
        press(window, "&Import");
        EXPECT_EQ(told(window), "Imported: 0 new, 2 changed, 0 equal, 0 refused.");
    });
    EXPECT_EQ(stored("Precip", "1", "10/01/1997"), "0.5") << "in the centimetres of the basin";
    EXPECT_EQ(stored("Precip", "2", "10/01/1997"), "1.25");
    EXPECT_TRUE(session_.basin.Basin_Changed);
    EXPECT_TRUE(session_.basin.Input_Changed);
}  // namespace

TEST_F(TableWindowsTest, AWideFileGivesEachZoneAColumn) {
    const auto file = written("wide.csv", "Date;low;high\n1997-10-01;1,5;2,5\n1997-10-02;1,75;-9999\n");
    import_from(file, [&](QWidget& window) {
        list(window, "cboForm").setCurrentIndex(1);
        list(window, "cboField").setCurrentText(QStringLiteral("Tavg"));
        list(window, "cboDecimal").setCurrentIndex(1);
        window.findChild<QLineEdit*>(QStringLiteral("txtMissing"))->setText(QStringLiteral("NA, -9999"));
        EXPECT_EQ(cell(columns(window), 0, 1), "Date");
        say(columns(window), 1, 1, "A");
        say(columns(window), 2, 1, "C");
        press(window, "&Import");
        EXPECT_THAT(told(window), StartsWith("Imported: 0 new, 4 changed"));
    });
    EXPECT_EQ(stored("Tavg", "1", "10/01/1997"), "1.5");
    EXPECT_EQ(stored("Tavg", "3", "10/01/1997"), "2.5");
    EXPECT_EQ(stored("Tavg", "3", "10/02/1997"), "-");
}  // namespace nivora

TEST_F(TableWindowsTest, AChoiceOfAColumnIsTakenBackAndMadeAgain) {
    const auto file = written("days.csv", "Zone,Day,Precip\nA,1997-10-01,5\n");
    import_from(file, [&](QWidget& window) {
        GridView& grid = columns(window);
        const auto press_key = [&](const QKeySequence& keys) {
            for (QAction* action : window.actions()) {
                if (action->shortcut() == keys) action->trigger();
            }
        };
        say(grid, 1, 1, "Date");
        say(grid, 2, 2, "mm");
        press_key(Qt::CTRL | Qt::Key_Z);
        EXPECT_EQ(cell(grid, 2, 2), "");
        EXPECT_EQ(grid.currentIndex().row(), 2);
        press_key(Qt::CTRL | Qt::Key_Z);
        EXPECT_EQ(cell(grid, 1, 1), "(not read)");
        press_key(Qt::CTRL | Qt::Key_Y);
        EXPECT_EQ(cell(grid, 1, 1), "Date");
        EXPECT_EQ(cell(grid, 2, 2), "");
    });
}

TEST_F(TableWindowsTest, WithARefusedRowNothingIsImported) {
    const std::string before = stored("Precip", "1", "10/01/1997");
    const auto file =
        written("bad.csv", "Zone,Date,Precip\n1,1997-10-01,7\n1,1997-06-31,1\n9,1997-10-03,x\n");
    import_from(file, [&](QWidget& window) {
        press(window, "&Import");
        EXPECT_THAT(told(window), StartsWith("Nothing is imported while rows are refused: "));
        ASSERT_EQ(refused(window).model()->rowCount(), 2);
        EXPECT_EQ(cell(refused(window), 0, 0), "3");
        EXPECT_EQ(cell(refused(window), 1, 0), "4");
    });
    EXPECT_EQ(stored("Precip", "1", "10/01/1997"), before);
    EXPECT_FALSE(session_.basin.Basin_Changed);
}

TEST_F(TableWindowsTest, ResultsAreLostOnlyAfterAQuestion) {
    session_.basin.Output_Valid = true;
    const std::string before = stored("Precip", "1", "10/01/1997");
    const auto file = written("days.csv", "Zone,Date,Precip\n1,1997-10-01,7\n");
    import_from(file, [&](QWidget& window) {
        dialogs_.then(Answer::No);
        press(window, "&Import");
    });
    EXPECT_EQ(stored("Precip", "1", "10/01/1997"), before);
    EXPECT_TRUE(session_.basin.Output_Valid);
    import_from(file, [&](QWidget& window) {
        dialogs_.then(Answer::Yes);
        press(window, "&Import");
    });
    EXPECT_EQ(stored("Precip", "1", "10/01/1997"), "7.0");
    EXPECT_FALSE(session_.basin.Output_Valid);
}

TEST_F(TableWindowsTest, WhatIsNoTableIsRefused) {
    const auto refuse = [&](const std::filesystem::path& file, const char* why) {
        const std::size_t told_before = dialogs_.messages().size();
        import_from(file, [](QWidget&) {});
        ASSERT_EQ(dialogs_.messages().size(), told_before + 1);
        EXPECT_THAT(dialogs_.messages().back().message.text, HasSubstr(why));
    };
    refuse(session_.basin.Basin_File, "the open basin itself");
    refuse(user_.path(), "no file with a table");
    refuse(path("none.csv"), "no file with a table");
    const auto binary = written("binary.csv", std::string("a\0b\n1,2\n", 8));
    import_from(binary, [&](QWidget& window) {
        EXPECT_THAT(told(window), StartsWith("Line 1: "));
        EXPECT_FALSE(window.findChild<QPushButton*>(QStringLiteral("Command1(1)"))->isEnabled());
    });
    import_from(written("empty.csv", ""),
                [&](QWidget& window) { EXPECT_EQ(told(window), "The file is empty."); });
    import_from(written("dates.csv", "Zone,Date,Precip\n1,1997-10-01,7\n"), [&](QWidget& window) {
        list(window, "cboDates").setCurrentText(QStringLiteral("nonsense"));
        press(window, "Chec&k");
        EXPECT_THAT(dialogs_.messages().back().message.text, HasSubstr("is not a pattern of dates"));
    });
    EXPECT_FALSE(session_.basin.Basin_Changed);
}

TEST_F(TableWindowsTest, WhatWasExportedIsEqualOnImport) {
    const auto file = path("out file, 1.csv");
    modal_.then("frmTableExport", [&](QWidget& window) {
        EXPECT_EQ(list(window, "cboTable").count(), 4) << "two simulations, no results";
        dialogs_.then_file(file);
        press(window, "&Export ...");
        EXPECT_EQ(told(window), "Written: " + path_text(file));
        list(window, "cboTable").setCurrentIndex(3);
        dialogs_.then_file(path("parameters.csv"));
        press(window, "&Export ...");
        press(window, "&Done");
    });
    choose("mnuExportTable");
    EXPECT_THAT(
        file_bytes(file),
        StartsWith("Zone,Date,Runoff (m³/s),Tmax (°C),Tmin (°C),Tavg (°C),Precip (cm),SCA,NetRadiation\n"));
    import_from(file, [&](QWidget& window) {
        press(window, "Chec&k");
        EXPECT_THAT(told(window), HasSubstr("0 new, 0 changed, "));
        EXPECT_THAT(told(window), HasSubstr(" equal, 0 refused."));
        EXPECT_THAT(told(window), testing::Not(HasSubstr(" 0 equal")));
    });
    import_from(path("parameters.csv"), [&](QWidget& window) {
        list(window, "cboTable").setCurrentIndex(3);
        press(window, "Chec&k");
        EXPECT_THAT(told(window), HasSubstr("0 new, 0 changed, "));
        EXPECT_THAT(told(window), HasSubstr(" equal, 0 refused."));
    });
}

TEST_F(TableWindowsTest, AnExportNeverReplacesTheBasin) {
    const std::string before = file_bytes(session_.basin.Basin_File);
    modal_.then("frmTableExport", [&](QWidget& window) {
        dialogs_.then_file(session_.basin.Basin_File).then(Answer::Yes).then_file(std::nullopt);
        press(window, "&Export ...");
        EXPECT_EQ(told(window), "");
        press(window, "&Done");
    });
    choose("mnuExportTable");
    EXPECT_THAT(dialogs_.messages().back().message.text, HasSubstr("is the basin that is open"));
    EXPECT_EQ(file_bytes(session_.basin.Basin_File), before);
}

TEST_F(TableWindowsTest, ParametersKeepTheUnitsOfTheirSimulation) {
    session_.basin.simulations[0].units = Units::English;
    write_table(session_.basin, session_.basin.simulations[0].name, true, path("p.csv"));
    EXPECT_THAT(file_bytes(path("p.csv")), HasSubstr("°F"));
    import_from(path("p.csv"), [&](QWidget& window) {
        list(window, "cboTable").setCurrentIndex(2);
        press(window, "Chec&k");
        EXPECT_THAT(told(window), HasSubstr("0 new, 0 changed, ")) << told(window);
    });
}

}  // namespace
}  // namespace nivora
