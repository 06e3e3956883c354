// A basin with weather, and studies of it, for the tests of searches.
#pragma once

#include "search/calibration.h"
#include "search/sample.h"
#include "tests/studies/study_fixture.h"

#include <memory>
#include <string>
#include <vector>

namespace nivora {

/// Searches of a basin whose measured discharge is that of its own parameters.
class SearchTest : public StudyTest {
protected:
    /// A year of three zones with a cold winter, snow cover that melts away, and rain.
    static SmallBasin alpine_basin() {
        SmallBasin small{3, date_of(2001, 10, 1), 365};
        small.simulation.lapse_rate = Distribution::Basinwide;
        std::mt19937 chance{7};
        const auto unit = [&] { return static_cast<double>(chance()) / 4294967296.0; };
        std::size_t row = 0;
        for (PhysicalRow& day : small.physical) {
            const double season = -std::cos(6.2832 * (static_cast<double>(row % 365) - 105.0) / 365.0);
            const double high = static_cast<double>(row / 365);
            day.tavg = static_cast<float>(5.0 + 10.0 * season + 4.0 * (unit() - 0.5));
            day.precip = unit() < 0.3 ? static_cast<float>(2.0 * unit()) : 0.0F;
            day.sca = static_cast<float>(std::clamp(0.4 + 0.2 * high - 0.9 * season, 0.0, 1.0));
            day.runoff = 1.0F;
            ++row;
        }
        for (ParameterRow& day : small.parameters) {
            day.lapse_rate = 0.65F, day.tcrit = 1.0F, day.an = 0.45F, day.cs = 0.8F, day.cr = 0.7F;
            day.lag_hours = 12.0F, day.rca = std::int16_t{1}, day.xcoeff = 0.95, day.ycoeff = 0.03;
        }
        return small;
    }

    /// The basin as a study reads it, with its own computed discharge as the measured one.
    std::shared_ptr<const StudyBasin> own_basin() {
        write(alpine_basin());
        auto basin = std::make_shared<StudyBasin>(*study());
        basin->measured.measured = Evaluator{basin}.evaluate({}).computed;
        return basin;
    }

    /// The same with a measured discharge that no run has.
    std::shared_ptr<const StudyBasin> disturbed_basin() {
        auto basin = std::make_shared<StudyBasin>(*own_basin());
        for (std::size_t day = 0; day < basin->measured.measured.size(); ++day)
            basin->measured.measured[day] *= day % 3 == 0 ? 1.4 : 0.9;
        return basin;
    }

    static FreeRange range(const std::string& text, const StudyBasin& basin) {
        const auto read = read_free_range(text, basin.inputs);
        if (const auto* problem = std::get_if<std::string>(&read)) ADD_FAILURE() << *problem;
        return std::get<FreeRange>(read);
    }

    static StudyProblem problem_of(const std::shared_ptr<const StudyBasin>& basin,
                                   const std::vector<std::string>& free,
                                   const std::vector<std::string>& objectives) {
        StudyCase one{.name = "own", .basin = basin, .ranges = {}, .fit = {}, .check = {}};
        one.fit = Period{basin->run.RunStart, basin->run.RunEnd};
        for (const std::string& text : free) one.ranges.push_back(range(text, *basin));
        std::vector<const Objective*> chosen;
        for (const std::string& name : objectives) chosen.push_back(find_objective(name));
        return {{one}, chosen};
    }

    static FoundSets found(const StudyProblem& problem, const SearchOptions& options, unsigned threads = 2) {
        StudyPool pool{threads};
        StudyJournal journal{search_lanes(problem, options)};
        return search(problem, options, pool, journal, {});
    }
};

}  // namespace nivora
