// A blank basin file in a folder of its own, and imports into it with scripted answers.
#pragma once

#include "base/scripted_dialogs.h"
#include "prep/legacy_import.h"
#include "store/table_io.h"
#include "store/transactions.h"
#include "tests/prep/legacy_text.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

namespace nivora {

class ScratchBasin {
public:
    ScratchBasin() { BasinDatabase::create_template(path()); }

    [[nodiscard]] std::filesystem::path path() const { return folder_ / "basin.mdb"; }
    [[nodiscard]] const TemporaryFolder& folder() const { return folder_; }

    /// Imports in one transaction, which is rolled back if the import returns nothing.
    std::optional<SimulationRecord> import(const LegacyParts& parts, ScriptedDialogs& dialogs,
                                           const std::string& offered = "offered") const {
        const LegacyFile file = parts.read();
        BasinDatabase database{path(), Access::ReadWrite};
        HeldTransaction transaction{database};
        auto record = import_legacy(database, file, offered, dialogs);
        if (record) transaction.commit();
        return record;
    }

    /// The first import into the blank basin; it asks only for a name.
    SimulationRecord first_import(const LegacyParts& parts, const std::string& name = "first") const {
        ScriptedDialogs dialogs;
        dialogs.then_text(name);
        const auto record = import(parts, dialogs);
        EXPECT_TRUE(dialogs.complaints().empty());
        EXPECT_EQ(dialogs.answers_left(), 0U);
        return record.value();
    }

    template <typename Row>
    [[nodiscard]] std::vector<Row> rows(const TableSchema& table) const {
        BasinDatabase database{path(), Access::ReadOnly};
        return read_table<Row>(database, table);
    }

    [[nodiscard]] BasinDescription header() const {
        BasinDatabase database{path(), Access::ReadOnly};
        return read_basin_description(database);
    }
    [[nodiscard]] std::vector<Zone> zones() const { return rows<Zone>(template_table(k_zone_description)); }
    [[nodiscard]] std::vector<PhysicalRow> days() const {
        return rows<PhysicalRow>(template_table(k_physical_data));
    }
    [[nodiscard]] std::vector<ParameterRow> parameters(const std::string& simulation) const {
        return rows<ParameterRow>(parameter_table(simulation));
    }
    [[nodiscard]] std::vector<MonthlyRow> months() const { return rows<MonthlyRow>(basin_averages_table()); }
    [[nodiscard]] bool has_table(const std::string& name) const {
        BasinDatabase database{path(), Access::ReadOnly};
        return database.has_table(name);
    }

    void execute(const std::string& statement) const {
        BasinDatabase{path(), Access::ReadWrite}.execute(statement);
    }

private:
    TemporaryFolder folder_;
};

}  // namespace nivora
