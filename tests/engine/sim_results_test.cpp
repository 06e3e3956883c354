#include "engine/sim_results.h"

#include "store/schema.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <type_traits>

namespace nivora {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(SimResults, HasTheFiftySevenColumnsOfItsTable) {
    SimResults table;
    std::vector<std::string> names;
    SimResults::visit_named(table, [&](const char* name, auto&) { names.emplace_back(name); });

    std::vector<std::string> fields;
    for (const Field& field : sim_results_table().fields) fields.push_back(field.name);
    EXPECT_EQ(names, fields);
    EXPECT_EQ(names.size(), 57U);
}

TEST(SimResults, NewRowsHoldMissingValues) {
    SimResults table;
    table.resize(2);

    EXPECT_EQ(table.size(), 2U);
    SimResults::visit(table, [](const auto& column) {
        ASSERT_EQ(column.size(), 2U);
        if constexpr (std::is_floating_point_v<typename std::decay_t<decltype(column)>::value_type>) {
            EXPECT_TRUE(std::isnan(column[0]) && std::isnan(column[1]));
        } else {
            EXPECT_EQ(column[0], 0);
        }
    });
}

TEST(SimResults, RowsAreVisitedByZoneAndByDay) {
    SimResults table;
    table.resize(5);
    table.Zone = {2, 1, 1, 2, 1};
    table.Date = {10, 12, 10, 12, 11};

    const RunRows rows = run_rows(table, 10, 12);

    EXPECT_THAT(rows.by_zone, ElementsAre(2, 4, 1, 0, 3));
    EXPECT_THAT(rows.by_day, ElementsAre(2, 0, 4, 1, 3));
}

TEST(SimResults, EqualRowsKeepTheirOrder) {
    SimResults table;
    table.resize(4);
    table.Zone = {1, 1, 1, 1};
    table.Date = {11, 10, 11, 10};

    const RunRows rows = run_rows(table, 10, 11);

    EXPECT_THAT(rows.by_zone, ElementsAre(1, 3, 0, 2));
    EXPECT_THAT(rows.by_day, ElementsAre(1, 3, 0, 2));
}

TEST(SimResults, OnlyRowsOfThePeriodAreVisited) {
    SimResults table;
    table.resize(4);
    table.Zone = {1, 1, 1, 1};
    table.Date = {10, 11, 12, 13};

    EXPECT_THAT(run_rows(table, 11, 12).by_zone, ElementsAre(1, 2));
    EXPECT_THAT(run_rows(table, 11, 12).by_day, ElementsAre(1, 2));
    EXPECT_THAT(run_rows(table, 14, 20).by_day, IsEmpty());
}

}  // namespace
}  // namespace nivora
