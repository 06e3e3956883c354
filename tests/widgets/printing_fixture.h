// Prints of a small sheet, on a printer that records it or into files of a temporary folder.
#pragma once

#include "base/scripted_dialogs.h"
#include "reports/grid_pages.h"
#include "reports/print_texts.h"
#include "reports/report_pages.h"
#include "session/session.h"
#include "tests/support/recorded_printers.h"
#include "tests/support/temporary_folder.h"
#include "widgets/printing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QWidget>

namespace nivora {

/// The window is that of daily data, whose basin is alder.mdb in the folder of the test.
class PrintingTest : public testing::Test {
protected:
    PrintingTest() {
        window_.setObjectName(QStringLiteral("frmData"));
        session_.file_names.begin_in(folder_.path());
        session_.basin.Basin_File = folder_ / "alder.mdb";
        session_.basin.Work_File = folder_ / "new.mdb";
        sheet_ = {.header = "/lHeader",
                  .columns = {{"Date", PrintAlign::Left}, {"Runoff", PrintAlign::Right}},
                  .rows = {{"10/01/1980", "1.00"}, {"10/02/1980", "2.00"}},
                  .footer = k_grid_print_footer};
    }
    void TearDown() override {
        EXPECT_TRUE(dialogs_.complaints().empty()) << dialogs_.complaints().front();
        EXPECT_EQ(dialogs_.answers_left(), 0U);
    }

    bool print(const SheetsPrint& how = {}) {
        return printing_.print_sheets(&window_, std::span{&sheet_, 1}, how);
    }
    bool print_report(const std::string& text) { return printing_.print_report(&window_, {.text = text}); }
    /// Margins that leave four lines on a page.
    void leave_four_lines() {
        session_.settings.page.paper = "A4";
        session_.settings.page.margins = {1.0F, 6.0F, 1.0F, 5.2F};
    }
    void fill_rows(int count) {
        sheet_.rows.clear();
        for (int row = 0; row < count; ++row) sheet_.rows.push_back({"row " + std::to_string(row), "1"});
    }
    /// A report of numbered lines.
    static std::string numbered_lines(int count) {
        std::string text;
        for (int line = 1; line <= count; ++line) text += "line " + std::to_string(line) + "\r\n";
        return text;
    }
    [[nodiscard]] const Message& told() const { return dialogs_.messages().back().message; }
    [[nodiscard]] std::size_t messages() const { return dialogs_.messages().size(); }

    TemporaryFolder folder_;
    ScriptedDialogs dialogs_;
    Desktop desktop_;
    Session session_{dialogs_, desktop_};
    RecordedPrinters printers_;
    Printing printing_{session_, printers_};
    QWidget window_;
    PrintedSheet sheet_;
};

}  // namespace nivora
