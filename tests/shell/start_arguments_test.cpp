// The command line of the desktop program.

#include "shell/start_arguments.h"

#include "base/build_details.h"
#include "base/version.h"
#include "shell/frmAbout.h"

#include <gmock/gmock.h>

#include <QPlainTextEdit>

namespace nivora {
namespace {

using testing::HasSubstr;

TEST(StartArgumentsTest, WithoutArgumentsNothingIsWanted) {
    const StartArguments read = read_start_arguments({});
    EXPECT_FALSE(read.file);
    EXPECT_EQ(read.problem, "");
    EXPECT_FALSE(wants_text_only({}));
}

TEST(StartArgumentsTest, AFileIsTakenAsItIsNamed) {
    EXPECT_EQ(read_start_arguments({"alder.mdb"}).file, "alder.mdb");
    EXPECT_EQ(read_start_arguments({"--", "--version"}).file, "--version");
    EXPECT_EQ(read_start_arguments({"-"}).file, "-");
    EXPECT_FALSE(wants_text_only({"--", "--version"}));
    const std::string longest(4096, 'x');
    EXPECT_EQ(read_start_arguments({longest}).file, longest);
}

TEST(StartArgumentsTest, WhatIsWrongIsSaid) {
    EXPECT_EQ(read_start_arguments({"a.mdb", "b.mdb"}).problem, "One file can be opened at a time.");
    EXPECT_EQ(read_start_arguments({""}).problem, "The name of the file is empty.");
    EXPECT_EQ(read_start_arguments({"--open"}).problem, "There is no option --open.");
    EXPECT_EQ(read_start_arguments({"--verbose"}).problem, "--verbose belongs to --version.");
}

TEST(StartArgumentsTest, TextsNeedNoDisplay) {
    EXPECT_TRUE(wants_text_only({"--version", "--verbose"}));
    EXPECT_TRUE(wants_text_only({"-h"}));
    EXPECT_TRUE(read_start_arguments({"--version", "--verbose"}).verbose);
    EXPECT_THAT(start_help(), HasSubstr("nivora [OPTIONS] [FILE.mdb]"));
}

TEST(StartArgumentsTest, TheDetailsNameEveryLibraryWithItsLicence) {
    const std::string details = version_details();
    EXPECT_THAT(details, HasSubstr(std::string{"Nivora "} + k_version + "\n"));
    for (const char* library :
         {"Qt ", "SQLite ", "SQLiteCpp", "fmt", "utf8proc", "CLI11", "nlohmann-json", "pagmo"}) {
        EXPECT_THAT(details, HasSubstr(std::string{"  "} + library));
    }
    EXPECT_THAT(details, HasSubstr("LGPL-3.0-only"));
    EXPECT_EQ(details.find("  0.0"), std::string::npos);
}

TEST(StartArgumentsTest, AboutTellsTheSameDetails) {
    const frmAbout about;
    const auto* details = about.findChild<QPlainTextEdit*>(QStringLiteral("details"));
    ASSERT_NE(details, nullptr);
    EXPECT_EQ(details->toPlainText().toStdString() + "\n", version_details());
    EXPECT_TRUE(details->isReadOnly());
}

}  // namespace
}  // namespace nivora
