#include "session/file_names.h"

#include "base/durable_file.h"
#include "base/output_file.h"
#include "base/text.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace nivora {
namespace {

namespace fs = std::filesystem;

constexpr const char* k_all_files = "All Files (*.*)";
constexpr const char* k_invalid_name = "Invalid file name";
/// Template, working file and its journal, recovery state, and the lock of the running program.
constexpr std::array k_program_files{"null.mdb", "new.mdb", "new.mdb-journal", "recovery.state",
                                     "nivora.lock"};
constexpr const char* k_basin_files = "Windows NVR Data (*.mdb)";

constexpr const char* k_tables = "Tables (*.csv)";

bool saves(FileKind kind) {
    return kind != FileKind::OpenBasin && kind != FileKind::Import && kind != FileKind::OpenTable;
}

bool saves_basin(FileKind kind) {
    return kind == FileKind::SaveQuestion || kind == FileKind::SaveAs || kind == FileKind::SaveBasin;
}

std::string upper_case(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return text;
}

/// The file of the basin as a name to propose; empty if the basin has no file yet.
fs::path known_name(const fs::path& basin_file) {
    if (path_text(basin_file) == "<new file> ") return {};
    for (const fs::path& part : basin_file) {
        const std::string name = path_text(part);
        if (name.rfind("null.", 0) == 0 || name.rfind("new.", 0) == 0) return {};
    }
    return basin_file;
}

bool saves_print(FileKind kind) { return kind == FileKind::SaveText || kind == FileKind::SavePdf; }

std::string proposed_name(FileKind kind, const fs::path& basin_file, const std::string& extension,
                          const std::string& suffix) {
    const fs::path known = known_name(basin_file);
    if (saves_basin(kind)) return path_text(known);
    if (!saves_print(kind)) return {};
    if (!known.has_filename()) return "newfile" + suffix;
    // The ending of basins is replaced, in upper or lower case; any other ending stays.
    const std::string ending = path_text(known.extension());
    return path_text(known.stem()) + suffix + (same_name(ending, ".mdb") ? extension : ending);
}

struct PlotFilter {
    PlotForm form;
    const char* pattern;
};
constexpr std::array k_plot_filters{
    PlotFilter{PlotForm::Bitmap, "Bitmap Files (*.bmp)"}, PlotFilter{PlotForm::Text, "Ascii Files (*.txt)"},
    PlotFilter{PlotForm::Flow, "Slurp Files (*.flx)"},    PlotFilter{PlotForm::Png, "PNG Files (*.png)"},
    PlotFilter{PlotForm::Svg, "SVG Files (*.svg)"},       PlotFilter{PlotForm::Pdf, "PDF Files (*.pdf)"}};

std::string proposed_plot_name(const fs::path& basin_file, const std::string& pattern) {
    const std::string name = path_text(known_name(basin_file).stem());
    return (name.empty() ? "newfile" : name) + pattern_ending(pattern);
}

/// Whether a file exists. @throws FileError if that cannot be found out
bool file_exists(const fs::path& file) {
    std::error_code error;
    const fs::file_status status = fs::status(file, error);
    if (status.type() == fs::file_type::none) throw FileError(error.message());
    return fs::exists(status);
}

std::string title_of(FileKind kind) {
    switch (kind) {
        case FileKind::OpenBasin: return "Open a NVR database";
        case FileKind::Import: return "Import a DOS NVR data file";
        case FileKind::SaveAs: return "Save a Nivora data base as ...";
        case FileKind::SavePlot: return "Save a Nivora plot as ...";
        case FileKind::SaveText: return "Save as a text(.txt) file";
        case FileKind::SavePdf: return "Save as a PDF(.pdf) file";
        case FileKind::OpenTable: return "Import a table";
        case FileKind::SaveTable: return "Export a table";
        case FileKind::SaveQuestion:
        case FileKind::SaveBasin: break;
    }
    return "Save a Nivora data base";
}

std::vector<std::string> patterns_of(FileKind kind) {
    switch (kind) {
        case FileKind::Import: return {"DOS NVR Data (*.NVR)", k_all_files};
        case FileKind::SaveText: return {"Text Files (*.txt)", k_all_files};
        case FileKind::SavePdf: return {"PDF Files (*.pdf)", k_all_files};
        default: return {k_basin_files, k_all_files};
    }
}

std::string extension_of(FileKind kind) {
    if (kind == FileKind::SaveText) return ".txt";
    if (kind == FileKind::SavePdf) return ".pdf";
    if (kind == FileKind::SaveTable) return ".csv";
    return ".mdb";
}

/// The ending of a name that the user gave none.
std::string added_ending(FileKind kind, const FileQuestion& question, std::size_t pattern) {
    if (!question.pattern_decides) return extension_of(kind);
    return pattern_ending(question.patterns.at(pattern));
}

}  // namespace

bool is_reserved_name(const fs::path& path) {
    const std::string name = upper_case(path_text(path));
    return name.find("NULL.MDB") != std::string::npos || name.find("NEW.MDB") != std::string::npos;
}

bool is_program_file(const fs::path& program_folder, const fs::path& file) {
    return std::any_of(k_program_files.begin(), k_program_files.end(),
                       [&](const char* name) { return same_file(file, program_folder / name); });
}

