// The runs of a sample as a file of a study: a line for each run with its numbers and its measures.
#pragma once

#include "search/study_command.h"
#include "search/study_file.h"

#include <optional>
#include <string>
#include <vector>

namespace nivora {

/// The first line of a file with these runs of a sample.
/// @param runs that were asked for; the whole sample has as many whole groups as they hold
[[nodiscard]] StudyTitle sample_title(const StudyProblem& problem, const StudyCommand& command,
                                      std::size_t runs, bool sensitivity, const RunSpan& span);

/// The second line.
[[nodiscard]] std::string sample_names(const StudyProblem& problem);

/// The line of a run, with its end.
[[nodiscard]] std::string sample_line(const SampleRun& run);

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
