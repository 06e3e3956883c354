#include "shell/settings_store.h"

#include "tests/support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nivora {
namespace {

class SettingsStoreTest : public testing::Test {
protected:
    [[nodiscard]] QString file() const { return QString::fromStdString((folder_ / "settings.ini").string()); }

    Settings saved_and_read(const Settings& settings) {
        {
            QSettings store(file(), QSettings::IniFormat);
            Save_Settings(store, settings);
        }
        QSettings store(file(), QSettings::IniFormat);
        return Load_Settings(store);
    }

    TemporaryFolder folder_;
};

TEST_F(SettingsStoreTest, ACleanUserGetsTheWelcomeWindowAndNoRecentFiles) {
    QSettings store(file(), QSettings::IniFormat);
    const Settings settings = Load_Settings(store);
    EXPECT_TRUE(settings.show_splash);
    EXPECT_TRUE(settings.recent_files.empty());
    EXPECT_EQ(settings.lines, default_lines());
    EXPECT_FALSE(settings.quick_help_back.has_value());
}

TEST_F(SettingsStoreTest, EveryKeptValueIsReadBack) {
    Settings settings;
    settings.show_splash = false;
    settings.page.margins = {0.5F, 1.25F, 0.75F, 1.0F};
    settings.page.orientation = 2;
    settings.quick_help_fore = 128;
    settings.quick_help_back = 0xFFFFE0;
    settings.places[3].top = 40;
    settings.places[3].left = -12;
    settings.lines[14] = {2, 255, 3, 4};
    settings.recent_files = {"/b/Ötztal #1 100%.mdb", "/a/x y.mdb"};
    settings.columns = {{"Results", "Date -TMax ActualQ"}, {"Variables", ""}};
    const Settings read = saved_and_read(settings);
    EXPECT_EQ(read.columns, (std::map<std::string, std::string>{{"Results", "Date -TMax ActualQ"}}));
    EXPECT_FALSE(read.show_splash);
    EXPECT_EQ(read.page.margins, settings.page.margins);
    EXPECT_EQ(read.page.orientation, 2);
    EXPECT_EQ(read.quick_help_fore, 128);
    EXPECT_EQ(read.quick_help_back, 0xFFFFE0);
    EXPECT_EQ(read.places[3].top, 40);
    EXPECT_EQ(read.places[3].left, -12);
    EXPECT_EQ(read.lines, settings.lines);
    EXPECT_EQ(read.recent_files, settings.recent_files);
}

TEST_F(SettingsStoreTest, TheSizeOfAWindowIsKeptBesideItsPlace) {
    Settings settings;
    settings.places[1] = {.top = 1, .left = 2, .height = 300, .width = 400};
    const Settings read = saved_and_read(settings);
    EXPECT_EQ(read.places[1].height, 300);
    EXPECT_EQ(read.places[1].width, 400);
    QSettings store(file(), QSettings::IniFormat);
    EXPECT_EQ(store.value(QStringLiteral("Startup/Form#1 Height:")).toInt(), 300);
    EXPECT_EQ(store.value(QStringLiteral("Startup/Form#1 Width:")).toInt(), 400);
}

TEST_F(SettingsStoreTest, PaperAndUnitAreKept) {
    Settings settings;
    settings.page.paper = "A3";
    settings.page.unit = "in";
    const Settings read = saved_and_read(settings);
    EXPECT_EQ(read.page.paper, "A3");
    EXPECT_EQ(read.page.unit, "in");
}

TEST_F(SettingsStoreTest, TheSixteenthLineAndTheFifteenthWindowAreNotKept) {
    Settings settings;
    settings.lines[15].width = 9;
    settings.places[15].top = 7;
    const Settings read = saved_and_read(settings);
    EXPECT_EQ(read.lines[15].width, 1);
    EXPECT_FALSE(read.places[15].top.has_value());
}

TEST_F(SettingsStoreTest, TheSpareItemIsWrittenUnderOneNameAndReadUnderAnother) {
    Settings settings;
    settings.extra = "spare";
    EXPECT_EQ(saved_and_read(settings).extra, "");
    QSettings store(file(), QSettings::IniFormat);
    EXPECT_EQ(store.value(QStringLiteral("Startup/mExtra:")).toString(), QStringLiteral("spare"));
}

TEST_F(SettingsStoreTest, ValuesHaveTheirNames) {
    Settings settings;
    settings.places[2].top = 5;
    settings.recent_files = {"/a.mdb"};
    saved_and_read(settings);
    QSettings store(file(), QSettings::IniFormat);
    EXPECT_EQ(store.value(QStringLiteral("Startup/SplashScreen:")).toInt(), 1);
    EXPECT_EQ(store.value(QStringLiteral("Startup/Form#2 Top:")).toInt(), 5);
    EXPECT_EQ(store.value(QStringLiteral("Startup/Line#1 1:")).toInt(), 128);
    EXPECT_EQ(store.value(QStringLiteral("Recent Files/1")).toString(), QStringLiteral("/a.mdb"));
}

TEST_F(SettingsStoreTest, ARecentFileThatIsRemovedFromTheListIsRemovedFromTheStore) {
    Settings settings;
    settings.recent_files = {"/a.mdb", "/b.mdb"};
    saved_and_read(settings);
    settings.recent_files = {"/a.mdb"};
    EXPECT_EQ(saved_and_read(settings).recent_files, (std::vector<std::string>{"/a.mdb"}));
}

TEST_F(SettingsStoreTest, AnInvalidValueInAnEditedFileGivesItsDefault) {
    folder_.write(
        "settings.ini",
        "[Startup]\nSplashScreen%3A=0\nmLeft%3A=wide\nmTop%3A=-3\nQHelpFor%3A=red\nForm%231%20Top%3A=\n"
        "Line%231%200%3A=dashed\n[Recent%20Files]\n1=/a.mdb\n3=/c.mdb\n");
    QSettings store(file(), QSettings::IniFormat);
    const Settings settings = Load_Settings(store);
    EXPECT_FALSE(settings.show_splash);
    EXPECT_EQ(settings.page.margins[0], 0.0F);
    EXPECT_EQ(settings.page.margins[1], 0.0F);
    EXPECT_FALSE(settings.quick_help_fore.has_value());
    EXPECT_FALSE(settings.places[1].top.has_value());
    EXPECT_EQ(settings.lines[0].style, 0);
    EXPECT_EQ(settings.recent_files, (std::vector<std::string>{"/a.mdb"}));
}

TEST_F(SettingsStoreTest, WithoutTheWelcomeSettingNoOtherIsRead) {
    Settings settings;
    settings.page.margins = {0.5F, 1.25F, 0.75F, 2.0F};
    settings.quick_help_fore = 128;
    settings.places[3].top = 40;
    settings.lines[2].width = 5;
    saved_and_read(settings);
    QSettings store(file(), QSettings::IniFormat);
    store.remove(QStringLiteral("Startup/SplashScreen:"));
    const Settings read = Load_Settings(store);
    EXPECT_TRUE(read.show_splash);
    EXPECT_EQ(read.page.margins, PageSetup{}.margins);
    EXPECT_FALSE(read.quick_help_fore.has_value());
    EXPECT_FALSE(read.places[3].top.has_value());
    EXPECT_EQ(read.lines, default_lines());
}

TEST_F(SettingsStoreTest, AFileThatIsNotASettingsFileGivesTheDefaults) {
    folder_.write("settings.ini", std::string("\x00\xff\x13[[[==\n\n[Star", 14));
    QSettings store(file(), QSettings::IniFormat);
    EXPECT_TRUE(Load_Settings(store).show_splash);
}

TEST_F(SettingsStoreTest, TheProgramsOwnStoreHoldsTheRecentFilesOfTheLastExitAlone) {
    QSettings store(file(), QSettings::IniFormat);
    Settings settings;
    settings.recent_files = {"/data/b.mdb", "/data/a.mdb"};
    Save_Recent_Files(store, settings);
    EXPECT_EQ(store.value(QStringLiteral("Recent Files/1")).toString(), QStringLiteral("/data/b.mdb"));
    EXPECT_EQ(store.value(QStringLiteral("Recent Files/2")).toString(), QStringLiteral("/data/a.mdb"));
    settings.recent_files.clear();
    Save_Recent_Files(store, settings);
    EXPECT_TRUE(store.allKeys().isEmpty());
}

}  // namespace
}  // namespace nivora
