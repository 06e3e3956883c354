// The sample basin for the tests of studies.
#pragma once

#include "tests/batch/batch_call.h"

#include <filesystem>

namespace nivora {

/// A folder with the sample basin as "sample.mdb".
class StudyFolder : public testing::Test {
protected:
    StudyFolder() {
        std::filesystem::copy_file(std::filesystem::path{NIVORA_PROGRAM_FOLDER} / "samples/ellervane.mdb",
                                   folder_ / "sample.mdb");
    }

    [[nodiscard]] std::string path(const std::string& name) const { return (folder_ / name).string(); }
    [[nodiscard]] std::string basin() const { return path("sample.mdb"); }
    [[nodiscard]] std::string content(const std::string& name) const { return file_bytes(folder_ / name); }
    [[nodiscard]] bool has(const std::string& name) const { return std::filesystem::exists(folder_ / name); }

    /// Calls a command with the basin and its simulation.
    [[nodiscard]] BatchResult study(const std::string& command, const std::vector<std::string>& more) const {
        std::vector<std::string> arguments{command, basin(), "--simulation", k_simulation};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return batch(arguments);
    }
    /// Expects a refusal with these words.
    void expect_refused(const BatchResult& result, const std::string& words, int status = 1) const {
        EXPECT_EQ(result.status, status) << result.err;
        EXPECT_NE(result.err.find(words), std::string::npos) << result.err;
    }

    static constexpr const char* k_simulation = "ellervane-1997-98";
    TemporaryFolder folder_;
};

}  // namespace nivora
