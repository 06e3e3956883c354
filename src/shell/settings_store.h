// The user's settings between the session and the place where the platform keeps them.
#pragma once

#include "session/settings.h"

#include <QSettings>

namespace nivora {

/// Reads the settings. Where "SplashScreen:" is missing there are none, and the defaults stand; any other
/// value that is missing or can't be read keeps its default.
[[nodiscard]] Settings Load_Settings(QSettings& store);

/// Writes all settings anew.
void Save_Settings(QSettings& store, const Settings& settings);

/// The store of this user: the program's key, with the groups "Startup" and "Recent Files".
[[nodiscard]] std::unique_ptr<QSettings> user_settings();

/// Writes the recent files, without any that are there, into the store that every program has for itself;
/// nothing reads them there again.
void Save_Recent_Files(QSettings& store, const Settings& settings);

/// That store: application "Nivora".
[[nodiscard]] std::unique_ptr<QSettings> application_settings();

}  // namespace nivora
