#include "search/calibration.h"

#include "tests/search/search_fixture.h"

#include <set>

namespace nivora {
namespace {

class CalibrationTest : public SearchTest {};

const std::vector<std::string> k_factor_and_limit{"Degree Day Factors:multiply:0.7..1.6:All",
                                                  "Critical Temperature:add:-2..2:All"};

TEST_F(CalibrationTest, FindsDistortedCoefficientsBack) {
    const auto own = own_basin();
    auto distorted = std::make_shared<StudyBasin>(*own);
    for (float& factor : distorted->table.AN) factor *= 0.8F;
    for (float& limit : distorted->table.Tcrit) limit += 1.0F;
    const StudyProblem problem = problem_of(distorted, k_factor_and_limit, {"KGE"});
    for (const unsigned seed : {1U, 2U, 3U, 4U, 5U}) {
        const FoundSets result = found(problem, {.evaluations = 5000, .seed = seed});
        ASSERT_EQ(result.sets.size(), 1U);
        EXPECT_LE(result.evaluations, 5000U);
        const FoundSet& best = result.sets.front();
        EXPECT_NEAR(best.numbers[0], 1.25, 0.0125) << "seed " << seed;
        // The flow is stepwise constant in the critical temperature: another one may give the same flow.
        EXPECT_GT(*best.fit[0], 0.9999) << "seed " << seed;
        EXPECT_LT(*result.unchanged.fit[0], 0.95);
    }
}

bool same_sets(const FoundSets& a, const FoundSets& b) {
    if (a.sets.size() != b.sets.size() || a.evaluations != b.evaluations) return false;
    for (std::size_t i = 0; i < a.sets.size(); ++i) {
        if (bits_of(a.sets[i].numbers) != bits_of(b.sets[i].numbers) || a.sets[i].fit != b.sets[i].fit)
            return false;
    }
    return true;
}

TEST_F(CalibrationTest, DoesNotDependOnTheNumberOfThreads) {
    const auto basin = disturbed_basin();
    for (const auto& objectives : {std::vector<std::string>{"NSE"}, {"KGE", "NSE of logs", "MAE"}}) {
        const StudyProblem problem = problem_of(
            basin, {"An:multiply:0.5..2:All", "Cs:multiply:0.5..1.5:All", "Tcrit:add:-2..3:All"}, objectives);
        const SearchOptions options{.evaluations = 3000, .seed = 3};
        const FoundSets one = found(problem, options, 1);
        EXPECT_TRUE(same_sets(one, found(problem, options, 2)));
        EXPECT_TRUE(same_sets(one, found(problem, options, 5)));
        EXPECT_FALSE(same_sets(one, found(problem, {.evaluations = 3000, .seed = 4}, 2)));
    }
}

TEST_F(CalibrationTest, LanesThatWereWalkedElsewhereGiveTheSameSets) {
    const auto basin = disturbed_basin();
    for (const auto& objectives : {std::vector<std::string>{"NSE"}, {"KGE", "MAE"}}) {
        const StudyProblem problem =
            problem_of(basin, {"An:multiply:0.5..2:All", "Tcrit:add:-2..3:All"}, objectives);
        const SearchOptions options{.evaluations = 3001, .seed = 3};
        const FoundSets whole = found(problem, options);
        StudyPool pool{2};
        std::vector<StudyJournal::Costs> lanes(search_lanes(problem, options));
        for (std::size_t lane = lanes.size(); lane-- > 0;)
            lanes[lane] = lane_costs(problem, options, lane, pool, {});
        std::size_t evaluations = 0;
        for (const auto& lane : lanes) evaluations += lane.size();
        EXPECT_EQ(evaluations, whole.evaluations);

        StudyJournal journal{lanes};
        EXPECT_EQ(journal.resumed(), evaluations);
        EXPECT_TRUE(same_sets(whole, search(problem, options, pool, journal, {})));
        for (std::size_t lane = 0; lane < lanes.size(); ++lane) EXPECT_TRUE(journal.kept(lane).empty());

        // Costs that are not those of the problem lead the search elsewhere: they are not computed again.
        lanes[0][lanes[0].size() / 2].assign(objectives.size(), 0.0);
        StudyJournal other{lanes};
        EXPECT_FALSE(same_sets(whole, search(problem, options, pool, other, {})));
    }
}

TEST_F(CalibrationTest, SeveralObjectivesGiveAFrontOfCompromises) {
    const auto other = disturbed_basin();
    const StudyProblem problem =
        problem_of(other, {"An:multiply:0.5..2:All", "Cs:multiply:0.5..1.2:All"}, {"KGE", "MAE"});
    const FoundSets result = found(problem, {.evaluations = 2000, .seed = 1});
    ASSERT_GT(result.sets.size(), 3U);
    for (std::size_t i = 1; i < result.sets.size(); ++i) {
        EXPECT_LT(*result.sets[i].fit[0], *result.sets[i - 1].fit[0]);  // worse in the first one
        EXPECT_LT(*result.sets[i].fit[1], *result.sets[i - 1].fit[1]);  // and better in the second
    }
    EXPECT_GE(*result.sets.front().fit[0], *result.unchanged.fit[0]);
}

TEST_F(CalibrationTest, RangesWithoutWidthAreOneRun) {
    const auto basin = own_basin();
    const StudyProblem problem = problem_of(basin, {"An:multiply:1..1:All"}, {"KGE"});
    const FoundSets result = found(problem, {.evaluations = 500, .seed = 1});
    ASSERT_EQ(result.sets.size(), 1U);
    EXPECT_EQ(result.evaluations, 1U);
    EXPECT_EQ(result.sets.front().numbers, (std::vector<double>{1.0}));
    EXPECT_EQ(*result.sets.front().fit[0], 1.0);
}

TEST_F(CalibrationTest, NeverUsesMoreEvaluationsThanAllowed) {
    const auto basin = own_basin();
    for (const std::size_t most : {1UL, 7UL, 8UL, 9UL, 41UL, 1999UL}) {
        const StudyProblem one = problem_of(basin, k_factor_and_limit, {"KGE"});
        EXPECT_EQ(found(one, {.evaluations = most, .seed = 1}).evaluations, most);
    }
}

TEST_F(CalibrationTest, FindsNothingWhereNoRunWorks) {
    const auto basin = own_basin();
    const StudyProblem problem = problem_of(basin, {"An:multiply:1e200..1e300:All"}, {"KGE"});
    const FoundSets result = found(problem, {.evaluations = 60, .seed = 1});
    EXPECT_TRUE(result.sets.empty());
    EXPECT_EQ(result.failed, result.evaluations);
    EXPECT_TRUE(result.unchanged.fit[0]);
}

TEST_F(CalibrationTest, ReportsCheckDaysThatItDoesNotFit) {
    const auto basin = own_basin();
    StudyCase one{.name = "own", .basin = basin, .ranges = {}, .fit = {}, .check = {}};
    one.ranges.push_back(range("An:multiply:0.5..2:All", *basin));
    const DayCount start = basin->run.RunStart;
    one.fit = Period{start, start + 199};
    one.check = Period{start + 200, start + 299};
    const StudyProblem problem{{one}, {find_objective("RMSE")}};
    EXPECT_EQ(problem.fit_days().measured.size(), 200U);
    EXPECT_EQ(problem.check_days().measured.size(), 100U);
    const FoundSets result = found(problem, {.evaluations = 300, .seed = 1});
    ASSERT_TRUE(result.sets.front().check[0]);
    // Values of the check days alone, by hand.
    StudyWorker worker{problem};
    ASSERT_TRUE(worker.run(result.sets.front().numbers));
    double sum = 0.0;
    for (std::size_t day = 200; day < 300; ++day) {
        const double error = worker.flow(0)[day] - basin->measured.measured[day];
        sum += error * error;
    }
    EXPECT_NEAR(*result.sets.front().check[0], std::sqrt(sum / 100.0), 1e-12);
}

TEST_F(CalibrationTest, AStoppedSearchGoesOnToTheSameResult) {
    const auto basin = own_basin();
    for (const auto& objectives : {std::vector<std::string>{"NSE"}, {"KGE", "MAE"}}) {
        const StudyProblem problem = problem_of(basin, k_factor_and_limit, objectives);
        const SearchOptions options{.evaluations = 2400, .seed = 9};
        const FoundSets whole = found(problem, options);
        const JournalTitle title{"basin", "options", search_lanes(problem, options), objectives.size()};
        const auto path = folder / "fit.state";
        StudyPool pool{2};
        for (const std::size_t stop : {10UL, 700UL, 1500UL}) {
            StudyJournal journal{path, title, stop != 10};
            std::atomic<std::size_t> done{0};
            const FoundSets part = search(problem, options, pool, journal,
                                          {.stops = [&] { return done >= stop; },
                                           .progress = [&](std::size_t count) { done = count; }});
            EXPECT_TRUE(part.stopped);
            EXPECT_LT(part.evaluations, whole.evaluations);
        }
        StudyJournal journal{path, title, true};
        EXPECT_GT(journal.resumed(), 600U);
        EXPECT_TRUE(same_sets(search(problem, options, pool, journal, {}), whole));
    }
}

}  // namespace
}  // namespace nivora
