// The import and the export of a table by the keys and the mouse of a real display.
#include "base/durable_file.h"
#include "tests/screen/screen_fixture.h"
#include "widgets/grid_view.h"

#include <QComboBox>
#include <QEvent>
#include <QLabel>
#include <QPushButton>
#include <optional>
#include <utility>
#include <vector>

namespace nivora {
namespace {

class TableFilesOnScreenTest : public MainWindowOnScreenTest {
protected:
    void SetUp() override {
        MainWindowOnScreenTest::SetUp();
        if (IsSkipped()) return;
        open_sample();
    }
    static std::string told(QWidget& window) {
        return from_qt(window.findChild<QLabel*>(QStringLiteral("lblTold"))->text());
    }
    /// The first day of the sample, from its file.
    std::string first_day() {
        BasinDatabase database{session_.basin.Work_File, Access::ReadOnly};
        SQLite::Statement row{database.sql(), "SELECT MIN(Date) FROM PhysicalData"};
        row.executeStep();
        return iso_date_text(static_cast<DayCount>(row.getColumn(0).getDouble()));
    }
    float first_precipitation() {
        BasinDatabase database{session_.basin.Work_File, Access::ReadOnly};
        SQLite::Statement row{database.sql(),
                              "SELECT Precip FROM PhysicalData WHERE Zone = 1 ORDER BY Date LIMIT 1"};
        row.executeStep();
        return static_cast<float>(row.getColumn(0).getDouble());
    }
};

TEST_F(TableFilesOnScreenTest, ATableIsImportedByKeysAlone) {
    const auto file = user_ / "one day.csv";
    write_whole_file(file, "Zone,Date,Precip\n1," + first_day() + ",3.25\n");
    ASSERT_NE(first_precipitation(), 3.25F);
    in_modal("frmTableImport", [&](QWidget& window) {
        EXPECT_EQ(focused(), "cmdFile");
        dialogs_.then_file(file);
        press({"space"});
        auto* import = window.findChild<QPushButton*>(QStringLiteral("Command1(1)"));
        EXPECT_TRUE(await([&] { return import->isEnabled(); }));
        press({"alt+k"});
        EXPECT_EQ(told(window), "An import would give: 0 new, 1 changed, 0 equal, 0 refused.");
        press({"alt+i"});
        EXPECT_EQ(told(window), "Imported: 0 new, 1 changed, 0 equal, 0 refused.");
        press({"Escape"});
        EXPECT_TRUE(await([&] { return !window.isVisible(); }));
    });
    press({"alt+l", "m", "i"});
    ASSERT_TRUE(await([&] { return modal_windows_seen_ == 1; }));
    EXPECT_EQ(first_precipitation(), 3.25F);
    EXPECT_TRUE(session_.basin.Basin_Changed);
}

/// Notes what is kept for a crash whenever a label is painted.
class KeptWhenPainted : public QObject {
public:
    KeptWhenPainted(QLabel& label, std::filesystem::path state) : label_(label), state_(std::move(state)) {
        label.installEventFilter(this);
    }
    /// Whether the state was there each time that the text began with these words; nothing if it never did.
    [[nodiscard]] std::optional<bool> kept_with(const char* words) const {
        std::optional<bool> kept;
        for (const auto& [text, there] : painted_) {
            if (text.startsWith(QString::fromUtf8(words))) kept = kept.value_or(true) && there;
        }
        return kept;
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Paint) painted_.emplace_back(label_.text(), exists(state_));
        return QObject::eventFilter(watched, event);
    }

private:
    QLabel& label_;
    std::filesystem::path state_;
    std::vector<std::pair<QString, bool>> painted_;
};

TEST_F(TableFilesOnScreenTest, WhatIsSaidToBeImportedSurvivesACrash) {
    const auto file = user_ / "one day.csv";
    write_whole_file(file, "Zone,Date,Precip\n1," + first_day() + ",3.25\n");
    const auto state = program_ / "recovery.state";
    in_modal("frmTableImport", [&](QWidget& window) {
        const KeptWhenPainted watch{*window.findChild<QLabel*>(QStringLiteral("lblTold")), state};
        dialogs_.then_file(file);
        press({"space"});
        auto* import = window.findChild<QPushButton*>(QStringLiteral("Command1(1)"));
        EXPECT_TRUE(await([&] { return import->isEnabled(); }));
        EXPECT_FALSE(exists(state)) << "the basin is unchanged";
        press({"alt+i"});
        EXPECT_EQ(told(window), "Imported: 0 new, 1 changed, 0 equal, 0 refused.");
        EXPECT_TRUE(await([&] { return watch.kept_with("Imported").has_value(); }));
        EXPECT_EQ(watch.kept_with("Imported"), std::optional{true});
    });
    press({"alt+l", "m", "i"});
    ASSERT_TRUE(await([&] { return modal_windows_seen_ == 1; }));
}

TEST_F(TableFilesOnScreenTest, WhatAColumnIsIsChosenFromTheListInItsCell) {
    const auto file = user_ / "names.csv";
    write_whole_file(file, "Zone,Date,Rain\n1," + first_day() + ",3.25\n");
    in_modal("frmTableImport", [&](QWidget& window) {
        dialogs_.then_file(file);
        click(*window.findChild<QPushButton*>(QStringLiteral("cmdFile")));
        auto* grid = window.findChild<GridView*>(QStringLiteral("grdColumns"));
        ASSERT_TRUE(await([&] { return grid->model()->rowCount() == 3; }));
        click_cell(*grid, 2, 1);
        type("Precip");
        press({"Return"});
        EXPECT_EQ(from_qt(grid->model()->index(2, 1).data().toString()), "Precip");
        click(*window.findChild<QPushButton*>(QStringLiteral("Command1(0)")));
        EXPECT_EQ(told(window), "An import would give: 0 new, 1 changed, 0 equal, 0 refused.");
    });
    choose("mnuImportTable");
    EXPECT_EQ(modal_windows_seen_, 1);
    EXPECT_FALSE(session_.basin.Basin_Changed) << "it was closed half-way";
}

TEST_F(TableFilesOnScreenTest, RefusedLinesAreSeenBelowTheColumns) {
    const auto file = user_ / "bad.csv";
    write_whole_file(file, "Zone,Date,Precip\n99,1980-10-01,1\n1,1980-06-31,1\n");
    in_modal("frmTableImport", [&](QWidget& window) {
        dialogs_.then_file(file);
        click(*window.findChild<QPushButton*>(QStringLiteral("cmdFile")));
        click(*window.findChild<QPushButton*>(QStringLiteral("Command1(1)")));
        auto* refused = window.findChild<GridView*>(QStringLiteral("grdRefused"));
        ASSERT_TRUE(await([&] { return refused->isVisible(); }));
        settle();
        EXPECT_EQ(refused->model()->rowCount(), 2);
        EXPECT_GT(drawn_points(picture_of_cell(*refused, 1, 1)), 50) << "the second reason is in sight";
    });
    choose("mnuImportTable");
    EXPECT_EQ(modal_windows_seen_, 1);
    EXPECT_FALSE(session_.basin.Basin_Changed);
}

TEST_F(TableFilesOnScreenTest, ATableIsExportedByEnter) {
    const auto file = user_ / "out.csv";
    in_modal("frmTableExport", [&](QWidget& window) {
        dialogs_.then_file(file);
        press({"Return"});
        EXPECT_TRUE(await([&] { return told(window).rfind("Written: ", 0) == 0; }));
    });
    press({"alt+l", "m", "e"});
    ASSERT_TRUE(await([&] { return modal_windows_seen_ == 1; }));
    EXPECT_EQ(read_whole_file(file, 1U << 26U).rfind("Zone,Date,", 0), 0U);
}

}  // namespace
}  // namespace nivora
