// Random small basins in files, and changes of them, for the tests of studies.
#pragma once

#include "base/text.h"
#include "engine/results_store.h"
#include "store/daily_fields.h"
#include "studies/evaluator.h"
#include "tests/engine/engine_fixture.h"
#include "tests/support/ok_dialogs.h"
#include "tests/support/random_trials.h"
#include "tests/support/temporary_folder.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <filesystem>
#include <memory>
#include <string>

namespace nivora {

/// A basin in a file "basin.mdb", which studies read and runs write.
class StudyTest : public RandomTrials<testing::Test> {
protected:
    [[nodiscard]] std::filesystem::path file() const { return folder / "basin.mdb"; }

    void write(const SmallBasin& small) const {
        std::filesystem::remove(file());
        small.write(file());
    }

    [[nodiscard]] Distribution distribution() {
        return by_chance(0.5) ? Distribution::Basinwide : Distribution::ByZone;
    }
    [[nodiscard]] float single(double low, double high) { return static_cast<float>(between(low, high)); }

    /// A basin over part of a year, with random weather and parameters.
    SmallBasin random_basin() {
        SmallBasin small{whole_between(1, 4), date_of(2001, whole_between(1, 12), whole_between(1, 28)),
                         whole_between(2, 80)};
        Simulation& options = small.simulation;
        options.temperature_values = static_cast<std::int16_t>(whole_between(0, 1));
        options.temperature = distribution(), options.precipitation = distribution();
        options.lapse_rate = distribution(), options.runoff_coefficients = distribution();
        options.critical_temperature = distribution();
        if (by_chance(0.2)) options.precipitation_threshold.reset();
        for (Zone& zone : small.zones) zone.area = between(1.0, 1000.0);
        for (PhysicalRow& row : small.physical) {
            row.tavg = single(-12.0, 15.0);
            row.tmax = single(-5.0, 20.0);
            row.tmin = single(-20.0, 5.0);
            row.runoff = single(1.0, 50.0);
            row.precip = by_chance(0.4) ? single(0.0, 7.0) : 0.0F;
            row.sca = single(0.0, 1.0);
        }
        for (ParameterRow& row : small.parameters) {
            row.lapse_rate = single(-0.2, 1.2);
            row.tcrit = single(0.0, 4.0);
            row.an = single(0.1, 0.8);
            row.cs = single(0.1, 1.0);
            row.cr = single(0.1, 1.0);
            row.lag_hours = static_cast<float>(whole_between(0, 36));
            row.rca = static_cast<std::int16_t>(whole_between(0, 1));
            row.xcoeff = between(0.5, 1.2);
            row.ycoeff = between(0.0, 0.1);
        }
        return small;
    }

    RunRequest random_request() {
        RunRequest request;
        request.RunKind = k_year_round_simulation;
        request.NoSnow = by_chance(0.3);
        if (by_chance(0.2)) request.UpdateInterval = whole_between(1, 9);
        if (by_chance(0.3)) request.LagDistribution = {3.0F, 0.5F, 0.3F, 0.2F};
        return request;
    }

    ZoneSet random_zones() {
        ZoneSet zones{};
        for (std::size_t zone = 1; zone < zones.size(); ++zone) zones.at(zone) = by_chance(0.6);
        return zones;
    }

    Adjustment random_adjustment(const Simulation& simulation) {
        Adjustment adjustment;
        adjustment.variable = k_study_variables.at(
            static_cast<std::size_t>(whole_between(0, static_cast<int>(k_study_variables.size()) - 1)));
        adjustment.action = static_cast<AdjustAction>(whole_between(0, 2));
        adjustment.number = adjustment.action == AdjustAction::Multiply ? between(0.5, 1.5)
                            : by_chance(0.1)                            ? 0.0
                                                                        : between(-0.3, 0.9);
        adjustment.zones = random_zones();
        const auto length = static_cast<int>(*simulation.end - *simulation.start);
        if (by_chance(0.5)) {
            const DayCount first = *simulation.start + whole_between(-2, length);
            adjustment.days = Period{first, first + whole_between(0, length)};
        }
        return adjustment;
    }

    /// Changes the tables in the file as the daily editor does.
    void edit_file(const Adjustment& adjustment, const Simulation& simulation) const {
        BasinDatabase database{file(), Access::ReadWrite};
        const bool physical = is_physical(adjustment.variable);
        const std::string table = physical ? k_physical_data : simulation.name;
        const TableSchema schema =
            physical ? template_table(k_physical_data) : parameter_table(simulation.name);
        const std::string name = study_variable_field(adjustment.variable);
        const auto field = std::find_if(schema.fields.begin(), schema.fields.end(),
                                        [&](const Field& each) { return same_name(each.name, name); });
        ASSERT_NE(field, schema.fields.end()) << name;
        const Period days = adjustment.days.value_or(Period{0, 100000});
        DailyFields fields{database, {.table = table, .fields = {*field}, .period = days}};
        for (int zone = 1; zone <= k_most_zones; ++zone) {
            if (adjustment.zones.at(static_cast<std::size_t>(zone)))
                edit_zone(fields, zone, days, adjustment);
        }
    }

    static void edit_zone(DailyFields& fields, int zone, const Period& days, const Adjustment& adjustment) {
        if (adjustment.action != AdjustAction::Set) {
            const bool adds = adjustment.action == AdjustAction::Add;
            fields.change(zone, days, 0, adds ? MassEdit::Add : MassEdit::Multiply, adjustment.number);
            return;
        }
        // The editor rounds what is typed before it stores it.
        const bool whole = adjustment.variable == StudyVariable::RainContributingArea;
        const bool twofold = adjustment.variable == StudyVariable::RecessionX ||
                             adjustment.variable == StudyVariable::RecessionY;
        const double number = whole     ? std::nearbyint(adjustment.number)
                              : twofold ? adjustment.number
                                        : as_double(static_cast<float>(adjustment.number));
        for (const std::int64_t row : fields.read(zone).rows) fields.store(row, 0, number);
    }

    /// The discharge that a run leaves in the file, zone 1's days in order.
    [[nodiscard]] std::vector<double> run_of_file(const RunRequest& request) const {
        BasinState basin = opened_basin(file());
        RunState run;
        static_cast<RunRequest&>(run) = request;
        OkDialogs dialogs;
        EXPECT_TRUE(start_run(RunContext{basin, run, dialogs}, 1).results_rebuilt);
        BasinDatabase database{file(), Access::ReadOnly};
        const SimResults results = load_results(database);
        std::vector<double> computed;
        for (std::size_t row = 0; row < results.size(); ++row)
            if (results.Zone[row] == 1) computed.push_back(results.DailyQ[row]);
        return computed;
    }

    [[nodiscard]] std::shared_ptr<const StudyBasin> study(const RunRequest& request = {}) const {
        BasinDatabase database{file(), Access::ReadOnly};
        const auto read = read_study_basin(database, opened_basin(file()), request);
        if (const auto* problem = std::get_if<Message>(&read)) {
            ADD_FAILURE() << problem->text;
            return nullptr;
        }
        return std::get<std::shared_ptr<const StudyBasin>>(read);
    }

    TemporaryFolder folder;
};

/// The bits of a series; all missing values are alike.
[[nodiscard]] inline std::vector<std::uint64_t> bits_of(const std::vector<double>& values) {
    std::vector<std::uint64_t> bits;
    for (const double value : values)
        bits.push_back(is_missing(value) ? ~std::uint64_t{0} : std::bit_cast<std::uint64_t>(value));
    return bits;
}

}  // namespace nivora
