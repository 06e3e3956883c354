#include "climate/depletion_curves.h"

#include "base/single.h"

namespace nivora {
namespace {

using Rows = std::span<const std::uint32_t>;

/// The running sum of a curve's rises, each weighted by the cover of its day.
class AccumulatedMelt {
public:
    float add(float cover, float depth) {
        const float rise = to_single(as_double(depth) - as_double(prior_depth_));
        melt_ = to_single(as_double(melt_) + as_double(cover) * as_double(rise));
        prior_depth_ = depth;
        return melt_;
    }

private:
    float prior_depth_ = 0.0F;
    float melt_ = 0.0F;
};

void accumulate_on_own_dates(SimResults& t, Rows rows) {
    AccumulatedMelt sum;
    for (const auto row : rows) {
        t.AZMwork[row] = sum.add(t.SCAclim[row], t.MDCexclWA[row]);
        t.AZMexclWA[row] = 0.0F;
    }
}

/// Assigns the melt of each day of the adjusted curve to the first day on which the present curve reaches the
/// same depth, or to the last day if it never does; if several fall on one day, the last one counts.
///
/// Intended: a depth of 0 that finds its day ends the loop, so that a zone whose adjusted curve starts at 0
/// gets no values.
void place_on_present_dates(SimResults& t, Rows rows) {
    if (rows.empty()) return;
    std::size_t placer = 0;
    for (std::size_t walker = 0; walker < rows.size();) {
        const float depth = t.MDCexclWA[rows[walker]];
        const bool reached = t.MDCexcl[rows[placer]] >= depth;
        if (reached && !(depth > 0.0F)) return;
        if (!reached && placer + 1 < rows.size()) {
            ++placer;
            continue;
        }
        t.AZMexclWA[rows[placer]] = t.AZMwork[rows[walker]];
        ++walker;
    }
}

/// Repeats the last value on days without one.
void fill_gaps(FieldColumn melt, Rows rows) {
    float prior = 0.0F;
    for (const auto row : rows) {
        if (melt[row] == 0.0F && prior > 0.0F) melt[row] = prior;
        prior = melt[row];
    }
}

}  // namespace

void accumulate_melt(Column cover, Column depth, FieldColumn melt, std::span<const std::uint32_t> rows) {
    AccumulatedMelt sum;
    for (const auto row : rows) melt[row] = sum.add(cover[row], depth[row]);
}

void accumulate_zonal_melt(SimResults& results, std::span<const std::uint32_t> rows) {
    accumulate_melt(results.SCA, results.MDCincl, results.AZMincl, rows);
    accumulate_melt(results.SCA, results.MDCexcl, results.AZMexcl, rows);
}

void Climate_Depletion_Curves(SimResults& results, std::span<const std::uint32_t> rows) {
    accumulate_on_own_dates(results, rows);
    place_on_present_dates(results, rows);
    fill_gaps(results.AZMexclWA, rows);
}

}  // namespace nivora
