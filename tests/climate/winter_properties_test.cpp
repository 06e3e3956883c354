#include "base/fault.h"
#include "climate/depletion_curves.h"
#include "tests/climate/winter_fixture.h"
#include "tests/support/ok_dialogs.h"
#include "tests/support/random_trials.h"

#include <cstring>
#include <numeric>
#include <random>
#include <set>

namespace nivora {
namespace {

constexpr int k_trials = 300;

/// Rules that hold for any summer, checked on random ones.
class WinterProperties : public RandomTrials<WinterTest> {
protected:
    /// Fills every column of the table with random values, some of them missing.
    void scramble(double share_missing) {
        SimResults::visit(table, [&](auto& column) {
            using Value = typename std::remove_reference_t<decltype(column)>::value_type;
            if constexpr (std::is_floating_point_v<Value>) {
                for (Value& value : column) {
                    value = by_chance(share_missing) ? static_cast<Value>(k_missing)
                                                     : static_cast<Value>(whole_between(0, 40)) / 8;
                }
            }
        });
    }

    void random_winters() {
        for (int zone = 1; zone <= basin.ZoneCount; ++zone) {
            winter(zone, whole_between(0, 20), whole_between(0, 20), whole_between(0, 8),
                   whole_between(0, 8));
        }
    }

    /// A zone that melts every day, whose cover never grows and whose depletion curve is as a run writes it:
    /// 0 after the first bare day. The changed summer melts like the present one, without new snow.
    void melting_zone(int zone) {
        double cover = between(0.3, 1.0);
        double depth = 0.0;
        bool bare = false;
        for (int day = 1; day <= days_of_table; ++day) {
            const std::size_t row = at(zone, day);
            depth += between(0.1, 2.0);
            table.SCA[row] = static_cast<float>(cover);
            table.SumAT[row] = static_cast<float>(depth);
            table.MDCexcl[row] = bare ? 0.0F : static_cast<float>(depth);
            bare = bare || cover == 0.0;
            if (by_chance(0.7)) cover = by_chance(0.1) ? 0.0 : cover * between(0.5, 1.0);
        }
    }

    void click_ok_and_adjust() {
        click_ok(basin.ZoneCount);
        adjust_and_report();
    }

