#include "session/file_names.h"

#include "base/durable_file.h"
#include "base/text.h"

#include <algorithm>
#include <cctype>

namespace nivora {
namespace {

namespace fs = std::filesystem;

constexpr const char* k_all_files = "All Files (*.*)";
constexpr const char* k_basin_files = "Windows NVR Data (*.mdb)";

bool saves(FileKind kind) { return kind != FileKind::OpenBasin && kind != FileKind::Import; }

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
    std::string name = path_text(known.filename());
    if (saves_print(kind)) {
        if (name.empty()) return "newfile" + suffix;
        // The ending of basins is replaced, in upper or lower case; any other ending stays.
        const std::string ending = path_text(known.extension());
        return path_text(known.stem()) + suffix + (same_name(ending, ".mdb") ? extension : ending);
    }
    if (kind != FileKind::SavePlot) return {};
    name = path_text(known.stem());
    return (name.empty() ? "newfile" : name) + extension;
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
        case FileKind::SaveQuestion:
        case FileKind::SaveBasin: break;
    }
    return "Save a Nivora data base";
}

std::vector<std::string> patterns_of(FileKind kind, bool flux_plot) {
    switch (kind) {
        case FileKind::Import: return {"DOS NVR Data (*.NVR)", k_all_files};
        case FileKind::SaveText: return {"Text Files (*.txt)", k_all_files};
        case FileKind::SavePdf: return {"PDF Files (*.pdf)", k_all_files};
        case FileKind::SavePlot:
            if (flux_plot) return {"Bitmap Files (*.bmp)", "Ascii Files (*.txt)", "Slurp Files (*.flx)"};
            return {"Bitmap Files (*.bmp)", "Ascii Files (*.txt)"};
        default: return {k_basin_files, k_all_files};
    }
}

std::string extension_of(FileKind kind) {
    if (kind == FileKind::SaveText) return ".txt";
    if (kind == FileKind::SavePdf) return ".pdf";
    return kind == FileKind::SavePlot ? ".bmp" : ".mdb";
}

}  // namespace

bool is_reserved_name(const fs::path& path) {
    const std::string name = upper_case(path_text(path));
    return name.find("NULL.MDB") != std::string::npos || name.find("NEW.MDB") != std::string::npos;
}

fs::path FileNames::folder(FileKind kind) const {
    const auto kept = folders_.find(kind);
    return kept == folders_.end() ? first_folder_ : kept->second;
}

std::optional<fs::path> FileNames::GetFileName(FileKind kind, const fs::path& basin_file, bool flux_plot,
                                               const std::string& suffix) {
    const std::string extension = extension_of(kind);
    FileQuestion question{.title = title_of(kind),
                          .proposed_name = proposed_name(kind, basin_file, extension, suffix),
                          .patterns = patterns_of(kind, flux_plot),
                          .saving = saves(kind)};
    for (;;) {
        question.folder = folder(kind);
        auto answer = dialogs_.file(question);
        if (!answer || answer->empty()) return std::nullopt;
        folders_[kind] = answer->parent_path();
        if (!saves(kind)) return answer;
        if (!answer->has_extension()) *answer += extension;
        bool taken = false;
        try {
            taken = file_exists(*answer);
        } catch (const FileError& error) {
            dialogs_.stop(path_text(*answer) + ": " + error.what(), "Error in GetFileName");
            return std::nullopt;
        }
        if (taken &&
            dialogs_.message({.text = path_text(*answer) + " already exists!\n  Do you want to replace it?",
                              .icon = Icon::Warning,
                              .buttons = Buttons::YesNo,
                              .default_answer = Answer::No}) != Answer::Yes) {
            continue;
        }
        if (!saves_basin(kind) || !is_reserved_name(*answer)) return answer;
        dialogs_.stop("This database file name, " + path_text(*answer) +
                          ", is reserved for system use.  Please choose another.",
                      "Invalid file name");
    }
}

}  // namespace nivora
