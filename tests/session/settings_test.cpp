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

TEST(RecentFiles, AFifthFileReplacesTheOldest) {
    Settings settings = with_files({"/a.mdb", "/b.mdb", "/c.mdb", "/d.mdb"});
    update_recent_files(settings, "/e.mdb");
    EXPECT_EQ(settings.recent_files, (Files{"/e.mdb", "/a.mdb", "/b.mdb", "/c.mdb"}));
}

TEST(RecentFiles, TheTemplateIsNeverListed) {
    Settings settings;
    update_recent_files(settings, "/program/null.mdb");
    EXPECT_TRUE(settings.recent_files.empty());
}

}  // namespace
}  // namespace nivora
