#include "shell/main_menu.h"

#include "session/main_window_rules.h"
#include "widgets/built_in_icons.h"
#include "widgets/nivora_window.h"
#include "widgets/qt_text.h"
#include "widgets/window_keys.h"

#include <QActionGroup>
#include <QMenuBar>
#include <QPainter>
#include <QProxyStyle>
#include <QStyle>

namespace nivora {
namespace {

// The buttons of the window use the letters A, D and E; "&Run" and "&Reports" share one.

/// One entry: its name, the menu it is in, its caption (none for a separator), the number of its help text,
/// and its command. An entry with a submenu is the parent of other entries.
struct Entry {
    const char* name;
    const char* parent;
    const char* caption;
    int help;
    Command command = Command::None;
    bool ShellState::*enabled = nullptr;  ///< the flag that enables the entry, if one does
    bool shut_by_evaluation = false;      ///< disabled while the window of a climate evaluation is open
};

/// A key of the window that chooses an entry. Menus show none of them; the tips of their entries do.
struct EntryKey {
    const char* entry;
    QKeyCombination keys;
};

constexpr std::array k_keys{
    EntryKey{"mnuFileItem(0)", Qt::CTRL | Qt::Key_N},
    EntryKey{"mnuFileItem(1)", Qt::CTRL | Qt::Key_O},
    EntryKey{"mnuFileItem(4)", Qt::CTRL | Qt::Key_S},
    EntryKey{"mnuFileItem(5)", Qt::CTRL | Qt::SHIFT | Qt::Key_S},
    EntryKey{"mnuReports", Qt::CTRL | Qt::Key_P},
    EntryKey{"mnuHelpItm(0)", QKeyCombination{Qt::Key_F1}},
};

constexpr std::array k_bar{
    Entry{"mnuFile", "", "&File", 3, Command::None, nullptr, true},
    Entry{"mnuEdit", "", "Ed&it", 48, Command::None, &ShellState::edit_menu},
    Entry{"mnuOpt", "", "&Options", 49, Command::None, nullptr, true},
    Entry{"mnuData", "", "Da&ta", 50},
    Entry{"mnuRun", "", "&Run", 51, Command::None, &ShellState::run_menu, true},
    Entry{"mnuTools", "", "Too&ls", 52, Command::None, &ShellState::tools_menu, true},
};

constexpr std::array k_entries{
    Entry{"mnuFileItem(0)", "mnuFile", "&New", 0, Command::New},
    Entry{"mnuFileItem(1)", "mnuFile", "&Open", 1, Command::Open},
    Entry{"mnuFileItem(2)", "mnuFile", "&Import", 2, Command::Import},
    Entry{"mnuFileItem(3)", "mnuFile", nullptr, 3},
    Entry{"mnuFileItem(4)", "mnuFile", "&Save", 4, Command::Save, &ShellState::save},
    Entry{"mnuFileItem(5)", "mnuFile", "Save &As ...", 5, Command::SaveAs, &ShellState::save_as},
    Entry{"mnuFileItem(6)", "mnuFile", nullptr, 6},
    Entry{"mnuFileItem(7)", "mnuFile", "&Page Setup", 7, Command::PageSetup},
    Entry{"mnuFileItem(8)", "mnuFile", nullptr, 8},
    Entry{"mnuFileItem(9)", "mnuFile", "E&xit", 9, Command::Exit},
    Entry{"mnuFileArray(0)", "mnuFile", nullptr, 10},
    Entry{"mnuEditItem(0)", "mnuEdit", "Cu&t", 31, Command::Cut},
    Entry{"mnuEditItem(1)", "mnuEdit", "&Copy", 32, Command::Copy},
    Entry{"mnuEditItem(2)", "mnuEdit", "&Paste", 33, Command::Paste},
    Entry{"mnuEditItem(3)", "mnuEdit", nullptr, 34},
    Entry{"mnuEditItem(4)", "mnuEdit", "&Insert", 35},
    Entry{"mnuEditItmInsert(0)", "mnuEditItem(4)", "&Row", 35, Command::InsertRow},
    Entry{"mnuEditItmInsert(1)", "mnuEditItem(4)", "&Column", 35},
    Entry{"mnuEditItem(5)", "mnuEdit", "&Delete", 36},
    Entry{"mnuEditItmDelete(0)", "mnuEditItem(5)", "&Row", 36, Command::DeleteRow},
    Entry{"mnuEditItmDelete(1)", "mnuEditItem(5)", "&Column", 36},
    Entry{"mnuOptItem(0)", "mnuOpt", "&Run year-round simulations in 'No Snow' mode", 37, Command::NoSnow},
    Entry{"mnuOptItem(1)", "mnuOpt", nullptr, 38},
    Entry{"mnuOptItem(2)", "mnuOpt", nullptr, 38},
    Entry{"mnuOptItem(3)", "mnuOpt", "Melting Procedure", 38},
    Entry{"mnuOptSubItem(0)", "mnuOptItem(3)", "Temperature", 39, Command::MeltTemperature},
    Entry{"mnuOptSubItem(1)", "mnuOptItem(3)", "Temperature/Radiation", 40, Command::MeltRadiation},
    Entry{"mnuOptItem(4)", "mnuOpt", nullptr, 41},
    Entry{"mnuOptItem(5)", "mnuOpt", "&Clear Recent Files", 41, Command::ClearRecent},
    Entry{"mnuDataOpt(0)", "mnuData", "&Simulation Definition", 11, Command::SimulationDefinition,
          &ShellState::simulation_definition},
    Entry{"mnuDataOpt(1)", "mnuData", nullptr, 12},
    Entry{"mnuDataOpt(2)", "mnuData", "&Climate Change Scenario Definition", 13, Command::Scenarios,
          &ShellState::scenario_definition},
    Entry{"mnuDataOpt(3)", "mnuData", nullptr, 14},
    Entry{"mnuDataOpt(4)", "mnuData", "&Variables", 15, Command::None, &ShellState::variables},
    Entry{"mnuDataOptVar(0)", "mnuDataOpt(4)", "&Period of record", 46, Command::VariablesOfRecord,
          &ShellState::variables_of_record},
    Entry{"mnuDataOptVar(1)", "mnuDataOpt(4)", "&Current simulation", 47, Command::VariablesOfSimulation,
          &ShellState::variables_of_simulation},
    Entry{"mnuDataOpt(5)", "mnuData", "&Parameters", 16, Command::Parameters, &ShellState::parameters},
    Entry{"mnuDataOpt(6)", "mnuData", nullptr, 17},
    Entry{"mnuDataOpt(7)", "mnuData", "&Results", 18, Command::ResultsTable},
    Entry{"mnuRunSim", "mnuRun", "&Simulation", 19, Command::None, &ShellState::run_simulation},
    Entry{"mnuRunSimVar(0)", "mnuRunSim", "&Melt Season Simulation", 20, Command::MeltSeasonSimulation,
          &ShellState::melt_season},
    Entry{"mnuRunSimVar(1)", "mnuRunSim", "&Year round Simulation", 21, Command::YearRoundSimulation},
    Entry{"mnuRunFor", "mnuRun", "&Forecast", 22, Command::None, &ShellState::run_forecast},
    Entry{"mnuRunForVar(0)", "mnuRunFor", "&Melt Season Forecast", 23, Command::MeltSeasonForecast,
          &ShellState::melt_season},
    Entry{"mnuRunForVar(1)", "mnuRunFor", "&Year round Forecast", 24, Command::YearRoundForecast},
    Entry{"mnuRunSep1", "mnuRun", nullptr, 25},
    Entry{"mnuRunClim", "mnuRun", "C&limate Change", 25, Command::ClimateRun, &ShellState::run_climate},
    Entry{"mnuToolsItm(0)", "mnuTools", "&Calculate Long-term Monthly Averages", 26,
          Command::LongTermAverages, &ShellState::long_term_averages},
    Entry{"mnuToolsItm(1)", "mnuTools", nullptr, 27},
    Entry{"mnuToolsItm(2)", "mnuTools", "Convert from Metric to English", 27, Command::Convert},
    Entry{"mnuToolsItm(3)", "mnuTools", nullptr, 27},
    Entry{"mnuToolsItm(4)", "mnuTools", "&Define a custom time lag distribution for the basin", 28,
          Command::TimeLag},
    Entry{"mnuToolsItm(5)", "mnuTools", "&More ...", 54},
    Entry{"mnuRuns", "mnuToolsItm(5)", "&Runs", 55, Command::Runs},
    Entry{"mnuCheckData", "mnuToolsItm(5)", "&Check data", 56, Command::CheckData},
    Entry{"mnuImportTable", "mnuToolsItm(5)", "&Import a table ...", 57, Command::ImportTable},
    Entry{"mnuExportTable", "mnuToolsItm(5)", "&Export a table ...", 58, Command::ExportTable},
    Entry{"mnuWinGraphics", "", "&Graphics", 29, Command::Graphics, &ShellState::graphics},
    Entry{"mnuReports", "", "&Reports", 30, Command::Reports, &ShellState::reports},
    Entry{"mnuHelpItm(0)", "mnuHelp", "&Help for Nivora main window", 42, Command::Help},
    Entry{"mnuHelpItm(1)", "mnuHelp", "Show Nivora &Welcome", 43, Command::Welcome},
    Entry{"mnuHelpItm(2)", "mnuHelp", nullptr, 43},
    Entry{"mnuHelpItm(3)", "mnuHelp", "&About NVR for Windows", 44, Command::About},
    Entry{"mnuHelpItm(4)", "mnuHelp", "&System Information", 45, Command::SystemInformation},
};

/// Places what follows a separator at the right end of the bar.
class RightEndStyle : public QProxyStyle {
public:
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* data) const override {
        return hint == SH_DrawMenuBarSeparator ? 1 : QProxyStyle::styleHint(hint, option, widget, data);
    }
};

/// An icon of a sheet of paper with its margins.
QIcon page_picture() {
    QIcon icon;
    for (const int size : {16, 32, 64}) {
        QPixmap picture(size, size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        const double unit = size / 16.0;
        painter.fillRect(QRectF(3 * unit, unit, 10 * unit, 14 * unit), QColor(96, 110, 124));
        painter.fillRect(QRectF(4 * unit, 2 * unit, 8 * unit, 12 * unit), Qt::white);
        for (int line = 0; line < 4; ++line) {
            painter.fillRect(QRectF(5.5 * unit, (4 + 2 * line) * unit, 5 * unit, unit),
                             QColor(120, 150, 190));
        }
        icon.addPixmap(picture);
    }
    return icon;
}

bool opens_menu(const char* name) {
    const std::string_view wanted{name};
    return std::any_of(k_entries.begin(), k_entries.end(),
                       [&](const Entry& entry) { return std::string_view{entry.parent} == wanted; });
}

}  // namespace

MainMenu::MainMenu(QMenuBar* bar, Session& session, QObject* parent) : QObject(parent), session_(session) {
    make_menus(bar);
    make_recent_entries();
    // Nobody sees the pictures before the menu opens, and the first window need not wait for them.
    connect(
        menus_.at(QStringLiteral("mnuFile")), &QMenu::aboutToShow, this,
        [this, bar] {
            const BuiltInIcons icons;
            add_pictures(*bar->style());
        },
        Qt::SingleShotConnection);
    auto* procedures = new QActionGroup(this);
    for (const char* name : {"mnuOptSubItem(0)", "mnuOptSubItem(1)"}) {
        QAction* procedure = action(QString::fromUtf8(name));
        procedure->setCheckable(true);
        procedures->addAction(procedure);
    }
    action(QStringLiteral("mnuOptSubItem(0)"))->setChecked(true);
    action(QStringLiteral("mnuOptItem(0)"))->setCheckable(true);
    connect(menus_.at(QStringLiteral("mnuRun")), &QMenu::aboutToShow, this,
            [this] { emit chosen(Command::OpeningRun); });
}

void MainMenu::make_menus(QMenuBar* bar) {
    const auto named = [this](QAction* action, const Entry& entry) {
        action->setObjectName(QString::fromUtf8(entry.name));
        action->setProperty("helpMenu", entry.help);
        actions_[action->objectName()] = action;
        if (entry.command != Command::None) {
            connect(action, &QAction::triggered, this,
                    [this, command = entry.command] { emit chosen(command); });
        }
    };
    const auto add_menu = [&](const Entry& entry, QWidget* where) {
        auto* menu = new QMenu(QString::fromUtf8(entry.caption), where);
        menu->setObjectName(QString::fromUtf8(entry.name));
        menus_[menu->objectName()] = menu;
        where->addAction(menu->menuAction());
        named(menu->menuAction(), entry);
    };
    auto* style = new RightEndStyle;
    style->setParent(bar);
    bar->setStyle(style);
    for (const Entry& entry : k_bar) add_menu(entry, bar);
    for (const Entry& entry : k_entries) {
        const QString parent = QString::fromUtf8(entry.parent);
        if (parent == QStringLiteral("mnuHelp") && !menus_.contains(parent)) {
            bar->addSeparator();
            add_menu({"mnuHelp", "", "&Help", 53}, bar);
        }
        QWidget* where = parent.isEmpty() ? static_cast<QWidget*>(bar) : menus_.at(parent);
        if (entry.caption != nullptr && opens_menu(entry.name)) {
            add_menu(entry, where);
            continue;
        }
        auto* action =
            new QAction(entry.caption != nullptr ? QString::fromUtf8(entry.caption) : QString{}, this);
        action->setSeparator(entry.caption == nullptr);
        where->addAction(action);
        named(action, entry);
    }
}

void MainMenu::add_keys(NivoraWindow& window) {
    for (const EntryKey& key : k_keys) add_key(window, key.keys, *action(QString::fromUtf8(key.entry)));
}

void MainMenu::open(const QString& menu) {
    QMenu* opened = menus_.at(menu);
    auto* bar = qobject_cast<QMenuBar*>(opened->parentWidget());
    if (bar == nullptr || !can_be_chosen(*opened->menuAction())) return;
    opened->popup(bar->mapToGlobal(bar->actionGeometry(opened->menuAction()).bottomLeft()));
}

void MainMenu::add_pictures(const QStyle& style) {
    action(QStringLiteral("mnuFileItem(1)"))->setIcon(style.standardIcon(QStyle::SP_DialogOpenButton));
    action(QStringLiteral("mnuFileItem(4)"))->setIcon(style.standardIcon(QStyle::SP_DialogSaveButton));
    action(QStringLiteral("mnuFileItem(7)"))->setIcon(page_picture());
}

void MainMenu::make_recent_entries() {
    QMenu* file = menus_.at(QStringLiteral("mnuFile"));
    for (std::size_t entry = 1; entry <= k_most_recent_files; ++entry) {
        QAction* action = file->addAction(QString{}, this, [this, entry] { emit recent_chosen(entry); });
        action->setObjectName(QStringLiteral("mnuFileArray(%1)").arg(entry));
        action->setProperty("helpMenu", 11);
        actions_[action->objectName()] = action;
    }
}

void MainMenu::name_row_items(bool simulations) {
    action(QStringLiteral("mnuEditItmInsert(0)"))
        ->setText(simulations ? QStringLiteral("Add Simulation") : QStringLiteral("Add ..."));
    action(QStringLiteral("mnuEditItmDelete(0)"))
        ->setText(simulations ? QStringLiteral("Delete Simulation") : QStringLiteral("Delete ..."));
}

QAction* MainMenu::action(const QString& name) const {
    const auto found = actions_.find(name);
    return found == actions_.end() ? nullptr : found->second;
}

QString MainMenu::melting_procedure() const {
    QAction* first = action(QStringLiteral("mnuOptSubItem(0)"));
    return first->isChecked() ? first->text() : action(QStringLiteral("mnuOptSubItem(1)"))->text();
}

void MainMenu::refresh() {
    const ShellState& shell = session_.shell;
    const auto enable = [&](const Entry& entry) {
        if (entry.enabled == nullptr && !entry.shut_by_evaluation) return;
        const bool shut = entry.shut_by_evaluation && shell.climate_window;
        action(QString::fromUtf8(entry.name))
            ->setEnabled((entry.enabled == nullptr || shell.*entry.enabled) && !shut);
    };
    for (const Entry& entry : k_bar) enable(entry);
    for (const Entry& entry : k_entries) enable(entry);
    action(QStringLiteral("mnuDataOpt(7)"))->setEnabled(session_.run.results_enabled);
    action(QStringLiteral("mnuRun"))->setText(to_qt(shell.run_caption));
    action(QStringLiteral("mnuOptItem(0)"))->setChecked(session_.run.NoSnow);
    const auto& recent = session_.settings.recent_files;
    action(QStringLiteral("mnuFileArray(0)"))->setVisible(!recent.empty());
    for (std::size_t entry = 1; entry <= k_most_recent_files; ++entry) {
        QAction* item = action(QStringLiteral("mnuFileArray(%1)").arg(entry));
        item->setVisible(entry <= recent.size());
        if (entry <= recent.size()) item->setText(to_qt(doubled_ampersands(recent[entry - 1])));
    }
}

}  // namespace nivora
