#include "engine/flow_run.h"

#include "engine/discharge_walk.h"
#include "engine/runoff_row.h"
#include "engine/snow_melt.h"
#include "engine/snow_passes.h"
#include "engine/snow_table.h"
#include "engine/zone_inputs.h"
#include "engine/zone_row.h"

#include <array>

namespace nivora {
namespace {

/// Zones whose stores are worked side by side: each day of a store waits for the day before, so that one zone
/// alone leaves the processor idle.
constexpr std::size_t k_lanes = 8;
constexpr std::size_t k_block = 64;  // days, so that what the passes hand on stays in the cache
constexpr double k_largest_flow = 1.0e30;

template <typename Number>
using Block = std::array<Number, k_block>;

/// A zone's inputs from its first day on.
struct FlowZone {
    DegreeDayInputs degree_days;
    const float* factor;
    const float* precipitation;
    const float* critical;
    const float* rain_switch;
    const float* cover;
    const float* snow_coefficient;
    const float* rain_coefficient;
    double depth_to_flow;
};

/// @param degree_days of the days from `first` on
SnowInputs snow_inputs(const FlowZone& zone, std::size_t first, const float* degree_days) {
    return {.degree_days = degree_days,
            .factor = zone.factor + first,
            .precipitation = zone.precipitation + first,
            .critical = zone.critical + first,
            .rain_switch = zone.rain_switch + first,
            .cover = zone.cover + first};
}

/// What the passes of a zone hand on.
struct Lane {
    Block<float> degree_days;
    Block<float> at;
    Block<float> rain;
    Block<float> melt;
    Block<double> fallen;
};

/// Days on end that are worked together.
struct Days {
    std::size_t first;
    std::size_t count;
};

/// The stores of the zones from day to day.
template <bool Winter, std::size_t Lanes>
void melt_stores(std::span<Lane> lanes, std::span<const FlowZone> zones, Days days, bool keeps_store,
                 std::array<float, k_lanes>& stores) {
    std::array<float, Lanes> now;
    std::copy_n(stores.begin(), Lanes, now.begin());
    for (std::size_t i = 0; i < days.count; ++i) {
        for (std::size_t k = 0; k < Lanes; ++k) {
            float store = filled_store<PlainSteps>(now[k], lanes[k].fallen[i]);
            if (Winter && !keeps_store && is_full_cover(zones[k].cover[days.first + i])) store = 0.0F;
            const float melt = melt_of_store(lanes[k].at[i], store);
            now[k] = melted_store<PlainSteps>(store, melt);
            lanes[k].melt[i] = melt;
        }
    }
    std::copy_n(now.begin(), Lanes, stores.begin());
}

template <bool Winter, std::size_t Lanes = k_lanes>
void melt_all_stores(std::span<Lane> lanes, std::span<const FlowZone> zones, Days days, bool keeps_store,
                     std::array<float, k_lanes>& stores) {
    if (lanes.size() == Lanes) {
        melt_stores<Winter, Lanes>(lanes, zones, days, keeps_store, stores);
    } else if constexpr (Lanes > 1) {
        melt_all_stores<Winter, Lanes - 1>(lanes, zones, days, keeps_store, stores);
    }
}

/// The rows of zone `first` on, where the zones have rows of their own; those of zone 1 where they don't.
template <typename Number>
const Number* zone_values(std::span<const Number> column, bool basinwide, std::size_t first) {
    return column.data() + (basinwide ? 0 : first);
}

template <typename Number>
bool has_days(std::span<const Number> column, bool basinwide, std::size_t days, std::size_t rows) {
    return column.size() >= (basinwide ? days : rows);
}

template <typename Values>
bool is_present(const Values& column, std::size_t days) {
    return std::none_of(column.begin(), column.begin() + static_cast<std::ptrdiff_t>(days),
                        [](auto value) { return is_missing(value); });
}

/// The days of the melt season's month or later come behind the winter; a run that starts in the melt season
/// has no winter.
std::size_t winter_days_of(DayCount run_start, int season_start, std::size_t days) {
    const std::optional<DayCount> end = winter_end(run_start, season_start);
    if (!end) return 0;
    return std::min(days, static_cast<std::size_t>(*end - run_start + 1));
}

}  // namespace

/// The working memory of a run, and its days as the discharge walks them.
class FlowRun::Work {
public:
    Work(const BasinInputs& inputs, const RunRequest& run, std::size_t days, bool wide)
        : wide_(wide),
          inputs_(inputs),
          run_(run),
          basin_(runoff_basin(inputs)),
          units_(unit_system(inputs.units)),
          days_(days),
          rows_(days * inputs.zones),
          winter_days_(winter_days_of(run.RunStart, inputs.melt_season_start, days)),
          flows_(days),
          heavy_(days),
          total_melt_(days),
          computed_(days),
          zones_(inputs.zones) {
        if (inputs.temperature_max_min) means_.resize(days);
        try {
            lapse_steps_ = lapse_steps(inputs, units_);
        } catch (const Fault&) {
            lapse_steps_.clear();  // the stages tell the fault
        }
    }

