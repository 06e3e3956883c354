#include "session/settings.h"

#include <gtest/gtest.h>

namespace nivora {
namespace {

using Files = std::vector<std::string>;

Settings with_files(Files files) {
    Settings settings;
    settings.recent_files = std::move(files);
    return settings;
}

TEST(RecentFiles, ANewFileBecomesTheFirst) {
    Settings settings = with_files({"/a.mdb"});
    update_recent_files(settings, "/b.mdb");
    EXPECT_EQ(settings.recent_files, (Files{"/b.mdb", "/a.mdb"}));
}

TEST(RecentFiles, AKnownFileMovesToTheTopWithoutADuplicate) {
    Settings settings = with_files({"/a.mdb", "/b.mdb", "/c.mdb"});
    update_recent_files(settings, "/c.mdb");
    EXPECT_EQ(settings.recent_files, (Files{"/c.mdb", "/a.mdb", "/b.mdb"}));
}

TEST(RecentFiles, AFifthFilePushesOutTheOldest) {
    Settings settings = with_files({"/a.mdb", "/b.mdb", "/c.mdb", "/d.mdb"});
    update_recent_files(settings, "/e.mdb");
    EXPECT_EQ(settings.recent_files, (Files{"/e.mdb", "/a.mdb", "/b.mdb", "/c.mdb"}));
}

TEST(RecentFiles, TheTemplateNeverGetsThere) {
    Settings settings;
    update_recent_files(settings, "/program/null.mdb");
    EXPECT_TRUE(settings.recent_files.empty());
}

TEST(PlotLines, TheFifthLineIsPurpleAndDashDotDot) {
    // 128 + 0 x 256 + 128 x 65536 = 8388736
    EXPECT_EQ(default_lines()[4], (LineAttribute{4, 8388736, 1, 0}));
}

TEST(PlotLines, TheTenthLineIsADarkOlive) {
    // 90 + 90 x 256 = 23130
    EXPECT_EQ(default_lines()[9], (LineAttribute{4, 23130, 1, 0}));
}

TEST(PlotLines, AllLinesStartOnePixelWideAndSolidlyFilled) {
    for (const LineAttribute& line : default_lines()) {
        EXPECT_EQ(line.width, 1);
        EXPECT_EQ(line.fill, 0);
    }
}

}  // namespace
}  // namespace nivora
