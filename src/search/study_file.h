// The results of a long study as a CSV file: a comment line that says what the study is, a line of names, and
// a line for each piece of work, which begins with its number. A part of a study is such a file, too, and so
// is one that was stopped.
#pragma once

#include "search/sample.h"

#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace nivora {

/// What the first line of a file says.
struct StudyTitle {
    std::string kind;      ///< one word: "sample", "response"
    std::string basin;     ///< digests of what was read
    std::string options;   ///< JSON in one line
    std::size_t runs = 0;  ///< pieces of the whole study
    RunSpan span = {};     ///< of this file

    [[nodiscard]] std::string line() const;
};

/// A text in quotation marks, as a field that has commas.
[[nodiscard]] std::string in_quotes(std::string_view text);

/// A file that lines are added to.
class StudyFile {
public:
    /// Takes a stored line; false if it is damaged.
    using Take = std::function<bool(std::string_view line)>;

    /// Begins a file, in the place of one that is there, or goes on in one, whose complete lines it hands to
    /// `take`; a line that was not completed is dropped.
    ///
    /// @param names the second line, with its end
    /// @throws FileError where the file can't be written, or is not this study's: the message says what
    /// differs
    StudyFile(std::filesystem::path path, const StudyTitle& title, const std::string& names, bool resume,
              const Take& take);

    /// @param line with its end. @throws FileError
    void add(const std::string& line);
    /// @throws FileError
    void flush();

private:
    void read(const StudyTitle& title, const std::string& names, const Take& take);

    std::filesystem::path path_;
    std::ofstream file_;
};

/// Puts the files of all parts of a study together: the bytes that one command for the whole study writes.
/// @throws FileError where a part is missing, not complete, doubled or of another study, or can't be read;
/// and where the file can't be written
/// @return what the whole study is
StudyTitle gather_parts(const std::vector<std::filesystem::path>& parts, const std::filesystem::path& out);

}  // namespace nivora
