// The desktop program of Nivora.

#include "base/program_lock.h"
#include "base/version.h"
#include "shell/frmNVR.h"
#include "shell/frmSplash.h"
#include "shell/settings_store.h"
#include "widgets/built_in_icons.h"
#include "widgets/desktop_dialogs.h"
#include "widgets/desktop_printers.h"
#include "widgets/printing.h"
#include "widgets/qt_text.h"

#include <QApplication>
#include <QDir>
#include <fstream>
#include <optional>

namespace {

/// Whether files can be created beside the program: 0, or the number of the error.
int write_test(const std::filesystem::path& program_folder) {
    const auto path = program_folder / "test";
    {
        std::ofstream file{path};
        if (!file) return errno == 0 ? EACCES : errno;
    }
    std::error_code ignored;  // a test file that can't be removed does not prevent the start
    std::filesystem::remove(path, ignored);
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    using namespace nivora;
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Nivora"));
    QApplication::setApplicationVersion(QString::fromUtf8(k_version));
    const QString folder = QApplication::applicationDirPath();
    const std::filesystem::path program_folder = QDir(folder).filesystemAbsolutePath();

    DesktopDialogs dialogs;
    const auto store = user_settings();
    if (const int number = write_test(program_folder); number > 0) {
        dialogs.stop(
            "You must have 'Modify' permission on the Tarnlog-7 startup subdirectory in order to run the "
            "program.  Contact the administrator of you computer to modify your permissions.",
            "Tarnlog-7 cannot run, insufficient permission level (Error code  " + std::to_string(number) +
                ")");
        return 1;
    }

    Desktop desktop;
    Session session{dialogs, desktop};
    session.settings = Load_Settings(*store);
    session.runs.keep_in(runs_file());
    QuickHelp quick_help;
    DesktopPrinters printers;
    Printing printing(session, printers);
    std::optional<BuiltInIcons> icons{std::in_place};  // until the window is made
    frmNVR window({session, quick_help, program_folder, printing});
    icons.reset();
    window.answer(desktop);

    if (session.settings.show_splash) {
        frmSplash splash(session, true);
        splash.exec();
        if (splash.leaves()) {
            Save_Settings(*store, session.settings);
            return 0;
        }
    }
    const ProgramLock lock(program_folder / "nivora.lock");
    if (!lock.is_held()) {
        dialogs.stop("Nivora already running!", "Duplicate instances of Nivora not allowed!");
        return 1;
    }
    const int status = window.start() ? QApplication::exec() : 0;
    Save_Settings(*store, session.settings);
    store->sync();
    Save_Recent_Files(*application_settings(), session.settings);
    return status;
}
