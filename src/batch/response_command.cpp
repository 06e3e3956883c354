#include "batch/response_command.h"

#include "base/durable_file.h"
#include "base/iso_date.h"
#include "batch/commands.h"
#include "batch/interruption.h"
#include "batch/output_guard.h"
#include "batch/progress.h"
#include "batch/response_picture.h"
#include "batch/response_table.h"
#include "plots/picture_form.h"
#include "search/response_rows.h"
#include "search/response_study.h"

#include <fmt/format.h>

#include <algorithm>
#include <memory>
#include <ostream>
#include <span>

namespace nivora {
namespace {

ResponsePlan plan_of(const ResponseCommand& command) {
    return {.basin = command.basin,
            .simulation = command.simulation,
            .winter_end = command.winter_end,
            .temperature = command.temperature,
            .precipitation = command.precipitation,
            .wait = command.wait};
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
bool evaluate(const ResponseCommand& command, const ResponseStudy& study, const RunSpan& span,
              std::vector<ResponsePoint>& points, StudyFile* file, std::ostream& err, bool terminal) {
    const Interruption interruption;
    StudyPool pool{command.threads};
    const std::size_t wanted = span.behind - span.first;
    const auto rest = std::span{study.pairs}.subspan(span.first, wanted).subspan(points.size());
    const int zones = study.zones();
    if (rest.empty()) return true;
    {
        Progress progress{err, terminal, "evaluations", rest.size()};
        const std::size_t stored = points.size();
        evaluate_all(
            study.basin, study.head.winter_end, rest, pool,
            [&](std::size_t index, const ClimateResponse& response) {
                const std::size_t number = span.first + stored + index;
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
                                     const RunSpan& span, std::vector<ResponsePoint>& points) {
    if (!command.out) return nullptr;
    const int zones = study.zones();
    return std::make_unique<StudyFile>(*command.out, response_title(study, plan_of(command), span),
                                       response_names(zones), command.resume, [&](std::string_view line) {
                                           auto point = read_response_line(line, zones);
                                           if (!point || point->index != span.first + points.size())
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
    const auto study = read_response_study(plan_of(command), dialogs);
    if (!study) return k_failed;
    const RunSpan span = part_of(study->pairs.size(), command.share);
    if (command.picture)
        refuse_response_pictures(*command.picture, command.basin, command.out, study->basin->inputs.zones);
    std::vector<ResponsePoint> points;
    const auto file = open_file(command, *study, span, points);
    if (command.resume) dialogs.report_note(fmt::format("{} evaluations are taken over.", points.size()));
    const bool complete = evaluate(command, *study, span, points, file.get(), err, terminal);
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
