// What the help files say about the plot window: its rules ask for texts by number, and no element may go
// untold.

#include "base/durable_file.h"
#include "session/help_texts.h"
#include "tests/support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nivora {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

std::filesystem::path help_files() { return std::filesystem::path{NIVORA_SOURCE_DIR} / "data"; }
QuickHelpTexts plot_quick_help() { return Load_QuickHelp(help_files(), "frmNVRPlot"); }

TEST(PlotHelp, EachElementHasItsLineOfQuickHelp) {
    const std::vector<std::pair<int, std::string>> beginnings{
        {0, "Graphics:"},
        {1, "The plot."},
        {2, "Save As:"},
        {3, "Print:"},
        {4, "Copy to Clipboard:"},
        {5, "Zoom In:"},
        {6, "Zoom Out:"},
        {7, "Line Attributes:"},
        {8, "Grid Lines:"},
        {9, "Show data points:"},
        {11, "Select a plot from those currently available."},
        {13, "Zones to Plot:"},
        {15, "Maximum X for this plot:"},
        {17, "Maximum Y for this plot"},
        {19, "Redraw:"},
        {20, "Help:"},
        {21, "The 'QuickHelp' button"},
        {22, "Run summary:"},
        {29, "Legend:"},
        {34, "Status bar:"},
        {35, "X:"},
        {36, "Y:"},
        {37, "Done:"},
        {38, "'Quickhelp' window."},
        {41, "Runoff (Measured vs Computed):"},
        {63, "Comparison of Areal Water Equivalent:"}};
    const QuickHelpTexts texts = plot_quick_help();
    for (const auto& [line, beginning] : beginnings) EXPECT_THAT(texts.line(line), StartsWith(beginning));
}

TEST(PlotHelp, QuickHelpTellsOfWheelLabelKeysAndFileKinds) {
    const QuickHelpTexts texts = plot_quick_help();
    for (const char* key : {"Ctrl+C", "Ctrl+P", "Ctrl+S", "F5"}) EXPECT_THAT(texts.line(0), HasSubstr(key));
    EXPECT_THAT(texts.line(1), HasSubstr("wheel"));
    EXPECT_THAT(texts.line(1), HasSubstr("Shift"));
    EXPECT_THAT(texts.line(1), HasSubstr("rest near a curve"));
    EXPECT_THAT(texts.line(1), HasSubstr("Escape"));
    for (const char* kind : {".bmp", ".png", ".svg", ".pdf", ".txt", ".flx"})
        EXPECT_THAT(texts.line(2), HasSubstr(kind));
}

TEST(PlotHelp, TheTopicGraphicsTellsOfEachElementKeyAndFileKind) {
    constexpr int k_graphics = 18;
    const std::string topic = Help_Text(help_files(), k_graphics);
    for (const char* element : {"Save As.",
                                "Print.",
                                "Copy to Clipboard.",
                                "Zoom In.",
                                "Zoom Out.",
                                "Line Attributes.",
                                "Grid Lines.",
                                "Show data points.",
                                "Hide data points",
                                "Plot list.",
                                "Zone list.",
                                "Maximum X.",
                                "Maximum Y.",
                                "Redraw.",
                                "Help.",
                                "QuickHelp.",
                                "legend",
                                "run summary",
                                "status bar",
                                "mouse wheel",
                                "Shift with the wheel",
                                "label",
                                "Escape:",
                                "Ctrl+C:",
                                "Ctrl+P:",
                                "Ctrl+S:",
                                "F5:",
                                "(.bmp)",
                                "(.png)",
                                "(.svg)",
                                "(.pdf)",
                                "(.txt)",
                                "(.flx)",
                                "No points in the zoom area",
                                "Plots are not available during this climate change step!",
                                "The image is too large to fit"}) {
        EXPECT_THAT(topic, HasSubstr(element));
    }
}

TEST(PlotHelp, TheTopicLineAttributesTellsOfEachElement) {
    constexpr int k_line_attributes = 13;
    const std::string topic = Help_Text(help_files(), k_line_attributes);
    for (const char* element : {"Line Number:", "Line Style:", "Line Width: 1 to 10",
                                "Color:", "Fill Style:", "sample", "Done", "Cancel", "Help"})
        EXPECT_THAT(topic, HasSubstr(element));
}

TEST(PlotHelp, NoTextSaysThatTheWindowIsStillToCome) {
    EXPECT_THAT(file_bytes(help_files() / "NIVORAHelp.txt"), testing::Not(HasSubstr("not in this version")));
}

}  // namespace
}  // namespace nivora
