#include "search/sample.h"

#include "tests/search/search_fixture.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

using testing::ElementsAre;

class SampleTest : public SearchTest {
protected:
    static std::vector<SampleRun> runs(const StudyProblem& problem, const SampleDesign& design,
                                       const RunSpan& span, unsigned threads = 2) {
        std::vector<SampleRun> all;
        StudyPool pool{threads};
        run_sample(problem, design, span, pool, {}, [&](const SampleRun& run) { all.push_back(run); });
        return all;
    }

    static void expect_same_runs(const std::vector<SampleRun>& a, const std::vector<SampleRun>& b) {
        ASSERT_EQ(a.size(), b.size());
        for (std::size_t i = 0; i < a.size(); ++i) {
            EXPECT_EQ(a[i].index, b[i].index);
            EXPECT_EQ(bits_of(a[i].numbers), bits_of(b[i].numbers));
            EXPECT_EQ(a[i].values, b[i].values);
        }
    }
};

TEST(LowDiscrepancyTest, FillsTheCubeEvenly) {
    const LowDiscrepancy sequence{3, 11};
    // Of 4,096 points every cell of a grid of 8 x 8 x 8 has close to 8; of points by chance some would have 1
    // and 18.
    std::vector<int> cells(512);
    for (std::size_t i = 0; i < 4096; ++i) {
        const auto point = sequence.point(i);
        std::size_t cell = 0;
        for (const double coordinate : point) {
            ASSERT_GE(coordinate, 0.0);
            ASSERT_LT(coordinate, 1.0);
            cell = cell * 8 + static_cast<std::size_t>(coordinate * 8.0);
        }
        ++cells[cell];
    }
    EXPECT_GE(*std::min_element(cells.begin(), cells.end()), 3);
    EXPECT_LE(*std::max_element(cells.begin(), cells.end()), 13);
}

TEST(LowDiscrepancyTest, DependsOnTheSeed) {
    EXPECT_EQ((LowDiscrepancy{2, 1}.point(5)), (LowDiscrepancy{2, 1}.point(5)));
    EXPECT_NE((LowDiscrepancy{2, 1}.point(5)), (LowDiscrepancy{2, 2}.point(5)));
    EXPECT_TRUE((LowDiscrepancy{0, 1}.point(5)).empty());
}

TEST(SampleDesignTest, GroupsHaveOneCoordinateOfTheOtherPoint) {
    const SampleDesign design{2, 5, true};
    ASSERT_EQ(design.group(), 4U);
    const auto a = design.point(8);
    const auto b = design.point(9);
    EXPECT_THAT(design.point(10), ElementsAre(b[0], a[1]));
    EXPECT_THAT(design.point(11), ElementsAre(a[0], b[1]));
    EXPECT_NE(a[0], b[0]);
    EXPECT_NE(design.point(12), a);
}

TEST(SampleDesignTest, SharesAreWholeGroupsWithoutGaps) {
    const SampleDesign groups{2, 5, true};
    const SampleDesign single{2, 5, false};
    for (const auto* design : {&groups, &single}) {
        for (const std::size_t parts : {1UL, 3UL, 16UL, 1000UL}) {
            std::size_t next = 0;
            for (std::size_t number = 1; number <= parts; ++number) {
                const RunSpan span = runs_of(*design, 1003, {number, parts});
                EXPECT_EQ(span.first, next);
                EXPECT_EQ((span.behind - span.first) % design->group(), 0U);
                next = span.behind;
            }
            EXPECT_EQ(next, 1003 / design->group() * design->group());
        }
    }
}

TEST_F(SampleTest, PartsAreThePiecesOfTheWhole) {
    const StudyProblem problem =
        problem_of(own_basin(), {"An:multiply:0.5..2:All", "Tcrit:add:-1..1:All"}, {"KGE", "MAE"});
    const SampleDesign design{problem.dimensions(), 4, false};
    const auto whole = runs(problem, design, runs_of(design, 100, {}), 1);
    std::vector<SampleRun> together;
    for (std::size_t number = 1; number <= 3; ++number) {
        for (SampleRun& run : runs(problem, design, runs_of(design, 100, {number, 3}), 3))
            together.push_back(run);
    }
    expect_same_runs(together, whole);
    EXPECT_GT(*whole.front().values[1], 0.0);
}

TEST_F(SampleTest, OneRunWithoutWidthIsThePlainRun) {
    const auto basin = own_basin();
    const StudyProblem problem = problem_of(basin, {"An:multiply:1..1:All"}, {"KGE", "MAE"});
    const SampleDesign design{problem.dimensions(), 1, false};
    const auto all = runs(problem, design, runs_of(design, 1, {}));
    ASSERT_EQ(all.size(), 1U);
    EXPECT_EQ(all.front().values[0], 1.0);
    EXPECT_EQ(all.front().values[1], 0.0);
    StudyPool pool{1};
    const FlowBands bands = flow_bands(problem, design, {0}, pool, {});
    for (std::size_t day = 0; day < bands.days[0].size(); ++day) {
        for (const double quantile : bands.days[0][day].quantiles)
            EXPECT_EQ(quantile, basin->measured.measured[day]);
    }
    EXPECT_EQ(bands.within, bands.measured_days);
}

