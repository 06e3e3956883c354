// Locales with a decimal comma, set for the duration of a test.
#pragma once

#include "tests/support/temporary_folder.h"

#include <array>
#include <clocale>
#include <cstdlib>
#include <locale>
#include <string>

namespace nivora {

/// The C++ locale of the process, with numbers as half of Europe writes them: 1.234.567,5
class CommaLocale {
public:
    CommaLocale() : former_(std::locale::global(std::locale{std::locale::classic(), new Numbers})) {}
    CommaLocale(const CommaLocale&) = delete;
    CommaLocale& operator=(const CommaLocale&) = delete;
    ~CommaLocale() { std::locale::global(former_); }

private:
    struct Numbers : std::numpunct<char> {
        [[nodiscard]] char do_decimal_point() const override { return ','; }
        [[nodiscard]] char do_thousands_sep() const override { return '.'; }
        [[nodiscard]] std::string do_grouping() const override { return "\3"; }
    };
    std::locale former_;
};

/// The C locale of the process.
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

    /// Sets a locale with a decimal comma, created here if the machine has none; false if that fails.
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

}  // namespace nivora
