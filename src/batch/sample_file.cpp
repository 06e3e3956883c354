#include "batch/sample_file.h"

#include "base/durable_file.h"
#include "base/number_text.h"
#include "base/output_file.h"
#include "base/version.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <charconv>
#include <string_view>

namespace nivora {
namespace {

using TitleJson = nlohmann::ordered_json;

constexpr std::string_view k_mark = "# nivora sample ";
constexpr std::uintmax_t k_most_bytes = std::uintmax_t{8} << 30;

[[noreturn]] void refuse(const std::filesystem::path& file, std::string_view reason) {
    throw FileError{fmt::format("{}: {}", path_text(file), reason)};
}

/// A text in quotation marks, since a range has commas.
std::string in_quotes(std::string_view text) {
    std::string result = "\"";
    for (const char character : text) {
        if (character == '"') result += '"';
        result += character;
    }
    return result + "\"";
}

std::optional<SampleTitle> read_title(std::string_view line) {
    if (!line.starts_with(k_mark)) return std::nullopt;
    const TitleJson json = TitleJson::parse(line.substr(k_mark.size()), nullptr, false);
    try {
        return SampleTitle{
            .basin = json.at("basin").get<std::string>(),
            .options = json.at("options").dump(),
            .runs = json.at("runs").get<std::size_t>(),
            .span = {json.at("first").get<std::size_t>(), json.at("behind").get<std::size_t>()}};
    } catch (const TitleJson::exception&) {
        return std::nullopt;
    }
}

/// The fields behind the last `count` commas of a line; nothing where it has fewer.
std::optional<std::vector<std::string_view>> last_fields(std::string_view line, std::size_t count) {
    std::vector<std::string_view> fields(count);
    for (std::size_t i = count; i-- > 0;) {
        const std::size_t comma = line.rfind(',');
        if (comma == std::string_view::npos) return std::nullopt;
        fields[i] = line.substr(comma + 1);
        line = line.substr(0, comma);
    }
    return fields;
}

/// A run's line. @return nothing where it is damaged
std::optional<StoredRun> read_run(std::string_view line, std::size_t measures) {
    StoredRun run;
    const auto [end, error] = std::from_chars(line.data(), line.data() + line.size(), run.index);
    const auto fields = last_fields(line, measures);
    if (error != std::errc{} || !fields) return std::nullopt;
    for (const std::string_view field : *fields) {
        const auto value = exact_number(field);
        if (!value && !field.empty()) return std::nullopt;
        run.values.push_back(value);
    }
    return run;
}

/// Takes a line from a text; nothing where none is complete.
std::optional<std::string_view> take_line(std::string_view& text) {
    const std::size_t end = text.find('\n');
    if (end == std::string_view::npos) return std::nullopt;
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(end + 1);
    return line;
}

/// A part of a sample in memory.
struct Part {
    std::filesystem::path path;
    SampleTitle title;
    std::string names;
    std::string lines;
};

Part read_part(const std::filesystem::path& path) {
    const std::string content = read_whole_file(path, k_most_bytes);
    std::string_view rest = content;
    const auto first = take_line(rest);
    const auto title = first ? read_title(*first) : std::nullopt;
    const auto names = take_line(rest);
    if (!title || !names) refuse(path, "this is not a part of a sample");
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

}  // namespace

std::string SampleTitle::line() const {
    const TitleJson json{{"program", fmt::format("Nivora {}", k_version)},
                         {"basin", basin},
                         {"options", TitleJson::parse(options)},
                         {"runs", runs},
                         {"first", span.first},
                         {"behind", span.behind}};
    return std::string{k_mark} + json.dump(-1, ' ', true, TitleJson::error_handler_t::replace) + "\n";
}

std::string sample_names(const StudyProblem& problem) {
    std::string line = "Run";
    for (const FreeRange& range : problem.ranges()) line += "," + in_quotes(range.text);
    for (const Objective* objective : problem.objectives()) line += fmt::format(",{}", objective->name);
    return line + "\n";
}

SampleFile::SampleFile(std::filesystem::path path, const SampleTitle& title, const StudyProblem& problem,
                       bool resume)
    : path_(std::move(path)) {
    if (resume) {
        read(title, problem);
        file_.open(path_, std::ios::binary | std::ios::app);
    } else {
        refuse_unwritable(path_);
        file_.open(path_, std::ios::binary | std::ios::trunc);
        write(title.line() + sample_names(problem));
    }
    flush();
}

void SampleFile::read(const SampleTitle& title, const StudyProblem& problem) {
    const std::string content = read_whole_file(path_, k_most_bytes);
    std::string_view rest = content;
    const auto first = take_line(rest);
    const auto found = first ? read_title(*first) : std::nullopt;
    if (!found) refuse(path_, "this is not a sample");
    if (found->basin != title.basin)
        refuse(path_, "the basin is not the one that the sample was begun with; begin anew without --resume");
    if (found->options != title.options || found->runs != title.runs ||
        found->span.first != title.span.first || found->span.behind != title.span.behind) {
        refuse(path_,
               fmt::format("the options are not those that the sample was begun with; begin anew without "
                           "--resume, or use these: {} runs, {}",
                           found->runs, found->options));
    }
    const auto names = take_line(rest);
    if (!names || std::string{*names} + "\n" != sample_names(problem)) refuse(path_, "the sample is damaged");
    while (const auto line = take_line(rest)) {
        auto run = read_run(*line, problem.objectives().size());
        if (!run || run->index != title.span.first + stored_.size() || run->index >= title.span.behind)
            refuse(path_, fmt::format("line {} is damaged; begin anew without --resume", stored_.size() + 3));
        stored_.push_back(std::move(*run));
    }
    std::error_code fault;
    std::filesystem::resize_file(path_, content.size() - rest.size(), fault);
    if (fault) refuse(path_, fault.message());
}

void SampleFile::add(const SampleRun& run) {
    std::string line = std::to_string(run.index);
    for (const double number : run.numbers) line += "," + shortest_text(number);
    for (const auto& value : run.values) line += "," + (value ? shortest_text(*value) : std::string{});
    write(line + "\n");
}

void SampleFile::write(const std::string& text) {
    file_.write(text.data(), static_cast<std::streamsize>(text.size()));
    if (!file_) refuse(path_, "can't be written; is the disk full?");
}

void SampleFile::flush() {
    file_.flush();
    if (!file_) refuse(path_, "can't be written; is the disk full?");
}

std::size_t gather_samples(const std::vector<std::filesystem::path>& paths,
                           const std::filesystem::path& out) {
    std::vector<Part> parts;
    parts.reserve(paths.size());
    for (const auto& path : paths) parts.push_back(read_part(path));
    std::stable_sort(parts.begin(), parts.end(), [](const Part& a, const Part& b) {
        return a.title.span.first < b.title.span.first ||
               (a.title.span.first == b.title.span.first && a.title.span.behind < b.title.span.behind);
    });
    const SampleTitle& first = parts.front().title;
    std::size_t runs = 0;
    for (const Part& part : parts) {
        if (part.title.basin != first.basin || part.title.options != first.options ||
            part.title.runs != first.runs || part.names != parts.front().names)
            refuse(part.path, "this part belongs to another sample than " + path_text(parts.front().path));
        if (part.title.span.first > runs)
            refuse(out, fmt::format("the part with the runs {} to {} is missing", runs,
                                    part.title.span.first - 1));
        if (part.title.span.first < runs) refuse(part.path, "these runs are there twice");
        runs = part.title.span.behind;
    }
    if (runs != first.runs)
        refuse(out, fmt::format("the part with the runs {} to {} is missing", runs, first.runs - 1));
    SampleTitle whole = first;
    whole.span = {0, runs};
    OutputFile file{out, paths};
    file.write(whole.line());
    file.write(parts.front().names + "\n");
    for (const Part& part : parts) file.write(part.lines);
    file.finish();
    return runs;
}

}  // namespace nivora
