// A basin that is typed and pasted into the windows gives the same results as an imported one.

#include "base/durable_file.h"
#include "base/number_text.h"
#include "engine/results_store.h"
#include "prep/legacy_file.h"
#include "tests/shell/main_window_fixture.h"
#include "tests/shell/window_driver.h"
#include "widgets/qt_text.h"

#include <gmock/gmock.h>

#include <QRadioButton>
#include <QSpinBox>
#include <cmath>
#include <cstring>

namespace nivora {
namespace {

constexpr const char* k_sample = "data/samples/ellervane-1997-98.NVR";
constexpr const char* k_typed_name = "by hand & by file";
constexpr const char* k_initial_runoff = "2.75";
constexpr std::size_t k_result_fields = 57;

/// The cells of a results table, each as the name of its field, its row and its bits.
struct ResultCell {
    std::string field;
    std::size_t row = 0;
    std::string bits;

    bool operator==(const ResultCell&) const = default;
};

std::vector<ResultCell> result_cells(const SimResults& results) {
    const TableSchema table = sim_results_table();
    std::vector<ResultCell> cells;
    std::size_t field = 0;
    SimResults::visit(results, [&](const auto& column) {
        for (std::size_t row = 0; row < column.size(); ++row) {
            std::string bits(sizeof column[row], '\0');
            std::memcpy(bits.data(), &column[row], bits.size());
            cells.push_back({table.fields.at(field).name, row, bits});
        }
        ++field;
    });
    return cells;
}

/// The cells in which two results tables differ, as "field row"; a difference in size is an entry of its own.
std::vector<std::string> differences(const SimResults& a, const SimResults& b) {
    const auto cells_a = result_cells(a);
    const auto cells_b = result_cells(b);
    if (cells_a.size() != cells_b.size()) return {"size"};
    std::vector<std::string> found;
    for (std::size_t i = 0; i < cells_a.size(); ++i) {
        if (cells_a[i] != cells_b[i])
            found.push_back(cells_a[i].field + " " + std::to_string(cells_a[i].row));
    }
    return found;
}

LegacyFile sample() {
    return read_legacy_file(
        read_whole_file(std::filesystem::path{NIVORA_SOURCE_DIR} / k_sample, std::uintmax_t{1} << 20U));
}

using Lines = std::vector<std::vector<std::string>>;

/// Rows of cells as a spreadsheet puts them on the clipboard.
QString spreadsheet_text(const Lines& lines) {
    std::string text;
    for (const auto& line : lines) {
        for (std::size_t i = 0; i < line.size(); ++i) text += (i == 0 ? "" : "\t") + line[i];
        text += "\r\n";
    }
    return to_qt(text);
}

/// The daily variables of a zone, in the order of their grid: discharge of the basin, temperatures, snow
/// cover, precipitation, and no net radiation.
Lines variable_lines(const LegacyFile& file, std::size_t zone) {
    Lines lines;
    for (DayCount date = file.start; date <= file.end; ++date) {
        auto& line = lines.emplace_back();
        for (const auto section : {LegacySection::Runoff, LegacySection::Tmax, LegacySection::Tmin,
                                   LegacySection::Tavg, LegacySection::SCA, LegacySection::Precip})
            line.push_back(shortest_text(file.value(section, zone, date)));
        line.emplace_back("0");
    }
    return lines;
}

/// The parameters of a zone, in the order of their grid.
Lines parameter_lines(const LegacyFile& file, std::size_t zone) {
    Lines lines;
    for (DayCount date = file.start; date <= file.end; ++date) {
        auto& line = lines.emplace_back();
        for (const auto section :
             {LegacySection::LapseRate, LegacySection::Tcrit, LegacySection::An, LegacySection::LagTime,
              LegacySection::Cs, LegacySection::Cr, LegacySection::RCA})
            line.push_back(shortest_text(file.value(section, zone, date)));
        const bool later = file.change_day && date >= *file.change_day;
        line.push_back(shortest_text(later ? file.x_later : file.x));
        line.push_back(shortest_text(later ? file.y_later : file.y));
    }
    return lines;
}

class ByHandTest : public MainWindowTest {
protected:
    void define_basin() {
        type(0, "Ellervane by hand");
        choose_units(0, Answer::Yes);
        // The record starts with three months; the simulation extends it.
        modal_.then("frmPopulate", [](QWidget& window) {
            type_over(element<QLineEdit>(window, "MaskEdBox1(0)"), QStringLiteral("10/01/1997"));
            type_over(element<QLineEdit>(window, "MaskEdBox1(1)"), QStringLiteral("12/31/1997"));
            element<QPushButton>(window, "Command1(0)").click();
        });
        type(1, std::to_string(file_.zones.size()).c_str());
        dialogs_.then(Answer::Yes).then(Answer::Yes);
        leave(box(1));
        type(2, double_text(*file_.reference_elevation).c_str());
        leave(box(2));
    }

