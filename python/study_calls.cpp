#include "base/durable_file.h"
#include "python/calls.h"
#include "python/long_call.h"
#include "python/refusal.h"
#include "search/calibration.h"
#include "search/fitted_simulation.h"
#include "search/keep_rule.h"
#include "search/response_rows.h"
#include "search/response_study.h"
#include "search/sample.h"
#include "search/sample_file.h"
#include "search/study_command.h"
#include "search/study_digest.h"
#include "studies/response.h"

#include <pybind11/numpy.h>
#include <pybind11/stl.h>

#include <memory>
#include <optional>
#include <span>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace py = pybind11;

namespace nivora {
namespace {

using Sources = std::vector<std::pair<std::string, std::string>>;

StudySource source_of(const std::pair<std::string, std::string>& pair) {
    return {.basin = path_from_utf8(pair.first), .simulation = pair.second};
}

std::vector<StudySource> sources_of(const Sources& pairs) {
    std::vector<StudySource> sources;
    sources.reserve(pairs.size());
    for (const auto& pair : pairs) sources.push_back(source_of(pair));
    return sources;
}

std::optional<Period> period_of(const std::optional<std::string>& text, const char* name) {
    if (!text) return std::nullopt;
    const auto period = read_iso_period(*text);
    if (!period) {
        throw py::value_error(std::string{name} + " is '" + *text +
                              "'; it has to be a period such as 2001-10-01..2002-09-30");
    }
    return period;
}

/// What a study reads once: its problem. It is not changed, so that calls from several threads may use it.
class StudyHandle {
public:
    StudyHandle(StudyCommand command, double wait) : command_(std::move(command)) {
        problem_ = patiently(command_.source.basin, wait, [&](std::chrono::milliseconds piece) {
            command_.wait = piece;
            std::ostringstream report;
            BatchDialogs dialogs{report, false};
            auto problem = study_problem_or_throw(command_, dialogs);
            if (!problem) throw Refusal(dialogs.messages());
            return problem;
        });
    }

    /// The same study with other measures, which are only reported. @throws Refusal
    [[nodiscard]] std::unique_ptr<StudyHandle> with_reported(const std::vector<std::string>& names) const {
        std::ostringstream report;
        BatchDialogs dialogs{report, false};
        auto problem = nivora::with_reported(*problem_, names, dialogs);
        if (!problem) throw Refusal(dialogs.messages());
        return std::unique_ptr<StudyHandle>(new StudyHandle(command_, std::move(problem)));
    }

    [[nodiscard]] const StudyProblem& problem() const { return *problem_; }
    [[nodiscard]] StudyCommand command(unsigned seed) const {
        StudyCommand command = command_;
        command.seed = seed;
        return command;
    }
    [[nodiscard]] SampleDesign design(unsigned seed, bool sensitivity) const {
        return {problem_->dimensions(), seed, sensitivity};
    }

private:
    StudyHandle(StudyCommand command, std::unique_ptr<const StudyProblem> problem)
        : command_(std::move(command)), problem_(std::move(problem)) {}

