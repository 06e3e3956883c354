// The desktop program of Nivora.

#include "base/build_details.h"
#include "base/durable_file.h"
#include "base/program_lock.h"
#include "base/version.h"
#include "session/hand_over.h"
#include "session/work_folder.h"
#include "shell/frmNVR.h"
#include "shell/frmSplash.h"
#include "shell/settings_store.h"
#include "shell/start_arguments.h"
#include "widgets/built_in_icons.h"
#include "widgets/desktop_dialogs.h"
#include "widgets/desktop_printers.h"
#include "widgets/printing.h"
#include "widgets/qt_text.h"

#include <QApplication>
#include <QDir>
#include <QIcon>
#include <QSocketNotifier>
#include <QTimer>
#include <cstdlib>
#include <iostream>
#include <optional>

namespace {

using namespace nivora;
namespace fs = std::filesystem;

constexpr int k_wrong_usage = 2;
/// The running program answers at once, except while it computes.
constexpr std::chrono::seconds k_patience{5};

int tell_usage(const StartArguments& arguments) {
    if (!arguments.problem.empty()) {
        std::cerr << arguments.problem << "\nRun nivora --help for more information.\n";
        return k_wrong_usage;
    }
    if (arguments.help) {
        std::cout << start_help();
    } else if (arguments.verbose) {
        std::cout << version_details();
    } else {
        std::cout << "Nivora " << k_version << '\n';
    }
    return std::cout.flush() ? 0 : 1;
}

/// The folder of the working file, ready for use; nothing after a message.
std::optional<WorkFolder> find_work_folder(const fs::path& program_folder, Dialogs& dialogs) {
    const FolderFacts facts = folder_facts(program_folder, user_places());
    const WorkFolder chosen = choose_work_folder(facts);
    std::string reason = "Nivora keeps its working file in your home folder, and you have none.";
    if (chosen.is_own) {
        try {
            prepare_own_folder(chosen.path, program_folder);
            return chosen;
        } catch (const FileError& error) {
            reason = error.what();
        }
    } else if (!chosen.path.empty()) {
        return chosen;
    }
    if (facts.installed) {
        dialogs.stop(reason, "Nivora cannot run");
        return std::nullopt;
    }
    dialogs.stop(
        "You must have 'Modify' permission on the Tarnlog-7 startup subdirectory in order to run the "
        "program.  Contact the administrator of you computer to modify your permissions.",
        "Tarnlog-7 cannot run, insufficient permission level (Error code  " +
            std::to_string(facts.write_error) + ")");
    return std::nullopt;
}

std::optional<fs::path> runtime_folder() {
    const char* folder = std::getenv("XDG_RUNTIME_DIR");
    if (folder == nullptr || *folder == '\0') return std::nullopt;
    return fs::path{folder};
}

/// Offers the file to a program that runs already. @return the exit status; nothing if none runs
std::optional<int> offer(const MeetingPlace& place, const fs::path& file, Dialogs& dialogs) {
    constexpr const char* k_title = "The basin was not opened";
    switch (hand_over(place, file, k_patience)) {
        case HandOver::NobodyThere: return std::nullopt;
        case HandOver::Taken: return 0;
        case HandOver::Busy:
            dialogs.stop(
                "Nivora is already running, and a window of it waits for an answer. Close that window, "
                "and open the file '" +
                    path_text(file) + "' again.",
                k_title);
            return 1;
        case HandOver::NoAnswer:
            dialogs.stop(
                "Nivora is already running, and does not answer at present; it may be computing. Open "
                "the file '" +
                    path_text(file) + "' again when it is done.",
                k_title);
            return 1;
    }
    return std::nullopt;
}

/// Opens the files that later starts offer.
void listen(const HandOverListener& listener, frmNVR& window) {
    if (listener.descriptor() < 0) return;
    auto* notifier = new QSocketNotifier(listener.descriptor(), QSocketNotifier::Read, &window);
    QObject::connect(notifier, &QSocketNotifier::activated, &window, [&listener, &window] {
        const auto files = listener.take([&window] {
            window.come_to_front();
            return window.can_open_file();
        });
        // After the answer, and outside of the notifier, which would call again during a question.
        for (const fs::path& file : files)
            QTimer::singleShot(0, &window, [&window, file] { window.open_file(file); });
    });
}

QIcon window_icon() {
    QIcon icon;
    for (const int size : {16, 32, 48, 128}) icon.addFile(QStringLiteral(":/nivora-%1.png").arg(size));
    return icon;
}

/// The program from the welcome window to its end.
int run(const fs::path& program_folder, const WorkFolder& work, const std::optional<fs::path>& file,
        DesktopDialogs& dialogs) {
    const auto store = user_settings();
    Desktop desktop;
    Session session{dialogs, desktop};
    session.settings = Load_Settings(*store);
    session.runs.keep_in(runs_file());
    QuickHelp quick_help;
    DesktopPrinters printers;
    Printing printing(session, printers);
    std::optional<BuiltInIcons> icons{std::in_place};  // until the window is made
    frmNVR window({session, quick_help, program_folder, printing, work.path});
    icons.reset();
    window.answer(desktop);
    if (work.is_own) session.file_names.show_first(QDir::home().filesystemAbsolutePath());

    if (session.settings.show_splash) {
        frmSplash splash(session, true);
        splash.exec();
        if (splash.leaves()) {
            Save_Settings(*store, session.settings);
            return 0;
        }
    }
    const MeetingPlace place = meeting_place(work.path, runtime_folder());
    const ProgramLock lock(work.path / "nivora.lock");
    if (!lock.is_held()) {
        // It may have started while this one showed its welcome.
        if (const auto status = file ? offer(place, *file, dialogs) : std::nullopt) return *status;
        dialogs.stop("Nivora already running!", "Duplicate instances of Nivora not allowed!");
        return 1;
    }
    const HandOverListener listener(place);
    int status = 0;
    if (window.start()) {
        listen(listener, window);
        if (file) QTimer::singleShot(0, &window, [&window, &file] { window.open_file(*file); });
        status = QApplication::exec();
    }
    Save_Settings(*store, session.settings);
    store->sync();
    Save_Recent_Files(*application_settings(), session.settings);
    return status;
}

}  // namespace

int main(int argc, char** argv) {
    if (const std::vector<std::string> all{argv + 1, argv + argc}; wants_text_only(all))
        return tell_usage(read_start_arguments(all));
    QApplication application(argc, argv);  // takes the options of Qt away
    QApplication::setApplicationName(QStringLiteral("Nivora"));
    QApplication::setApplicationVersion(QString::fromUtf8(k_version));
    QApplication::setDesktopFileName(QStringLiteral("org.example.nivora"));
    QApplication::setWindowIcon(window_icon());
    const StartArguments arguments = read_start_arguments({argv + 1, argv + argc});
    if (!arguments.problem.empty()) return tell_usage(arguments);
    const fs::path program_folder = QDir(QApplication::applicationDirPath()).filesystemAbsolutePath();

    DesktopDialogs dialogs;
    const auto work = find_work_folder(program_folder, dialogs);
    if (!work) return 1;
    std::optional<fs::path> file;
    if (arguments.file) {
        std::error_code gone;  // the current folder was removed: the name stays as it is, and is not found
        file = fs::absolute(*arguments.file, gone);
        if (gone) file = arguments.file;
        const MeetingPlace place = meeting_place(work->path, runtime_folder());
        if (const auto status = offer(place, *file, dialogs)) return *status;
    }
    return run(program_folder, *work, file, dialogs);
}
