#include "batch/plot_command.h"

#include "base/durable_file.h"
#include "batch/commands.h"
#include "batch/plot_description.h"
#include "batch/plot_options.h"
#include "batch/plot_output.h"
#include "batch/plot_state.h"
#include "climate/plotted_melt.h"
#include "plots/plot_export.h"
#include "plots/plot_offer.h"
#include "plots/plot_view.h"
#include "reports/report_period.h"
#include "store/basin_opening.h"

#include <fmt/format.h>

#include <ostream>

namespace nivora {
namespace {

constexpr const char* k_wrong_options = "The options don't fit the plot";

std::optional<std::string> zone_problem(const PlotCommand& command, const PlotSources& sources) {
    if (!command.zone) return std::nullopt;
    const ZoneList zones = zone_list(command.plot, sources.basin);
    const std::string title = plot_title(command.plot, sources);
    if (zones == ZoneList::None)
        return fmt::format("The plot '{}' shows the basin as a whole. Leave --zone out.", title);
    if (command.zone->all && zones == ZoneList::OneZone)
        return fmt::format("The plot '{}' shows one zone at a time. Name one with --zone.", title);
    if (command.zone->all || command.zone->zone <= sources.basin.ZoneCount) return std::nullopt;
    const int last = sources.basin.ZoneCount;
    return fmt::format("The basin has no zone {}. {}.", zone_letter(command.zone->zone),
                       last == 1 ? "Its only zone is A" : "Its zones are A to " + zone_letter(last));
}

std::optional<std::string> axis_problem(const PlotCommand& command, const PlotSources& sources) {
    const std::string title = plot_title(command.plot, sources);
    if (command.plot == PlotNumber::WaterEquivalent && (command.zoom || command.x_max))
        return fmt::format("The plot '{}' always shows the whole simulation. Leave --zoom and --xmax out.",
                           title);
    if (!has_number_axis(command.plot)) return std::nullopt;
    const auto is_number = [](const std::string& text) { return read_plot_number(text).has_value(); };
    const bool zoom_fits = !command.zoom || (is_number(command.zoom->x1) && is_number(command.zoom->x2));
    if (zoom_fits && (!command.x_max || is_number(*command.x_max))) return std::nullopt;
    return fmt::format("The x axis of the plot '{}' counts depths of melt. Give a number instead of a date.",
                       title);
}

/// The zone of the options as a request has it.
std::optional<int> asked_zone(const PlotCommand& command, const BasinState& basin) {
    if (!command.zone) return std::nullopt;
    return command.zone->all ? basin.ZoneCount + 1 : command.zone->zone;
}

double x_of(const std::string& text) { return read_plot_day(text).value_or(0.0); }

/// The part of a plot that the options ask for.
PlotOutcome viewed(const Plot& plot, const PlotCommand& command) {
    PlotOutcome outcome = plot;
    if (command.zoom) {
        outcome = zoom(plot, {.x1 = x_of(command.zoom->x1),
                              .x2 = x_of(command.zoom->x2),
                              .y1 = command.zoom->y1,
                              .y2 = command.zoom->y2});
    }
    auto* part = std::get_if<Plot>(&outcome);
    if (part == nullptr) return outcome;
    TypedMaxima maxima;
    if (command.x_max) maxima.x = static_cast<float>(x_of(*command.x_max));
    maxima.y = command.y_max;
    return with_maxima(std::move(*part), maxima);
}

/// A basin that is open for the plot.
struct PlottedBasin {
    OpenBasin basin;
    std::string read_only;  ///< why the basin can't be written, if the plot writes to it
};

/// Plot 21 keeps its curves in the results; where that can't be, it is drawn all the same.
PlottedBasin open_for(const PlotCommand& command) {
    std::string problem;
    if (command.plot == PlotNumber::ChangedAccumulatedMelt && !command.list) {
        try {
            return {.basin = open_to_write(command.basin, command.wait), .read_only = {}};
        } catch (const StoreError& error) {
            problem = error.what();
        }
    }
    return {.basin = open_to_read(command.basin, command.wait, Check::All), .read_only = problem};
}

/// Stores what plot 21 has computed; a note if that can't be.
void keep_curves(PlottedBasin& open, const Plot& plot, const PlotSources& sources, BatchDialogs& dialogs) {
    if (plot.number != PlotNumber::ChangedAccumulatedMelt) return;
    std::string problem = open.read_only;
    if (problem.empty()) {
        try {
            return store_plotted_melt(open.basin.database(), plot.zone.value_or(1),
                                      report_period(sources.basin, sources.run).covered());
        } catch (const StoreError& error) {
            problem = error.what();
        } catch (const Fault& fault) {
            problem = fault.what();
        }
    }
    dialogs.report_note("AZMexcl, AZMexclWA and AZMwork of this plot are not stored in the basin. " +
                        problem);
}

int refuse(const PlotCommand& command, const PlotRefusal& refusal, BatchDialogs& dialogs, std::ostream& out) {
    if (command.describe) out << printed(describe_refusal(command.plot, command.run.step, refusal));
    dialogs.report_problem("Plotting error", refusal.text);
    return k_failed;
}

/// Draws, writes and describes a plot that can be made.
int make(PlottedBasin& open, const PlotSources& sources, const Plot& plot, const PlotCommand& command,
         BatchDialogs& dialogs, std::ostream& out) {
    const PlotOutcome outcome = viewed(plot, command);
    if (const auto* refusal = std::get_if<PlotRefusal>(&outcome))
        return refuse(command, *refusal, dialogs, out);
    PlotResult result{.plot = std::get<Plot>(outcome), .now = command.now.value_or(local_now()), .flow = {}};
    const bool describes_flow = command.describe && shows_runoff(command.plot);
    if (command.slurp || describes_flow)
        result.flow = export_slurp_file(open.basin.database(), sources.basin, sources.run);
    write_plot_files(command, result);
    // After the files: a name that can't be written leaves the basin as it was.
    keep_curves(open, plot, sources, dialogs);
    if (!command.describe) return k_done;
    DescriptionOptions options{.grid = command.grid,
                               .data_points = command.data_points,
                               .now = result.now,
                               .zone_count = sources.basin.ZoneCount,
                               .flow = {}};
    if (describes_flow) options.flow = result.flow;
    out << printed(describe_plot(result.plot, options));
    return k_done;
}

void list_plots(const PlotSources& sources, const PlotState& state, bool json, std::ostream& out) {
    Json list = Json::array();
    for (int number = 1; number <= k_last_plot; ++number) {
        const auto plot = static_cast<PlotNumber>(number);
        if (plot == PlotNumber::Dashes) continue;
        const auto refusal = state.refusal ? state.refusal : plot_refusal(plot, sources);
        const std::string title = plot_title(plot, sources);
        list.push_back({{"plot", number},
                        {"title", title},
                        {"available", !refusal},
                        {"reason", refusal ? Json(refusal->text) : Json(nullptr)}});
        if (!json) {
            out << fmt::format("{:2}  {}: {}\n", number, title,
                               refusal ? "can't be made. " + refusal->text : "can be made");
        }
    }
    if (json) out << printed(list);
}

int plot_basin(const PlotCommand& command, BatchDialogs& dialogs, std::ostream& out) {
    refuse_plot_outputs(command);
    PlottedBasin open = open_for(command);
    BasinDatabase& database = open.basin.database();
    Desktop no_desktop;
    Session session{dialogs, no_desktop};
    const auto state = take_plot_state(database, session, command, dialogs);
    if (!state) return k_wrong_usage;
    const PlotSources sources{session.basin, session.run, state->results_current};
    if (command.list) {
        list_plots(sources, *state, command.json, out);
        return k_done;
    }
    auto problem = zone_problem(command, sources);
    if (!problem) problem = axis_problem(command, sources);
    if (problem) {
        dialogs.report_problem(k_wrong_options, *problem);
        return k_wrong_usage;
    }
    if (state->refusal) return refuse(command, *state->refusal, dialogs, out);
    const PlotRequest request{
        .plot = command.plot, .zone = asked_zone(command, session.basin), .melt_stop = command.melt_stop};
    const PlotOutcome outcome = select_plot(database, request, sources);
    if (const auto* refusal = std::get_if<PlotRefusal>(&outcome))
        return refuse(command, *refusal, dialogs, out);
    return make(open, sources, std::get<Plot>(outcome), command, dialogs, out);
}

}  // namespace

int plot_command(const PlotCommand& command, BatchDialogs& dialogs, std::ostream& out) {
    if (has_same_outputs(command)) {
        dialogs.report_problem(k_wrong_options,
                               "Two outputs have the same name. Give each a name of its own.");
        return k_wrong_usage;
    }
    try {
        return plot_basin(command, dialogs, out);
    } catch (const StoreError& error) {
        dialogs.report_problem("The basin can't be read", error.what());
    } catch (const FileError& error) {
        dialogs.report_problem("The plot can't be written", error.what());
    }
    return k_failed;
}

}  // namespace nivora
