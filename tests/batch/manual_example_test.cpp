// Checks the numbers and notes in the manual's climate example against the sample basin.

#include "tests/batch/batch_call.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

namespace nivora {
namespace {

using testing::HasSubstr;

class ManualExampleTest : public testing::Test {
protected:
    ManualExampleTest() {
        std::filesystem::copy_file(std::filesystem::path{NIVORA_PROGRAM_FOLDER} / "samples/ellervane.mdb",
                                   folder_ / "sample.mdb");
    }

    /// Evaluates a scenario with so many degrees and ten per cent of precipitation more.
    [[nodiscard]] nlohmann::json evaluate(const std::string& degrees,
                                          const std::string& first = "1997-10-01") {
        const std::string name = "warmer " + std::to_string(++scenarios_);
        printed({"scenario", file(), "--simulation", k_simulation, "--name", name, "--winter-end",
                 "1998-03-31", "--edit",
                 "Average Temperature:" + first + ":1998-09-30:Add/subtract to each:" + degrees + ":All",
                 "--edit", "Precipitation:" + first + ":1998-09-30:Multiply each:1.1:All"});
        return nlohmann::json::parse(
            printed({"climate", file(), "--simulation", k_simulation, "--scenario", name, "--json"}));
    }
    [[nodiscard]] static std::string summer(const nlohmann::json& result, const char* row) {
        return fmt::format("{:.2f}", result["summary"][row]["Summer"].get<double>());
    }
    [[nodiscard]] static std::vector<std::string> notes(const nlohmann::json& result) {
        std::vector<std::string> texts;
        for (const auto& note : result["notes"]) texts.push_back(note["text"].get<std::string>());
        return texts;
    }
    [[nodiscard]] std::string file() const { return (folder_ / "sample.mdb").string(); }

    static constexpr const char* k_simulation = "ellervane-1997-98";

    /// The manual's page in one line, without the marks of quoted lines.
    [[nodiscard]] static std::string page() {
        std::string text;
        for (const std::string& line : lines_of(
                 file_bytes(std::filesystem::path{NIVORA_SOURCE_DIR} / "docs/manual/15-climate-example.md")))
            text += (line.starts_with("> ") ? line.substr(2) : line) + " ";
        return text;
    }
    /// Expects the page to quote the first sentences of a note.
    static void expect_quoted(const std::string& note, int sentences) {
        std::size_t end = 0;
        for (int i = 0; i < sentences; ++i) end = note.find(". ", end + 1);
        EXPECT_THAT(page(), HasSubstr("\"" + note.substr(0, end + 1) + " ..."));
    }

    TemporaryFolder folder_;
    int scenarios_ = 0;
};

TEST_F(ManualExampleTest, TheSummersOfSevenWarmingsMatchItsTable) {
    std::string head = "| degrees |";
    std::string row = "| Climate affected, Summer |";
    for (const char* degrees : {"1", "1.5", "2", "2.4", "2.5", "3", "4"}) {
        const auto result = evaluate(degrees);
        head += std::string{" "} + degrees + " |";
        row += " " + summer(result, "ClimateAffected") + " |";
        if (std::string{degrees} == "2") {
            EXPECT_TRUE(notes(result).empty());
        }
        if (std::string{degrees} == "2.5") {
            ASSERT_EQ(notes(result).size(), 1U);
            expect_quoted(notes(result)[0], 2);
        }
    }
    EXPECT_THAT(page(), HasSubstr(head));
    EXPECT_THAT(page(), HasSubstr(row));
}

TEST_F(ManualExampleTest, ALateStartHasTheNoteAndTheNumbersThatItPrints) {
    // The initial runoff is stored in the column that is named after the threshold.
    BasinDatabase{file(), Access::ReadWrite}.execute(
        "UPDATE SimulationIndex SET SimStartDate = " + std::to_string(*day_count({1998, 3, 1})) +
        ", SimPrecipThreshold = 2.9 WHERE SimName = 'ellervane-1997-98'");
    const auto result = evaluate("2", "1998-03-01");
    ASSERT_FALSE(notes(result).empty());
    expect_quoted(notes(result)[0], 1);
    EXPECT_THAT(page(), HasSubstr("The changed summer gets " + summer(result, "ClimateAffected") +
                                  " in the place of 157.88, more than the " + summer(result, "Computed") +
                                  " of the present climate"));
}

}  // namespace
}  // namespace nivora
