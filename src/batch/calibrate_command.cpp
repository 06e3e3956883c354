#include "batch/calibrate_command.h"

#include "base/durable_file.h"
#include "batch/calibrate_output.h"
#include "batch/commands.h"
#include "batch/interruption.h"
#include "batch/output_guard.h"
#include "batch/progress.h"
#include "batch/study_options.h"
#include "search/calibration.h"
#include "search/fitted_simulation.h"
#include "search/study_changes.h"
#include "search/study_digest.h"

#include <fmt/format.h>

#include <memory>
#include <ostream>

namespace nivora {
namespace {

constexpr std::size_t k_most_evaluations = 100'000'000;

/// The state of the search stands beside its result until it is complete.
std::filesystem::path state_file(const std::filesystem::path& out) {
    std::filesystem::path file = out;
    file += ".state";
    return file;
}

void refuse_outputs(const CalibrateCommand& command) {
    if (!command.out) return;
    for (const std::filesystem::path& file : {*command.out, state_file(*command.out)})
        refuse_basin_as_output(file, command.study.source.basin);
}

std::unique_ptr<StudyJournal> journal_of(const CalibrateCommand& command, const StudyProblem& problem,
                                         const std::string& options, const SearchOptions& how) {
    const std::size_t lanes = search_lanes(problem, how);
    if (!command.out) return std::make_unique<StudyJournal>(lanes);
    return std::make_unique<StudyJournal>(state_file(*command.out),
                                          JournalTitle{.basin = study_digest(problem),
                                                       .options = options,
                                                       .lanes = lanes,
                                                       .costs = problem.objectives().size(),
                                                       .changed_basin = changed_inputs,
                                                       .changed_options = changed_option_values},
                                          command.resume);
}

/// Searches with a bar or lines on standard error.
FoundSets watched_search(const CalibrateCommand& command, const StudyProblem& problem,
                         const SearchOptions& how, StudyJournal& journal, std::ostream& err, bool terminal) {
    const Interruption interruption;
    Progress progress{err, terminal, "evaluations", how.evaluations};
    StudyPool pool{command.study.threads};
    return search(problem, how, pool, journal,
                  {.stops = [&] { return interruption.asked(); },
                   .progress = [&](std::size_t done) { progress.update(done); }});
}

/// Stores the best set, or the first of a front. @return false after a report
bool store_best(const CalibrateCommand& command, const StudyProblem& problem, const FoundSets& found,
                BatchDialogs& dialogs, std::ostream& out) {
    if (!command.save_as) return true;
    if (!store_fitted(command.study.source.basin, command.study.source.simulation, *command.save_as, problem,
                      found.sets.front().numbers, command.study.wait, dialogs))
        return false;
    out << fmt::format("Stored {} as the simulation '{}'\n",
                       found.sets.size() > 1 ? "the first set" : "what was found", *command.save_as);
    return true;
}

/// Stores the best set. Where that fails, such as in a basin that another program holds, the state of the
/// search stays, so that the next command stores it without a search.
bool stores_best(const CalibrateCommand& command, const StudyProblem& problem, const FoundSets& found,
                 BatchDialogs& dialogs, std::ostream& out) {
    const auto note = [&] {
        if (command.out)
            dialogs.report_note("The same command with --resume stores what was found without a new search.");
    };
    try {
        if (store_best(command, problem, found, dialogs, out)) return true;
    } catch (const StoreError&) {
        note();
        throw;
    }
    note();
    return false;
}

int calibrate(const CalibrateCommand& command, BatchDialogs& dialogs, std::ostream& out, std::ostream& err,
              bool terminal) {
    refuse_outputs(command);
    const auto problem = study_problem(command.study, dialogs);
    if (!problem) return k_failed;
    if (command.save_as) {
        const std::string text =
            fitted_name_problem(command.study.source.basin, command.study.source.simulation, *command.save_as,
                                *problem, command.study.wait, dialogs);
        if (!text.empty()) {
            dialogs.report_problem("The study can't begin", text);
            return k_failed;
        }
    }
    const SearchOptions how{.evaluations = command.evaluations, .seed = command.study.seed};
    const std::string options = study_options_line(*problem, command.study, command.evaluations);
    const auto journal = journal_of(command, *problem, options, how);
    if (command.resume)
        dialogs.report_note(
            fmt::format("{} evaluations of the former search are taken over.", journal->resumed()));
    const FoundSets found = watched_search(command, *problem, how, *journal, err, terminal);
    print_found(*problem, found, out);
    if (command.out) write_whole_file(*command.out, found_json(*problem, found, options));
    if (found.stopped) {
        dialogs.report_note(command.out ? "Stopped. The same command with --resume goes on from here."
                                        : "Stopped. With --out a search can be gone on with.");
        return k_stopped;
    }
    if (!found.sets.empty() && !stores_best(command, *problem, found, dialogs, out)) return k_failed;
    if (command.out) std::filesystem::remove(state_file(*command.out));
    if (!found.sets.empty()) return k_done;
    dialogs.report_problem("Nothing found",
                           "No numbers of these ranges gave a run with the measures that were asked "
                           "for. Does the simulation run without them?");
    return k_failed;
}

}  // namespace

struct CalibrateTexts {
    StudyTexts study;
    std::vector<std::string> objectives{"KGE"};
    std::size_t evaluations = 5000;
    std::string out;
    std::string save_as;
    bool resume = false;
};

CalibrateOptions::CalibrateOptions(CLI::App& app)
    : texts_(std::make_unique<CalibrateTexts>()),
      command_(app.add_subcommand(
          "calibrate", "Search the numbers that make the computed discharge meet the measured one best")) {
    add_study_options(*command_, texts_->study);
    command_
        ->add_option("--objective", texts_->objectives,
                     "A measure to make best; may be repeated, which gives the front of compromises")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->capture_default_str();
    command_->add_option("--evaluations", texts_->evaluations, "The most runs of the model")
        ->check(CLI::Range(std::size_t{1}, k_most_evaluations))
        ->capture_default_str();
    CLI::Option* out = command_->add_option("--out", texts_->out, "Write what was found as JSON");
    command_->add_option("--save-as", texts_->save_as,
                         "Store what was found as a new simulation of this name, with its own parameters");
    command_
        ->add_flag("--resume", texts_->resume, "Go on with a search that was stopped, with the same options")
        ->needs(out);
}

CalibrateOptions::~CalibrateOptions() = default;

CalibrateCommand CalibrateOptions::command(std::chrono::milliseconds wait) const {
    CalibrateCommand command;
    command.study = study_of(texts_->study, wait);
    command.study.objectives = texts_->objectives;
    command.evaluations = texts_->evaluations;
    if (command_->count("--out") > 0) command.out = path_from_utf8(texts_->out);
    if (command_->count("--save-as") > 0) command.save_as = texts_->save_as;
    command.resume = texts_->resume;
    return command;
}

int calibrate_command(const CalibrateCommand& command, BatchDialogs& dialogs, std::ostream& out,
                      std::ostream& err, bool terminal) {
    try {
        return calibrate(command, dialogs, out, err, terminal);
    } catch (const FileError& error) {
        dialogs.report_problem("The calibration stopped", error.what());
    } catch (const StoreError& error) {
        dialogs.report_problem("The calibration stopped", error.what());
    }
    return k_failed;
}

}  // namespace nivora