    [[nodiscard]] bool compute(const FlowColumns& in);
    [[nodiscard]] std::span<const double> result() const {
        return done_ ? std::span<const double>{computed_} : std::span<const double>{};
    }
    [[nodiscard]] bool limited() const { return limited_; }

    // The days as the discharge walks them.
    [[nodiscard]] const StepColumns& columns() const { return columns_; }
    [[nodiscard]] std::size_t count() const { return days_; }
    [[nodiscard]] static std::size_t row(std::size_t day) { return day; }
    [[nodiscard]] static bool starts_run(std::size_t day) { return day == 0; }
    [[nodiscard]] DayInput input(std::size_t day) const { return {flows_[day], heavy_[day] != 0}; }
    [[nodiscard]] bool is_wet(std::size_t day) const {
        return zones_.front().precipitation[day] >= basin_.threshold;
    }
    [[nodiscard]] bool is_heavy(std::size_t day);
    [[nodiscard]] bool accepts_limit() {
        limited_ = true;
        return true;
    }

private:
    [[nodiscard]] bool has_all_days(const FlowColumns& in) const;
    [[nodiscard]] bool is_plain(const FlowColumns& in) const;
    void take_zones(const FlowColumns& in);
    void take_columns(const FlowColumns& in);
    [[nodiscard]] bool work_zones();
    NIVORA_WIDE_VECTORS [[nodiscard]] bool work_zones_wide() { return work_zones(); }
    template <bool Winter>
    void work_days(std::span<const FlowZone> zones, std::size_t first, std::size_t last,
                   std::array<float, k_lanes>& stores);
    template <bool Winter>
    void add_flow(const FlowZone& zone, const Lane& lane, Days days);
    void walk();