    void define_zones() {
        Lines lines;
        for (const LegacyZone& zone : file_.zones) {
            const std::string elevation = double_text(zone.elevation);
            lines.push_back({std::string(1, static_cast<char>('A' + lines.size())), "1", elevation});
            for (int aspect = 0; aspect < 4; ++aspect) {
                lines.back().emplace_back("1");
                lines.back().push_back(elevation);
            }
        }
        auto& grid = *find<QTableView>("vaSpread1");
        paste_at(grid, 0, 0, spreadsheet_text(lines));
        for (std::size_t zone = 0; zone < file_.zones.size(); ++zone)
            type_into_cell(grid, static_cast<int>(zone), 1, to_qt(double_text(file_.zones[zone].area)));
    }

    static void fill(QWidget& window, std::initializer_list<std::pair<int, const char*>> boxes) {
        for (const auto& [number, text] : boxes) {
            type_over(element<QLineEdit>(window, ("mtxt(" + std::to_string(number) + ")").c_str()),
                      QString::fromUtf8(text));
        }
    }

    void add_simulation() {
        dialogs_.then_text(k_typed_name);
        modal_.then("SimOptions", [](QWidget& window) {
            element<QRadioButton>(window, "optTempType(0)").click();
            // First values that differ from those of the file; all of them are pasted over later.
            fill(window, {{1, "7"},
                          {2, "10/01/1997"},
                          {3, "09/30/1998"},
                          {4, k_initial_runoff},
                          {5, "6"},
                          {6, "0.1"},
                          {7, "0.2"},
                          {8, "0.3"},
                          {9, "0.4"},
                          {10, "0.5"},
                          {11, "0"},
                          {12, "6"},
                          {13, "0.7"},
                          {14, "0.01"}});
            element<QPushButton>(window, "Command1(0)").click();
        });
        // The rows of the rest of the year are added to the record.
        dialogs_.then(Answer::Yes);
        find<QPushButton>("Command1(0)")->click();
        QTest::qWait(1);
    }

    /// Pastes into the daily editor zone by zone, from the first value column on, and ends with Done.
    void paste_days(const char* action, Lines (*lines_of)(const LegacyFile&, std::size_t)) {
        modal_.then("frmData", [this, lines_of](QWidget& window) {
            auto& grid = element<QTableView>(window, "Spread");
            for (std::size_t zone = 0; zone < file_.zones.size(); ++zone) {
                auto& number = element<QLineEdit>(window, "Text1");
                type_over(number, QString::number(zone + 1));
                QTest::keyClick(&number, Qt::Key_Return);
                ASSERT_EQ(element<QSpinBox>(window, "UpDown1").value(), static_cast<int>(zone) + 1);
                paste_at(grid, 0, 1, spreadsheet_text(lines_of(file_, zone)));
                if (zone == 0 && change_) change_(grid);
            }
            element<QPushButton>(window, "Command1(0)").click();
        });
        ASSERT_TRUE(enabled(action)) << action;
        choose(action);
    }

    void build_by_hand() {
        define_basin();
        define_zones();
        add_simulation();
        paste_days("mnuDataOptVar(0)", variable_lines);
        change_ = nullptr;
        paste_days("mnuDataOpt(5)", parameter_lines);
    }

    void import_sample() {
        modal_.then("SimOptions", [](QWidget& window) {
            fill(window, {{4, k_initial_runoff}});
            element<QPushButton>(window, "Command1(0)").click();
        });
        dialogs_.then_file(std::filesystem::path{NIVORA_SOURCE_DIR} / k_sample).then_text(k_typed_name);
        choose("mnuFileItem(2)");
    }

    SimResults run_year_round() {
        // The latitude stays blank, so the run asks about it.
        dialogs_.then(Answer::Yes);
        look_at_modal("Results", [](QWidget*) {});
        choose("mnuRunSimVar(1)");
        EXPECT_TRUE(std::exchange(seen_, false)) << "the run shows its statistics";
        EXPECT_TRUE(session_.basin.Output_Valid);
        BasinDatabase database{session_.basin.Work_File, Access::ReadOnly};
        return load_results(database);
    }

    void discard_for_new() {
        dialogs_.then(Answer::No);
        choose("mnuFileItem(0)");
    }

