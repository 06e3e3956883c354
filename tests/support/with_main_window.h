// A main window for tests of windows, offscreen as well as on a display.
#pragma once

#include "shell/frmNVR.h"
#include "store/table_io.h"
#include "tests/support/recorded_printers.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/watched_dialogs.h"

#include <gtest/gtest.h>

#include <QAction>
#include <filesystem>
#include <memory>

namespace nivora {

/// Adds the main window to a test, in a program folder of its own, with a script for every box.
///
/// @tparam Base a test with a function `settle`, which lets the windows finish their work
template <typename Base>
class WithMainWindow : public Base {
protected:
    void TearDown() override {
        quick_help_.set_on(false);
        EXPECT_TRUE(dialogs_.complaints().empty()) << dialogs_.complaints().front();
        EXPECT_EQ(dialogs_.answers_left(), 0U);
    }

    void make_program_folder() {
        BasinDatabase::create_template(program_ / "null.mdb");
        for (const char* name : {"NIVORAHelp.txt", "quickhelp.txt", "climate_1.ss2"}) {
            std::filesystem::copy_file(std::filesystem::path{NIVORA_SOURCE_DIR} / "data" / name,
                                       program_ / name);
        }
    }
    void start_main_window() {
        window_ = std::make_unique<frmNVR>(WindowContext{session_, quick_help_, program_.path(), printing_});
        window_->answer(desktop_);
        window_->start();
    }

    template <typename Element>
    Element* find(const char* name) {
        auto* element = window_->findChild<Element*>(QString::fromUtf8(name));
        EXPECT_NE(element, nullptr) << name;
        return element;
    }
    void choose(const char* action) {
        find<QAction>(action)->trigger();
        Base::settle();
    }

    /// Opens the bundled sample basin as the user's file.
    std::filesystem::path open_sample() {
        const auto file = user_ / "ellervane.mdb";
        std::filesystem::copy_file(std::filesystem::path{NIVORA_PROGRAM_FOLDER} / "samples/ellervane.mdb",
                                   file);
        dialogs_.then_file(file);
        choose("mnuFileItem(1)");
        return file;
    }

    [[nodiscard]] const Message& last_message() const { return dialogs_.messages().back().message; }

    TemporaryFolder program_;
    TemporaryFolder user_;
    WatchedDialogs dialogs_;
    Desktop desktop_;
    Session session_{dialogs_, desktop_};
    QuickHelp quick_help_;
    RecordedPrinters printers_;
    Printing printing_{session_, printers_};
    std::unique_ptr<frmNVR> window_;
};

}  // namespace nivora
