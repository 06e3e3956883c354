#include "base/calendar.h"
#include "base/number_text.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <array>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <locale>
#include <sstream>
#include <string>

namespace nivora {
namespace {

/// Numbers as half of Europe writes them: 1.234.567,5
class CommaPunctuation : public std::numpunct<char> {
protected:
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

/// The C++ locale of the process for the time of a test.
class GlobalLocale {
public:
    explicit GlobalLocale(const std::locale& locale) : former_{std::locale::global(locale)} {}
    GlobalLocale(const GlobalLocale&) = delete;
    GlobalLocale& operator=(const GlobalLocale&) = delete;
    ~GlobalLocale() { std::locale::global(former_); }

private:
    std::locale former_;
};

/// The C locale of the process for the time of a test.
class ProcessLocale {
public:
    ProcessLocale() : former_{std::setlocale(LC_ALL, nullptr)} {}
    ProcessLocale(const ProcessLocale&) = delete;
    ProcessLocale& operator=(const ProcessLocale&) = delete;
    ~ProcessLocale() {
        std::setlocale(LC_ALL, former_.c_str());
#ifndef _WIN32
        if (made_) unsetenv("LOCPATH");
#endif
    }

    /// Sets a locale with a decimal comma, made here where the machine has none; false where that fails.
    [[nodiscard]] bool set_decimal_comma() { return set_installed() || (make_one() && set_installed()); }

private:
    [[nodiscard]] static bool set_installed() {
        constexpr std::array k_names{"de_DE.UTF-8", "de_DE.utf8",  "fr_FR.UTF-8", "es_ES.UTF-8",
                                     "it_IT.UTF-8", "nl_NL.UTF-8", "de-DE",       "German_Germany.1252"};
        for (const char* name : k_names) {
            if (std::setlocale(LC_ALL, name) != nullptr && *std::localeconv()->decimal_point == ',')
                return true;
        }
        return false;
    }

    [[nodiscard]] bool make_one() {
#ifdef _WIN32
        return false;
#else
        const std::string command =
            "localedef -i de_DE -f UTF-8 '" + (folder_ / "de_DE.UTF-8").string() + "' >/dev/null 2>&1";
        made_ = std::system(command.c_str()) == 0 && setenv("LOCPATH", folder_.path().c_str(), 1) == 0;
        return made_;
#endif
    }

    std::string former_;
    TemporaryFolder folder_;
    bool made_ = false;
};

void expect_points_everywhere() {
    EXPECT_EQ(single_text(1234567.0F), "1234567");
    EXPECT_EQ(single_text(0.5F), "0.5");
    EXPECT_EQ(single_text(12345678.0F), "1.234568E+07");
    EXPECT_EQ(double_text(1234.5), "1234.5");
    EXPECT_EQ(spaced_single_text(0.5F), " 0.5");
    EXPECT_EQ(shortest_text(0.1F), "0.1");
    EXPECT_EQ(shortest_text(1234.5), "1234.5");
    EXPECT_EQ(format_number(1234567.125, "0.00"), "1234567.13");
    EXPECT_EQ(format_number(0.0, ".#####"), ".");
    EXPECT_EQ(leading_number("1.5"), 1.5);
    EXPECT_EQ(leading_number("1,5"), 1.0);
    EXPECT_EQ(leading_number("1.234,5"), 1.234);
    EXPECT_EQ(exact_number("1.5"), 1.5);
    EXPECT_EQ(exact_number("1,5"), std::nullopt);
    EXPECT_EQ(long_date_text(36526), "01/01/2000");
    EXPECT_EQ(time_text(36526.75), "6:00:00 PM");
    EXPECT_EQ(read_date("1/1/2000"), 36526);
}

TEST(NumbersInALocaleWithADecimalComma, KeepTheirPointInTheLocaleOfTheLanguage) {
    const GlobalLocale comma{std::locale{std::locale::classic(), new CommaPunctuation}};
    std::ostringstream stream;
    stream << 1234567.5F;
    ASSERT_NE(stream.str().find(','), std::string::npos) << "the locale does not work: " << stream.str();
    expect_points_everywhere();
}

TEST(NumbersInALocaleWithADecimalComma, KeepTheirPointInTheLocaleOfTheSystem) {
    ProcessLocale locale;
    if (!locale.set_decimal_comma()) GTEST_SKIP() << "this machine has no locale with a decimal comma";
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), "%.1f", 0.5);
    ASSERT_STREQ(text.data(), "0,5");
    expect_points_everywhere();
}

}  // namespace
}  // namespace nivora
