#include "batch/sample_command.h"

#include "base/durable_file.h"
#include "base/number_text.h"
#include "base/output_file.h"
#include "base/text.h"
#include "batch/commands.h"
#include "batch/interruption.h"
#include "batch/output_guard.h"
#include "batch/progress.h"
#include "batch/sample_picture.h"
#include "batch/study_options.h"
#include "plots/paint_methods.h"
#include "search/sample.h"
#include "search/sample_file.h"
#include "search/study_file.h"

#include <fmt/format.h>

#include <algorithm>
#include <memory>
#include <ostream>

namespace nivora {
namespace {

constexpr std::size_t k_most_sample_runs = 100'000'000;

/// The objectives of a sample are all measures that there are.
std::vector<std::string> all_objectives() {
    std::vector<std::string> names;
    for (const Objective& objective : objectives()) names.emplace_back(objective.name);
    return names;
}

/// What the runs of a sample are to the end of its command.
class SampleRuns {
public:
    SampleRuns(const StudyProblem& problem, const std::vector<KeepRule>& rules)
        : problem_(problem), rules_(rules) {}

    void add(std::size_t index, const std::vector<std::optional<double>>& values) {
        for (std::size_t i = 0; i < values.size(); ++i) {
            by_objective_.resize(values.size());
            by_objective_[i].push_back(values[i]);
        }
        const bool none =
            std::none_of(values.begin(), values.end(), [](const auto& value) { return value.has_value(); });
        if (none) ++failed_;
        if (keeps_run(problem_, rules_, values)) kept_.push_back(index);
    }

