// Calls the batch program's command line without a process, on files in a folder of its own.
#pragma once

#include "base/durable_file.h"
#include "batch/command_line.h"
#include "store/table_io.h"
#include "tests/prep/legacy_text.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <sstream>
#include <string>
#include <vector>

namespace nivora {

struct BatchResult {
    int status = -1;
    std::string out;
    std::string err;
};

[[nodiscard]] inline BatchResult batch(const std::vector<std::string>& arguments) {
    std::vector<const char*> argv{"nivora-batch"};
    for (const std::string& argument : arguments) argv.push_back(argument.c_str());
    std::ostringstream out;
    std::ostringstream err;
    BatchResult result;
    result.status = run_command_line(static_cast<int>(argv.size()), argv.data(), out, err);
    result.out = out.str();
    result.err = err.str();
    return result;
}

/// The output of a call that must succeed.
inline std::string printed(const std::vector<std::string>& arguments) {
    const BatchResult result = batch(arguments);
    EXPECT_EQ(result.status, 0) << result.err;
    return result.out;
}

/// A folder with the legacy file "alder.NVR" and, after the import, the basin "basin.mdb".
class BatchFolder {
public:
    explicit BatchFolder(const LegacyParts& parts = {}) { write(parts); }

    [[nodiscard]] const TemporaryFolder& folder() const { return folder_; }
    [[nodiscard]] std::string path(const std::string& name) const { return (folder_ / name).string(); }
    [[nodiscard]] std::string file() const { return path("alder.NVR"); }
    [[nodiscard]] std::string basin() const { return path("basin.mdb"); }
    [[nodiscard]] std::string bytes() const { return file_bytes(basin()); }
    [[nodiscard]] std::vector<std::string> names() const {
        std::vector<std::string> names = folder_.entries();
        std::sort(names.begin(), names.end());
        return names;
    }

    void write(const LegacyParts& parts) const { folder_.write("alder.NVR", parts.text()); }

    /// Calls "import alder.NVR basin.mdb" with additional arguments.
    [[nodiscard]] BatchResult import(const std::vector<std::string>& more = {}) const {
        std::vector<std::string> arguments{"import", file(), basin()};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return batch(arguments);
    }

    /// Calls "run basin.mdb --simulation alder" with additional arguments.
    [[nodiscard]] BatchResult run(const std::vector<std::string>& more = {}) const {
        std::vector<std::string> arguments{"run", basin(), "--simulation", "alder"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return batch(arguments);
    }

    /// Exports a table and returns the CSV.
    [[nodiscard]] std::string exported(const std::string& table) const {
        const BatchResult result = batch({"export", basin(), table, "--csv", path("table.csv")});
        EXPECT_EQ(result.status, 0) << result.err;
        return result.status == 0 ? file_bytes(path("table.csv")) : std::string{};
    }

    void execute(const std::string& statement) const {
        BasinDatabase{basin(), Access::ReadWrite}.execute(statement);
    }

    template <typename Row>
    [[nodiscard]] std::vector<Row> rows(const TableSchema& table) const {
        BasinDatabase database{basin(), Access::ReadOnly};
        return read_table<Row>(database, table);
    }
    [[nodiscard]] std::vector<Simulation> simulations() const {
        return rows<Simulation>(template_table(k_simulation_index));
    }
    [[nodiscard]] BasinDescription header() const {
        BasinDatabase database{basin(), Access::ReadOnly};
        return read_basin_description(database);
    }
    [[nodiscard]] bool has_table(const std::string& name) const {
        return BasinDatabase{basin(), Access::ReadOnly}.has_table(name);
    }

private:
    TemporaryFolder folder_;
};

/// The lines of a text.
[[nodiscard]] inline std::vector<std::string> lines_of(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream{text};
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

}  // namespace nivora
