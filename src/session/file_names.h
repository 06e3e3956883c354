// Asks for file names: what is proposed, offered and refused for each purpose.
#pragma once

#include "base/dialogs.h"

#include <filesystem>
#include <map>
#include <optional>
#include <string>

namespace nivora {

/// The purposes of a file question.
enum class FileKind {
    OpenBasin = 0,
    SaveQuestion = 1,  ///< a new basin's name, from the question about unsaved changes
    SavePlot = 2,
    SaveAs = 3,
    Import = 7,
    SaveText = 8,
    SaveBasin = 9,
    SavePdf = 10  ///< a print into a PDF file
};

/// Whether a path contains "NULL.MDB" or "NEW.MDB",
/// the names of template and working file, in upper or lower case.
[[nodiscard]] bool is_reserved_name(const std::filesystem::path& path);

/// Asks for file names, and remembers the last folder of each purpose.
class FileNames {
public:
    explicit FileNames(Dialogs& dialogs, std::filesystem::path first_folder = {})
        : dialogs_(dialogs), first_folder_(std::move(first_folder)) {}

    /// The first folder of every purpose: the program's.
    void begin_in(std::filesystem::path folder) { first_folder_ = std::move(folder); }

    /// The chosen name; nothing if the user cancelled.
    ///
    /// Asks before an existing file is replaced and refuses a reserved name; the dialog then opens again.
    ///
    /// @param basin_file the user's file, from which a name is proposed
    /// @param flux_plot  whether a plot is one of the two that can be saved for the plotter program
    /// @param suffix     added to the name that is proposed for a print: "_Results" gives "alder_Results.txt"
    [[nodiscard]] std::optional<std::filesystem::path> GetFileName(FileKind kind,
                                                                   const std::filesystem::path& basin_file,
                                                                   bool flux_plot = false,
                                                                   const std::string& suffix = {});

private:
    [[nodiscard]] std::filesystem::path folder(FileKind kind) const;

    Dialogs& dialogs_;
    std::filesystem::path first_folder_;
    std::map<FileKind, std::filesystem::path> folders_;
};

}  // namespace nivora
