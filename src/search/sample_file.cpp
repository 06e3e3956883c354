#include "search/sample_file.h"

#include "base/number_text.h"
#include "search/study_digest.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <charconv>
#include <string_view>
#include <utility>

namespace nivora {
namespace {

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
    run.values.reserve(fields->size());
    for (const std::string_view field : *fields) {
        const auto value = exact_number(field);
        if (!value && !field.empty()) return std::nullopt;
        run.values.push_back(value);
    }
    return run;
}

}  // namespace

StudyTitle sample_title(const StudyProblem& problem, const StudyCommand& command, std::size_t runs,
                        bool sensitivity, const RunSpan& span) {
    auto options = nlohmann::ordered_json::parse(study_options_line(problem, command, runs));
    options["sensitivity"] = sensitivity;
    const SampleDesign design{problem.dimensions(), command.seed, sensitivity};
    return {.kind = "sample",
            .basin = study_digest(problem),
            .options = options.dump(),
            .runs = runs / design.group() * design.group(),
            .span = span};
}

std::string sample_names(const StudyProblem& problem) {
    std::string line = "Run";
    for (const FreeRange& range : problem.ranges()) line += "," + in_quotes(range.text);
    for (const Objective* objective : problem.objectives()) line += fmt::format(",{}", objective->name);
    return line + "\n";
}

SampleFile::SampleFile(std::filesystem::path path, const StudyTitle& title, const StudyProblem& problem,
                       bool resume)
    : file_(std::move(path), title, sample_names(problem), resume, [&](std::string_view line) {
          auto run = read_run(line, problem.objectives().size());
          if (!run || run->index != title.span.first + stored_.size()) return false;
          stored_.push_back(std::move(*run));
          return true;
      }) {}

std::string sample_line(const SampleRun& run) {
    std::string line = std::to_string(run.index);
    for (const double number : run.numbers) line += "," + shortest_text(number);
    for (const auto& value : run.values) line += "," + (value ? shortest_text(*value) : std::string{});
    return line + "\n";
}

void SampleFile::add(const SampleRun& run) { file_.add(sample_line(run)); }

}  // namespace nivora
