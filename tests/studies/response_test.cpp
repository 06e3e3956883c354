#include "studies/response.h"

#include "climate/climate_run.h"
#include "store/transactions.h"
#include "tests/studies/study_fixture.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

constexpr const char* k_response_scenario = "changed";

class ResponseTest : public StudyTest {
protected:
    /// An evaluation of a scenario in the file, up to its last step.
    struct InFile {
        bool done = false;
        ClimateState climate;
        RunState run;
        SimResults table;
    };

    InFile evaluate_file(const StudyBasin& shared, const ClimateChange& change, DayCount winter_end,
                         const RunRequest& request) const {
        BasinDatabase database{file(), Access::ReadWrite};
        atomically_if(database, [&] {
            add_rows<ScenarioIndexRow>(
                database, template_table(k_scenario_index),
                std::vector{ScenarioIndexRow{.simulation = "Test",
                                             .scenario = k_response_scenario,
                                             .winter_end_date = static_cast<double>(winter_end),
                                             .creation_date = std::nullopt,
                                             .comments = std::nullopt}});
            database.create_table(scenario_table(k_response_scenario));
            add_rows<ScenarioRow>(database, scenario_table(k_response_scenario),
                                  scenario_rows(shared, change));
            return true;
        });
        InFile result;
        BasinState basin = opened_basin(file());
        static_cast<RunRequest&>(result.run) = request;
        OkDialogs dialogs;
        const ClimateContext context{.run = {basin, result.run, dialogs},
                                     .climate = result.climate,
                                     .report_file = folder / "report.out"};
        result.done = run_climate_steps(database, context, k_response_scenario, k_climate_steps);
        result.table = load_results(database);
        return result;
    }

    static void expect_same_table(const SimResults& memory, const SimResults& in_file) {
        std::vector<std::vector<std::uint64_t>> wanted;
        const auto bits = [](const auto& column) {
            std::vector<double> values(column.begin(), column.end());
            return bits_of(values);
        };
        SimResults::visit(in_file, [&](const auto& column) { wanted.push_back(bits(column)); });
        std::size_t next = 0;
        SimResults::visit_named(memory, [&](const char* name, const auto& column) {
            EXPECT_EQ(bits(column), wanted[next++]) << name;
        });
    }

    static void expect_same_summary(const ClimateState& memory, const ClimateState& in_file) {
        for (const SummaryRow row :
             {SummaryRow::Measured, SummaryRow::Computed, SummaryRow::ClimateAffected}) {
            for (const SummarySeason season : {SummarySeason::Winter, SummarySeason::Summer})
                EXPECT_EQ(memory.summary(row, season), in_file.summary(row, season));
        }
    }

    ClimateChange random_change() { return {single(-2.0, 4.0), single(0.5, 1.5)}; }
};

TEST_F(ResponseTest, AnEvaluationInMemoryIsThatOfAScenarioInTheFileToTheBit) {
    int done = 0;
    try_often(60, [&] {
        write(random_basin());
        RunRequest request = random_request();
        request.UpdateInterval = 0;  // an evaluation has no forecast
        const auto shared = study(request);
        const DayCount winter_end =
            shared->run.RunStart +
            whole_between(0, static_cast<int>(shared->run.RunEnd - shared->run.RunStart) - 1);
        const ClimateChange change = random_change();
        ResponseEvaluator evaluator{shared, winter_end};
        const ClimateResponse response = evaluator.evaluate(change);
        const InFile wanted = evaluate_file(*shared, change, winter_end, request);
        EXPECT_EQ(response.done, wanted.done);
        if (!wanted.done) return;
        ++done;
        expect_same_table(evaluator.table(), wanted.table);
        expect_same_summary(response.state, wanted.climate);
        EXPECT_EQ(response.notes.size(), wanted.run.notes.size());
    });
    EXPECT_GT(done, 20);
}

