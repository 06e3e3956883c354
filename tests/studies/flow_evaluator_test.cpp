// The quick way to the discharge gives the bits of the stages under the same adjustments.

#include "studies/flow_evaluator.h"

#include "tests/studies/study_fixture.h"

namespace nivora {
namespace {

class FlowEvaluatorTest : public StudyTest {
protected:
    FreeRange random_range(const Simulation& simulation) {
        const Adjustment adjustment = random_adjustment(simulation);
        return {.text = "",
                .variable = adjustment.variable,
                .action = adjustment.action,
                .low = adjustment.number,
                .high = adjustment.number + 1.0,
                .zones = adjustment.zones,
                .days = adjustment.days};
    }

    /// The discharge of the stages; empty where a run would have stopped or complained.
    static std::vector<double> staged(Evaluator& evaluator, const std::vector<FreeRange>& ranges,
                                      const std::vector<double>& numbers) {
        std::vector<Adjustment> adjustments;
        for (std::size_t i = 0; i < ranges.size(); ++i) adjustments.push_back(ranges[i].at(numbers[i]));
        Evaluation evaluation = evaluator.evaluate(adjustments);
        return evaluation.is_sound() ? evaluation.computed : std::vector<double>{};
    }
};

std::vector<double> values_of(std::span<const double> flow) { return {flow.begin(), flow.end()}; }

TEST_F(FlowEvaluatorTest, GivesTheBitsOfTheStages) {
    int with_flow = 0;
    try_often(60, [&] {
        const SmallBasin small = random_basin();
        write(small);
        const auto basin = study(random_request());
        ASSERT_NE(basin, nullptr);
        std::vector<FreeRange> ranges;
        for (int count = whole_between(0, 4); count > 0; --count)
            ranges.push_back(random_range(small.simulation));
        FlowEvaluator quick{basin, ranges};
        Evaluator stages{basin};
        for (int trial = 0; trial < 5; ++trial) {
            std::vector<double> numbers;
            for (const FreeRange& range : ranges) numbers.push_back(between(range.low, range.high));
            const auto flow = values_of(quick.flow(numbers));
            EXPECT_EQ(bits_of(flow), bits_of(staged(stages, ranges, numbers)));
            if (!flow.empty()) ++with_flow;
        }
    });
    EXPECT_GT(with_flow, 200);  // otherwise the comparison says nothing
}

TEST_F(FlowEvaluatorTest, GoesThroughTheStagesWhereAValueIsMissing) {
    SmallBasin small = random_basin();
    small.physical.front().runoff = k_missing;  // does not matter
    small.parameters.front().lag_hours = k_missing;
    write(small);
    const auto basin = study();
    FlowEvaluator quick{basin, {}};
    Evaluator stages{basin};
    EXPECT_EQ(bits_of(values_of(quick.flow({}))), bits_of(staged(stages, {}, {})));
    EXPECT_FALSE(quick.flow({}).empty());
}

TEST_F(FlowEvaluatorTest, HasNoFlowWhereARunWouldStop) {
    SmallBasin small = random_basin();
    write(small);
    const auto basin = study();
    ZoneSet zones{};
    zones.fill(true);
    const FreeRange wild{.text = "",
                         .variable = StudyVariable::DegreeDayFactor,
                         .action = AdjustAction::Multiply,
                         .low = 1.0,
                         .high = 1.0e300,
                         .zones = zones,
                         .days = {}};
    FlowEvaluator quick{basin, {wild}};
    EXPECT_TRUE(quick.flow(std::vector{1.0e300}).empty());
    EXPECT_FALSE(quick.flow(std::vector{1.0}).empty());
}

}  // namespace
}  // namespace nivora