    bool wide_;
    BasinInputs inputs_;
    RunRequest run_;
    RunoffBasin basin_;
    UnitSystem units_;
    std::vector<float> lapse_steps_;
    std::size_t days_;
    std::size_t rows_;
    std::size_t winter_days_;
    bool done_ = false;
    bool limited_ = false;
    std::vector<float> means_;
    std::vector<double> flows_;
    std::vector<std::uint32_t> heavy_;
    std::vector<float> total_melt_;
    std::vector<double> computed_;
    std::vector<FlowZone> zones_;
    StepColumns columns_;
    std::array<Lane, k_lanes> lanes_;
};

bool FlowRun::Work::has_all_days(const FlowColumns& in) const {
    const BasinInputs& given = inputs_;
    const auto all = [&](const auto& column, bool basinwide) {
        return has_days(column, basinwide, days_, rows_);
    };
    const bool temperatures = given.temperature_max_min
                                  ? all(in.maximum_temperature, true) && all(in.minimum_temperature, true)
                                  : all(in.average_temperature, given.temperature_basinwide);
    return temperatures && all(in.precipitation, given.precipitation_basinwide) &&
           all(in.lapse_rate, given.lapse_rate_basinwide) &&
           all(in.critical_temperature, given.critical_temperature_basinwide) &&
           all(in.snow_coefficient, given.runoff_coefficients_basinwide) &&
           all(in.rain_coefficient, given.runoff_coefficients_basinwide) &&
           all(in.degree_day_factor, false) && all(in.rain_switch, false) && all(in.cover, false) &&
           all(in.lag_hours, true) && all(in.recession_x, true) && all(in.recession_y, true) &&
           (run_.UpdateInterval <= 0 || all(in.measured, true));
}

/// Whether no row can fail and none has a value for which the passes give other bits than the rows. A missing
/// runoff coefficient makes the day's sum missing, which shows later. Degree days of zero with a sign do not
/// reach the discharge.
bool FlowRun::Work::is_plain(const FlowColumns& in) const {
    const BasinInputs& given = inputs_;
    const auto within = [&](Column column, bool basinwide) {
        return all_within(column.data(), basinwide ? days_ : rows_, k_largest_input);
    };
    const auto depth = [&](Column column, bool basinwide, float limit) {
        return all_from_zero_to(column.data(), basinwide ? days_ : rows_, limit);
    };
    const bool temperatures =
        given.temperature_max_min
            ? within(in.maximum_temperature, true) && within(in.minimum_temperature, true)
            : within(in.average_temperature, given.temperature_basinwide);
    return temperatures && within(in.lapse_rate, given.lapse_rate_basinwide) &&
           lapse_steps_.size() > inputs_.zones &&
           all_within(lapse_steps_.data(), lapse_steps_.size(), k_largest_lapse_step) &&
           is_present(in.critical_temperature, days_) && is_present(in.recession_x, days_) &&
           is_present(in.recession_y, days_) &&
           depth(in.precipitation, given.precipitation_basinwide, k_largest_depth) &&
           depth(in.degree_day_factor, false, k_largest_depth) && depth(in.cover, false, 1.0F);
}

void FlowRun::Work::take_zones(const FlowColumns& in) {
    const BasinInputs& given = inputs_;
    if (given.temperature_max_min)
        pass_mean(in.maximum_temperature.data(), in.minimum_temperature.data(), days_, means_.data());
    for (std::size_t zone = 1; zone <= given.zones; ++zone) {
        const std::size_t first = (zone - 1) * days_;
        const auto values = [&](Column column, bool basinwide) {
            return zone_values(column, basinwide, first);
        };
        const float* temperature = given.temperature_max_min
                                       ? means_.data()
                                       : values(in.average_temperature, given.temperature_basinwide);
        zones_[zone - 1] = {
            .degree_days = {.temperature = temperature,
                            .lapse_rate = values(in.lapse_rate, given.lapse_rate_basinwide),
                            .lapse_steps = lapse_steps_[zone],
                            .degree_base = as_double(units_.degree_base),
                            .carried = given.temperature_basinwide},
            .factor = values(in.degree_day_factor, false),
            .precipitation = values(in.precipitation, given.precipitation_basinwide),
            .critical = values(in.critical_temperature, given.critical_temperature_basinwide),
            .rain_switch = values(in.rain_switch, false),
            .cover = values(in.cover, false),
            .snow_coefficient = values(in.snow_coefficient, given.runoff_coefficients_basinwide),
            .rain_coefficient = values(in.rain_coefficient, given.runoff_coefficients_basinwide),
            .depth_to_flow = basin_.depth_to_flow[zone]};
    }
}

/// The columns of the discharge, which takes zone 1's rows alone.
void FlowRun::Work::take_columns(const FlowColumns& in) {
    std::fill(total_melt_.begin(), total_melt_.end(), k_missing);
    std::fill(computed_.begin(), computed_.end(), as_double(k_missing));
    columns_ = StepColumns{};
    columns_.lag_hours = in.lag_hours;
    columns_.recession_x = in.recession_x;
    columns_.recession_y = in.recession_y;
    columns_.measured = in.measured;
    columns_.total_melt = total_melt_;
    columns_.computed = computed_;
}

template <bool Winter>
void FlowRun::Work::add_flow(const FlowZone& zone, const Lane& lane, Days days) {
    const float* cover = zone.cover + days.first;
    const float* factor = zone.factor + days.first;
    const float* precipitation = zone.precipitation + days.first;
    const float* rain_coefficient = zone.rain_coefficient + days.first;
    const float* snow_coefficient = zone.snow_coefficient + days.first;
    double* flow = flows_.data() + days.first;
    std::uint32_t* heavy = heavy_.data() + days.first;
    for (std::size_t i = 0; i < days.count; ++i) {
        const float fresh = runoff_of_melt<PlainSteps>(lane.melt[i], cover[i], Winter);
        const auto melt = static_cast<float>(snow_cover_melt(cover[i], lane.degree_days[i], factor[i]));
        flow[i] += zone.depth_to_flow *
                   runoff_depth(rain_coefficient[i], fresh, lane.rain[i], snow_coefficient[i], melt);
    }
    for (std::size_t i = 0; i < days.count; ++i)
        heavy[i] |= static_cast<std::uint32_t>(precipitation[i] >= basin_.threshold);
}

template <bool Winter>
void FlowRun::Work::work_days(std::span<const FlowZone> zones, std::size_t first, std::size_t last,
                              std::array<float, k_lanes>& stores) {
    const bool keeps_store = run_.NoSnow;
    const std::span lanes = std::span{lanes_}.first(zones.size());
    for (Days days{.first = first, .count = 0}; days.first < last; days.first += days.count) {
        days.count = std::min(k_block, last - days.first);
        for (std::size_t k = 0; k < zones.size(); ++k) {
            Lane& lane = lanes[k];
            pass_degree_days(later(zones[k].degree_days, days.first), days.count, lane.degree_days.data());
            const SnowInputs in = snow_inputs(zones[k], days.first, lane.degree_days.data());
            pass_potential_melt(in, days.count, lane.at.data());
            pass_rain(in, days.count, lane.rain.data());
            pass_new_snow<Winter>(in, days.count, lane.fallen.data());
        }
        melt_all_stores<Winter>(lanes, zones, days, keeps_store, stores);
        for (std::size_t k = 0; k < zones.size(); ++k) add_flow<Winter>(zones[k], lanes[k], days);
    }
}

bool FlowRun::Work::work_zones() {
    std::fill(flows_.begin(), flows_.end(), 0.0);
    std::fill(heavy_.begin(), heavy_.end(), 0U);
    for (std::size_t first = 0; first < zones_.size(); first += k_lanes) {
        const std::span zones =
            std::span<const FlowZone>{zones_}.subspan(first, std::min(k_lanes, zones_.size() - first));
        std::array<float, k_lanes> stores{};
        work_days<true>(zones, 0, winter_days_, stores);
        if (!run_.NoSnow) stores.fill(0.0F);
        work_days<false>(zones, winter_days_, days_, stores);
    }
    // A term that is missing or too large makes the sum of its day so, and no later term makes it finite
    // again.
    return std::all_of(flows_.begin(), flows_.end(),
                       [](double flow) { return std::abs(flow) <= k_largest_flow; });
}

/// The zones of the day as a table of one day. Heavy rain is rare, so its degree days are computed again.
bool FlowRun::Work::is_heavy(std::size_t day) {
    std::array<float, k_most_zones> degree_days;
    std::array<float, k_most_zones> critical;
    std::array<float, k_most_zones> rain_switch;
    std::array<float, k_most_zones> cover;
    std::array<float, k_most_zones> precipitation;
    std::array<std::uint32_t, k_most_zones> rows;
    for (std::size_t i = 0; i < zones_.size(); ++i) {
        pass_degree_days(later(zones_[i].degree_days, day), 1, &degree_days[i]);
        critical[i] = zones_[i].critical[day];
        rain_switch[i] = zones_[i].rain_switch[day];
        cover[i] = zones_[i].cover[day];
        precipitation[i] = zones_[i].precipitation[day];
        rows[i] = static_cast<std::uint32_t>(i);
    }
    StepColumns columns{};
    columns.degree_days = degree_days;
    columns.critical_temperature = critical;
    columns.rain_switch = rain_switch;
    columns.cover = cover;
    columns.precipitation = precipitation;
    double share = 0.0;  // no cover is missing, so no zone takes the share of another
    return is_heavy_on_average(columns, basin_, DayRows{rows}.first(zones_.size()), share);
}

void FlowRun::Work::walk() {
    if (run_.LagDistribution[0] > 0.0F) {
        static_cast<void>(walk_with_distribution(*this, flows_, days_with_input(inputs_), run_));
        return;
    }
    LagRuleWalk<Work> walk{*this, run_};
    for (std::size_t day = 0; day < days_; ++day) static_cast<void>(walk.work_day(day));
}

bool FlowRun::Work::compute(const FlowColumns& in) {
    done_ = false;
    limited_ = false;
    if (zones_.empty() || zones_.size() > k_most_zones || !has_all_days(in) || !is_plain(in)) return false;
    take_zones(in);
    if (!(wide_ ? work_zones_wide() : work_zones())) return false;
    take_columns(in);
    walk();
    done_ = true;
    return true;
}

FlowRun::FlowRun(const BasinInputs& inputs, const RunRequest& run, std::size_t days, bool wide)
    : work_(std::make_unique<Work>(inputs, run, days, wide)) {}

FlowRun::~FlowRun() = default;
FlowRun::FlowRun(FlowRun&&) noexcept = default;
FlowRun& FlowRun::operator=(FlowRun&&) noexcept = default;

bool FlowRun::compute(const FlowColumns& in) { return work_->compute(in); }

std::span<const double> FlowRun::computed() const { return work_->result(); }

bool FlowRun::limited() const { return work_->limited(); }

FlowColumns flow_columns(const SimResults& t) {
    return {.maximum_temperature = t.TMax,
            .minimum_temperature = t.Tmin,
            .average_temperature = t.TAvg,
            .precipitation = t.Precip,
            .lapse_rate = t.LR,
            .critical_temperature = t.Tcrit,
            .degree_day_factor = t.AN,
            .snow_coefficient = t.CS,
            .rain_coefficient = t.CR,
            .rain_switch = t.RCA,
            .cover = t.SCA,
            .lag_hours = t.LagTime,
            .measured = t.ActualQ,
            .recession_x = t.Xcoeff,
            .recession_y = t.YCoeff};
}

}  // namespace nivora
