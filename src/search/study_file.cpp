#include "search/study_file.h"

#include "base/durable_file.h"
#include "base/output_file.h"
#include "base/version.h"
#include "search/study_changes.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <optional>
#include <utility>

namespace nivora {
namespace {

using TitleJson = nlohmann::ordered_json;

constexpr std::string_view k_mark = "# nivora ";
constexpr std::uintmax_t k_most_bytes = std::uintmax_t{8} << 30;
constexpr const char* k_full = "can't be written; is the disk full?";

[[noreturn]] void refuse(const std::filesystem::path& file, std::string_view reason) {
    throw FileError{fmt::format("{}: {}", path_text(file), reason)};
}

std::optional<StudyTitle> read_title(std::string_view line) {
    if (!line.starts_with(k_mark)) return std::nullopt;
    line.remove_prefix(k_mark.size());
    const std::size_t blank = std::min(line.find(' '), line.size());
    const TitleJson json = TitleJson::parse(line.substr(blank), nullptr, false);
    try {
        return StudyTitle{
            .kind = std::string{line.substr(0, blank)},
            .basin = json.at("basin").get<std::string>(),
            .options = json.at("options").dump(),
            .runs = json.at("runs").get<std::size_t>(),
            .span = {json.at("first").get<std::size_t>(), json.at("behind").get<std::size_t>()}};
    } catch (const TitleJson::exception&) {
        return std::nullopt;
    }
}

/// Takes a line from a text; nothing where none is complete.
std::optional<std::string_view> take_line(std::string_view& text) {
    const std::size_t end = text.find('\n');
    if (end == std::string_view::npos) return std::nullopt;
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(end + 1);
    return line;
}

/// A part of a study in memory.
struct Part {
    std::filesystem::path path;
    StudyTitle title;
    std::string names;
    std::string lines;
};

Part read_part(const std::filesystem::path& path) {
    const std::string content = read_whole_file(path, k_most_bytes);
    std::string_view rest = content;
    const auto first = take_line(rest);
    const auto title = first ? read_title(*first) : std::nullopt;
    const auto names = take_line(rest);
    if (!title || !names || title->span.first > title->span.behind)
        refuse(path, "this is not a part of a sample or a response");
    Part part{.path = path, .title = *title, .names = std::string{*names}, .lines = std::string{rest}};
    const auto lines = static_cast<std::size_t>(std::count(rest.begin(), rest.end(), '\n'));
    const std::size_t runs = title->span.behind - title->span.first;
    if (lines != runs || (!rest.empty() && !rest.ends_with('\n'))) {
        refuse(path, fmt::format(
                         "the part is not complete: {} of its {} runs are there; go on with it with --resume",
                         lines, runs));
    }
    return part;
}

bool is_same_study(const StudyTitle& a, const StudyTitle& b) {
    return a.kind == b.kind && a.basin == b.basin && a.options == b.options && a.runs == b.runs;
}

/// Checks that the parts, in order, are the whole study once.
void check_parts(const std::vector<Part>& parts, const std::filesystem::path& out) {
    const StudyTitle& first = parts.front().title;
    std::size_t runs = 0;
    for (const Part& part : parts) {
        if (!is_same_study(part.title, first) || part.names != parts.front().names)
            refuse(part.path, fmt::format("this part belongs to another {} than {}", first.kind,
                                          path_text(parts.front().path)));
        if (part.title.span.first > runs)
            refuse(out, fmt::format("the part with the runs {} to {} is missing", runs,
                                    part.title.span.first - 1));
        if (part.title.span.first < runs) refuse(part.path, "these runs are there twice");
        runs = part.title.span.behind;
    }
    if (runs != first.runs)
        refuse(out, fmt::format("the part with the runs {} to {} is missing", runs, first.runs - 1));
}

/// The options that differ, as the file has them; empty if none does.
std::string changed_options(const StudyTitle& stored, const StudyTitle& asked) {
    std::string changed = changed_option_values(stored.options, asked.options);
    const auto add = [&](const std::string& text) { changed += (changed.empty() ? "" : ", ") + text; };
    if (stored.runs != asked.runs) add(fmt::format("{} runs", stored.runs));
    if (stored.span.first != asked.span.first || stored.span.behind != asked.span.behind)
        add(fmt::format("the share with the runs {} to {}", stored.span.first,
                        std::max(stored.span.behind, stored.span.first + 1) - 1));
    return changed;
}

}  // namespace

std::string in_quotes(std::string_view text) {
    std::string result = "\"";
    for (const char character : text) {
        if (character == '"') result += '"';
        result += character;
    }
    return result + "\"";
}

std::string StudyTitle::line() const {
    const TitleJson json{{"program", fmt::format("Nivora {}", k_version)},
                         {"basin", basin},
                         {"options", TitleJson::parse(options)},
                         {"runs", runs},
                         {"first", span.first},
                         {"behind", span.behind}};
    return std::string{k_mark} + kind + " " + json.dump(-1, ' ', true, TitleJson::error_handler_t::replace) +
           "\n";
}

StudyFile::StudyFile(std::filesystem::path path, const StudyTitle& title, const std::string& names,
                     bool resume, const Take& take)
    : path_(std::move(path)) {
    if (resume) {
        read(title, names, take);
        file_.open(path_, std::ios::binary | std::ios::app);
    } else {
        // In one step: where the disk is full already, a file that is there stays.
        write_whole_file(path_, title.line() + names);
        file_.open(path_, std::ios::binary | std::ios::app);
    }
    if (!file_) refuse(path_, k_full);
    flush();
}

void StudyFile::read(const StudyTitle& title, const std::string& names, const Take& take) {
    const std::string content = read_whole_file(path_, k_most_bytes);
    std::string_view rest = content;
    const auto first = take_line(rest);
    const auto found = first ? read_title(*first) : std::nullopt;
    if (!found || found->kind != title.kind) refuse(path_, fmt::format("this is not a {}", title.kind));
    // The options first, since some of them, such as No Snow mode, show in the digest of the basin.
    if (const std::string changed = changed_options(*found, title); !changed.empty()) {
        refuse(path_, fmt::format("the options are not those that the {} was begun with; begin anew without "
                                  "--resume, or use these: {}",
                                  title.kind, changed));
    }
    if (found->basin != title.basin) {
        const std::string changed = changed_inputs(found->basin, title.basin);
        refuse(path_,
               fmt::format("the basin is not the one that the {} was begun with{}; begin anew without "
                           "--resume",
                           title.kind, changed.empty() ? changed : ": its " + changed + " have changed"));
    }
    const auto found_names = take_line(rest);
    if (!found_names || std::string{*found_names} + "\n" != names)
        refuse(path_, fmt::format("the {} is damaged", title.kind));
    std::size_t taken = 0;
    while (const auto line = take_line(rest)) {
        if (title.span.first + taken >= title.span.behind || !take(*line))
            refuse(path_, fmt::format("line {} is damaged; begin anew without --resume", taken + 3));
        ++taken;
    }
    std::error_code fault;
    std::filesystem::resize_file(path_, content.size() - rest.size(), fault);
    if (fault) refuse(path_, fault.message());
}

void StudyFile::add(const std::string& line) {
    file_.write(line.data(), static_cast<std::streamsize>(line.size()));
    if (!file_) refuse(path_, k_full);
}

void StudyFile::flush() {
    file_.flush();
    if (!file_) refuse(path_, k_full);
}

StudyTitle gather_parts(const std::vector<std::filesystem::path>& paths, const std::filesystem::path& out) {
    std::vector<Part> parts;
    parts.reserve(paths.size());
    for (const auto& path : paths) parts.push_back(read_part(path));
    std::stable_sort(parts.begin(), parts.end(), [](const Part& a, const Part& b) {
        return a.title.span.first < b.title.span.first ||
               (a.title.span.first == b.title.span.first && a.title.span.behind < b.title.span.behind);
    });
    check_parts(parts, out);
    StudyTitle whole = parts.front().title;
    whole.span = {0, whole.runs};
    OutputFile file{out, paths};
    file.write(whole.line());
    file.write(parts.front().names + "\n");
    for (const Part& part : parts) file.write(part.lines);
    file.finish();
    return whole;
}

}  // namespace nivora
