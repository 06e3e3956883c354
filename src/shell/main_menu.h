// The menu bar of the main window.
#pragma once

#include "session/session.h"

#include <QObject>
#include <map>
#include <vector>

class QAction;
class QMenu;
class QMenuBar;
class QStyle;

namespace nivora {

class NivoraWindow;

/// The commands of the menu bar. None is for entries that open a menu.
enum class Command {
    None,
    New,
    Open,
    Save,
    SaveAs,
    PageSetup,
    Exit,
    Import,
    Cut,
    Copy,
    Paste,
    InsertRow,
    DeleteRow,
    DuplicateSimulation,
    RenameSimulation,
    ChangeParameter,
    Runs,
    CheckData,
    ImportTable,
    ExportTable,
    NoSnow,
    MeltTemperature,
    MeltRadiation,
    ClearRecent,
    SimulationDefinition,
    Scenarios,
    ClimateRun,
    Parameters,
    ResultsTable,
    VariablesOfRecord,
    VariablesOfSimulation,
    LongTermAverages,
    OpeningRun,
    MeltSeasonSimulation,
    YearRoundSimulation,
    MeltSeasonForecast,
    YearRoundForecast,
    Convert,
    TimeLag,
    Graphics,
    Reports,
    Help,
    Welcome,
    About,
    SystemInformation
};

class MainMenu : public QObject {
    Q_OBJECT

public:
    MainMenu(QMenuBar* bar, Session& session, QObject* parent);

    /// Updates captions, ticks and enabled entries from the session.
    void refresh();

    /// Gives entries their keys in the window of the bar.
    void add_keys(NivoraWindow& window);

    /// Opens a menu of the bar, such as "mnuRun", if it can be opened.
    void open(const QString& menu);

    /// Names the row items of the Edit menu after what they add and delete: simulations, or rows in general.
    void name_row_items(bool simulations);

    [[nodiscard]] QAction* action(const QString& name) const;
    /// The caption of the melting procedure that is ticked.
    [[nodiscard]] QString melting_procedure() const;

signals:
    void chosen(nivora::Command command);
    void recent_chosen(std::size_t entry);

private:
    void make_menus(QMenuBar* bar);
    void make_recent_entries();
    void add_pictures(const QStyle& style);

    Session& session_;
    std::map<QString, QAction*> actions_;
    std::map<QString, QMenu*> menus_;
};

}  // namespace nivora