    /// Answers any number of boxes and survives a fault.
    /// @return whether the step completed
    bool try_to_adjust() {
        OkDialogs ok;
        try {
            WinterReport written{basin, run, climate, report_time()};
            Winter_Adjustment(table, {basin, run, climate, ok}, written);
        } catch (const Fault&) {
            return false;
        }
        return true;
    }
};

template <typename Column>
bool same_bits(const Column& a, const Column& b) {
    return a.size() == b.size() &&
           std::memcmp(a.data(), b.data(), a.size() * sizeof(typename Column::value_type)) == 0;
}

TEST_F(WinterProperties, OtherColumnsKeepTheirBitsEvenAfterAFault) {
    int done = 0;
    int faults = 0;
    try_often(k_trials, [&] {
        summer(whole_between(1, 5), whole_between(1, 40));
        scramble(by_chance(0.5) ? 0.0 : 0.01);
        random_winters();
        SimResults before = table;
        (try_to_adjust() ? done : faults) += 1;
        const std::set<const void*> own{&table.SCAclim,   &table.SCAclimWA,    &table.SCAclimWAMA,
                                        &table.MDCexclWA, &table.MDCexclWAnew, &table.MeltOffset};
        std::vector<const void*> columns_before;
        SimResults::visit(before, [&](auto& column) { columns_before.push_back(&column); });
        std::size_t number = 0;
        SimResults::visit(table, [&](auto& column) {
            using Column = std::remove_reference_t<decltype(column)>;
            const auto& old = *static_cast<const Column*>(columns_before[number++]);
            if (!own.contains(&column)) {
                EXPECT_TRUE(same_bits(column, old)) << "field " << number;
            }
        });
    });
    EXPECT_GT(done, k_trials / 10);
    EXPECT_GT(faults, k_trials / 10);
}

TEST_F(WinterProperties, RowsOfTheWinterKeepTheirBits) {
    try_often(k_trials, [&] {
        summer(whole_between(1, 4), whole_between(4, 40));
        scramble(0.0);
        random_winters();
        const int winter_days = whole_between(1, days_of_table - 2);
        run.RunStart += winter_days;
        climate.WinterEndDate = run.RunStart - 1;
        const SimResults before = table;
        try_to_adjust();
        for (int zone = 1; zone <= basin.ZoneCount; ++zone) {
            for (int day = 1; day <= winter_days; ++day) {
                const std::size_t row = at(zone, day);
                EXPECT_EQ(table.SCAclim[row], before.SCAclim[row]);
                EXPECT_EQ(table.SCAclimWA[row], before.SCAclimWA[row]);
                EXPECT_EQ(table.SCAclimWAMA[row], before.SCAclimWAMA[row]);
                EXPECT_EQ(table.MDCexclWA[row], before.MDCexclWA[row]);
                EXPECT_EQ(table.MDCexclWAnew[row], before.MDCexclWAnew[row]);
                EXPECT_EQ(table.MeltOffset[row], before.MeltOffset[row]);
            }
        }
    });
}

/// The cover of a summer that repeats without change. It ends with 0.01 on the first day at or below 0.01; if
/// that is the last day and it is bare, the value before is held.
Floats repeated_cover(const Floats& present_cover) {
    Floats cover(present_cover.size(), 0.0F);
    for (std::size_t day = 0; day < cover.size(); ++day) {
        const bool last = day + 1 == cover.size();
        if (static_cast<double>(present_cover[day]) > 0.01) {
            cover[day] = present_cover[day];
        } else {
            cover[day] = last && present_cover[day] == 0.0F ? cover[day - 1] : 0.01F;
            break;
        }
    }
    return cover;
}

TEST_F(WinterProperties, NoChangeLeavesTheCoverAsItWas) {
    try_often(k_trials, [&] {
        summer(whole_between(1, 5), whole_between(2, 60));
        for (int zone = 1; zone <= basin.ZoneCount; ++zone) melting_zone(zone);
        click_ok_and_adjust();
        for (int zone = 1; zone <= basin.ZoneCount; ++zone) {
            EXPECT_EQ(days(table.SCAclimWAMA, zone), repeated_cover(days(table.SCA, zone)));
        }
    });
}

TEST_F(WinterProperties, ASurplusNeverShowsLessCoverInTheSameSummerUpToItsLastDay) {
    int done = 0;
    try_often(k_trials, [&] {
        summer(1, whole_between(2, 60));
        melting_zone(1);
        winter(1, 10, between(10.0, 25.0), 0, 0);
        if (!try_to_adjust()) return;  // in a summer that ends in snow the last value may have no day
        ++done;
        for (int day = 1; day < days_of_table; ++day) {
            const std::size_t row = at(1, day);
            EXPECT_GE(table.SCAclimWAMA[row], table.SCA[row] > 0.01F ? table.SCA[row] : 0.0F)
                << "day " << day;
        }
    });
    EXPECT_GT(done, k_trials / 4);
}

TEST_F(WinterProperties, ADeficitPlacesNoValueOnADayWithLessCover) {
    try_often(k_trials, [&] {
        summer(1, whole_between(2, 60));
        melting_zone(1);
        winter(1, 10, between(0.0, 10.0), 0, 0);
        click_ok_and_adjust();
        for (int day = 1; day <= days_of_table; ++day) {
            const std::size_t row = at(1, day);
            EXPECT_LE(table.SCAclimWA[row], std::max(table.SCA[row], 0.0001F)) << "day " << day;
        }
    });
}

TEST_F(WinterProperties, EachDepthIsPlacedOnTheFirstDayThatReachesItFromTheDayOfTheDepthBefore) {
    try_often(k_trials, [&] {
        summer(1, whole_between(2, 60));
        melting_zone(1);
        for (int day = 1; day <= days_of_table; ++day) {
            table.SumAT[at(1, day)] = static_cast<float>(day * between(0.5, 1.5));
            table.NewMelt[at(1, day)] = by_chance(0.2) ? static_cast<float>(between(0.0, 1.0)) : 0.0F;
        }
        winter(1, 10, between(5.0, 20.0), 0, 0);
        if (!try_to_adjust()) return;
        int before = 1;
        for (int day = 1; day <= days_of_table; ++day) {
            const int offset = static_cast<int>(table.MeltOffset[at(1, day)]);
            if (offset == 0 || offset > days_of_table) break;  // beyond the summer
            const float depth = table.MDCexclWAnew[at(1, day)];
            EXPECT_GE(offset, before);
            EXPECT_LE(depth, table.SumAT[at(1, offset)]);
            for (int passed = before; passed < offset; ++passed) EXPECT_GT(depth, table.SumAT[at(1, passed)]);
            before = offset;
        }
    });
}

TEST_F(WinterProperties, ACurveThatIsNotMovedAccumulatesThePresentMelt) {
    try_often(k_trials, [&] {
        summer(1, whole_between(1, 60));
        melting_zone(1);
        table.MDCexcl = table.SumAT;
        table.MDCexclWA = table.MDCexcl;
        table.SCAclim = table.SCA;
        table.MDCincl = table.SumAT;
        RowOrder rows(table.size());
        std::iota(rows.begin(), rows.end(), 0U);
        accumulate_zonal_melt(table, rows);
        Climate_Depletion_Curves(table, rows);
        EXPECT_EQ(table.AZMexclWA, table.AZMexcl);
        EXPECT_EQ(table.AZMwork, table.AZMexcl);
    });
}

}  // namespace
}  // namespace nivora
