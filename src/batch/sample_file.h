// The runs of a sample as a CSV file: a comment line that says what the sample is, a line of names, and a
// line for each run. A part of a sample is such a file, too.
#pragma once

#include "search/sample.h"

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace nivora {

/// What the first line of a file says.
struct SampleTitle {
    std::string basin;     ///< digests of what was read
    std::string options;   ///< JSON in one line
    std::size_t runs = 0;  ///< of the whole sample
    RunSpan span = {};     ///< of this file

    [[nodiscard]] std::string line() const;
};

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
    /// @throws FileError where the file can't be written, or is not this sample's: the message says what
    /// differs
    SampleFile(std::filesystem::path path, const SampleTitle& title, const StudyProblem& problem,
               bool resume);

    /// The runs that were in the file.
    [[nodiscard]] const std::vector<StoredRun>& stored() const { return stored_; }
    void add(const SampleRun& run);
    /// @throws FileError
    void flush();

private:
    void read(const SampleTitle& title, const StudyProblem& problem);
    void write(const std::string& text);

    std::filesystem::path path_;
    std::ofstream file_;
    std::vector<StoredRun> stored_;
};

/// Puts the files of all parts of a sample together: the bytes that one command for the whole sample writes.
/// @throws FileError where a part is missing, not complete, doubled or of another sample, or can't be read;
/// and where
///         the file can't be written
/// @return the number of runs
std::size_t gather_samples(const std::vector<std::filesystem::path>& parts, const std::filesystem::path& out);

}  // namespace nivora
