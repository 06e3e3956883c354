#include "climate/plotted_melt.h"

#include "climate/depletion_curves.h"
#include "engine/results_store.h"
#include "tests/engine/engine_fixture.h"
#include "tests/support/basin_file.h"

#include <gmock/gmock.h>

#include <numeric>

namespace nivora {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

using Floats = std::vector<float>;

/// Two zones with a summer of four days.
class PlottedMelt : public EngineTest {
protected:
    PlottedMelt() {
        start(2, date_of(2002, 5, 1), 4);
        for (const int zone : {1, 2}) {
            set(table.SCA, zone, {1, 0.5, 0.25, 0});
            set(table.MDCexcl, zone, {1, 3, 7, 9});
            set(table.SCAclim, zone, {1, 1, 0.5, 0});
            set(table.MDCexclWA, zone, {3, 7, 9, 9});
            set(table.MDCexclWAnew, zone, {2, 4, 8, 12});
        }
    }

    [[nodiscard]] RowOrder rows_of(int zone) const {
        RowOrder rows(static_cast<std::size_t>(days_of_table));
        std::iota(rows.begin(), rows.end(), static_cast<std::uint32_t>(at(zone, 1)));
        return rows;
    }
    [[nodiscard]] Period period(int first, int last) const {
        return {table.Date[at(1, first)], table.Date[at(1, last)]};
    }

    void store() {
        BasinDatabase database = file_.open();
        ResultsReplacement replacement{database};
        replacement.commit(table);
    }
    /// The values of a field of a zone as they are stored, in date order.
    [[nodiscard]] std::vector<std::string> stored(const std::string& field, int zone) const {
        return file_.column("SELECT " + field + " FROM SimResults WHERE Zone = " + std::to_string(zone) +
                            " ORDER BY Date");
    }
    void store_melt(int zone, const Period& dates) {
        BasinDatabase database = file_.open();
        store_plotted_melt(database, zone, dates);
    }

