#include "store/table_io.h"
#include "store/transactions.h"
#include "tests/support/basin_file.h"
#include "tests/support/printed_seed.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::UnorderedElementsAre;

namespace fs = std::filesystem;

/// The error of opening a file with the given access, if any.
std::optional<StoreFault> opening(const fs::path& path, Access access) {
    return refused([&] { BasinDatabase{path, access}; });
}

/// Expects a file to be refused with either access and to stay unchanged.
void expect_refused(const fs::path& path, StoreFault fault) {
    const std::string before = file_bytes(path);
    EXPECT_EQ(opening(path, Access::ReadOnly), fault);
    EXPECT_EQ(opening(path, Access::ReadWrite), fault);
    EXPECT_TRUE(file_bytes(path) == before);
    EXPECT_THAT(refusal_text([&] {
                    BasinDatabase{path, Access::ReadOnly};
                }),
                HasSubstr(path.filename().string()));
}

/// A database that another program made.
fs::path foreign_database(const TemporaryFolder& folder) {
    const fs::path path = folder / "foreign.db";
    SQLite::Database raw{path.string(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE};
    raw.exec("CREATE TABLE BasinDescription (BasinName TEXT); PRAGMA user_version = 1");
    return path;
}

TEST(Opening, OfAMissingFileIsRefusedAndCreatesNone) {
    const TemporaryFolder folder;
    EXPECT_EQ(opening(folder / "no such.mdb", Access::ReadOnly), StoreFault::Missing);
    EXPECT_EQ(opening(folder / "no such.mdb", Access::ReadWrite), StoreFault::Missing);
    EXPECT_EQ(opening("", Access::ReadWrite), StoreFault::Missing);
    EXPECT_TRUE(folder.entries().empty());
}

TEST(Opening, OfANameThatIsTooLongIsRefused) {
    const TemporaryFolder folder;
    EXPECT_EQ(opening(folder / std::string(300, 'n'), Access::ReadWrite), StoreFault::Missing);
}

TEST(Opening, OfAFolderIsRefused) {
    const TemporaryFolder folder;
    EXPECT_EQ(opening(folder.path(), Access::ReadOnly), StoreFault::NotADatabase);
    EXPECT_EQ(opening(folder.path(), Access::ReadWrite), StoreFault::NotADatabase);
}

#ifndef _WIN32
TEST(Opening, OfADeviceIsRefused) {
    EXPECT_EQ(opening("/dev/null", Access::ReadWrite), StoreFault::NotADatabase);
}
#endif

TEST(Opening, OfAnEmptyFileIsRefusedAndLeavesItEmpty) {
    const TemporaryFolder folder;
    expect_refused(folder.write("basin.mdb", ""), StoreFault::NotADatabase);
}

TEST(Opening, OfATextFileIsRefused) {
    const TemporaryFolder folder;
    expect_refused(folder.write("short.mdb", "not a basin"), StoreFault::NotADatabase);
    expect_refused(folder.write("long.mdb", std::string(5000, 'x')), StoreFault::NotADatabase);
    EXPECT_THAT(refusal_text([&] {
                    BasinDatabase{folder / "long.mdb", Access::ReadOnly};
                }),
                HasSubstr("unrecognized format"));
}

TEST(Opening, OfADatabaseOfAnotherProgramIsRefused) {
    const TemporaryFolder folder;
    expect_refused(foreign_database(folder), StoreFault::Foreign);
}

// The database engine would roll such a journal back and so change the other program's file.
TEST(Opening, OfADatabaseOfAnotherProgramKeepsTheJournalBesideIt) {
    const TemporaryFolder folder;
    const fs::path path = foreign_database(folder);
    const fs::path journal = folder.write("foreign.db-journal", std::string(1024, 'j'));
    expect_refused(path, StoreFault::Foreign);
    EXPECT_EQ(file_bytes(journal), std::string(1024, 'j'));
    EXPECT_THAT(folder.entries(), UnorderedElementsAre("foreign.db", "foreign.db-journal"));
}

TEST(Opening, OfABasinOfALaterVersionIsRefused) {
    const BasinFile file;
    file.change("PRAGMA user_version = 2");
    expect_refused(file.path(), StoreFault::Newer);
    EXPECT_THAT(refusal_text([&] { static_cast<void>(file.open()); }), HasSubstr("file version 2"));
}

TEST(Opening, OfABasinWithoutAVersionIsRefused) {
    const BasinFile file;
    file.change("PRAGMA user_version = 0");
    expect_refused(file.path(), StoreFault::Damaged);
    file.change("PRAGMA user_version = -1");
    expect_refused(file.path(), StoreFault::Damaged);
}

TEST(Opening, OfAFileThatEndsInItsHeaderIsRefused) {
    const BasinFile file;
    const std::string whole = file_bytes(file.path());
    const TemporaryFolder folder;
    for (std::size_t size = 1; size < 100; ++size) {
        expect_refused(folder.write("cut.mdb", whole.substr(0, size)), StoreFault::NotADatabase);
    }
}

TEST(Opening, OfABasinDoesNotChangeIt) {
    const BasinFile file;
    const std::string before = file_bytes(file.path());
    for (const Access access : {Access::ReadOnly, Access::ReadWrite}) {
        BasinDatabase database = file.open(access);
        EXPECT_EQ(database.path(), file.path());
        EXPECT_EQ(database.table_names().size(), 5U);
    }
    EXPECT_TRUE(file_bytes(file.path()) == before);
    EXPECT_THAT(file.folder().entries(), ElementsAre("basin.mdb"));
}

TEST(Opening, ForReadingAloneRefusesEveryChange) {
    const BasinFile file;
    const std::string before = file_bytes(file.path());
    {
        BasinDatabase database = file.open(Access::ReadOnly);
        EXPECT_EQ(refused([&] { database.execute("DELETE FROM BasinDescription"); }), StoreFault::ReadOnly);
        EXPECT_EQ(refused([&] { database.create_table(parameter_table("Run")); }), StoreFault::ReadOnly);
    }
    EXPECT_TRUE(file_bytes(file.path()) == before);
}

TEST(Opening, ForWritingBringsAFileWithASeparateLogBackToOneFile) {
    const BasinFile file;
    file.change("PRAGMA journal_mode = WAL");
    ASSERT_THAT(file.column("PRAGMA journal_mode"), ElementsAre("wal"));
    {
        BasinDatabase database = file.open();
        database.execute("UPDATE BasinDescription SET BasinName = 'Ellervane'");
        EXPECT_THAT(file.folder().entries(), ElementsAre("basin.mdb"));
    }
    EXPECT_THAT(file.column("PRAGMA journal_mode"), ElementsAre("delete"));
    EXPECT_THAT(file.column("SELECT BasinName FROM BasinDescription"), ElementsAre("Ellervane"));
}

/// Reads every table of the template as typed rows.
void read_everything(const fs::path& path, Access access) {
    BasinDatabase database{path, access};
    static_cast<void>(read_basin_description(database));
    static_cast<void>(read_table<Zone>(database, template_table(k_zone_description)));
    static_cast<void>(read_table<Simulation>(database, template_table(k_simulation_index)));
    static_cast<void>(read_table<PhysicalRow>(database, template_table(k_physical_data)));
    static_cast<void>(read_table<ScenarioIndexRow>(database, template_table(k_scenario_index)));
}

/// The bytes of a basin with some rows in its daily table.
std::string filled_basin() {
    const BasinFile file;
    BasinDatabase database = file.open();
    std::vector<PhysicalRow> rows;
    for (DayCount day = 36526; day < 36826; ++day) rows.push_back({.zone = 1, .date = day, .tavg = 1.5F});
    atomically_if(database, [&] {
        add_rows<PhysicalRow>(database, template_table(k_physical_data), rows);
        return true;
    });
    return file_bytes(file.path());
}

TEST(DamagedBasin, CutAnywhereIsRefusedOrReadAndStaysAsItIs) {
    const TemporaryFolder folder;
    const std::string whole = filled_basin();
    int refusals = 0;
    for (std::size_t size = 100; size < whole.size(); size += 397) {
        const fs::path path = folder.write("cut.mdb", whole.substr(0, size));
        for (const Access access : {Access::ReadOnly, Access::ReadWrite}) {
            if (refused([&] { read_everything(path, access); })) ++refusals;
            ASSERT_TRUE(file_bytes(path) == whole.substr(0, size)) << size;
        }
        std::error_code ignored;
        fs::remove(path, ignored);
    }
    // A file that lacks a whole page cannot be read to the end.
    EXPECT_GT(refusals, 0);
}

TEST(DamagedBasin, WithRandomBytesIsRefusedOrReadAndStaysAsItIs) {
    const TemporaryFolder folder;
    const std::string whole = filled_basin();
    std::mt19937 random{printed_seed()};
    for (int i = 0; i < 300; ++i) {
        std::string damaged = whole;
        for (int change = 0; change <= i % 20; ++change) {
            damaged[16 + random() % (damaged.size() - 16)] = static_cast<char>(random());
        }
        const fs::path path = folder.write("damaged.mdb", damaged);
        static_cast<void>(refused([&] { read_everything(path, Access::ReadOnly); }));
        ASSERT_TRUE(file_bytes(path) == damaged) << i;
    }
}

TEST(DamagedBasin, IsCalledDamaged) {
    const TemporaryFolder folder;
    const std::string whole = filled_basin();
    const fs::path path = folder.write("cut.mdb", whole.substr(0, 8192));
    EXPECT_EQ(refused([&] { read_everything(path, Access::ReadOnly); }), StoreFault::Damaged);
    EXPECT_THAT(refusal_text([&] { read_everything(path, Access::ReadOnly); }), HasSubstr("is damaged"));
}

TEST(DamagedBasin, WithoutABasinRowIsCalledDamaged) {
    const BasinFile file;
    file.change("DELETE FROM BasinDescription");
    EXPECT_EQ(refused([&] { read_everything(file.path(), Access::ReadOnly); }), StoreFault::Damaged);
}

TEST(DamagedBasin, WithoutATableIsRefusedAsMissing) {
    const BasinFile file;
    file.change("DROP TABLE SimulationIndex");
    EXPECT_EQ(refused([&] { read_everything(file.path(), Access::ReadOnly); }), StoreFault::Missing);
    EXPECT_THAT(refusal_text([&] { read_everything(file.path(), Access::ReadOnly); }),
                HasSubstr("SimulationIndex"));
}

// Read as text, the name of a missing field would become the field's value.
TEST(DamagedBasin, WithoutAFieldIsRefused) {
    const BasinFile file;
    file.change("ALTER TABLE BasinDescription DROP COLUMN BasinDescription");
    EXPECT_EQ(refused([&] { read_everything(file.path(), Access::ReadOnly); }), StoreFault::Statement);
}

}  // namespace
}  // namespace nivora
