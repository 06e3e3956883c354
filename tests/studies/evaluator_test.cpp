#include "studies/evaluator.h"

#include "tests/studies/study_fixture.h"

#include <gmock/gmock.h>

#include <thread>

namespace nivora {
namespace {

ZoneSet all_zones() {
    ZoneSet zones{};
    zones.fill(true);
    return zones;
}

class EvaluatorTest : public StudyTest {};

TEST_F(EvaluatorTest, ComputesToTheBitWhatARunOfAnEditedBasinDoes) {
    try_often(80, [&] {
        const SmallBasin small = random_basin();
        const RunRequest request = random_request();
        write(small);
        Evaluator evaluator{study(request)};
        std::vector<Adjustment> adjustments;
        for (int edit = whole_between(0, 5); edit > 0; --edit) {
            adjustments.push_back(random_adjustment(small.simulation));
            edit_file(adjustments.back(), small.simulation);
        }
        const Evaluation evaluation = evaluator.evaluate(adjustments);
        EXPECT_TRUE(evaluation.is_sound());
        EXPECT_EQ(bits_of(evaluation.computed), bits_of(run_of_file(request)));
    });
}

TEST_F(EvaluatorTest, ComputesWhatARunDoesAlsoWhereAValueIsMissing) {
    try_often(30, [&] {
        SmallBasin small = random_basin();
        const auto row =
            static_cast<std::size_t>(whole_between(0, static_cast<int>(small.parameters.size()) - 1));
        small.parameters[row].an = k_missing;
        write(small);
        Evaluator evaluator{study()};
        const Evaluation evaluation = evaluator.evaluate({});
        EXPECT_FALSE(evaluation.is_sound());
        EXPECT_EQ(bits_of(evaluation.computed), bits_of(run_of_file({})));
    });
}

TEST_F(EvaluatorTest, AnEvaluationLeavesNothingForTheNext) {
    write(random_basin());
    Evaluator evaluator{study()};
    const auto before = evaluator.evaluate({}).computed;
    const std::vector<Adjustment> wetter{{.variable = StudyVariable::Precipitation,
                                          .action = AdjustAction::Add,
                                          .number = 5.0,
                                          .zones = all_zones()}};
    EXPECT_NE(bits_of(evaluator.evaluate(wetter).computed), bits_of(before));
    EXPECT_EQ(bits_of(evaluator.evaluate({}).computed), bits_of(before));
}

TEST_F(EvaluatorTest, ThreadsShareABasin) {
    random.seed(7);
    const SmallBasin small = random_basin();
    write(small);
    const auto shared = study();
    std::vector<std::vector<Adjustment>> changes(24);
    for (auto& change : changes) change = {random_adjustment(small.simulation)};
    std::vector<std::vector<double>> alone;
    Evaluator evaluator{shared};
    for (const auto& change : changes) alone.push_back(evaluator.evaluate(change).computed);

    constexpr std::size_t k_threads = 4;
    std::vector<std::vector<double>> together(changes.size());
    std::vector<std::thread> threads;
    for (std::size_t first = 0; first < k_threads; ++first) {
        threads.emplace_back([&, first] {
            Evaluator own{shared};
            for (std::size_t i = first; i < changes.size(); i += k_threads)
                together[i] = own.evaluate(changes[i]).computed;
        });
    }
    for (std::thread& thread : threads) thread.join();
    for (std::size_t i = 0; i < changes.size(); ++i) EXPECT_EQ(bits_of(together[i]), bits_of(alone[i])) << i;
}

TEST_F(EvaluatorTest, ReadsAndEvaluatesWithoutChangingTheFile) {
    write(random_basin());
    const std::string before = file_bytes(file());
    Evaluator evaluator{study()};
    static_cast<void>(evaluator.evaluate({}));
    EXPECT_EQ(file_bytes(file()), before);
    EXPECT_EQ(folder.entries(), std::vector<std::string>{"basin.mdb"});
}

TEST_F(EvaluatorTest, ABasinThatCannotRunIsRefusedWithTheReason) {
    SmallBasin small{1, k_first, 5};
    small.parameters.clear();
    write(small);
    BasinDatabase database{file(), Access::ReadOnly};
    const auto read = read_study_basin(database, opened_basin(file()), {});
    ASSERT_TRUE(std::holds_alternative<Message>(read));
    EXPECT_THAT(std::get<Message>(read).text, testing::HasSubstr("missing variables and/or parameters"));
}

TEST_F(EvaluatorTest, AnOverlargeAdjustmentIsAMessageAndNotADischarge) {
    write(SmallBasin{1, k_first, 5});
    Evaluator evaluator{study()};
    const std::vector<Adjustment> huge{
        {.variable = StudyVariable::DegreeDayFactor, .number = 1e60, .zones = all_zones()}};
    const Evaluation evaluation = evaluator.evaluate(huge);
    EXPECT_FALSE(evaluation.is_sound());
    EXPECT_EQ(bits_of(evaluation.computed), bits_of(std::vector<double>(5, as_double(k_missing))));
}

TEST(StudyVariables, AreKnownByTheirWordsAndByTheirFields) {
    for (const StudyVariable variable : k_study_variables) {
        EXPECT_EQ(study_variable(study_variable_text(variable)), variable);
        EXPECT_EQ(study_variable(study_variable_field(variable)), variable);
    }
    EXPECT_EQ(study_variable(" degree day factor "), StudyVariable::DegreeDayFactor);
    EXPECT_EQ(study_variable("AN"), StudyVariable::DegreeDayFactor);
    EXPECT_EQ(study_variable("Runoff"), std::nullopt);
    EXPECT_EQ(study_variable(""), std::nullopt);
}

/// Whether changes of a variable in zone 2, and in zone 1, change the discharge.
class VariableUseTest : public StudyTest {};

TEST_F(VariableUseTest, TellsWhichZonesOfAVariableCount) {
    try_often(40, [&] {
        SmallBasin small = random_basin();
        write(small);
        const auto shared = study();
        Evaluator evaluator{shared};
        const auto plain = bits_of(evaluator.evaluate({}).computed);
        for (const StudyVariable variable : k_study_variables) {
            Adjustment adjustment{.variable = variable, .action = AdjustAction::Add, .number = 0.37};
            const VariableUse use = variable_use(variable, shared->inputs);
            if (use == VariableUse::ByZone) continue;
            adjustment.zones.fill(true);
            adjustment.zones[1] = use == VariableUse::None;
            const std::vector<Adjustment> adjustments{adjustment};
            EXPECT_EQ(bits_of(evaluator.evaluate(adjustments).computed), plain)
                << study_variable_text(variable);
        }
    });
}

TEST_F(VariableUseTest, EachVariableThatCountsChangesTheDischarge) {
    for (const bool max_min : {false, true}) {
        SmallBasin small{2, k_first, 20};
        small.simulation.temperature_values = static_cast<std::int16_t>(max_min ? 1 : 0);
        for (PhysicalRow& row : small.physical) {
            row.precip = static_cast<float>(row.date % 3);  // else the lag would not show
            row.sca = 0.5F, row.tmax = 9.0F, row.tavg = 4.5F;
        }
        for (ParameterRow& row : small.parameters) {
            row.rca = std::int16_t{0}, row.tcrit = 2.0F, row.lapse_rate = 0.6F;
            row.an = 0.1F;  // so that new snow takes days to melt
        }
        write(small);
        const auto shared = study();
        Evaluator evaluator{shared};
        const auto plain = bits_of(evaluator.evaluate({}).computed);
        for (const StudyVariable variable : k_study_variables) {
            Adjustment adjustment{.variable = variable, .action = AdjustAction::Add, .number = 0.37};
            if (variable == StudyVariable::CriticalTemperature) adjustment.number = 9.0;
            if (variable == StudyVariable::RainContributingArea) adjustment.number = 1.0;
            adjustment.zones.fill(true);
            const std::vector<Adjustment> adjustments{adjustment};
            const bool counts = variable_use(variable, shared->inputs) != VariableUse::None;
            EXPECT_EQ(bits_of(evaluator.evaluate(adjustments).computed) != plain, counts)
                << study_variable_text(variable) << (max_min ? ", max/min" : "");
        }
    }
}

}  // namespace
}  // namespace nivora
