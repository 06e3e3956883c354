// Reads and writes the user's settings in the platform's store.
#pragma once

#include "session/settings.h"

#include <QSettings>
#include <filesystem>

namespace nivora {

/// Reads the settings. If "SplashScreen:" is missing all keep their defaults; any other value that is
/// missing or invalid keeps its default.
[[nodiscard]] Settings Load_Settings(QSettings& store);

/// Replaces all settings.
void Save_Settings(QSettings& store, const Settings& settings);

/// The store of this user: the program's key, with the groups "Startup" and "Recent Files".
[[nodiscard]] std::unique_ptr<QSettings> user_settings();

/// Replaces the recent files in the program's default store. Intended: nothing reads them from there.
void Save_Recent_Files(QSettings& store, const Settings& settings);

/// The default store: application "Nivora".
[[nodiscard]] std::unique_ptr<QSettings> application_settings();

/// The file of the list of runs, in the folder of the default store.
[[nodiscard]] std::filesystem::path runs_file();

}  // namespace nivora
