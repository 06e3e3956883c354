#include "batch/response_command.h"

#include "base/durable_file.h"
#include "base/iso_date.h"
#include "batch/commands.h"
#include "batch/interruption.h"
#include "batch/output_guard.h"
#include "batch/progress.h"
#include "batch/response_picture.h"
#include "batch/response_table.h"
#include "batch/selected_simulation.h"
#include "batch/study_file.h"
#include "engine/run_driver.h"
#include "paint/plot_picture.h"
#include "search/study_digest.h"
#include "store/basin_opening.h"

#include <fmt/format.h>

#include <algorithm>
#include <memory>
#include <ostream>
#include <span>

namespace nivora {
namespace {

/// The basin of a response, and its pairs.
struct ResponseStudy {
    ResponseHead head;
    std::shared_ptr<const StudyBasin> basin;
    std::vector<ClimateChange> pairs;
    RunSpan span;  ///< of the pairs that this command evaluates
};

/// Reads the basin; nothing after a report.
std::optional<ResponseStudy> read_study(const ResponseCommand& command, BatchDialogs& dialogs) {
    Desktop no_desktop;
    Session session{dialogs, no_desktop};
    const OpenBasin open = open_to_read(command.basin, command.wait, Check::All);
    if (!select_in(session, open.database(), command.basin, command.simulation, dialogs)) return std::nullopt;
    RunRequest request;
    request.RunKind = k_year_round_simulation;
    auto read = read_study_basin(open.database(), session.basin, request);
    if (const auto* problem = std::get_if<Message>(&read)) {
        dialogs.message(*problem);
        return std::nullopt;
    }
    ResponseStudy study{.head = {.basin = session.basin.basin_name,
                                 .simulation = session.basin.Current_Sim_Name,
                                 .winter_end = read_iso_date(command.winter_end).value_or(0),
                                 .units = session.basin.Units_Code},
                        .basin = std::get<std::shared_ptr<const StudyBasin>>(read),
                        .pairs = all_pairs(command.temperature, command.precipitation),
                        .span = {}};
    if (const std::string problem = winter_end_problem(*study.basin, study.head.winter_end);
        !problem.empty()) {
        dialogs.report_problem("Invalid dates", problem);
        return std::nullopt;
    }
    study.span = part_of(study.pairs.size(), command.share);
    return study;
}

std::string options_line(const ResponseStudy& study, const ResponseCommand& command) {
    const UnitWords& words = unit_words(study.head.units);
    const Json json{
        {"simulation", study.head.simulation},
        {"winterEnd", iso_date_text(study.head.winter_end)},
        {"temperature", command.temperature},
        {"precipitation", command.precipitation},
        {"units", fmt::format("10^6 {}³, {}, {}", words.length_letter, words.discharge, words.temperature)}};
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

/// What is wrong with the options; empty if nothing is.
std::string options_problem(const ResponseCommand& command) {
    if (command.resume && !command.out) return "--resume goes on with the file that --out names: give it.";
    if (command.share.parts > 1 && !command.out) return "A part of a response needs a file: give --out.";
    if (command.share.parts > 1 && command.picture)
        return "A part of a response has no pictures. Put the parts together with 'gather', then use "
               "--resume with --picture.";
    if (command.json && command.resume)
        return "The notes that --json prints are not in the file: use --json without --resume.";
    if (command.picture && command.temperature.size() * command.precipitation.size() < 2)
        return "A picture needs two temperatures or two precipitations at least.";
    if (command.picture && !picture_form(path_text(command.picture->extension())))
        return fmt::format("The file '{}' is not a picture by its name: it ends in .png, .svg, .pdf or .bmp.",
                           path_text(*command.picture));
    return {};
}

/// Evaluates the pairs that are not stored yet. @return whether all were evaluated
bool evaluate(const ResponseCommand& command, const ResponseStudy& study, std::vector<ResponsePoint>& points,
              StudyFile* file, std::ostream& err, bool terminal) {
    const Interruption interruption;
    StudyPool pool{command.threads};
    const std::size_t wanted = study.span.behind - study.span.first;
    const auto rest = std::span{study.pairs}.subspan(study.span.first, wanted).subspan(points.size());
    const int zones = static_cast<int>(study.basin->inputs.zones);
    if (rest.empty()) return true;
    {
        Progress progress{err, terminal, "evaluations", rest.size()};
        const std::size_t stored = points.size();
        evaluate_all(
            study.basin, study.head.winter_end, rest, pool,
            [&](std::size_t index, const ClimateResponse& response) {
                const std::size_t number = study.span.first + stored + index;
                points.push_back(response_point(number, *study.basin, response));
                if (file != nullptr) file->add(response_line(points.back(), zones));
                progress.update(index + 1);
            },
            [&] { return interruption.asked(); });
    }
    if (file != nullptr) file->flush();
    return points.size() == wanted;
}

/// The file of --out; the points that it has go to `points`.
std::unique_ptr<StudyFile> open_file(const ResponseCommand& command, const ResponseStudy& study,
                                     std::vector<ResponsePoint>& points) {
    if (!command.out) return nullptr;
    const int zones = static_cast<int>(study.basin->inputs.zones);
    return std::make_unique<StudyFile>(*command.out,
                                       StudyTitle{.kind = "response",
                                                  .basin = basin_digest(*study.basin),
                                                  .options = options_line(study, command),
                                                  .runs = study.pairs.size(),
                                                  .span = study.span},
                                       response_names(zones), command.resume, [&](std::string_view line) {
                                           auto point = read_response_line(line, zones);
                                           if (!point || point->index != study.span.first + points.size())
                                               return false;
                                           points.push_back(std::move(*point));
                                           return true;
                                       });
}

int response(const ResponseCommand& command, BatchDialogs& dialogs, std::ostream& out, std::ostream& err,
             bool terminal) {
    if (const std::string problem = options_problem(command); !problem.empty()) {
        dialogs.report_problem("The study can't begin", problem);
        return k_failed;
    }
    if (command.out) refuse_basin_as_output(*command.out, command.basin);
    const auto study = read_study(command, dialogs);
    if (!study) return k_failed;
    if (command.picture)
        refuse_response_pictures(*command.picture, command.basin, command.out, study->basin->inputs.zones);
    std::vector<ResponsePoint> points;
    const auto file = open_file(command, *study, points);
    if (command.resume) dialogs.report_note(fmt::format("{} evaluations are taken over.", points.size()));
    const bool complete = evaluate(command, *study, points, file.get(), err, terminal);
    if (command.json) {
        out << printed(response_json(study->head, points));
    } else {
        print_response(study->head, points, out);
    }
    if (!complete) {
        dialogs.report_note(command.out ? "Stopped. The same command with --resume goes on from here."
                                        : "Stopped. With --out FILE.csv a response can go on with --resume.");
        return k_stopped;
    }
    if (command.picture) {
        const auto files =
            write_response_pictures(*command.picture, command.basin, response_pictures(study->head, points));
        for (const auto& picture : files) dialogs.report_note("Picture " + path_text(picture));
    }
    const bool done =
        std::all_of(points.begin(), points.end(), [](const ResponsePoint& each) { return each.done(); });
    return done ? k_done : k_failed;
}

}  // namespace

int response_command(const ResponseCommand& command, BatchDialogs& dialogs, std::ostream& out,
                     std::ostream& err, bool terminal) {
    try {
        return response(command, dialogs, out, err, terminal);
    } catch (const StoreError& error) {
        dialogs.report_problem("The basin can't be read", error.what());
    } catch (const FileError& error) {
        dialogs.report_problem("The response stopped", error.what());
    }
    return k_failed;
}

}  // namespace nivora