    [[nodiscard]] std::size_t count() const {
        return by_objective_.empty() ? 0 : by_objective_.front().size();
    }
    [[nodiscard]] std::size_t failed() const { return failed_; }
    [[nodiscard]] const std::vector<std::size_t>& kept() const { return kept_; }
    [[nodiscard]] const std::vector<std::optional<double>>& values(std::size_t objective) const {
        return by_objective_[objective];
    }

private:
    const StudyProblem& problem_;
    const std::vector<KeepRule>& rules_;
    std::vector<std::vector<std::optional<double>>> by_objective_;
    std::vector<std::size_t> kept_;
    std::size_t failed_ = 0;
};

void print_ranges_of_measures(const StudyProblem& problem, const SampleRuns& runs, std::ostream& out) {
    out << fmt::format("\n{:20}{:>14}{:>14}{:>14}\n", "Measure", "least", "median", "greatest");
    for (std::size_t i = 0; i < problem.objectives().size(); ++i) {
        std::vector<double> values;
        for (const auto& value : runs.values(i)) {
            if (value) values.push_back(*value);
        }
        std::sort(values.begin(), values.end());
        const auto text = [&](double share) {
            return values.empty() ? std::string{"-"} : seven_digit_text(quantile_of(values, share));
        };
        out << fmt::format("{:20}{:>14}{:>14}{:>14}\n", problem.objectives()[i]->name, text(0.0), text(0.5),
                           text(1.0));
    }
}

/// A row for each measure, a column for each range, numbered.
void print_sensitivities(const StudyProblem& problem, const SampleRuns& runs, std::ostream& out) {
    std::vector<const FreeRange*> wide;
    for (const FreeRange& range : problem.ranges()) {
        if (range.low < range.high) wide.push_back(&range);
    }
    out << "\nSensitivity: the share of a measure's variance that a range explains\n";
    for (std::size_t i = 0; i < wide.size(); ++i) out << fmt::format("({}) {}\n", i + 1, wide[i]->text);
    for (const bool total : {false, true}) {
        out << fmt::format("\n{:20}", total ? "Total index" : "First-order index");
        for (std::size_t i = 0; i < wide.size(); ++i)
            out << fmt::format("{:>10}", fmt::format("({})", i + 1));
        out << '\n';
        for (std::size_t i = 0; i < problem.objectives().size(); ++i) {
            out << fmt::format("{:20}", problem.objectives()[i]->name);
            const auto indices = sensitivities(runs.values(i), wide.size());
            for (const Sensitivity& index : indices)
                out << fmt::format("{:>10.3f}", total ? index.total : index.first_order);
            if (indices.empty()) out << "  -";
            out << '\n';
        }
    }
}

/// A name as a field, in quotation marks where it needs them.
std::string csv_name(const std::string& name) {
    return name.find_first_of(",\"\r\n") == std::string::npos ? name : in_quotes(name);
}

std::string bands_csv(const StudyProblem& problem, const FlowBands& bands) {
    const bool several = problem.cases().size() > 1;
    std::string text = several ? "Simulation,Date,Measured" : "Date,Measured";
    for (const double share : k_band_shares) text += fmt::format(",Q{:02.0f}", share * 100.0);
    text += '\n';
    const auto number = [](double value) { return is_missing(value) ? std::string{} : shortest_text(value); };
    for (std::size_t index = 0; index < problem.cases().size(); ++index) {
        const StudyCase& one = problem.cases()[index];
        const DailyDischarge& series = one.basin->measured;
        for (std::size_t day = 0; day < series.dates.size(); ++day) {
            if (several) text += csv_name(one.name) + ",";
            text += iso_date_text(series.dates[day]) + "," + number(series.measured[day]);
            for (const double quantile : bands.days[index][day].quantiles) text += "," + number(quantile);
            text += '\n';
        }
    }
    return text;
}

std::vector<std::filesystem::path> band_files(const SampleCommand& command) {
    std::vector<std::filesystem::path> files;
    if (command.bands) files.push_back(*command.bands);
    if (command.picture) files.push_back(command.picture->file);
    return files;
}

/// Before the work, since it may take hours. @throws FileError
void refuse_outputs(const SampleCommand& command) {
    if (command.picture) static_cast<void>(paint_methods());
    refuse_basin_as_output(command.out, command.study.source.basin);
    std::vector<std::filesystem::path> taken{command.out};
    for (const std::filesystem::path& file : band_files(command)) {
        refuse_basin_as_output(file, command.study.source.basin);
        if (std::any_of(taken.begin(), taken.end(),
                        [&](const std::filesystem::path& other) { return same_file(file, other); })) {
            throw FileError(fmt::format("Two outputs have the same name '{}'. Give each a name of its own.",
                                        path_text(file)));
        }
        // Where the folder can't be written to, this says so.
        const OutputFile probe{file, taken};
        taken.push_back(file);
    }
}

/// Both files or, where one has no room, none of them.
void write_band_files(const SampleCommand& command, const StudyProblem& problem, const FlowBands& bands,
                      const SampleRuns& runs) {
    const std::vector<std::filesystem::path> never{command.study.source.basin, command.out};
    std::vector<std::unique_ptr<OutputFile>> files;
    files.reserve(2);
    if (command.bands) {
        files.push_back(std::make_unique<OutputFile>(*command.bands, never));
        files.back()->write(bands_csv(problem, bands));
    }
    if (command.picture) {
        files.push_back(std::make_unique<OutputFile>(command.picture->file, never));
        files.back()->write(
            drawn_bands(band_picture(problem, bands, runs.kept().size(), runs.count()), *command.picture));
    }
    for (const auto& file : files) file->complete();
    for (const auto& file : files) file->finish();
}

/// Computes the bands of the kept runs. @return false where the user stopped it
bool write_bands(const SampleCommand& command, const StudyProblem& problem, const SampleDesign& design,
                 const SampleRuns& runs, StudyPool& pool, const Interruption& interruption, std::ostream& out,
                 std::ostream& err, bool terminal) {
    Progress progress{err, terminal, "runs of the bands", runs.kept().size()};
    const FlowBands bands = flow_bands(problem, design, runs.kept(), pool,
                                       {.stops = [&] { return interruption.asked(); },
                                        .progress = [&](std::size_t done) { progress.update(done); }});
    if (bands.stopped) return false;
    write_band_files(command, problem, bands, runs);
    out << '\n' << bands_line(runs.kept().size(), bands) << '\n';
    return true;
}

std::string command_problem(const SampleCommand& command, const SampleDesign& design) {
    if (command.sensitivity && command.runs / design.group() < 2) {
        return fmt::format("With --sensitivity the runs stand in groups of {}: at least {} are needed.",
                           design.group(), 2 * design.group());
    }
    if (command.parts > 1 && command.needs_bands())
        return "A part of a sample has no bands. Put the parts together with 'gather', then use --resume "
               "with --bands or --picture.";
    return {};
}

int sample(const SampleCommand& command, BatchDialogs& dialogs, std::ostream& out, std::ostream& err,
           bool terminal) {
    refuse_outputs(command);
    const auto problem = study_problem(command.study, dialogs);
    if (!problem) return k_failed;
    const SampleDesign design{problem->dimensions(), command.study.seed, command.sensitivity};
    if (const std::string text = command_problem(command, design); !text.empty()) {
        dialogs.report_problem("The study can't begin", text);
        return k_failed;
    }
    const RunSpan span = runs_of(design, command.runs, {command.part, command.parts});
    SampleFile file{command.out,
                    sample_title(*problem, command.study, command.runs, command.sensitivity, span), *problem,
                    command.resume};
    SampleRuns runs{*problem, command.keep};
    for (const StoredRun& run : file.stored()) runs.add(run.index, run.values);
    if (command.resume) dialogs.report_note(fmt::format("{} runs are taken over.", runs.count()));

    const Interruption interruption;
    StudyPool pool{command.study.threads};
    {
        const RunSpan rest{span.first + runs.count(), span.behind};
        Progress progress{err, terminal, "runs", rest.behind - rest.first};
        run_sample(*problem, design, rest, pool,
                   {.stops = [&] { return interruption.asked(); },
                    .progress = [&](std::size_t done) { progress.update(done); }},
                   [&](const SampleRun& run) {
                       file.add(run);
                       runs.add(run.index, run.values);
                   });
        file.flush();
    }
    out << fmt::format("Sample of simulation '{}', {} of {} runs", problem->cases().front().name,
                       runs.count(), span.behind - span.first);
    if (runs.failed() > 0) out << fmt::format(", of which {} gave no measure", runs.failed());
    out << fmt::format(", {} kept\n", runs.kept().size());
    if (runs.count() > 0) print_ranges_of_measures(*problem, runs, out);
    const auto stopped = [&] {
        dialogs.report_note("Stopped. The same command with --resume goes on from here.");
        return k_stopped;
    };
    if (runs.count() < span.behind - span.first) return stopped();
    if (command.sensitivity && command.parts == 1) print_sensitivities(*problem, runs, out);
    if (!command.needs_bands()) return k_done;
    if (runs.kept().empty()) {
        dialogs.report_problem("No bands", "No run was kept, so that there are no bands.");
        return k_failed;
    }
    return write_bands(command, *problem, design, runs, pool, interruption, out, err, terminal) ? k_done
                                                                                                : stopped();
}

std::string keep_problem(const std::string& text) {
    const auto rule = read_keep_rule(text);
    return std::holds_alternative<std::string>(rule) ? std::get<std::string>(rule) : std::string{};
}

}  // namespace

struct SampleTexts {
    StudyTexts study;
    std::size_t runs = 10000;
    std::string share = "1/1";
    bool sensitivity = false;
    std::vector<std::string> keep;
    std::string out;
    std::string bands;
    BandPictureTexts picture;
    bool resume = false;
};

SampleOptions::SampleOptions(CLI::App& app)
    : texts_(std::make_unique<SampleTexts>()),
      command_(
          app.add_subcommand("sample",
                             "Run a simulation many times over ranges: the measures of every run, the bands "
                             "of the discharge, and how much each range matters")) {
    add_study_options(*command_, texts_->study);
    command_->add_option("--runs", texts_->runs, "Number of runs")
        ->check(CLI::Range(std::size_t{1}, k_most_sample_runs))
        ->capture_default_str();
    command_->add_option("--out", texts_->out, "CSV with a line for each run")->required();
    command_
        ->add_option("--keep", texts_->keep,
                     "Keep the runs that reach a measure, such as KGE>0.7; may be repeated")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->check(CLI::Validator(keep_problem, "RULE"));
    command_->add_option(
        "--bands", texts_->bands,
        "CSV with the 5, 25, 50, 75 and 95 % quantiles of the kept runs' discharge for each day");
    add_picture_options(*command_, texts_->picture);
    command_->add_flag("--sensitivity", texts_->sensitivity,
                       "Choose the runs so that they give sensitivity indices, and print these");
    add_share_option(*command_, texts_->share);
    command_->add_flag("--resume", texts_->resume,
                       "Go on with a sample that was stopped, with the same options, or add its bands");
}

SampleOptions::~SampleOptions() = default;

SampleCommand SampleOptions::command(std::chrono::milliseconds wait) const {
    SampleCommand command;
    command.study = study_of(texts_->study, wait);
    command.study.objectives = all_objectives();
    command.study.reported_only = true;
    command.runs = texts_->runs;
    const SampleShare share = read_share(texts_->share).value_or(SampleShare{});
    command.part = share.number;
    command.parts = share.parts;
    command.sensitivity = texts_->sensitivity;
    for (const std::string& text : texts_->keep)
        command.keep.push_back(std::get<KeepRule>(read_keep_rule(text)));
    command.out = path_from_utf8(texts_->out);
    if (command_->count("--bands") > 0) command.bands = path_from_utf8(texts_->bands);
    command.picture = picture_of(texts_->picture);
    command.resume = texts_->resume;
    return command;
}

int sample_command(const SampleCommand& command, BatchDialogs& dialogs, std::ostream& out, std::ostream& err,
                   bool terminal) {
    try {
        return sample(command, dialogs, out, err, terminal);
    } catch (const FileError& error) {
        dialogs.report_problem("The sample stopped", error.what());
    }
    return k_failed;
}

struct GatherTexts {
    std::vector<std::string> parts;
    std::string out;
};

GatherOptions::GatherOptions(CLI::App& app)
    : texts_(std::make_unique<GatherTexts>()),
      command_(app.add_subcommand("gather", "Put the parts of a sample or of a response together")) {
    command_->add_option("PART.csv", texts_->parts, "The files of all parts")->required();
    command_->add_option("--out", texts_->out, "CSV of the whole")->required();
}

GatherOptions::~GatherOptions() = default;

int GatherOptions::run(BatchDialogs& dialogs, std::ostream& out) const {
    std::vector<std::filesystem::path> parts;
    for (const std::string& part : texts_->parts) parts.push_back(path_from_utf8(part));
    try {
        const StudyTitle whole = gather_parts(parts, path_from_utf8(texts_->out));
        out << fmt::format("{} {} of {} parts\n", whole.runs,
                           whole.kind == "response" ? "evaluations" : "runs", parts.size());
        return k_done;
    } catch (const FileError& error) {
        dialogs.report_problem("The parts can't be put together", error.what());
    }
    return k_failed;
}

}  // namespace nivora
