#include "batch/study_options.h"

#include "base/durable_file.h"
#include "studies/study_pool.h"

#include <charconv>

namespace nivora {
namespace {

std::string period_problem(const std::string& text) {
    return read_iso_period(text) ? std::string{}
                                 : "'" + text + "' is not a period such as 2001-10-01..2002-09-30";
}

/// FILE:SIMULATION; a simulation's name has no colon that a file's name may have.
StudySource source_of(const std::string& text) {
    const std::size_t colon = text.rfind(':');
    return {path_from_utf8(text.substr(0, colon)), text.substr(colon + 1)};
}

std::string source_problem(const std::string& text) {
    const std::size_t colon = text.rfind(':');
    const bool complete = colon != std::string::npos && colon > 0 && colon + 1 < text.size();
    return complete ? std::string{} : "'" + text + "' is not of the form BASIN.mdb:SIMULATION";
}

std::vector<StudySource> sources_of(const std::vector<std::string>& texts) {
    std::vector<StudySource> sources;
    sources.reserve(texts.size());
    for (const std::string& text : texts) sources.push_back(source_of(text));
    return sources;
}

std::string share_problem(const std::string& text) {
    return read_share(text) ? std::string{} : "'" + text + "' is not a share such as 3/16";
}

}  // namespace

void add_share_option(CLI::App& command, std::string& text) {
    command.add_option("--share", text, "Compute one of several parts, such as 3/16")
        ->check(CLI::Validator(share_problem, "PART"))
        ->capture_default_str();
}

std::optional<SampleShare> read_share(std::string_view text) {
    constexpr std::size_t k_most_parts = 1'000'000;
    const std::size_t slash = text.find('/');
    if (slash == std::string_view::npos) return std::nullopt;
    const auto whole = [](std::string_view part) -> std::optional<std::size_t> {
        std::size_t number = 0;
        const auto [end, error] = std::from_chars(part.data(), part.data() + part.size(), number);
        if (error != std::errc{} || end != part.data() + part.size()) return std::nullopt;
        return number;
    };
    const auto number = whole(text.substr(0, slash));
    const auto parts = whole(text.substr(slash + 1));
    if (!number || !parts || *number < 1 || *number > *parts || *parts > k_most_parts) return std::nullopt;
    return SampleShare{*number, *parts};
}

void add_study_options(CLI::App& command, StudyTexts& texts) {
    texts.threads = usual_threads();
    command.add_option("BASIN.mdb", texts.basin, "Basin file; it is read only")->required();
    command.add_option("--simulation", texts.simulation, "Name of the simulation")->required();
    command
        .add_option(
            "--free", texts.free,
            "What may change, as VARIABLE:ACTION:LOW..HIGH:ZONES[:FIRST..LAST]; may be repeated. The "
            "variable is one of a scenario or a field's name, the action is set, add or multiply, the "
            "zones are All or letters with commas between them")
        ->required()
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->type_name("RANGE");
    command
        .add_option("--fit", texts.fit, "Days to compare, FIRST..LAST; those of the simulation if not given")
        ->check(CLI::Validator(period_problem, "PERIOD"));
    command.add_option("--check", texts.check, "Days that are only reported, FIRST..LAST")
        ->check(CLI::Validator(period_problem, "PERIOD"));
    command
        .add_option("--with", texts.with,
                    "Compare another simulation as well, as BASIN.mdb:SIMULATION; may be repeated")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->check(CLI::Validator(source_problem, "SOURCE"));
    command
        .add_option("--check-with", texts.check_with,
                    "Report another simulation as well, as BASIN.mdb:SIMULATION; may be repeated")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->check(CLI::Validator(source_problem, "SOURCE"));
    command.add_flag("--no-snow", texts.no_snow, "Run in No Snow mode");
    command.add_option("--threads", texts.threads, "Threads; the results do not depend on them")
        ->check(CLI::Range(1U, k_most_threads))
        ->default_str("all cores");
    command.add_option("--seed", texts.seed, "Begins the chance numbers; another seed, another course")
        ->capture_default_str();
}

StudyCommand study_of(const StudyTexts& texts, std::chrono::milliseconds wait) {
    StudyCommand command;
    command.source = {path_from_utf8(texts.basin), texts.simulation};
    command.with = sources_of(texts.with);
    command.check_with = sources_of(texts.check_with);
    command.free = texts.free;
    command.fit = read_iso_period(texts.fit);
    command.check = read_iso_period(texts.check);
    command.no_snow = texts.no_snow;
    command.threads = texts.threads;
    command.seed = texts.seed;
    command.wait = wait;
    return command;
}

}  // namespace nivora
