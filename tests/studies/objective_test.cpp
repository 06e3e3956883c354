#include "studies/objective.h"

#include "studies/measure_table.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace nivora {
namespace {

TEST(Objective, HasTheValueOfTheTableOfMeasures) {
    ComparedDays days;
    for (int day = 0; day < 40; ++day) {
        days.dates.push_back(40000 + day);
        days.measured.push_back(10.0 + 5.0 * std::sin(day * 0.3));
        days.computed.push_back(11.0 + 4.0 * std::sin(day * 0.3 + 0.2));
    }
    const auto table = measure_table(days, Units::Metric);
    for (const Objective& objective : objectives()) {
        bool found = false;
        for (const MeasureRow& row : table) {
            if (std::string{row.key} != objective.key) continue;
            found = true;
            ASSERT_TRUE(row.value) << objective.name;
            EXPECT_EQ(objective.value(days.measured, days.computed), row.value) << objective.name;
            EXPECT_EQ(objective.best, row.best) << objective.name;
        }
        EXPECT_TRUE(found) << objective.name;
    }
}

TEST(Objective, CostIsTheDistanceFromTheBestValue) {
    EXPECT_DOUBLE_EQ(find_objective("KGE")->cost(0.75), 0.25);
    EXPECT_DOUBLE_EQ(find_objective("volume difference")->cost(-3.0), 3.0);
    EXPECT_DOUBLE_EQ(find_objective("volume difference")->cost(3.0), 3.0);
}

TEST(Objective, IsFoundByNameAndKey) {
    EXPECT_STREQ(find_objective(" nse OF logs ")->key, "NSElog");
    EXPECT_STREQ(find_objective("KGEmodified")->name, "modified KGE");
    EXPECT_EQ(find_objective("NS"), nullptr);
    EXPECT_EQ(find_objective(""), nullptr);
}

TEST(Objective, AConstantMeasuredDischargeHasNoEfficiency) {
    const std::vector<double> constant{2.0, 2.0, 2.0};
    const std::vector<double> computed{1.0, 2.0, 3.0};
    for (const Objective& objective : objectives())
        EXPECT_EQ(objective.value(constant, computed).has_value(), objective.best == 0.0) << objective.name;
}

}  // namespace
}  // namespace nivora