    LegacyFile file_ = sample();
    std::function<void(QTableView&)> change_;  ///< what a test changes after the daily variables were pasted
};

TEST(ResultsComparison, ASingleBitOfAnyFieldIsFound) {
    SimResults results;
    results.resize(3);
    std::size_t fields = 0;
    SimResults changed = results;
    SimResults::visit(changed, [&](auto& column) {
        const auto kept = column[1];
        char bits[sizeof kept];
        std::memcpy(bits, &column[1], sizeof kept);
        bits[0] = static_cast<char>(bits[0] ^ 1);
        std::memcpy(&column[1], bits, sizeof kept);
        EXPECT_EQ(differences(results, changed),
                  std::vector<std::string>{sim_results_table().fields.at(fields).name + " 1"});
        column[1] = kept;
        ++fields;
    });
    EXPECT_EQ(fields, k_result_fields);
    EXPECT_TRUE(differences(results, changed).empty());
    changed.resize(2);
    EXPECT_FALSE(differences(results, changed).empty());
}

TEST_F(ByHandTest, ABasinBuiltInTheWindowsRunsToTheSameBitsAsTheImportedOne) {
    build_by_hand();
    const SimResults by_hand = run_year_round();
    discard_for_new();
    import_sample();
    const SimResults imported = run_year_round();
    // Five zones of 365 days, 1 October 1997 to 30 September 1998.
    ASSERT_EQ(imported.size(), 5U * 365U);
    EXPECT_EQ(imported.Date.front(), file_.start);
    // The run has computed a discharge up to the last day of the first zone.
    EXPECT_TRUE(std::isfinite(imported.DailyQ[364]));
    EXPECT_GT(imported.DailyQ[364], 0.0);
    EXPECT_THAT(differences(by_hand, imported), testing::IsEmpty());
}

TEST_F(ByHandTest, OneChangedValueOfTheDailyVariablesIsFoundInTheResults) {
    // The precipitation of zone 1 on 18 July 1998, the day 290 days after 1 October 1997: 31 + 30 + 31 + 31 +
    // 28 + 31 + 30 + 31 + 30 days to the end of June, and 17.
    change_ = [](QTableView& grid) { type_into_cell(grid, 290, 6, QStringLiteral("9.75")); };
    build_by_hand();
    const SimResults by_hand = run_year_round();
    EXPECT_EQ(by_hand.Precip[290], 9.75F);
    discard_for_new();
    import_sample();
    const auto found = differences(by_hand, run_year_round());
    // The precipitation of zone 1 counts in the whole basin, here on the same day of zones 1 and 5 (4 · 365
    // rows later). Summer rain reaches the river a day later, and not a day before.
    EXPECT_THAT(found, testing::IsSupersetOf({"Precip 290", "Precip 1750", "DailyQ 291"}));
    EXPECT_THAT(found, testing::Not(testing::Contains("DailyQ 289")));
}

TEST_F(ByHandTest, TheBasinBuiltInTheWindowsHoldsTheZonesAndDaysOfTheImportedOne) {
    build_by_hand();
    const auto tables = [this] {
        BasinDatabase database{session_.basin.Work_File, Access::ReadOnly};
        return std::pair{read_table<PhysicalRow>(database, template_table(k_physical_data)),
                         read_table<ParameterRow>(database, parameter_table(k_typed_name))};
    };
    const auto zones = session_.basin.zones;
    auto [variables, parameters] = tables();
    discard_for_new();
    import_sample();
    const auto [imported_variables, imported_parameters] = tables();
    ASSERT_EQ(zones.size(), session_.basin.zones.size());
    for (std::size_t i = 0; i < zones.size(); ++i) {
        EXPECT_EQ(zones[i].id, session_.basin.zones[i].id);
        EXPECT_EQ(zones[i].area, session_.basin.zones[i].area);
        EXPECT_EQ(zones[i].elevation, session_.basin.zones[i].elevation);
    }
    // The record grew after its first three months, so its rows are in another order.
    const auto by_zone_and_day = [](const auto& a, const auto& b) {
        return std::pair{a.zone, a.date} < std::pair{b.zone, b.date};
    };
    std::sort(variables.begin(), variables.end(), by_zone_and_day);
    ASSERT_EQ(variables.size(), imported_variables.size());
    ASSERT_EQ(parameters.size(), imported_parameters.size());
    const auto values = [](const auto& row) {
        std::vector<std::string> texts;
        std::decay_t<decltype(row)>::visit(row, [&](const auto& member) {
            if constexpr (requires { *member; }) {
                texts.push_back(member ? shortest_text(static_cast<double>(*member)) : "missing");
            } else {
                texts.push_back(shortest_text(static_cast<double>(member)));
            }
        });
        return texts;
    };
    for (std::size_t i = 0; i < variables.size(); ++i) {
        ASSERT_EQ(values(variables[i]), values(imported_variables[i])) << i;
        ASSERT_EQ(values(parameters[i]), values(imported_parameters[i])) << i;
    }
}

}  // namespace
}  // namespace nivora