    StudyCommand command_;
    std::unique_ptr<const StudyProblem> problem_;
};

py::list values_list(const std::vector<std::optional<double>>& values) {
    py::list list;
    for (const auto& value : values) list.append(value);
    return list;
}

/// Numbers, and the discharge and the measures that they give.
py::dict evaluated(const StudyHandle& study, const std::vector<double>& numbers) {
    const StudyProblem& problem = study.problem();
    if (numbers.size() != problem.ranges().size()) {
        throw py::value_error("there are " + std::to_string(problem.ranges().size()) + " ranges, but " +
                              std::to_string(numbers.size()) + " numbers");
    }
    StudyWorker worker{problem};
    const bool ran = worker.run(numbers);
    const std::vector<std::optional<double>> none(problem.objectives().size());
    py::list flows;
    for (std::size_t i = 0; i < problem.cases().size(); ++i) {
        const auto flow = ran ? worker.flow(i) : std::span<const double>{};
        const auto& dates = problem.cases()[i].basin->measured.dates;
        flows.append(py::make_tuple(
            py::array_t<DayCount>(static_cast<py::ssize_t>(dates.size()), dates.data()),
            ran ? py::object(py::array_t<double>(static_cast<py::ssize_t>(flow.size()), flow.data()))
                : py::object(py::none())));
    }
    py::dict result;
    result["fit"] = values_list(ran ? worker.values(problem.fit_days()) : none);
    result["check"] = values_list(ran ? worker.values(problem.check_days()) : none);
    result["flows"] = flows;
    return result;
}

std::string sample_lines(const StudyHandle& study, const RunSpan& span, unsigned seed, bool sensitivity,
                         unsigned threads, const py::object& progress) {
    const SampleDesign design = study.design(seed, sensitivity);
    return long_call(progress, [&](const SearchWatch& watch) {
        StudyPool pool{threads};
        std::string lines;
        run_sample(study.problem(), design, span, pool, watch,
                   [&](const SampleRun& run) { lines += sample_line(run); });
        return lines;
    });
}

py::list band_list(const StudyHandle& study, unsigned seed, bool sensitivity,
                   const std::vector<std::size_t>& kept, unsigned threads, const py::object& progress) {
    const SampleDesign design = study.design(seed, sensitivity);
    const FlowBands bands = long_call(progress, [&](const SearchWatch& watch) {
        StudyPool pool{threads};
        return flow_bands(study.problem(), design, kept, pool, watch);
    });
    py::list list;
    for (std::size_t i = 0; i < study.problem().cases().size(); ++i) {
        const DailyDischarge& series = study.problem().cases()[i].basin->measured;
        const auto days = static_cast<py::ssize_t>(series.dates.size());
        py::array_t<double> quantiles({days, static_cast<py::ssize_t>(k_band_shares.size())});
        auto cells = quantiles.mutable_unchecked<2>();
        for (py::ssize_t day = 0; day < days; ++day) {
            py::ssize_t column = 0;
            for (const double quantile : bands.days[i][static_cast<std::size_t>(day)].quantiles)
                cells(day, column++) = quantile;
        }
        list.append(py::make_tuple(py::array_t<DayCount>(days, series.dates.data()),
                                   py::array_t<double>(days, series.measured.data()), quantiles));
    }
    return list;
}

py::dict set_dict(const FoundSet& set) {
    py::dict result;
    result["numbers"] = set.numbers;
    result["fit"] = values_list(set.fit);
    result["check"] = values_list(set.check);
    return result;
}

py::dict found_dict(const FoundSets& found) {
    py::list sets;
    for (const FoundSet& set : found.sets) sets.append(set_dict(set));
    py::dict result;
    result["sets"] = sets;
    result["unchanged"] = set_dict(found.unchanged);
    result["evaluations"] = found.evaluations;
    result["failed"] = found.failed;
    return result;
}

/// The costs of a lane, a row for each evaluation: as one array, since many small lists would keep the
/// collector of Python busy.
using LaneArray = py::array_t<double, py::array::c_style | py::array::forcecast>;

LaneArray lane_array(const StudyJournal::Costs& costs, std::size_t objectives) {
    LaneArray rows({static_cast<py::ssize_t>(costs.size()), static_cast<py::ssize_t>(objectives)});
    auto cells = rows.mutable_unchecked<2>();
    for (py::ssize_t row = 0; row < cells.shape(0); ++row) {
        for (py::ssize_t i = 0; i < cells.shape(1); ++i)
            cells(row, i) = costs[static_cast<std::size_t>(row)][static_cast<std::size_t>(i)];
    }
    return rows;
}

std::vector<StudyJournal::Costs> lanes_of(const std::vector<LaneArray>& arrays, std::size_t objectives) {
    std::vector<StudyJournal::Costs> lanes(arrays.size());
    for (std::size_t lane = 0; lane < arrays.size(); ++lane) {
        const LaneArray& rows = arrays[lane];
        if (rows.size() == 0) continue;
        if (rows.ndim() != 2 || static_cast<std::size_t>(rows.shape(1)) != objectives)
            throw py::value_error("a lane has a row for each evaluation and a column for each objective");
        for (py::ssize_t row = 0; row < rows.shape(0); ++row)
            lanes[lane].emplace_back(rows.data(row), rows.data(row) + rows.shape(1));
    }
    return lanes;
}

FoundSets searched(const StudyHandle& study, const SearchOptions& options, unsigned threads,
                   std::optional<std::vector<StudyJournal::Costs>> lanes, const py::object& progress) {
    return long_call(progress, [&](const SearchWatch& watch) {
        StudyPool pool{threads};
        StudyJournal journal{lanes
                                 ? std::move(*lanes)
                                 : std::vector<StudyJournal::Costs>(search_lanes(study.problem(), options))};
        return search(study.problem(), options, pool, journal, watch);
    });
}

/// @throws Refusal
void store_set(const StudyHandle& study, const std::string& name, const std::vector<double>& numbers,
               double wait) {
    const StudySource source = study.command(1).source;
    patiently(source.basin, wait, [&](std::chrono::milliseconds piece) {
        std::ostringstream report;
        BatchDialogs dialogs{report, false};
        const std::string problem =
            fitted_name_problem(source.basin, source.simulation, name, study.problem(), piece, dialogs);
        if (!problem.empty()) dialogs.report_problem("The simulation can't be stored", problem);
        if (!problem.empty() ||
            !store_fitted(source.basin, source.simulation, name, study.problem(), numbers, piece, dialogs))
            throw Refusal(dialogs.messages());
        return true;
    });
}

/// A response study, and what it was asked for.
class ResponseHandle {
public:
    ResponseHandle(ResponsePlan plan, double wait) : plan_(std::move(plan)) {
        study_ = patiently(plan_.basin, wait, [&](std::chrono::milliseconds piece) {
            plan_.wait = piece;
            std::ostringstream report;
            BatchDialogs dialogs{report, false};
            auto study = read_response_study(plan_, dialogs);
            if (!study) throw Refusal(dialogs.messages());
            return std::move(*study);
        });
    }

