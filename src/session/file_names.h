// Asking for file names: what each purpose proposes, offers and refuses.
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
    SaveQuestion = 1,  ///< a new basin's name, asked by the question before a loss of changes
    SavePlot = 2,
    SaveAs = 3,
    Import = 7,
    SaveText = 8,
    SaveBasin = 9,
    SavePdf = 10  ///< a print
};

/// Whether a path holds the name of the template or of the working file anywhere, in any case: "NULL.MDB",
/// "NEW.MDB".
[[nodiscard]] bool is_reserved_name(const std::filesystem::path& path);

/// Asks for file names, and remembers the last folder of each purpose.
class FileNames {
public:
    explicit FileNames(Dialogs& dialogs, std::filesystem::path first_folder = {})
        : dialogs_(dialogs), first_folder_(std::move(first_folder)) {}

    /// The folder in which every purpose begins: the program's.
    void begin_in(std::filesystem::path folder) { first_folder_ = std::move(folder); }

    /// The chosen name; nothing where the user cancelled.
    ///
    /// A name to save under that exists is asked about, a reserved one refused, and the question comes up
    /// again.
    ///
    /// @param basin_file the file that the user knows, from which a name is proposed
    /// @param flux_plot  whether a plot is one of the two that can be saved for the plotter program
    /// @param suffix     of the name that is proposed for a text or a PDF, behind the basin's: "_Results"
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
