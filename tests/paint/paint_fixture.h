// PDF files of a test, and what a PDF reader finds in them.
#pragma once

#include "paint/paint_pages.h"
#include "tests/support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QGuiApplication>
#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>
#include <regex>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace nivora {

/// A word of a page with its box, in points from the upper left corner of the paper.
struct FoundWord {
    std::size_t page = 0;
    double left = 0.0, top = 0.0, right = 0.0, bottom = 0.0;
    std::string text = {};
};

/// What a command prints; a command that fails ends the test.
inline std::string output_of(const std::string& command) {
    std::FILE* pipe = ::popen((command + " 2>&1").c_str(), "r");
    if (pipe == nullptr) throw std::runtime_error("cannot start " + command);
    std::string output;
    std::array<char, 4096> block{};
    for (std::size_t count = 0; (count = std::fread(block.data(), 1, block.size(), pipe)) > 0;) {
        output.append(block.data(), count);
    }
    if (::pclose(pipe) != 0) throw std::runtime_error(command + ": " + output);
    return output;
}

/// The application of all tests, which need its fonts.
class PaintApplication : public testing::Environment {
public:
    void SetUp() override {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        application_ = std::make_unique<QGuiApplication>(count_, arguments_.data());
    }
    void TearDown() override { application_.reset(); }

private:
    std::string name_ = "paint_test";
    int count_ = 1;
    std::array<char*, 2> arguments_{name_.data(), nullptr};
    std::unique_ptr<QGuiApplication> application_;
};
inline testing::Environment* const k_application = testing::AddGlobalTestEnvironment(new PaintApplication);

class PaintTest : public testing::Test {
protected:
    PaintTest() {
        setup_.paper = "A4";
        setup_.orientation = 1;
    }

    [[nodiscard]] std::string quoted() const { return "'" + file_.string() + "'"; }

    [[nodiscard]] std::string info(const std::string& label) const {
        std::istringstream lines{output_of("pdfinfo " + quoted())};
        for (std::string line; std::getline(lines, line);) {
            if (line.starts_with(label + ":")) {
                return line.substr(std::min(line.size(), line.find_first_not_of(' ', label.size() + 1)));
            }
        }
        return {};
    }
    [[nodiscard]] std::size_t page_count() const { return std::stoul(info("Pages")); }

    /// The lines of a page, from 1, as they stand on paper.
    [[nodiscard]] std::vector<std::string> page_lines(std::size_t page) const {
        const std::string number = std::to_string(page);
        std::istringstream text{
            output_of("pdftotext -layout -f " + number + " -l " + number + " " + quoted() + " -")};
        std::vector<std::string> lines;
        for (std::string line; std::getline(text, line);) {
            line.erase(std::remove(line.begin(), line.end(), '\f'), line.end());
            lines.push_back(line);
        }
        return lines;
    }

    [[nodiscard]] std::vector<FoundWord> words() const {
        static const std::regex word{
            R"re(<word xMin="([-0-9.]+)" yMin="([-0-9.]+)" xMax="([-0-9.]+)" yMax="([-0-9.]+)">(.*)</word>)re"};
        std::istringstream text{output_of("pdftotext -bbox " + quoted() + " -")};
        std::vector<FoundWord> found;
        std::size_t page = 0;
        for (std::string line; std::getline(text, line);) {
            if (line.find("<page ") != std::string::npos) ++page;
            std::smatch match;
            if (!std::regex_search(line, match, word)) continue;
            found.push_back({page, std::stod(match[1]), std::stod(match[2]), std::stod(match[3]),
                             std::stod(match[4]), match[5]});
        }
        return found;
    }

    /// @param margin on all sides, points
    void expect_words_within(double width, double height, double margin) const {
        const auto found = words();
        EXPECT_FALSE(found.empty());
        for (const FoundWord& word : found) {
            EXPECT_GE(word.left, margin - 0.1) << word.text;
            EXPECT_LE(word.right, width - margin + 0.1) << word.text << " on page " << word.page;
            // A reader takes the box of a letter from the font, which may reach over its line by a little.
            EXPECT_GE(word.top, margin - 2.0) << word.text;
            EXPECT_LE(word.bottom, height - margin + 2.0) << word.text << " on page " << word.page;
        }
    }

    TemporaryFolder folder_;
    std::filesystem::path file_ = folder_ / "report.pdf";
    PageSetup setup_;
};

}  // namespace nivora
