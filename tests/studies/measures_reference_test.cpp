// Measures against a second implementation of their formulas, in numpy.
#include "studies/measure_table.h"
#include "tests/support/random_trials.h"
#include "tests/support/temporary_folder.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <cstdlib>

namespace nivora {
namespace {

using ReferenceJson = nlohmann::json;

class MeasuresReference : public RandomTrials<testing::Test> {
protected:
    /// A series of one of several kinds: wide, narrow, with zeros, with equal values, or constant.
    double discharge(int kind) {
        switch (kind) {
            case 0: return std::exp(between(-3.0, 6.0));
            case 1: return between(10.0, 11.0);
            case 2: return by_chance(0.3) ? 0.0 : between(0.0, 5.0);
            case 3: return whole_between(1, 4);
            default: return 2.0;
        }
    }

    DailyDischarge random_series() {
        DailyDischarge series;
        const int kind = whole_between(0, 9) % 5;
        const int count = whole_between(2, 500);
        const DayCount first = whole_between(30000, 40000);
        const double missing = by_chance(0.5) ? 0.2 : 0.0;
        for (int day = 0; day < count; ++day) {
            const auto measured = static_cast<float>(discharge(kind));
            const double computed = as_double(measured) * between(0.5, 1.5) + between(-0.01, 0.5);
            const bool known = day < 2 || !by_chance(missing);  // a comparison needs a day
            series.dates.push_back(first + day);
            series.measured.push_back(known ? as_double(measured) : as_double(k_missing));
            series.computed.push_back(day < 2 || !by_chance(missing) ? computed : as_double(k_missing));
        }
        return series;
    }

    static std::string list(const std::vector<double>& values) {
        std::string text;
        for (const double value : values)
            text += (text.empty() ? "" : ",") + (is_missing(value) ? "null" : fmt::format("{:.17g}", value));
        return "[" + text + "]";
    }

    static std::string json_of(const DailyDischarge& series) {
        return fmt::format("{{\"dates\":[{}],\"measured\":{},\"computed\":{}}}", fmt::join(series.dates, ","),
                           list(series.measured), list(series.computed));
    }

    [[nodiscard]] ReferenceJson reference(const std::vector<DailyDischarge>& all) const {
        std::string text;
        for (const DailyDischarge& series : all) text += (text.empty() ? "" : ",\n") + json_of(series);
        folder.write("series.json", "[" + text + "]");
        const std::string command = fmt::format(
            "'{}' '{}/tests/studies/measures_reference.py' '{}' '{}'", NIVORA_NUMPY_PYTHON, NIVORA_SOURCE_DIR,
            (folder / "series.json").string(), (folder / "measures.json").string());
        if (std::system(command.c_str()) != 0) {
            ADD_FAILURE() << command << " has failed: is the package python3-numpy installed?";
            return ReferenceJson::array();
        }
        return ReferenceJson::parse(file_bytes(folder / "measures.json"));
    }

    static void expect_same(const char* key, const ReferenceJson& expected,
                            const std::optional<double>& value, double last_step = 0.0) {
        ASSERT_EQ(expected.is_null(), !value) << key << ": " << expected << ", " << value.value_or(0.0);
        if (!value) return;
        const auto wanted = expected.get<double>();
        EXPECT_NEAR(*value, wanted, 1e-8 * (1.0 + std::abs(wanted)) + last_step * std::abs(wanted)) << key;
    }

    static void expect_measures(const ReferenceJson& expected, const DailyDischarge& series) {
        const ComparedDays days =
            compared_days(series, {series.dates.front(), series.dates.back()}, all_months());
        EXPECT_EQ(days.missing.left_out, expected["left_out"].get<std::int64_t>());
        for (const MeasureRow& row : measure_table(days, Units::Metric)) {
            // The last step of the volume difference rounds to a Single.
            const double last_step = std::string_view{row.key} == "VolumeDifference" ? 6e-8 : 0.0;
            expect_same(row.key, expected[row.key], row.value, last_step);
        }
        const auto months = bias_by_month(days.dates, days.measured, days.computed);
        for (std::size_t month = 1; month < months.size(); ++month) {
            const auto known = [](double value) {
                return is_missing(value) ? std::nullopt : std::optional{value};
            };
            const std::string key = "Month" + std::to_string(month);
            expect_same(key.c_str(), expected[key], known(months[month].bias));
            expect_same((key + "Percent").c_str(), expected[key + "Percent"], known(months[month].percent));
        }
    }

    TemporaryFolder folder;
};

TEST_F(MeasuresReference, NumpyComputesTheSame) {
    std::vector<DailyDischarge> all;
    try_often(300, [&] { all.push_back(random_series()); });
    const ReferenceJson expected = reference(all);
    ASSERT_EQ(expected.size(), all.size());
    for (std::size_t i = 0; i < all.size() && !HasFailure(); ++i) {
        SCOPED_TRACE(json_of(all[i]));
        expect_measures(expected[i], all[i]);
    }
}

}  // namespace
}  // namespace nivora
