#include "batch/commands.h"
#include "batch/json.h"
#include "session/data_check_setting.h"
#include "session/session.h"
#include "store/basin_opening.h"

#include <fmt/format.h>

#include <algorithm>
#include <ostream>
#include <span>

namespace nivora {
namespace {

std::string zone_name(const BasinState& basin, int zone) {
    const auto index = static_cast<std::size_t>(zone - 1);
    const bool named = index < basin.zones.size() && !basin.zones[index].id.empty();
    return named ? basin.zones[index].id : std::to_string(zone);
}

/// The findings that are printed.
std::span<const DataFinding> first_findings(const DataCheck& check) {
    return std::span{check.findings}.first(std::min(check.findings.size(), k_most_findings));
}

void print_findings(const BasinState& basin, const DataCheck& check, std::ostream& out) {
    for (const DataFinding& finding : first_findings(check)) {
        const std::string days =
            finding.first == finding.last
                ? iso_date_text(finding.first)
                : fmt::format("{} to {}", iso_date_text(finding.first), iso_date_text(finding.last));
        out << fmt::format("Zone {}, {}: {}: {}\n", zone_name(basin, finding.zone), days,
                           data_fault_text(finding.fault), finding_text(finding));
    }
    const std::size_t total = check.findings.size();
    if (total > k_most_findings) out << fmt::format("... and {} more\n", total - k_most_findings);
    out << fmt::format("{} findings in {} days of {} zones\n", total, check.days, basin.ZoneCount);
}

Json findings_json(const BasinState& basin, const DataCheck& check) {
    Json list = Json::array();
    for (const DataFinding& finding : first_findings(check)) {
        list.push_back({{"kind", data_fault_text(finding.fault)},
                        {"zone", zone_name(basin, finding.zone)},
                        {"field", finding.field()},
                        {"first", iso_date_text(finding.first)},
                        {"last", iso_date_text(finding.last)},
                        {"days", finding.days()},
                        {"text", finding_text(finding)}});
    }
    return {{"total", check.findings.size()}, {"recordDays", check.days}, {"findings", list}};
}

}  // namespace

int check_data_command(const std::filesystem::path& basin, bool json, std::chrono::milliseconds wait,
                       BatchDialogs& dialogs, std::ostream& out) {
    try {
        const OpenBasin open = open_to_read(basin, wait, Check::All);
        BasinState state;
        read_basin(open.database(), state);
        const DataCheck check = check_daily_data(open.database(), data_check_setting(state));
        if (json) {
            out << printed(findings_json(state, check));
        } else {
            print_findings(state, check, out);
        }
        return k_done;
    } catch (const StoreError& error) {
        dialogs.report_problem("The basin can't be read", error.what());
    }
    return k_failed;
}

}  // namespace nivora
