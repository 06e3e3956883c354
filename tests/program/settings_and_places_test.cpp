// Settings that were truncated or edited by hand, and folders with names that users choose.

#include "base/durable_file.h"
#include "tests/program/running_nivora.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

class SettingsTest : public ProgramTest {
protected:
    void pass_welcome(StartedProgram& program) {
        ASSERT_TRUE(wait_until([&] { return !reader().windows(program.number()).empty(); }))
            << program.printed();
        if (reader().window(program.number(), k_welcome_title)) {
            click(program, k_welcome_title, "push button", "Start");
        }
        ASSERT_TRUE(await_window(program, k_main_title));
    }

    void leave(StartedProgram& program) {
        open_menu(program, "alt+f", "Exit");
        display().press({"x"});
        EXPECT_EQ(program.status(), 0) << program.printed();
    }
};

struct SettingsFile {
    const char* name;
    const char* content;
};

class HandEditedSettingsTest : public SettingsTest, public testing::WithParamInterface<SettingsFile> {};

TEST_P(HandEditedSettingsTest, DoNotPreventAStartAndAreRewritten) {
    const UserFolders folders;
    folders.write_settings(GetParam().content);
    const auto program = start(folders);
    ASSERT_NO_FATAL_FAILURE(pass_welcome(*program));
    // The window is on the screen, whatever position the settings contain.
    const auto window = reader().window(program->number(), k_main_title);
    ASSERT_TRUE(window);
    const auto middle = window->middle();
    EXPECT_TRUE(middle.x > 0 && middle.x < 1280 && middle.y > 0 && middle.y < 1024)
        << middle.x << ", " << middle.y;
    leave(*program);
    EXPECT_THAT(file_bytes(folders.settings_file()), HasSubstr("SplashScreen%3A="));
}

INSTANTIATE_TEST_SUITE_P(
    Settings, HandEditedSettingsTest,
    testing::Values(
        SettingsFile{"Empty", ""},
        SettingsFile{"CutInTheMiddle", "[Startup]\nSplashScreen%3A=0\nForm%231%20To"},
        SettingsFile{"Garbage", "\x01\x02\xff\xfe[[[[=\n\\x\\\"\n%%%zz=1\n\xc3\x28"},
        SettingsFile{"WordsForNumbers",
                     "[Startup]\nSplashScreen%3A=yes\nmLeft%3A=wide\nQHelpFor%3A=blue\n"
                     "Form%231%20Top%3A=high\nForm%231%20Left%3A=\nLine%231%200%3A=thick\n"},
        SettingsFile{"HugeNumbers",
                     "[Startup]\nSplashScreen%3A=0\nmLeft%3A=1e300\nmTop%3A=nan\nmRight%3A=-inf\n"
                     "Form%231%20Top%3A=2147483647\nForm%231%20Left%3A=-2147483648\n"
                     "Line%231%200%3A=99999999999999999999\nQHelpBak%3A=-1\n"},
        SettingsFile{"WrongTypes",
                     "[Startup]\nSplashScreen%3A=@ByteArray(\\0\\xff)\n"
                     "Form%231%20Top%3A=@Variant(\\0\\0\\0\\x7f\\xff\\xff)\nForm%231%20Left%3A=1, 2, 3\n"
                     "[Recent%20Files]\n1=@Invalid()\n2=a, b\n"},
        SettingsFile{"ManyRecentFiles",
                     "[Startup]\nSplashScreen%3A=0\n[Recent%20Files]\n1=/a\n2=/b\n3=/c\n4=/d\n5=/e\n"
                     "6=/f\n"}),
    [](const auto& tested) { return std::string{tested.param.name}; });

TEST_F(SettingsTest, ASettingsFileThatIsAFolderIsPassedOver) {
    const UserFolders folders;
    fs::create_directories(folders.settings_file());
    const auto program = start(folders);
    ASSERT_NO_FATAL_FAILURE(pass_welcome(*program));
    leave(*program);
}

/// A name that a user may give to the program folder, and the language of the machine.
struct Place {
    const char* name;
    const char* folder;
    const char* language;
};

class PlaceTest : public SettingsTest, public testing::WithParamInterface<Place> {};

TEST_P(PlaceTest, WorkForTheProgramAndItsBasins) {
    const UserFolders folders{GetParam().folder};
    const fs::path basin = folders.sample(std::string{GetParam().folder} + ".mdb");
    std::string stored = path_text(basin);  // as a settings file stores a text: with quotation marks escaped
    for (std::size_t at = 0; (at = stored.find('"', at)) != std::string::npos; at += 2)
        stored.insert(at, 1, '\\');
    folders.write_settings("[Startup]\nSplashScreen%3A=0\n[Recent%20Files]\n1=\"" + stored + "\"\n");
    const TemporaryFolder languages;
    Environment language{{"LC_ALL", GetParam().language}, {"LANG", GetParam().language}};
    if (const std::string name = GetParam().language; name != "C.UTF-8" && is_installed("localedef")) {
        // A machine may lack the language but can create it, so that both the C library and Qt write commas.
        const Finished made = run_program(
            {"localedef", "-i", name.substr(0, name.find('.')), "-f", "UTF-8", (languages / name).string()});
        EXPECT_EQ(made.status, 0) << made.printed;
        language["LOCPATH"] = languages.path().string();
    }
    const auto program = start(folders, language);
    ASSERT_NO_FATAL_FAILURE(pass_welcome(*program));
    EXPECT_TRUE(await(*program, k_main_title, "label", path_text(folders.program() / "null.mdb")));

    open_menu(*program, "alt+f", path_text(basin));
    ASSERT_FALSE(HasFailure());
    click(*program, k_main_title, "menu item", path_text(basin));
    ASSERT_TRUE(await(*program, k_main_title, "label", path_text(basin)));
    const auto elevation = await(*program, k_main_title, "text", "Latitude (dec):");
    ASSERT_TRUE(elevation);
    EXPECT_EQ(elevation->text(), "46.5") << "numbers have a point whatever the language";
    EXPECT_TRUE(await(*program, k_main_title, "label", "281.6"));

    const auto before = fs::last_write_time(basin);
    open_menu(*program, "alt+f", "Save");
    display().press({"s"});
    EXPECT_TRUE(wait_until([&] { return fs::last_write_time(basin) != before; })) << all_windows(*program);
    leave(*program);
    const Finished run = run_program(
        {NIVORA_PROGRAM_FOLDER "/nivora-batch", "run", path_text(basin), "--simulation", "ellervane-1996"});
    EXPECT_EQ(run.status, 0) << run.printed;
    const auto settings = file_bytes(folders.settings_file());
    EXPECT_THAT(settings, HasSubstr("[Recent%20Files]\n1="));
}

INSTANTIATE_TEST_SUITE_P(Places, PlaceTest,
                         testing::Values(Place{"SpacesAndSigns", "my basins #1, 100% (new); a=b", "C.UTF-8"},
                                         Place{"Quotes", "d'Arve \"la haute\" `x`", "fr_FR.UTF-8"},
                                         Place{"OtherLetters", "Ötztal – Река 水文", "de_DE.UTF-8"}),
                         [](const auto& tested) { return std::string{tested.param.name}; });

}  // namespace
}  // namespace nivora
