#include "shell/settings_store.h"

#include "base/single.h"
#include "widgets/qt_text.h"

#include <QFileInfo>
#include <QStringList>

namespace nivora {
namespace {

constexpr int k_kept_lines = 15;

QString startup(const char* name) { return QStringLiteral("Startup/") + QString::fromUtf8(name); }

std::optional<std::int32_t> number(const QSettings& store, const QString& name) {
    bool read = false;
    const int value = store.value(name).toInt(&read);
    if (!read) return std::nullopt;
    return value;
}

QString place_name(std::size_t window, const char* side) {
    return startup("Form#") + QString::number(window) + QLatin1Char(' ') + QString::fromUtf8(side);
}

QString line_name(int line, int item) {
    return startup("Line#") + QString::number(line) + QStringLiteral(" %1:").arg(item);
}

void load_lines(const QSettings& store, LineTable& lines) {
    for (int line = 1; line <= k_kept_lines; ++line) {
        LineAttribute& attribute = lines.at(static_cast<std::size_t>(line - 1));
        attribute.style = number(store, line_name(line, 0)).value_or(attribute.style);
        attribute.colour = number(store, line_name(line, 1)).value_or(attribute.colour);
        attribute.width = number(store, line_name(line, 2)).value_or(attribute.width);
        attribute.fill = number(store, line_name(line, 3)).value_or(attribute.fill);
    }
}

void save_lines(QSettings& store, const LineTable& lines) {
    for (int line = 1; line <= k_kept_lines; ++line) {
        const LineAttribute& attribute = lines.at(static_cast<std::size_t>(line - 1));
        store.setValue(line_name(line, 0), attribute.style);
        store.setValue(line_name(line, 1), attribute.colour);
        store.setValue(line_name(line, 2), attribute.width);
        store.setValue(line_name(line, 3), attribute.fill);
    }
}

QString columns_group() { return startup("Columns"); }

void load_columns(QSettings& store, std::map<std::string, std::string>& columns) {
    store.beginGroup(columns_group());
    for (const QString& view : store.childKeys()) {
        const std::string kept = from_qt(store.value(view).toString());
        if (!kept.empty()) columns[from_qt(view)] = kept;
    }
    store.endGroup();
}

void save_columns(QSettings& store, const std::map<std::string, std::string>& columns) {
    for (const auto& [view, kept] : columns)
        if (!kept.empty()) store.setValue(columns_group() + QLatin1Char('/') + to_qt(view), to_qt(kept));
}

constexpr std::array<const char*, 4> k_margins{"mLeft:", "mTop:", "mRight:", "mBottom:"};

}  // namespace

Settings Load_Settings(QSettings& store) {
    Settings settings;
    const auto splash = number(store, startup("SplashScreen:"));
    if (!splash) return settings;
    settings.show_splash = *splash != 0;
    settings.page.printer = from_qt(store.value(startup("PrinterData:")).toString());
    for (std::size_t side = 0; side < k_margins.size(); ++side) {
        const float margin = store.value(startup(k_margins.at(side))).toFloat();
        if (margin >= 0.0F && margin < 100.0F) settings.page.margins.at(side) = margin;
    }
    settings.page.orientation = number(store, startup("mOrient:")).value_or(0);
    settings.page.paper = from_qt(store.value(startup("mPaper:")).toString());
    settings.page.unit = from_qt(store.value(startup("mUnit:")).toString());
    // Intended: written under another name, so that it is never read back.
    settings.extra = from_qt(store.value(startup("Extra2:")).toString());
    settings.quick_help_fore = number(store, startup("QHelpFor:"));
    settings.quick_help_back = number(store, startup("QHelpBak:"));
    for (std::size_t window = 1; window <= k_kept_windows; ++window) {
        settings.places.at(window).top = number(store, place_name(window, "Top:"));
        settings.places.at(window).left = number(store, place_name(window, "Left:"));
        settings.places.at(window).height = number(store, place_name(window, "Height:"));
        settings.places.at(window).width = number(store, place_name(window, "Width:"));
    }
    load_lines(store, settings.lines);
    load_columns(store, settings.columns);
    for (std::size_t entry = 1; entry <= k_most_recent_files; ++entry) {
        const QString file = store.value(QStringLiteral("Recent Files/%1").arg(entry)).toString();
        if (file.isEmpty()) break;
        settings.recent_files.push_back(from_qt(file));
    }
    return settings;
}

void Save_Settings(QSettings& store, const Settings& settings) {
    store.remove(QStringLiteral("Startup"));
    store.setValue(startup("SplashScreen:"), settings.show_splash ? 1 : 0);
    if (!settings.page.printer.empty()) store.setValue(startup("PrinterData:"), to_qt(settings.page.printer));
    for (std::size_t side = 0; side < k_margins.size(); ++side) {
        store.setValue(startup(k_margins.at(side)), as_double(settings.page.margins.at(side)));
    }
    store.setValue(startup("mOrient:"), settings.page.orientation);
    if (!settings.page.paper.empty()) store.setValue(startup("mPaper:"), to_qt(settings.page.paper));
    if (!settings.page.unit.empty()) store.setValue(startup("mUnit:"), to_qt(settings.page.unit));
    store.setValue(startup("mExtra:"), to_qt(settings.extra));
    if (settings.quick_help_fore) store.setValue(startup("QHelpFor:"), *settings.quick_help_fore);
    if (settings.quick_help_back) store.setValue(startup("QHelpBak:"), *settings.quick_help_back);
    for (std::size_t window = 1; window <= k_kept_windows; ++window) {
        const WindowPlace& place = settings.places.at(window);
        if (place.top) store.setValue(place_name(window, "Top:"), *place.top);
        if (place.left) store.setValue(place_name(window, "Left:"), *place.left);
        if (place.height) store.setValue(place_name(window, "Height:"), *place.height);
        if (place.width) store.setValue(place_name(window, "Width:"), *place.width);
    }
    save_lines(store, settings.lines);
    save_columns(store, settings.columns);
    Save_Recent_Files(store, settings);
}

void Save_Recent_Files(QSettings& store, const Settings& settings) {
    store.remove(QStringLiteral("Recent Files"));
    int entry = 1;
    for (const std::string& file : settings.recent_files) {
        store.setValue(QStringLiteral("Recent Files/%1").arg(entry++), to_qt(file));
    }
}

std::unique_ptr<QSettings> application_settings() {
    return std::make_unique<QSettings>(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("Nivora"),
                                       QStringLiteral("Nivora"));
}

std::filesystem::path runs_file() {
    return QFileInfo(application_settings()->fileName()).filesystemAbsolutePath() / "runs.list";
}

std::unique_ptr<QSettings> user_settings() {
#ifdef _WIN32
    return std::make_unique<QSettings>(
        QStringLiteral("HKEY_CURRENT_USER\\SOFTWARE\\Ambrel-Hollin\\Nivora\\Version 1.0"),
        QSettings::NativeFormat);
#else
    return std::make_unique<QSettings>(QSettings::IniFormat, QSettings::UserScope,
                                       QStringLiteral("Ambrel-Hollin"), QStringLiteral("Nivora/Version 1.0"));
#endif
}

}  // namespace nivora
