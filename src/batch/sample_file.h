// The runs of a sample as a file of a study: a line for each run with its numbers and its measures.
#pragma once

#include "batch/study_file.h"

#include <optional>
#include <string>
#include <vector>

namespace nivora {

/// The second line.
[[nodiscard]] std::string sample_names(const StudyProblem& problem);

/// A run that was read from a file: its number and its measures.
struct StoredRun {
    std::size_t index = 0;
    std::vector<std::optional<double>> values;
};

/// A file that runs are added to.
class SampleFile {
public:
    /// Begins a file, in the place of one that is there, or goes on in one.
    /// @throws FileError as StudyFile does
    SampleFile(std::filesystem::path path, const StudyTitle& title, const StudyProblem& problem, bool resume);

    /// The runs that were in the file.
    [[nodiscard]] const std::vector<StoredRun>& stored() const { return stored_; }
    void add(const SampleRun& run);
    /// @throws FileError
    void flush() { file_.flush(); }

private:
    std::vector<StoredRun> stored_;
    StudyFile file_;
};

}  // namespace nivora
