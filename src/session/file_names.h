// Asks for file names: what is proposed, offered and refused for each purpose.
#pragma once

#include "base/dialogs.h"
#include "store/basin_store.h"

#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

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
    SavePdf = 10,  ///< a print into a PDF file
    OpenTable = 11,
    SaveTable = 12
};

/// Whether a path contains "NULL.MDB" or "NEW.MDB",
/// the names of template and working file, in upper or lower case.
[[nodiscard]] bool is_reserved_name(const std::filesystem::path& path);

/// Whether a file, by whatever name or link, is one that Nivora keeps in its own folder: a write would
/// destroy unsaved work, or the program would overwrite what was written.
[[nodiscard]] bool is_program_file(const std::filesystem::path& program_folder,
                                   const std::filesystem::path& file);

/// The message that a file, named when the program was started, can't be opened because there is no regular
/// file of that name; nothing if there is one. The file is not opened: a pipe would keep the program waiting.
[[nodiscard]] std::optional<Message> named_file_problem(const std::filesystem::path& file);

/// The forms in which a plot is saved, in the order of their filters.
enum class PlotForm {
    Bitmap,
    Text,
    Flow,  ///< of the two plots of the basin's discharge alone
    Png,
    Svg,
    Pdf
};

/// Whether a form is a picture of the plot; the other two hold its numbers.
[[nodiscard]] constexpr bool is_picture(PlotForm form) {
    return form != PlotForm::Text && form != PlotForm::Flow;
}

/// Where a plot is saved, and in which form.
struct PlotFileName {
    std::filesystem::path file;
    PlotForm form = PlotForm::Bitmap;
};

/// The message that a file is that of the open basin, or its working copy, or another file of the program
/// itself, and can't be replaced; nothing if it is another file.
///
/// @param what is to be written: "print"
[[nodiscard]] std::optional<Message> open_basin_refusal(const BasinState& basin,
                                                        const std::filesystem::path& file,
                                                        std::string_view what);

/// Asks for file names, and remembers the last folder of each purpose.
class FileNames {
public:
    explicit FileNames(Dialogs& dialogs, std::filesystem::path first_folder = {})
        : dialogs_(dialogs), first_folder_(std::move(first_folder)) {}

    /// The first folder of every purpose: the program's.
    void begin_in(std::filesystem::path folder) { first_folder_ = std::move(folder); }
    /// Another first folder of every purpose, where the program's is none that its user knows.
    void show_first(std::filesystem::path folder) { shown_first_ = std::move(folder); }

    /// The chosen name; nothing if the user cancelled.
    ///
    /// Asks before an existing file is replaced and refuses a reserved name; the dialog then opens again.
    ///
    /// @param kind       any but SavePlot
    /// @param basin_file the user's file, from which a name is proposed
    /// @param suffix     added to the name that is proposed for a print: "_Results" gives "alder_Results.txt"
    [[nodiscard]] std::optional<std::filesystem::path> GetFileName(FileKind kind,
                                                                   const std::filesystem::path& basin_file,
                                                                   const std::string& suffix = {});

    /// The same for a plot. The filter that the user leaves selected decides the form, and gives its ending
    /// to a name that has none; a name with another ending keeps it. The file of the open basin is refused.
    ///
    /// @param has_flow whether the plot can be saved as a flow file, which is then proposed
    [[nodiscard]] std::optional<PlotFileName> GetPlotFileName(const BasinState& basin, bool has_flow);

    /// The same for a table that is read or written. To write, the file of the open basin is refused.
    ///
    /// @param proposed the name that is proposed to write
    [[nodiscard]] std::optional<std::filesystem::path> GetTableToRead();
    [[nodiscard]] std::optional<std::filesystem::path> GetTableToWrite(const BasinState& basin,
                                                                       const std::string& proposed);

private:
    using Refusal = std::function<std::optional<Message>(const std::filesystem::path& file)>;

    [[nodiscard]] std::filesystem::path folder(FileKind kind) const;
    [[nodiscard]] std::optional<FileAnswer> ask(FileKind kind, FileQuestion question, const Refusal& refusal);
    [[nodiscard]] bool may_replace(const std::filesystem::path& file);

    Dialogs& dialogs_;
    std::filesystem::path first_folder_;
    std::filesystem::path shown_first_ = {};  ///< empty: the first folder
    std::map<FileKind, std::filesystem::path> folders_;
};

}  // namespace nivora
