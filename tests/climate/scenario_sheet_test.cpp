// The sheet file beside the program: as it is delivered, and when it is missing or damaged.
#include "base/scripted_dialogs.h"
#include "climate/scenario_definitions.h"
#include "tests/support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

const std::filesystem::path k_data_folder = std::filesystem::path{NIVORA_SOURCE_DIR} / "data";
constexpr const char* k_sheet_title = "Error initializing the 'Climate Change Scenario Definition'window";

/// Loads a sheet with the given content.
std::optional<ScenarioSheet> load(const std::string& content, ScriptedDialogs& dialogs) {
    const TemporaryFolder folder;
    folder.write("climate_1.ss2", content);
    return load_scenario_sheet(folder.path(), dialogs);
}

std::string delivered() { return file_bytes(k_data_folder / "climate_1.ss2"); }

/// The content with the first occurrence of a text replaced.
std::string replaced(std::string content, const std::string& text, const std::string& by) {
    const std::size_t at = content.find(text);
    EXPECT_NE(at, std::string::npos) << text;
    return content.replace(at, text.size(), by);
}

TEST(ScenarioSheet, AsDeliveredHasTheTextsOfTheCodes) {
    ScriptedDialogs dialogs;
    const auto sheet = load_scenario_sheet(k_data_folder, dialogs);
    ASSERT_TRUE(sheet.has_value());
    EXPECT_THAT(sheet->headers, ElementsAre("Variable/Parameter", "Start Date", "End Date", "Edit Action",
                                            "Edit Factor", "Zones"));
    ASSERT_EQ(sheet->variables.size(), 12U);
    for (int code = 0; code < 12; ++code)
        EXPECT_EQ(sheet->variables[static_cast<std::size_t>(code)], scenario_variable_text(code));
    ASSERT_EQ(sheet->zones.size(), 17U);
    for (int code = 0; code < 17; ++code)
        EXPECT_EQ(sheet->zones[static_cast<std::size_t>(code)], scenario_zone_text(code));
    EXPECT_TRUE(dialogs.messages().empty());
}

TEST(ScenarioSheet, WithTheLineEndsAndTheByteOrderMarkOfAnotherEditorIsTheSame) {
    std::string content = "\xEF\xBB\xBF";
    for (const char character : delivered()) {
        if (character == '\n') content += '\r';
        content += character;
    }
    ScriptedDialogs dialogs;
    const auto sheet = load(content, dialogs);
    ASSERT_TRUE(sheet.has_value());
    EXPECT_EQ(sheet->zones.back(), "P");
    EXPECT_EQ(sheet->headers.front(), "Variable/Parameter");
}

TEST(ScenarioSheet, ThatIsMissingIsReported) {
    const TemporaryFolder folder;
    ScriptedDialogs dialogs;
    EXPECT_EQ(load_scenario_sheet(folder.path(), dialogs), std::nullopt);
    EXPECT_EQ(load_scenario_sheet(folder / "no folder", dialogs), std::nullopt);
    ASSERT_EQ(dialogs.messages().size(), 2U);
    for (const AskedMessage& asked : dialogs.messages()) {
        EXPECT_EQ(asked.message.text, "A required system file, 'climate_1.ss2', could not be located!");
        EXPECT_EQ(asked.message.title, k_sheet_title);
    }
}

TEST(ScenarioSheet, ThatIsDamagedIsReportedWithItsFault) {
    const std::string whole = delivered();
    const std::vector<std::pair<std::string, std::string>> cases{
        {"", "it has 0 columns and not 6"},
        {"Climate sheet\n", "line 1 is not 'Nivora sheet 1'"},
        {"Nivora sheet 1\nentry All\n", "line 2 belongs to no column"},
        {"Nivora sheet 1\ncolumn\n", "line 2 ends behind its first word"},
        {"Nivora sheet 1\ncolumn A\nheight 3\n", "line 3 begins with a word that has no meaning there"},
        {replaced(whole, "entry P\n", ""), "column 6, 'Zones', is not what the grid needs there"},
        {replaced(whole, "entry Net Radiation\n", ""),
         "column 1, 'Variable/Parameter', is not what the grid needs there"},
        {replaced(whole, "extra Normalize\n", ""),
         "column 4, 'Edit Action', is not what the grid needs there"},
        {replaced(whole, "entry Precipitation\n", "entry Niederschlag\n"),
         "column 1, 'Variable/Parameter', has the entry 'Niederschlag' where 'Precipitation' belongs"},
        {replaced(whole, "entry Shift forward\n", "entry Shift on\n"),
         "column 4, 'Edit Action', has the entry 'Shift on' where 'Shift forward' belongs"},
        {replaced(whole, "extra Normalize\n", "extra Normalise\n"),
         "column 4, 'Edit Action', has the entry 'Normalise' where 'Normalize' belongs"},
        {replaced(whole, "entry B\n", "entry b\n"), "column 6, 'Zones', has the entry 'b' where 'B' belongs"},
        {replaced(whole, "cells number\n", "cells text\n"),
         "column 5, 'Edit Factor', is not what the grid needs there"},
        {replaced(whole, "cells date mm/dd/yyyy\n", "cells date dd/mm/yyyy\n"),
         "column 2, 'Start Date', is not what the grid needs there"},
        {whole + "column More\ncells number\n", "it has 7 columns and not 6"},
        {whole + "\xFF\xFE", "it is not UTF-8 text"},
        {std::string(200, '\0'), "it is not UTF-8 text"},
        {std::string(100000, 'x'), "climate_1.ss2"}};
    for (const auto& [content, fault] : cases) {
        SCOPED_TRACE(fault);
        ScriptedDialogs dialogs;
        EXPECT_EQ(load(content, dialogs), std::nullopt);
        ASSERT_EQ(dialogs.messages().size(), 1U);
        EXPECT_THAT(dialogs.messages()[0].message.text,
                    StartsWith("A required system file, 'climate_1.ss2', could not be read!  "));
        EXPECT_THAT(dialogs.messages()[0].message.text, HasSubstr(fault));
        EXPECT_EQ(dialogs.messages()[0].message.title, k_sheet_title);
    }
}

TEST(ScenarioSheet, ThatIsAFolderIsReported) {
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder / "climate_1.ss2");
    ScriptedDialogs dialogs;
    EXPECT_EQ(load_scenario_sheet(folder.path(), dialogs), std::nullopt);
    ASSERT_EQ(dialogs.messages().size(), 1U);
    EXPECT_THAT(dialogs.messages()[0].message.text, HasSubstr("could not be read!"));
}

TEST(ScenarioSheet, CutAtAnyLineIsRefusedAndNeverHalfRead) {
    const std::string whole = delivered();
    for (std::size_t end = whole.find('\n'); end + 1 < whole.size(); end = whole.find('\n', end + 1)) {
        ScriptedDialogs dialogs;
        ASSERT_EQ(load(whole.substr(0, end), dialogs), std::nullopt) << end;
        ASSERT_EQ(dialogs.messages().size(), 1U);
    }
}

}  // namespace
}  // namespace nivora