TEST_F(ResponseTest, FlowsAreThoseOfWinterAndSummer) {
    random.seed(11);
    SmallBasin small{2, date_of(2001, 3, 1), 60};
    for (PhysicalRow& row : small.physical) {
        row.precip = single(0.0, 2.0);
        row.tavg = single(-3.0, 6.0);
        row.sca = 0.5F;
    }
    write(small);
    const auto shared = study();
    ResponseEvaluator evaluator{shared, date_of(2001, 3, 31)};
    const ClimateResponse same = evaluator.evaluate({});
    ASSERT_TRUE(same.done) << same.problem;
    Evaluator plain{shared};
    const auto run = plain.evaluate({}).computed;
    // The winter is that of a run; on 1 April a run goes on where an evaluation begins anew.
    for (std::size_t day = 0; day < 31; ++day) {
        EXPECT_EQ(same.flows.present[day], run[day]) << day;
        EXPECT_EQ(same.flows.changed[day], run[day]) << day;
    }
    for (std::size_t day = 31; day < 60; ++day) EXPECT_FALSE(is_missing(same.flows.present[day])) << day;
    const ClimateResponse wetter = evaluator.evaluate({0.0F, 1.5F});
    EXPECT_EQ(bits_of(wetter.flows.present), bits_of(same.flows.present));
    EXPECT_GT(wetter.state.summary(SummaryRow::ClimateAffected, SummarySeason::Winter).value(),
              same.state.summary(SummaryRow::ClimateAffected, SummarySeason::Winter).value());
}

TEST_F(ResponseTest, MaximumAndMinimumChangeWhereTheSimulationHasThem) {
    SmallBasin small{1, k_first, 10};
    for (const std::int16_t max_min : {std::int16_t{0}, std::int16_t{1}}) {
        small.simulation.temperature_values = max_min;
        write(small);
        const auto rows = scenario_rows(*study(), {1.5F, 0.9F});
        ASSERT_EQ(rows.size(), 2U);
        EXPECT_EQ(rows[0].variable, max_min == 1 ? 0 : 1);
        EXPECT_EQ(rows[0].factor, 1.5F);
        EXPECT_EQ(rows[1].variable, 2);
        EXPECT_EQ(rows[1].action, 1);
    }
}

TEST_F(ResponseTest, TheWinterEndsBeforeTheSimulationDoes) {
    write(SmallBasin{1, k_first, 10});
    const auto shared = study();
    EXPECT_EQ(winter_end_problem(*shared, k_first), "");
    EXPECT_EQ(winter_end_problem(*shared, k_first + 8), "");
    EXPECT_NE(winter_end_problem(*shared, k_first - 1), "");
    EXPECT_EQ(
        winter_end_problem(*shared, k_first + 9),
        "The winter must end on a day from 2001-06-01 to 2001-06-09, so that the simulation has a summer; "
        "2001-06-10 is none.");
}

TEST_F(ResponseTest, AnEvaluationThatFailsTellsWhy) {
    SmallBasin small{1, k_first, 10};
    small.parameters[3].tcrit = k_missing;
    write(small);
    ResponseEvaluator evaluator{study(), k_first + 4};
    const ClimateResponse response = evaluator.evaluate({1.0F, 1.0F});
    EXPECT_FALSE(response.done);
    EXPECT_THAT(response.problem, testing::HasSubstr("Null value(s)"));
    EXPECT_TRUE(response.flows.changed.empty());
}

TEST_F(ResponseTest, ThreadsShareTheBasinOfAllPairs) {
    random.seed(5);
    write(random_basin());
    const auto shared = study();
    const DayCount winter_end = shared->run.RunStart;
    const std::vector<float> degrees{0.0F, 1.0F, 2.0F, 3.0F};
    const std::vector<float> factors{0.9F, 1.0F, 1.1F};
    const auto pairs = all_pairs(degrees, factors);
    ASSERT_EQ(pairs.size(), 12U);
    EXPECT_EQ(pairs[4].degrees, 1.0F);
    EXPECT_EQ(pairs[4].precipitation, 1.0F);
    std::vector<std::vector<double>> alone;
    ResponseEvaluator evaluator{shared, winter_end};
    for (const ClimateChange& pair : pairs) alone.push_back(evaluator.evaluate(pair).flows.changed);
    StudyPool pool{3};
    std::vector<ClimateResponse> together;
    evaluate_all(shared, winter_end, pairs, pool, [&](std::size_t index, ClimateResponse response) {
        EXPECT_EQ(index, together.size());
        together.push_back(std::move(response));
    });
    ASSERT_EQ(together.size(), pairs.size());
    for (std::size_t i = 0; i < pairs.size(); ++i) {
        EXPECT_EQ(bits_of(together[i].flows.changed), bits_of(alone[i])) << i;
        EXPECT_EQ(together[i].change.degrees, pairs[i].degrees);
    }
}