    BasinFile file_;
};

TEST_F(PlottedMelt, TakesThePresentCoverForBothOfItsCurves) {
    accumulate_plotted_melt(table, rows_of(1));
    // 1 * 1; + 0.5 * 2; + 0.25 * 4; + 0
    EXPECT_EQ(days(table.AZMexcl), (Floats{1, 2, 3, 3}));
    // 1 * 2; + 0.5 * 2; + 0.25 * 4; + 0, in the place of 3, 7, 8, 8 of the curve before its dates changed
    EXPECT_EQ(days(table.AZMwork), (Floats{2, 3, 4, 4}));
}

TEST_F(PlottedMelt, PlacesTheChangedMeltFromTheCoverAfterTheWinterChange) {
    accumulate_plotted_melt(table, rows_of(1));
    // Depths 3, 7, 9, 9 of the melts 3, 7, 8, 8 are reached on days 2, 3, 4 and 4.
    EXPECT_EQ(days(table.AZMexclWA), (Floats{0, 3, 7, 8}));
}

TEST_F(PlottedMelt, LeavesOtherZonesAndColumnsAsTheyAre) {
    fill_zone(table.AZMexcl, 2, 5);
    fill_zone(table.AZMincl, 1, 6);
    accumulate_plotted_melt(table, rows_of(1));
    EXPECT_THAT(days(table.AZMexcl, 2), Each(5.0F));
    EXPECT_THAT(days(table.AZMincl, 1), Each(6.0F));
}

TEST_F(PlottedMelt, RoundsARiseBeforeItIsWeighted) {
    set(table.SCA, 1, {0, 0.75, 0.75, 0.75});
    set(table.MDCexclWAnew, 1, {0.5, 16777215, 16777215, 16777215});
    accumulate_plotted_melt(table, rows_of(1));
    // The rise of 16,777,214.5 rounds to the even 16,777,214, and 0.75 of it to the even 12,582,910.
    EXPECT_EQ(days(table.AZMwork), (Floats{0, 12582910, 12582910, 12582910}));
}

TEST_F(PlottedMelt, OfAMissingValueIsAFault) {
    table.MDCexclWAnew[at(1, 2)] = k_missing;
    EXPECT_THROW(accumulate_plotted_melt(table, rows_of(1)), Fault);
}

TEST_F(PlottedMelt, OfAFileIsThatOfItsZoneAndPeriod) {
    table.MDCexclWAnew[at(1, 4)] = k_missing;  // behind the period
    store();
    BasinDatabase database = file_.open(Access::ReadOnly);
    const SimResults results = plotted_melt(database, 1, period(2, 3));
    EXPECT_THAT(results.Date, ElementsAre(table.Date[at(1, 2)], table.Date[at(1, 3)]));
    EXPECT_THAT(results.Zone, ElementsAre(1, 1));
    // Sums start at 0 on the first day of the period: 0.5 * 3; + 0.25 * 4
    EXPECT_THAT(results.AZMexcl, ElementsAre(1.5F, 2.5F));
    EXPECT_THAT(results.AZMwork, ElementsAre(2, 3));  // 0.5 * 4; + 0.25 * 4
    EXPECT_THAT(plotted_melt(database, 3, period(1, 4)).Date, IsEmpty());
}

TEST_F(PlottedMelt, IsStoredInItsZoneAndPeriodAlone) {
    for (auto* column : {&table.AZMincl, &table.AZMexcl, &table.AZMexclWA, &table.AZMwork}) fill(*column, 99);
    store();
    store_melt(1, period(1, 3));
    EXPECT_THAT(stored("AZMexcl", 1), ElementsAre("1.0", "2.0", "3.0", "99.0"));
    // Three of the depths 3, 7 and 9: 9 is not reached on these days and falls on the last one.
    EXPECT_THAT(stored("AZMexclWA", 1), ElementsAre("0.0", "3.0", "8.0", "99.0"));
    EXPECT_THAT(stored("AZMwork", 1), ElementsAre("2.0", "3.0", "4.0", "99.0"));
    EXPECT_THAT(stored("AZMincl", 1), Each("99.0"));
    for (const char* field : {"AZMexcl", "AZMexclWA", "AZMwork"})
        EXPECT_THAT(stored(field, 2), Each("99.0")) << field;
    EXPECT_THAT(stored("MDCexclWAnew", 1), ElementsAre("2.0", "4.0", "8.0", "12.0"));
}

TEST_F(PlottedMelt, FindsItsRowsWhateverTheirOrder) {
    store();
    file_.change(
        "CREATE TABLE Reversed AS SELECT * FROM SimResults ORDER BY Date DESC;"
        "DELETE FROM SimResults; INSERT INTO SimResults SELECT * FROM Reversed; DROP TABLE Reversed");
    store_melt(1, period(1, 4));
    EXPECT_THAT(stored("AZMwork", 1), ElementsAre("2.0", "3.0", "4.0", "4.0"));
}

TEST_F(PlottedMelt, ThatFailsStoresNothing) {
    for (auto* column : {&table.AZMexcl, &table.AZMexclWA, &table.AZMwork}) fill(*column, 99);
    table.MDCexclWAnew[at(1, 4)] = k_missing;
    store();
    EXPECT_THROW(store_melt(1, period(1, 4)), Fault);
    for (const char* field : {"AZMexcl", "AZMexclWA", "AZMwork"})
        EXPECT_THAT(stored(field, 1), Each("99.0")) << field;
}

TEST_F(PlottedMelt, IsNotStoredInAFileThatCanOnlyBeRead) {
    store();
    BasinDatabase database = file_.open(Access::ReadOnly);
    EXPECT_TRUE(refused([&] { store_plotted_melt(database, 1, period(1, 4)); }));
    EXPECT_EQ(plotted_melt(database, 1, period(1, 4)).AZMwork, (Floats{2, 3, 4, 4}));
}

TEST_F(PlottedMelt, WithoutATableIsAStoreError) {
    BasinDatabase database = file_.open();
    EXPECT_EQ(refused([&] { store_plotted_melt(database, 1, period(1, 4)); }), StoreFault::Missing);
}

TEST_F(PlottedMelt, OfAStepSixIsWhatTheStepStored) {
    accumulate_zonal_melt(table, rows_of(1));
    Climate_Depletion_Curves(table, rows_of(1));
    const Floats excluding = days(table.AZMexcl);
    const Floats changed = days(table.AZMexclWA);
    accumulate_plotted_melt(table, rows_of(1));
    EXPECT_EQ(days(table.AZMexcl), excluding);
    EXPECT_EQ(days(table.AZMexclWA), changed);
}

}  // namespace
}  // namespace nivora