std::optional<Message> named_file_problem(const fs::path& file) {
    std::error_code error;
    const fs::file_status status = fs::status(file, error);
    std::string reason;
    switch (status.type()) {
        case fs::file_type::regular: return std::nullopt;
        case fs::file_type::not_found: reason = "does not exist."; break;
        case fs::file_type::directory: reason = "is a folder. Name the basin file in it."; break;
        case fs::file_type::none: reason = "can't be found: " + error.message() + "."; break;
        default: reason = "is not a regular file.";
    }
    return Message{.text = "The file '" + path_text(file) + "' " + reason + " It was not opened.",
                   .title = "The basin was not opened",
                   .icon = Icon::Stop};
}

std::optional<Message> open_basin_refusal(const BasinState& basin, const fs::path& file,
                                          std::string_view what) {
    const auto is_open = [&](const fs::path& used) { return !used.empty() && same_file(file, used); };
    const char* reason = nullptr;
    if (is_open(basin.Basin_File) || is_open(basin.Work_File)) {
        reason = "is the basin that is open";
    } else if (!basin.App_Path.empty() && is_program_file(basin.App_Path, file)) {
        reason = "belongs to Nivora itself";
    }
    if (reason == nullptr) return std::nullopt;
    return Message{.text = "The file '" + path_text(file) + "' " + reason +
                           ".  Choose another name for the " + std::string{what} + ".",
                   .title = k_invalid_name,
                   .icon = Icon::Stop};
}

fs::path FileNames::folder(FileKind kind) const {
    const auto kept = folders_.find(kind);
    if (kept != folders_.end()) return kept->second;
    return shown_first_.empty() ? first_folder_ : shown_first_;
}

bool FileNames::may_replace(const fs::path& file) {
    return dialogs_.message({.text = path_text(file) + " already exists!\n  Do you want to replace it?",
                             .icon = Icon::Warning,
                             .buttons = Buttons::YesNo,
                             .default_answer = Answer::No}) == Answer::Yes;
}

std::optional<FileAnswer> FileNames::ask(FileKind kind, FileQuestion question, const Refusal& refusal) {
    for (;;) {
        question.folder = folder(kind);
        auto answer = dialogs_.file(question);
        if (!answer || answer->file.empty()) return std::nullopt;
        fs::path& file = answer->file;
        folders_[kind] = file.parent_path();
        if (!question.saving) return answer;
        if (!file.has_extension()) file += added_ending(kind, question, answer->pattern);
        if (question.pattern_decides) {
            question.pattern = answer->pattern;
            question.proposed_name =
                path_text(path_from_utf8(question.proposed_name)
                              .replace_extension(pattern_ending(question.patterns.at(answer->pattern))));
        }
        try {
            if (file_exists(file) && !may_replace(file)) continue;
        } catch (const FileError& error) {
            dialogs_.stop(path_text(file) + ": " + error.what(), "Error in GetFileName");
            return std::nullopt;
        }
        const auto refused = refusal ? refusal(file) : std::nullopt;
        if (!refused) return answer;
        dialogs_.message(*refused);
    }
}

std::optional<fs::path> FileNames::GetFileName(FileKind kind, const fs::path& basin_file,
                                               const std::string& suffix) {
    const auto reserved = [this](const fs::path& file) -> std::optional<Message> {
        if (!is_reserved_name(file) && !is_program_file(first_folder_, file)) return std::nullopt;
        return Message{.text = "This database file name, " + path_text(file) +
                               ", is reserved for system use.  Please choose another.",
                       .title = k_invalid_name,
                       .icon = Icon::Stop};
    };
    auto answer = ask(kind,
                      {.title = title_of(kind),
                       .proposed_name = proposed_name(kind, basin_file, extension_of(kind), suffix),
                       .patterns = patterns_of(kind),
                       .saving = saves(kind)},
                      saves_basin(kind) ? reserved : Refusal{});
    if (!answer) return std::nullopt;
    return std::move(answer->file);
}

std::optional<PlotFileName> FileNames::GetPlotFileName(const BasinState& basin, bool has_flow) {
    FileQuestion question{.title = title_of(FileKind::SavePlot), .saving = true, .pattern_decides = true};
    std::vector<PlotForm> forms;
    for (const PlotFilter& filter : k_plot_filters) {
        if (filter.form == PlotForm::Flow && !has_flow) continue;
        if (filter.form == PlotForm::Flow) question.pattern = forms.size();
        forms.push_back(filter.form);
        question.patterns.emplace_back(filter.pattern);
    }
    question.proposed_name = proposed_plot_name(basin.Basin_File, question.patterns[question.pattern]);
    auto answer = ask(FileKind::SavePlot, std::move(question),
                      [&](const fs::path& file) { return open_basin_refusal(basin, file, "plot"); });
    if (!answer) return std::nullopt;
    return PlotFileName{std::move(answer->file), forms.at(answer->pattern)};
}

std::optional<fs::path> FileNames::GetTableToRead() {
    const auto answer = ask(
        FileKind::OpenTable,
        {.title = title_of(FileKind::OpenTable), .patterns = {k_tables, "Text Files (*.txt)", k_all_files}},
        {});
    return answer ? std::optional{answer->file} : std::nullopt;
}

std::optional<fs::path> FileNames::GetTableToWrite(const BasinState& basin, const std::string& proposed) {
    const auto answer = ask(FileKind::SaveTable,
                            {.title = title_of(FileKind::SaveTable),
                             .proposed_name = proposed + ".csv",
                             .patterns = {k_tables, k_all_files},
                             .saving = true},
                            [&](const fs::path& file) { return open_basin_refusal(basin, file, "table"); });
    return answer ? std::optional{answer->file} : std::nullopt;
}

}  // namespace nivora