    [[nodiscard]] const ResponseStudy& study() const { return study_; }
    [[nodiscard]] const ResponsePlan& plan() const { return plan_; }

private:
    ResponsePlan plan_;
    ResponseStudy study_;
};

std::string response_lines(const ResponseHandle& response, const RunSpan& span, unsigned threads,
                           const py::object& progress) {
    const ResponseStudy& study = response.study();
    if (span.first > span.behind || span.behind > study.pairs.size())
        throw py::value_error("these points are not within the response");
    return long_call(progress, [&](const SearchWatch& watch) {
        StudyPool pool{threads};
        std::string lines;
        const auto pairs = std::span{study.pairs}.subspan(span.first, span.behind - span.first);
        evaluate_all(
            study.basin, study.head.winter_end, pairs, pool,
            [&](std::size_t index, const ClimateResponse& each) {
                lines += response_line(response_point(span.first + index, *study.basin, each), study.zones());
                watch.progress(index + 1);
            },
            watch.stops);
        return lines;
    });
}

std::vector<std::pair<double, double>> sensitivity_indices(const std::vector<double>& values,
                                                           std::size_t dimensions) {
    std::vector<std::optional<double>> known;
    known.reserve(values.size());
    for (const double value : values)
        known.push_back(is_missing(value) ? std::nullopt : std::optional{value});
    std::vector<std::pair<double, double>> pairs;
    for (const Sensitivity& each : sensitivities(known, dimensions))
        pairs.emplace_back(each.first_order, each.total);
    return pairs;
}

std::vector<std::string> objective_names() {
    std::vector<std::string> names;
    for (const Objective& objective : objectives()) names.emplace_back(objective.name);
    return names;
}

/// The measure, whether it has to be above the limit, and the limit.
py::tuple keep_rule(const std::string& text) {
    const auto rule = read_keep_rule(text);
    if (const auto* problem = std::get_if<std::string>(&rule)) throw py::value_error(*problem);
    const auto& read = std::get<KeepRule>(rule);
    return py::make_tuple(read.objective->name, read.above, read.limit);
}

void add_study(py::module_& module) {
    py::class_<StudyHandle>(module, "Study")
        .def(py::init([](std::pair<std::string, std::string> source, const Sources& with,
                         const Sources& check_with, std::vector<std::string> free,
                         std::vector<std::string> chosen, const std::optional<std::string>& fit,
                         const std::optional<std::string>& check, bool no_snow, double wait) {
                 return std::make_unique<StudyHandle>(StudyCommand{.source = source_of(source),
                                                                   .with = sources_of(with),
                                                                   .check_with = sources_of(check_with),
                                                                   .free = std::move(free),
                                                                   .objectives = std::move(chosen),
                                                                   .fit = period_of(fit, "fit"),
                                                                   .check = period_of(check, "check"),
                                                                   .no_snow = no_snow},
                                                      wait);
             }),
             py::arg("source"), py::kw_only(), py::arg("with_"), py::arg("check_with"), py::arg("free"),
             py::arg("objectives"), py::arg("fit"), py::arg("check"), py::arg("no_snow"), py::arg("wait"))
        .def_property_readonly("ranges",
                               [](const StudyHandle& study) {
                                   std::vector<std::string> texts;
                                   for (const FreeRange& range : study.problem().ranges())
                                       texts.push_back(range.text);
                                   return texts;
                               })
        .def_property_readonly("objectives",
                               [](const StudyHandle& study) {
                                   std::vector<std::string> names;
                                   for (const Objective* one : study.problem().objectives())
                                       names.emplace_back(one->name);
                                   return names;
                               })
        .def_property_readonly("simulations",
                               [](const StudyHandle& study) {
                                   std::vector<std::string> names;
                                   for (const StudyCase& one : study.problem().cases())
                                       names.push_back(one.name);
                                   return names;
                               })
        .def_property_readonly("wide_ranges",
                               [](const StudyHandle& study) {
                                   std::vector<std::string> texts;
                                   for (const FreeRange& range : study.problem().ranges())
                                       if (range.low < range.high) texts.push_back(range.text);
                                   return texts;
                               })
        .def_property_readonly("digest",
                               [](const StudyHandle& study) { return study_digest(study.problem()); })
        .def("with_reported", &StudyHandle::with_reported, py::arg("names"))
        .def_property_readonly("dimensions",
                               [](const StudyHandle& study) { return study.problem().dimensions(); })
        .def_property_readonly(
            "has_check_days",
            [](const StudyHandle& study) { return !study.problem().check_days().measured.empty(); })
        .def("evaluate", &evaluated, py::arg("numbers"))
        .def(
            "sample_size",
            [](const StudyHandle& study, std::size_t runs, unsigned seed, bool sensitivity) {
                const std::size_t group = study.design(seed, sensitivity).group();
                return std::make_pair(runs / group * group, group);
            },
            py::arg("runs"), py::arg("seed"), py::arg("sensitivity"))
        .def(
            "sample_head",
            [](const StudyHandle& study, std::size_t runs, unsigned seed, bool sensitivity, std::size_t first,
               std::size_t behind) {
                return sample_title(study.problem(), study.command(seed), runs, sensitivity, {first, behind})
                           .line() +
                       sample_names(study.problem());
            },
            py::arg("runs"), py::arg("seed"), py::arg("sensitivity"), py::arg("first"), py::arg("behind"))
        .def(
            "sample_lines",
            [](const StudyHandle& study, std::size_t first, std::size_t behind, unsigned seed,
               bool sensitivity, unsigned threads, const py::object& progress) {
                return sample_lines(study, {first, behind}, seed, sensitivity, threads, progress);
            },
            py::arg("first"), py::arg("behind"), py::kw_only(), py::arg("seed"), py::arg("sensitivity"),
            py::arg("threads"), py::arg("progress"))
        .def("bands", &band_list, py::kw_only(), py::arg("seed"), py::arg("sensitivity"), py::arg("kept"),
             py::arg("threads"), py::arg("progress"))
        .def(
            "lanes",
            [](const StudyHandle& study, std::size_t evaluations) {
                return search_lanes(study.problem(), {.evaluations = evaluations});
            },
            py::arg("evaluations"))
        .def(
            "lane_costs",
            [](const StudyHandle& study, std::size_t lane, std::size_t evaluations, unsigned seed,
               unsigned threads, const py::object& progress) {
                const SearchOptions options{.evaluations = evaluations, .seed = seed};
                if (lane >= search_lanes(study.problem(), options))
                    throw py::value_error("there is no such lane");
                const auto costs = long_call(progress, [&](const SearchWatch& watch) {
                    StudyPool pool{threads};
                    return lane_costs(study.problem(), options, lane, pool, watch);
                });
                return lane_array(costs, study.problem().objectives().size());
            },
            py::arg("lane"), py::kw_only(), py::arg("evaluations"), py::arg("seed"), py::arg("threads"),
            py::arg("progress"))
        .def(
            "search",
            [](const StudyHandle& study, std::size_t evaluations, unsigned seed, unsigned threads,
               const std::optional<std::vector<LaneArray>>& arrays, const py::object& progress) {
                std::optional<std::vector<StudyJournal::Costs>> lanes;
                if (arrays) lanes = lanes_of(*arrays, study.problem().objectives().size());
                const SearchOptions options{.evaluations = evaluations, .seed = seed};
                if (lanes && lanes->size() != search_lanes(study.problem(), options))
                    throw py::value_error("these are not the lanes of this search");
                return found_dict(searched(study, options, threads, std::move(lanes), progress));
            },
            py::kw_only(), py::arg("evaluations"), py::arg("seed"), py::arg("threads"),
            py::arg("lanes") = py::none(), py::arg("progress"))
        .def("store", &store_set, py::arg("name"), py::arg("numbers"), py::arg("wait"));
}

void add_response(py::module_& module) {
    py::class_<ResponseHandle>(module, "Response")
        .def(py::init([](const std::string& path, std::string simulation, std::string winter_end,
                         std::vector<float> temperature, std::vector<float> precipitation, double wait) {
                 return std::make_unique<ResponseHandle>(
                     ResponsePlan{.basin = path_from_utf8(path),
                                  .simulation = std::move(simulation),
                                  .winter_end = std::move(winter_end),
                                  .temperature = std::move(temperature),
                                  .precipitation = std::move(precipitation)},
                     wait);
             }),
             py::arg("path"), py::kw_only(), py::arg("simulation"), py::arg("winter_end"),
             py::arg("temperature"), py::arg("precipitation"), py::arg("wait"))
        .def("__len__", [](const ResponseHandle& response) { return response.study().pairs.size(); })
        .def_property_readonly(
            "digest", [](const ResponseHandle& response) { return basin_digest(*response.study().basin); })
        .def_property_readonly(
            "simulation", [](const ResponseHandle& response) { return response.study().head.simulation; })
        .def_property_readonly("units",
                               [](const ResponseHandle& response) {
                                   const UnitWords& words = unit_words(response.study().head.units);
                                   py::dict units;
                                   units["volume"] = std::string{"10^6 "} + words.length_letter + "³";
                                   units["discharge"] = words.discharge;
                                   units["temperature"] = words.temperature;
                                   return units;
                               })
        .def(
            "head",
            [](const ResponseHandle& response, std::size_t first, std::size_t behind) {
                return response_title(response.study(), response.plan(), {first, behind}).line() +
                       response_names(response.study().zones());
            },
            py::arg("first"), py::arg("behind"))
        .def(
            "lines",
            [](const ResponseHandle& response, std::size_t first, std::size_t behind, unsigned threads,
               const py::object& progress) {
                return response_lines(response, {first, behind}, threads, progress);
            },
            py::arg("first"), py::arg("behind"), py::kw_only(), py::arg("threads"), py::arg("progress"));
}

}  // namespace

void add_study_calls(py::module_& module) {
    module.attr("objectives") = objective_names();
    module.attr("band_shares") = py::cast(std::vector<double>(k_band_shares.begin(), k_band_shares.end()));
    module.def("usual_threads", &usual_threads);
    module.attr("most_threads") = k_most_threads;
    module.def("sensitivity", &sensitivity_indices, py::arg("values"), py::arg("dimensions"));
    module.def("keep_rule", &keep_rule, py::arg("text"));
    add_study(module);
    add_response(module);
}

}  // namespace nivora