TEST_F(ResponseTest, AStudyThatIsStoppedHasWhatWasHandedOver) {
    random.seed(6);
    write(random_basin());
    const auto shared = study();
    const std::vector<ClimateChange> changes(100);
    StudyPool pool{2};
    std::size_t taken = 0;
    evaluate_all(
        shared, shared->run.RunStart, changes, pool, [&](std::size_t, ClimateResponse) { ++taken; },
        [&] { return taken >= 20; });
    EXPECT_GE(taken, 20U);
    EXPECT_LT(taken, 100U);
}

/// The last days of snow of zones with these covers on days 10 to 13, of which the first is the winter.
LastSnow last_snow_of(const std::vector<std::vector<float>>& covers) {
    SimResults table;
    std::vector<float> cover;
    for (std::size_t zone = 0; zone < covers.size(); ++zone) {
        for (std::size_t day = 0; day < covers[zone].size(); ++day) {
            table.Zone.push_back(static_cast<std::int16_t>(zone + 1));
            table.Date.push_back(10 + static_cast<DayCount>(day));
            cover.push_back(covers[zone][day]);
        }
    }
    return last_snow(table, cover, 10, static_cast<int>(covers.size()));
}

TEST(LastSnow, IsTheDayBeforeTheFirstBareDayOfTheSummer) {
    const LastSnow last =
        last_snow_of({{1.0F, 0.5F, 0.2F, 0.0F}, {1.0F, 0.5F, 0.01F, 0.0F}, {0.0F, 0.011F, 0.0F, 0.0F}});
    ASSERT_EQ(last.size(), 3U);
    EXPECT_EQ(last[0], 12);
    EXPECT_EQ(last[1], 11) << "a curve is closed with 0.01 on its first bare day";
    EXPECT_EQ(last[2], 11);
}

TEST(LastSnow, DoesNotWaitForTheSnowOfTheNextWinter) {
    const LastSnow last = last_snow_of({{1.0F, 0.5F, 0.0F, 0.4F}, {1.0F, 0.0F, 0.0F, 0.4F}});
    EXPECT_EQ(last[0], 11);
    EXPECT_EQ(last[1], std::nullopt) << "bare from the first day of the summer on";
}

TEST(LastSnow, IsMissingWhereSnowNeverWasOrNeverGoes) {
    const LastSnow last =
        last_snow_of({{0.0F, 0.0F, 0.0F, 0.0F}, {1.0F, 0.0F, 0.0F, 0.0F}, {1.0F, 1.0F, 0.5F, 0.02F}});
    for (const auto& zone : last) EXPECT_EQ(zone, std::nullopt);
    const LastSnow gap = last_snow_of({{1.0F, 0.5F, k_missing, 0.0F}});
    EXPECT_EQ(gap[0], 11) << "a day without a value is neither bare nor covered";
}

TEST(FlowFigures, TheMedianDayIsTheFirstByWhichHalfHasPassed) {
    const std::vector<DayCount> dates{100, 101, 102, 103};
    EXPECT_EQ(flow_figures(dates, std::vector<double>{1.0, 1.0, 1.0, 1.0}).median_day, 101);
    EXPECT_EQ(flow_figures(dates, std::vector<double>{1.0, 0.9, 1.0, 1.0}).median_day, 102);
    EXPECT_EQ(flow_figures(dates, std::vector<double>{5.0, 1.0, 1.0, 1.0}).median_day, 100);
    EXPECT_EQ(flow_figures(dates, std::vector<double>(4, 0.0)).median_day, std::nullopt);
}

TEST(FlowFigures, LeaveMissingDaysOut) {
    const std::vector<DayCount> dates{100, 101, 102, 103};
    const double missing = as_double(k_missing);
    const FlowFigures figures = flow_figures(dates, std::vector<double>{1.0, missing, 1.0, 2.0});
    EXPECT_DOUBLE_EQ(figures.centre_of_mass.value(), 102.0);  // (0 + 2 + 6) / 4 days after 100
    EXPECT_EQ(figures.highest_day, 103);
    EXPECT_EQ(figures.highest, 2.0);
    EXPECT_FALSE(flow_figures(dates, std::vector<double>(4, missing)).centre_of_mass);
}

}  // namespace
}  // namespace nivora
