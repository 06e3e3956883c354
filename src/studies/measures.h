// Measures of how well a computed daily discharge meets the measured one, as plain functions.
// Formulas: docs/manual/27-measures.md.
//
// Each function takes two series over the same days in date order, at least one day, without missing values;
// m is the measured, c the computed discharge of a day, n the number of days. What a series cannot give, such
// as a ratio to a mean of 0, is nothing or NaN, never an infinite number. Sums are Doubles, added in date
// order, except where the statistics of a run have Singles.
#pragma once

#include "base/calendar.h"
#include "base/single.h"

#include <array>
#include <optional>
#include <span>

namespace nivora {

using Series = std::span<const double>;

/// R² as the statistics of a run have it, with its sums in Single: docs/model.md, section 9. 1 at best.
/// Nash, J. E., Sutcliffe, J. V. (1970): River flow forecasting through conceptual models, part I. Journal of
/// Hydrology 10, 282-290.
///
/// @return nothing if m is constant, or if a sum is beyond the largest Single
[[nodiscard]] std::optional<float> run_determination(Series measured, Series computed);

/// NSE = 1 - sum (m - c)² / sum (m - mean m)², in Double. 1 at best, 0 for a model that is no better than the
/// mean of m.
/// Nash, J. E., Sutcliffe, J. V. (1970), as above.
///
/// @return nothing if m is constant
[[nodiscard]] std::optional<double> nash_sutcliffe(Series measured, Series computed);

/// What is added to every discharge before its logarithm is taken, so that a day of 0 has one: a hundredth of
/// the mean of m. Added on all days of both series, whether or not one is 0, so that periods with and without
/// dry days compare.
/// Pushpalatha, R., Perrin, C., Le Moine, N., Andréassian, V. (2012): A review of efficiency criteria
/// suitable for evaluating low-flow simulations. Journal of Hydrology 420-421, 171-182.
[[nodiscard]] double logarithm_offset(Series measured);

/// NSE of ln(m + e) and ln(c + e) with e = logarithm_offset. It weighs low flows. 1 at best.
/// Pushpalatha et al. (2012), as above.
///
/// @return nothing if a discharge plus e is not above 0, or if m is constant
[[nodiscard]] std::optional<double> logarithmic_nash_sutcliffe(Series measured, Series computed);

/// The Kling-Gupta efficiency and its three parts, each 1 at best.
struct KlingGupta {
    double efficiency = 1.0;   ///< 1 - sqrt((correlation - 1)² + (variability - 1)² + (bias - 1)²)
    double correlation = 1.0;  ///< linear correlation of m and c
    double variability = 1.0;  ///< KGE: sd c / sd m; modified KGE: (sd c / mean c) / (sd m / mean m)
    double bias = 1.0;         ///< mean c / mean m
};

/// Gupta, H. V., Kling, H., Yilmaz, K. K., Martinez, G. F. (2009): Decomposition of the mean squared error
/// and NSE performance criteria: implications for improving hydrological modelling. Journal of Hydrology 377,
/// 80-91.
///
/// @return nothing if m or c is constant, or if the mean of m is 0
[[nodiscard]] std::optional<KlingGupta> kling_gupta(Series measured, Series computed);

/// The modified form, whose variability does not depend on the bias.
/// Kling, H., Fuchs, M., Paulin, M. (2012): Runoff conditions in the upper Danube basin under an ensemble of
/// climate change scenarios. Journal of Hydrology 424-425, 264-277.
///
/// @return nothing if m or c is constant, or if a mean is 0
[[nodiscard]] std::optional<KlingGupta> modified_kling_gupta(Series measured, Series computed);

/// sqrt(sum (m - c)² / n), in m³/s or ft³/s. 0 at best.
/// Legates, D. R., McCabe, G. J. (1999): Evaluating the use of "goodness-of-fit" measures in hydrologic and
/// hydroclimatic model validation. Water Resources Research 35, 233-241.
[[nodiscard]] double root_mean_square_error(Series measured, Series computed);

/// sum |m - c| / n, in m³/s or ft³/s. 0 at best.
/// Legates and McCabe (1999), as above.
[[nodiscard]] double mean_absolute_error(Series measured, Series computed);

/// Dv = (V - V') / V x 100 as the statistics of a run have it, in Single. Positive where the model computes
/// too little, the opposite sign of all other errors here. 0 at best.
/// ASCE Task Committee on Definition of Criteria for Evaluation of Watershed Models (1993): Criteria for
/// evaluation of watershed models. Journal of Irrigation and Drainage Engineering 119, 429-442.
///
/// @return nothing if the measured volume is 0 or a volume is beyond the largest Single
[[nodiscard]] std::optional<float> run_volume_difference(Series measured, Series computed);

/// The bias of a calendar month, over all years.
struct MonthBias {
    int days = 0;
    double measured = k_missing;  ///< mean of m, m³/s or ft³/s; NaN without days
    double computed = k_missing;
    double bias = k_missing;     ///< mean c - mean m: positive where the model computes too much
    double percent = k_missing;  ///< of the measured mean; NaN if that is 0
};

/// By month, index 1 to 12.
/// ASCE Task Committee (1993), as above, for parts of the year.
[[nodiscard]] std::array<MonthBias, 13> bias_by_month(std::span<const DayCount> dates, Series measured,
                                                      Series computed);

/// The highest day of each series; the first one of equal days.
struct HighestDay {
    DayCount measured_date = 0;
    DayCount computed_date = 0;
    double measured = 0.0;  ///< m³/s or ft³/s
    double computed = 0.0;
    double size_error = k_missing;  ///< (max c - max m) / max m x 100; NaN if max m is 0
    int days_late = 0;              ///< date of max c - date of max m: positive where the model is late
};

/// ASCE Task Committee (1993), as above.
[[nodiscard]] HighestDay highest_day(std::span<const DayCount> dates, Series measured, Series computed);

/// The low-flow days: those whose measured discharge is at or below `limit`, the k-th smallest measured value
/// with k = 0.3 n rounded up. So at least three tenths of the days count; equal values count together.
struct LowFlow {
    double limit = 0.0;  ///< m³/s or ft³/s
    int days = 0;
    double volume_error = k_missing;  ///< (sum c - sum m) / sum m x 100 on these days; NaN if sum m is 0
};

/// The share of the days is that of the low segment of the flow duration curve, exceeded on 0.7 to 1.0 of the
/// days, in Yilmaz, K. K., Gupta, H. V., Wagener, T. (2008): A process-based diagnostic approach to model
/// evaluation. Water Resources Research 44, W09417. There the curves are compared, in logarithms; here the
/// volumes of the same days.
[[nodiscard]] LowFlow low_flow(Series measured, Series computed);

/// The date of a series' centre of mass, sum (date x Q) / sum Q, as a day count with a fraction.
/// Stewart, I. T., Cayan, D. R., Dettinger, M. D. (2005): Changes toward earlier streamflow timing across
/// western North America. Journal of Climate 18, 1136-1155.
///
/// @return nothing if the sum of Q is not above 0
[[nodiscard]] std::optional<double> centre_of_mass(std::span<const DayCount> dates, Series discharge);

}  // namespace nivora
