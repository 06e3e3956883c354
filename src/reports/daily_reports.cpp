#include "reports/daily_reports.h"

#include "base/durable_file.h"

namespace nivora {
namespace {

constexpr const char* k_stale_note =
    "** - Variables and/or parameters have changed.  "
    "To insure accuracy of DDs, please rerun this simulation.";

const std::vector<CellSlot> k_one_value{{.offset = 5}};
const std::vector<CellSlot> k_two_values{{.offset = 0}, {.offset = 10}};
const std::vector<CellSlot> k_three_values{
    {.offset = 0, .width = 5}, {.offset = 6, .width = 5}, {.offset = 12, .width = 5}};
const std::vector<CellSlot> k_four_values{{.offset = 0, .width = 4},
                                          {.offset = 5, .width = 4},
                                          {.offset = 10, .width = 3, .whole = true},
                                          {.offset = 14, .width = 4}};

using FieldNames = std::vector<std::string_view>;

/// What a report shows, and how.
struct DailyChoice {
    ReportFields source = {};
    std::string column_head = {};
    std::vector<CellSlot> slots = {};
    bool by_zone = true;
};

/// Whether a step computes with the changed climate. Its degree days and precipitation are those reported.
bool computes_changed_climate(int step) { return step == 2 || step >= 4; }

DailyChoice temperatures(const Simulation& simulation, int step) {
    DailyChoice choice;
    choice.source.table = step > 0 ? k_sim_results : k_physical_data;
    if (simulation.temperature_values.value_or(0) == 1) {
        choice.source.fields = step > 0 ? FieldNames{"TMaxCC", "TminCC"} : FieldNames{"Tmax", "Tmin"};
        choice.column_head = "Maximum   Minimum ";
        choice.slots = k_two_values;
        choice.by_zone = false;
        return choice;
    }
    choice.source.fields = {step > 0 ? "TAvgCC" : "Tavg"};
    choice.column_head = "     Average      ";
    choice.slots = k_one_value;
    choice.by_zone = simulation.temperature.value_or(Distribution::Basinwide) == Distribution::ByZone;
    return choice;
}

DailyChoice degree_day_factors(const Simulation& simulation, int step) {
    return {
        .source = {.table = step > 0 ? std::string{k_sim_results} : simulation.name,
                   .fields = step > 0 ? FieldNames{"ANCC", "CSCC", "CRCC"} : FieldNames{"An", "Cs", "Cr"}},
        .column_head = "   a    Cs    Cr  ",
        .slots = k_three_values};
}

DailyChoice lapse_rates(const Simulation& simulation, int step) {
    return {.source = {.table = step > 0 ? std::string{k_sim_results} : simulation.name,
                       .fields = step > 0 ? FieldNames{"LRCC", "TcritCC", "RCACC", "LagTimeCC"}
                                          : FieldNames{"LapseRate", "Tcrit", "RCA", "LagTime"}},
            .column_head = " Lr    Tc  RCA  LT",
            .slots = k_four_values};
}

DailyChoice degree_days(int step, bool stale) {
    const bool changed = computes_changed_climate(step);
    std::string_view cover = "SCA";
    if (step == 2) cover = "SCACC";
    if (step == 6) cover = "SCAclimWAMA";
    DailyChoice choice{
        .source = {.table = std::string{k_sim_results},
                   .fields = {changed ? "ZoneDDCC" : "ZoneDD", changed ? "PrecipCC" : "Precip", cover}},
        .column_head = "  DD     P     S  ",
        .slots = k_three_values};
    choice.slots[0].stars = stale;
    return choice;
}

DailyChoice melt() {
    return {.source = {.table = std::string{k_sim_results}, .fields = {"ZonalMelt", "M1S", "Cpr"}},
            .column_head = " M·S   M(1-S)  CPr",
            .slots = k_three_values};
}

DailyChoice runoff(int step) {
    std::string head = "Measured  Computed";
    if (step == 2) head = "Measured  CompClim";
    if (step == 6) head = " Present   Changed";
    return {.source = {.table = std::string{k_sim_results},
                       .fields = {step == 6 ? "DailyQPresent" : "ActualQ",
                                  step == 3 ? "DailyQPresent" : "DailyQ"}},
            .column_head = head,
            .slots = k_two_values,
            .by_zone = false};
}

DailyChoice choice_of(Report report, const ReportSources& sources) {
    const Simulation& simulation = *sources.basin.current_simulation();
    const int step = reported_climate_step(sources.basin, sources.run);
    DailyChoice choice;
    switch (report) {
        case Report::Temperatures: choice = temperatures(simulation, step); break;
        case Report::DegreeDayFactors: choice = degree_day_factors(simulation, step); break;
        case Report::LapseRates: choice = lapse_rates(simulation, step); break;
        case Report::DegreeDays: choice = degree_days(step, sources.basin.Input_Changed); break;
        case Report::Melt: choice = melt(); break;
        default: choice = runoff(step); break;
    }
    choice.source.zones = choice.by_zone ? sources.basin.ZoneCount : 1;
    return choice;
}

}  // namespace

ReportHead report_head(const ReportSources& sources) {
    const auto& [database, basin, run, now] = sources;
    const Simulation* simulation = basin.current_simulation();
    const int step = reported_climate_step(basin, run);
    const ReportPeriod period = report_period(basin, run);
    return {.basin_name = basin.basin_name,
            .zone_letter = {},
            .start = period.start,
            .end = period.end,
            .run_number = simulation == nullptr ? std::string{} : simulation->text(2),
            .climate_step = step > 0 ? std::optional{step} : std::nullopt,
            .no_snow = run.NoSnow,
            .file = path_text(basin.Basin_File),
            .simulation = basin.Current_Sim_Name,
            .scenario = run.ScenarioName,
            .today = whole_day(now)};
}

ReportFields daily_report_fields(Report report, const ReportSources& sources) {
    return choice_of(report, sources).source;
}

void write_daily_report(ReportLines& lines, int& pages, Report report, const ReportSources& sources,
                        ReportTables& tables) {
    const DailyChoice choice = choice_of(report, sources);
    DailyTable table;
    table.head = report_head(sources);
    table.period = report_period(sources.basin, sources.run).covered();
    table.title = report_title(report, reported_climate_step(sources.basin, sources.run));
    table.column_head = choice.column_head;
    table.slots = choice.slots;
    table.zone_sum = report == Report::Melt;
    if (report == Report::DegreeDays && sources.basin.Input_Changed) table.note = k_stale_note;
    const ReportColumns columns = tables.read(choice.source);
    for (int zone = 1; zone <= choice.source.zones; ++zone) {
        DailySeries series;
        if (choice.by_zone) series.zone_letter = zone_letter(zone);
        for (std::size_t field = 0; field < choice.source.fields.size(); ++field)
            series.columns.push_back(columns.column(zone, field));
        table.series.push_back(std::move(series));
    }
    write_daily_table(lines, pages, table, sources.now);
}

}  // namespace nivora