TEST_F(SampleTest, BandsAreTheQuantilesOfTheKeptRuns) {
    const StudyProblem problem = problem_of(own_basin(), {"An:multiply:0.5..2:All"}, {"KGE"});
    const SampleDesign design{problem.dimensions(), 2, false};
    const std::vector<std::size_t> kept{0, 3, 4, 8, 20};
    StudyPool pool{2};
    const FlowBands bands = flow_bands(problem, design, kept, pool, {});
    std::vector<std::vector<double>> flows;
    StudyWorker worker{problem};
    for (const std::size_t index : kept) {
        ASSERT_TRUE(worker.run(problem.numbers_at(design.point(index))));
        flows.emplace_back(worker.flow(0).begin(), worker.flow(0).end());
    }
    std::size_t within = 0;
    for (std::size_t day = 0; day < 365; ++day) {
        std::vector<double> values;
        for (const auto& flow : flows) values.push_back(flow[day]);
        std::sort(values.begin(), values.end());
        const auto& quantiles = bands.days[0][day].quantiles;
        // Five values: the 5 % quantile lies a fifth of the way from the least to the next.
        EXPECT_DOUBLE_EQ(quantiles[0], values[0] + 0.2 * (values[1] - values[0]));
        EXPECT_DOUBLE_EQ(quantiles[1], values[1]);
        EXPECT_DOUBLE_EQ(quantiles[2], values[2]);
        EXPECT_DOUBLE_EQ(quantiles[3], values[3]);
        EXPECT_NEAR(quantiles[4], values[3] + 0.8 * (values[4] - values[3]), 1e-9);
        const double measured = problem.cases()[0].basin->measured.measured[day];
        if (measured >= quantiles[0] && measured <= quantiles[4]) ++within;
    }
    EXPECT_EQ(bands.within, within);
    EXPECT_EQ(bands.measured_days, 365U);
    // In parts of days, because of the memory, they are the same.
    const FlowBands in_parts = flow_bands(problem, design, kept, pool, {}, 5 * sizeof(double) * 17);
    for (std::size_t day = 0; day < 365; ++day)
        EXPECT_EQ(in_parts.days[0][day].quantiles, bands.days[0][day].quantiles);
}

TEST(Quantile, LiesOnALineBetweenNeighbours) {
    const std::vector<double> values{1.0, 2.0, 4.0};
    EXPECT_EQ(quantile_of(values, 0.0), 1.0);
    EXPECT_EQ(quantile_of(values, 0.25), 1.5);
    EXPECT_EQ(quantile_of(values, 0.75), 3.0);
    EXPECT_EQ(quantile_of(values, 1.0), 4.0);
    EXPECT_EQ(quantile_of(std::vector{7.0}, 0.3), 7.0);
}

/// The Ishigami function, whose indices are known: a = 7, b = 0.1.
std::vector<std::optional<double>> ishigami(std::size_t groups) {
    const SampleDesign design{3, 1, true};
    std::vector<std::optional<double>> values;
    constexpr double k_pi = 3.14159265358979;
    for (std::size_t index = 0; index < groups * design.group(); ++index) {
        const auto point = design.point(index);
        const auto angle = [&](std::size_t i) { return k_pi * (2.0 * point[i] - 1.0); };
        values.emplace_back(std::sin(angle(0)) + 7.0 * std::sin(angle(1)) * std::sin(angle(1)) +
                            0.1 * std::pow(angle(2), 4) * std::sin(angle(0)));
    }
    return values;
}

TEST(SensitivityIndices, AreThoseOfAFunctionThatIsKnown) {
    const auto indices = sensitivities(ishigami(8192), 3);
    ASSERT_EQ(indices.size(), 3U);
    EXPECT_NEAR(indices[0].first_order, 0.3139, 0.01);
    EXPECT_NEAR(indices[1].first_order, 0.4424, 0.01);
    EXPECT_NEAR(indices[2].first_order, 0.0, 0.01);
    EXPECT_NEAR(indices[0].total, 0.5576, 0.01);
    EXPECT_NEAR(indices[1].total, 0.4424, 0.01);
    EXPECT_NEAR(indices[2].total, 0.2437, 0.01);
}

TEST(SensitivityIndices, LeaveOutGroupsWithAMissingValue) {
    auto values = ishigami(2000);
    const auto all = sensitivities(values, 3);
    for (std::size_t i = 0; i < 5; ++i) values.emplace_back(i == 3 ? std::nullopt : std::optional{1.0e9});
    const auto same = sensitivities(values, 3);
    for (std::size_t i = 0; i < 3; ++i) EXPECT_EQ(all[i].total, same[i].total);
}

TEST(SensitivityIndices, NeedAMeasureThatVaries) {
    EXPECT_TRUE(sensitivities(std::vector<std::optional<double>>(40, 1.0), 2).empty());
    EXPECT_TRUE(sensitivities(std::vector<std::optional<double>>{1.0, 2.0, 3.0}, 1).empty());
    EXPECT_TRUE(sensitivities(std::vector<std::optional<double>>{1.0, 2.0, 3.0, 1.0}, 0).empty());
}

}  // namespace
}  // namespace nivora
