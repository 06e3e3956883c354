#include "store/table_io.h"
#include "tests/support/basin_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace fs = std::filesystem;

std::uint32_t big_endian_at(const std::string& bytes, std::size_t at) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i) value = value << 8U | static_cast<unsigned char>(bytes.at(at + i));
    return value;
}

TEST(Template, HoldsTheFiveTablesOfANewBasin) {
    const BasinFile file;
    BasinDatabase database = file.open(Access::ReadOnly);
    EXPECT_THAT(database.table_names(), ElementsAre("BasinDescription", "ZoneDescription", "SimulationIndex",
                                                    "PhysicalData", "ClimateScenarioIndex"));
}

TEST(Template, HasTheFieldsOfTheSchema) {
    const BasinFile file;
    BasinDatabase database = file.open(Access::ReadOnly);
    for (const TableSchema& table : template_tables()) {
        const std::vector<Field> fields = database.table_fields(table.name);
        ASSERT_EQ(fields.size(), table.fields.size()) << table.name;
        for (std::size_t i = 0; i < fields.size(); ++i) {
            EXPECT_EQ(fields[i].name, table.fields[i].name);
            EXPECT_EQ(fields[i].type, table.fields[i].type) << fields[i].name;
            EXPECT_EQ(fields[i].width, table.fields[i].width) << fields[i].name;
        }
    }
}

TEST(Template, HasOneBasinWithAPlaceholderForItsNameAndUnitsNotYetFixed) {
    const BasinFile file;
    EXPECT_THAT(file.column("SELECT BasinName FROM BasinDescription"), ElementsAre("<basin name>"));
    EXPECT_THAT(file.column("SELECT Units FROM BasinDescription"), ElementsAre("-1"));
}

TEST(Template, LeavesTheRestOfTheBasinBlank) {
    const BasinFile file;
    BasinDatabase database = file.open(Access::ReadOnly);
    const BasinDescription basin = read_basin_description(database);
    EXPECT_EQ(basin.description, std::nullopt);
    EXPECT_EQ(basin.zones, std::nullopt);
    EXPECT_EQ(basin.reference_elevation, std::nullopt);
    EXPECT_EQ(basin.latitude, std::nullopt);
    EXPECT_EQ(basin.longitude, std::nullopt);
}

TEST(Template, HasNoRowsInItsOtherTables) {
    const BasinFile file;
    for (const char* table : {"ZoneDescription", "SimulationIndex", "PhysicalData", "ClimateScenarioIndex"}) {
        EXPECT_THAT(file.column(std::string{"SELECT * FROM "} + table), IsEmpty()) << table;
    }
}

// Where the two marks lie: https://www.sqlite.org/fileformat2.html, "The Database Header".
TEST(Template, BearsTheMarksOfABasinFileInItsHeader) {
    const BasinFile file;
    const std::string bytes = file_bytes(file.path());
    EXPECT_EQ(bytes.substr(68, 4), "NVRB");
    EXPECT_EQ(big_endian_at(bytes, 60), 1U);
    EXPECT_EQ(bytes.at(18), 1) << "the file is not in rollback mode";
    EXPECT_EQ(bytes.at(19), 1) << "the file is not in rollback mode";
}

TEST(Template, IsTheOnlyFileInItsFolder) {
    const BasinFile file;
    EXPECT_THAT(file.folder().entries(), ElementsAre("basin.mdb"));
}

TEST(CreateTemplate, RefusesANameThatIsTaken) {
    const TemporaryFolder folder;
    const fs::path path = folder.write("basin.mdb", "precious");
    EXPECT_EQ(refused([&] { BasinDatabase::create_template(path); }), StoreFault::Exists);
    EXPECT_THAT(refusal_text([&] { BasinDatabase::create_template(path); }), HasSubstr("basin.mdb"));
    EXPECT_EQ(file_bytes(path), "precious");
    EXPECT_THAT(folder.entries(), ElementsAre("basin.mdb"));
}

TEST(CreateTemplate, RefusesTheNameOfAFolder) {
    const TemporaryFolder folder;
    fs::create_directory(folder / "basin.mdb");
    EXPECT_EQ(refused([&] { BasinDatabase::create_template(folder / "basin.mdb"); }), StoreFault::Exists);
    EXPECT_TRUE(fs::is_empty(folder / "basin.mdb"));
}

TEST(CreateTemplate, RefusesALinkThatLeadsNowhere) {
    const TemporaryFolder folder;
    std::error_code error;
    fs::create_symlink(folder / "no such", folder / "basin.mdb", error);
    if (error) GTEST_SKIP() << "no links can be made here: " << error.message();
    EXPECT_EQ(refused([&] { BasinDatabase::create_template(folder / "basin.mdb"); }), StoreFault::Exists);
    EXPECT_FALSE(fs::exists(folder / "no such"));
}

TEST(CreateTemplate, InAMissingFolderIsRefusedAndLeavesNothing) {
    const TemporaryFolder folder;
    EXPECT_NE(refused([&] { BasinDatabase::create_template(folder / "no such" / "basin.mdb"); }),
              std::nullopt);
    EXPECT_THAT(folder.entries(), IsEmpty());
}

TEST(CreateTemplate, UnderANameThatIsTooLongIsRefused) {
    const TemporaryFolder folder;
    EXPECT_NE(refused([&] { BasinDatabase::create_template(folder / std::string(300, 'n')); }), std::nullopt);
    EXPECT_THAT(folder.entries(), IsEmpty());
}

TEST(CreateTemplate, TakesNamesOfOtherScripts) {
    const TemporaryFolder folder;
    const fs::path path = folder / fs::path{u8"\u00D6tztal \u0420\u0435\u043A\u0430 100% ?.mdb"};
    BasinDatabase::create_template(path);
    EXPECT_EQ((BasinDatabase{path, Access::ReadOnly}.table_names().size()), 5U);
    EXPECT_EQ(folder.entries().size(), 1U);
}

}  // namespace
}  // namespace nivora
