// Checks the numbers of the two readings in the manual's chapter of the plot window against the sample basin.

#include "base/calendar.h"
#include "tests/batch/batch_call.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <map>

namespace nivora {
namespace {

using testing::HasSubstr;

/// A day's measured and computed discharge, or that of the present and of the changed climate.
struct DayFlow {
    double first = 0.0;
    double second = 0.0;
};
using Flows = std::map<std::string, DayFlow>;

class ManualPlotReadings : public testing::Test {
protected:
    ManualPlotReadings() {
        std::filesystem::copy_file(std::filesystem::path{NIVORA_PROGRAM_FOLDER} / "samples/ellervane.mdb",
                                   folder_ / "sample.mdb");
        for (const std::string& line :
             lines_of(file_bytes(std::filesystem::path{NIVORA_SOURCE_DIR} / "docs/manual/25-plot-window.md")))
            page_ += line + " ";
    }

    [[nodiscard]] std::string file() const { return (folder_ / "sample.mdb").string(); }
    /// @return the statistics
    nlohmann::json run() const {
        return nlohmann::json::parse(
            printed({"run", file(), "--simulation", k_sample, "--kind", "year-round", "--json"}));
    }
    void evaluate() const {
        printed({"scenario", file(), "--simulation", k_sample, "--name", "warmer", "--winter-end",
                 "1998-03-31", "--edit",
                 "Average Temperature:1997-10-01:1998-09-30:Add/subtract to each:2:All", "--edit",
                 "Precipitation:1997-10-01:1998-09-30:Multiply each:1.1:All"});
        printed({"climate", file(), "--simulation", k_sample, "--scenario", "warmer"});
    }
    [[nodiscard]] nlohmann::json described(const std::vector<std::string>& options) const {
        std::vector<std::string> arguments{"plot", file(), "--simulation", k_sample, "--describe"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return nlohmann::json::parse(printed(arguments));
    }
    /// A plot of the changed climate, of one zone or without a choice.
    [[nodiscard]] nlohmann::json changed_plot(const std::string& plot, const std::string& zone = {}) const {
        std::vector<std::string> options{"--step", "6", "--scenario", "warmer", "--plot", plot};
        if (!zone.empty()) options.insert(options.end(), {"--zone", zone});
        return described(options);
    }
    /// The columns of a result of zone 1, by day.
    [[nodiscard]] Flows flows(const std::string& first, const std::string& second) const {
        return columns(1, first, second);
    }
    [[nodiscard]] Flows columns(int zone, const std::string& first, const std::string& second) const {
        BasinDatabase database{file(), Access::ReadOnly};
        SQLite::Statement query{database.sql(), "SELECT Date, " + first + ", " + second +
                                                    " FROM SimResults WHERE Zone = ? ORDER BY Date"};
        query.bind(1, zone);
        Flows days;
        while (query.executeStep()) {
            days[iso_date(query.getColumn(0).getInt())] = {query.getColumn(1).getDouble(),
                                                           query.getColumn(2).getDouble()};
        }
        return days;
    }
    static std::string iso_date(int day) {
        const CivilDate date = civil_date(day);
        return fmt::format("{:04}-{:02}-{:02}", date.year, date.month, date.day);
    }
    /// Volumes of both discharges in 10^6 m³.
    static DayFlow volumes(const Flows& flows, const std::string& from, const std::string& to) {
        DayFlow sum;
        for (auto day = flows.lower_bound(from); day != flows.end() && day->first <= to; ++day) {
            sum.first += day->second.first * 0.0864;
            sum.second += day->second.second * 0.0864;
        }
        return sum;
    }
    /// What Multiply each day does with a selection in the parameters of zone 1.
    void multiply(const std::string& column, double factor, CivilDate from, CivilDate to) const {
        BasinDatabase{file(), Access::ReadWrite}.execute(
            fmt::format("UPDATE [{0}] SET {1} = {1} * {2} WHERE Zone = 1 AND Date BETWEEN {3} AND {4}",
                        k_sample, column, factor, *day_count(from), *day_count(to)));
    }
    void expect_on_page(const std::string& text) const { EXPECT_THAT(page_, HasSubstr(text)); }

    static constexpr const char* k_sample = "ellervane-1997-98";

    TemporaryFolder folder_;
    std::string page_;
};

std::string long_day(const std::string& iso) {
    constexpr std::array k_months{"January", "February", "March",     "April",   "May",      "June",
                                  "July",    "August",   "September", "October", "November", "December"};
    return fmt::format("{} {}", std::stoi(iso.substr(8)), k_months.at(std::stoul(iso.substr(5, 2)) - 1));
}

TEST_F(ManualPlotReadings, ThePeaksOfTheHydrographAreThoseOfItsTable) {
    run();
    const Flows days = flows("ActualQ", "DailyQ");
    // The highest day of each discharge in a stretch around each peak.
    const std::vector<std::pair<std::string, std::string>> stretches{
        {"1997-10-28", "1997-11-08"}, {"1998-05-08", "1998-05-19"}, {"1998-05-28", "1998-06-12"},
        {"1998-06-18", "1998-06-26"}, {"1998-07-12", "1998-07-18"}, {"1998-08-18", "1998-08-26"},
        {"1998-09-06", "1998-09-13"}};
    bool first_row = true;
    for (const auto& [from, to] : stretches) {
        auto measured = days.find(from);
        auto computed = measured;
        for (auto day = measured; day != days.end() && day->first <= to; ++day) {
            if (day->second.first > measured->second.first) measured = day;
            if (day->second.second > computed->second.second) computed = day;
        }
        expect_on_page(fmt::format("| {:.2f}{} on {} | {:.2f} on {} |", measured->second.first,
                                   first_row ? " m³/s" : "", long_day(measured->first),
                                   computed->second.second, long_day(computed->first)));
        first_row = false;
    }
    expect_on_page(fmt::format("the model has {:.2f} then", days.at("1998-08-21").second));
}

TEST_F(ManualPlotReadings, TheVolumesOfTheSeasonsAreThoseOfItsTable) {
    run();
    const Flows days = flows("ActualQ", "DailyQ");
    const auto row = [&](const char* name, const char* from, const char* to) {
        const DayFlow sum = volumes(days, from, to);
        expect_on_page(fmt::format("| {} | {:.2f} | {:.2f} | {:.2f} |", name, sum.first, sum.second,
                                   sum.first - sum.second));
    };
    row("October to March", "1997-10-01", "1998-03-31");
    row("April", "1998-04-01", "1998-04-30");
    row("May to July", "1998-05-01", "1998-07-31");
    row("August, September", "1998-08-01", "1998-09-30");
    const DayFlow june = volumes(days, "1998-06-01", "1998-06-30");
    expect_on_page(fmt::format("June alone has {:.2f} where {:.2f} were measured", june.second, june.first));
}

TEST_F(ManualPlotReadings, SnowCoverAndDegreeDaysOfJuneAreAsItSays) {
    run();
    const Flows zone_b = columns(2, "ZoneDD", "Tcrit");
    const Flows zone_c = columns(3, "ZoneDD", "SCA");
    const Flows zone_d = columns(4, "ZoneDD", "SCA");
    expect_on_page(fmt::format("Zone C is covered to {:.2f} on 2 June", zone_c.at("1998-06-02").second));
    EXPECT_GT(zone_c.at("1998-06-08").second, 0.0);
    EXPECT_EQ(zone_c.at("1998-06-09").second, 0.0);
    EXPECT_EQ(zone_d.at("1998-06-05").second, 1.0);
    expect_on_page(fmt::format(
        "The degree days of zone C go from {:.1f} on 30 May to {:.1f} on 2 June and {:.1f}",
        zone_c.at("1998-05-30").first, zone_c.at("1998-06-02").first, zone_c.at("1998-06-06").first));
    expect_on_page(fmt::format("Zone B had {:.3f} degree days, just below its critical temperature of {:.0f}",
                               zone_b.at("1998-05-10").first, zone_b.at("1998-05-10").second));
}

TEST_F(ManualPlotReadings, TheThreeChangesGiveTheFiguresOfItsTable) {
    const auto row = [&](const char* name) {
        const nlohmann::json statistics = run();
        const Flows days = flows("ActualQ", "DailyQ");
        const auto peak = std::max_element(days.begin(), days.end(), [](const auto& a, const auto& b) {
            return a.second.second < b.second.second;
        });
        expect_on_page(fmt::format("| {} | {:.2f} | {:.4f} | {:.2f} on {} | {:.2f} |", name,
                                   statistics["VolumeDifference"].get<double>(),
                                   statistics["CoefficientR2"].get<double>(), peak->second.second,
                                   long_day(peak->first), days.at("1998-08-21").second));
    };
    row("nothing");
    multiply("LagTime", 0.5, {1997, 10, 1}, {1998, 9, 30});
    row("1");
    multiply("CS", 0.9, {1998, 6, 1}, {1998, 6, 30});
    row("1 and 2");
    multiply("CR", 1.2, {1997, 10, 1}, {1998, 3, 31});
    row("1, 2 and 3");
}

TEST_F(ManualPlotReadings, TheDischargeOfBothClimatesIsAsItSays) {
    evaluate();
    Flows days = flows("DailyQPresent", "DailyQ");
    days.erase(days.begin(), days.find("1998-04-01"));
    expect_on_page(fmt::format("changed winter left: {:.2f} m³/s, where the present climate has {:.2f}",
                               days.begin()->second.second, days.begin()->second.first));
    std::string present;
    std::string changed;
    for (int month = 4; month <= 9; ++month) {
        const DayFlow sum =
            volumes(days, fmt::format("1998-{:02}-01", month), fmt::format("1998-{:02}-31", month));
        present += fmt::format(" {:.2f} |", sum.first);
        changed += fmt::format(" {:.2f} |", sum.second);
    }
    expect_on_page("| present, 10^6 m³ |" + present);
    expect_on_page("| changed |" + changed);
    for (const auto& [day, flow] : days) {
        if (day >= "1998-06-01" && day <= "1998-08-20") {
            EXPECT_LT(flow.second, flow.first) << day;
        }
    }
    const auto panel = changed_plot("18")["summary"];
    expect_on_page(fmt::format("{} and {} million m³, a difference of {} %", panel[0][1].get<std::string>(),
                               panel[2][1].get<std::string>(), panel[4][1].get<std::string>()));
    expect_on_page("Its R², " + panel[5][1].get<std::string>() + ",");
}

TEST_F(ManualPlotReadings, TheSnowCoverFallsBelowAHalfOnTheDaysOfItsTable) {
    evaluate();
    for (const int zone : {3, 4, 5}) {
        const Flows days = columns(zone, "SCA", "SCAclimWAMA");
        const auto summer = days.find("1998-04-01");
        const auto present =
            std::find_if(summer, days.end(), [](const auto& day) { return day.second.first < 0.5; });
        const auto changed =
            std::find_if(summer, days.end(), [](const auto& day) { return day.second.second < 0.5; });
        expect_on_page(fmt::format("| {} | {} | {} | {} days |", "ABCDE"[zone - 1], long_day(present->first),
                                   long_day(changed->first), std::distance(changed, present)));
    }
}

/// What the legend gives behind a name: "65.69 cm" of "MDC_excl (65.69 cm) at S=0)", "(none)" if there is no
/// value.
std::string legend_value(const nlohmann::json& plot, std::size_t row) {
    const auto text = plot["legend"][row].get<std::string>();
    const std::size_t open = text.rfind('(');
    const std::string value = text.substr(open + 1, text.find(')', open) - open - 1);
    return value == "none" ? "(none)" : value;
}
/// The same without its unit.
std::string legend_number(const nlohmann::json& plot, std::size_t row) {
    const std::string value = legend_value(plot, row);
    return value.substr(0, value.find(' '));
}

TEST_F(ManualPlotReadings, TheDepletionCurvesEndAtTheDepthsThatItGives) {
    evaluate();
    for (const std::string zone : {"A", "B", "C", "D", "E"}) {
        const auto plot = changed_plot("20", zone);
        expect_on_page("| " + zone + " | " + legend_value(plot, 0) + " | " + legend_value(plot, 1) + " |");
    }
    const auto pair = [&](const std::string& zone) {
        const auto plot = changed_plot("22", zone);
        return legend_number(plot, 0) + " and " + legend_number(plot, 1);
    };
    expect_on_page("in zone C, " + pair("C") + " cm, in B, " + pair("B") + ", and in D, " + pair("D"));
    expect_on_page("In zone E they are not: " + pair("E") + ".");
}

TEST_F(ManualPlotReadings, TheWaterBalancesOfTheWinterAreThoseOfItsTable) {
    // Rows of the legend: total, rain, new snow, zonal melt, snow cover, the curve.
    constexpr std::size_t k_rain = 1;
    constexpr std::size_t k_snow = 4;
    run();
    const auto snow = [](const nlohmann::json& plot) { return plot["bars"].back()["top"].get<double>(); };
    std::map<std::string, nlohmann::json> present;
    for (const std::string zone : {"A", "B", "C", "D", "E"})
        present[zone] = described({"--kind", "year-round", "--plot", "23", "--zone", zone});
    evaluate();
    for (const auto& [zone, before] : present) {
        const auto plot = changed_plot("23", zone);
        expect_on_page("| " + zone + " | " + legend_number(before, k_rain) + " | " +
                       legend_number(before, k_snow) + " | " + legend_number(plot, k_rain) + " | " +
                       legend_number(plot, k_snow) + " | " +
                       fmt::format("{:.2f} |", snow(plot) - snow(before)));
        EXPECT_EQ(legend_value(plot, k_snow + 1), "(none)");
    }
    const auto season = described(
        {"--step", "6", "--scenario", "warmer", "--plot", "23", "--zone", "C", "--melt-stop", "season"});
    expect_on_page("which gives " + legend_value(season, 5) + " for zone C");
}

}  // namespace
}  // namespace nivora
