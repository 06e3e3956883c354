"""Computes the measures of series by numpy, from their formulas alone, for a comparison with the library.

Reads a JSON list of comparisons from the file that is named first, each with "dates" (day counts from 1899-12-30),
"measured" and "computed" (null for a missing value), and writes a list of objects of measures to the second one. A
measure that a comparison cannot give is null.
"""

import datetime
import json
import sys

import numpy as np


def value(number):
    return float(number) if np.isfinite(number) else None


def single_r2(m, c):
    """The coefficient of determination with 32-bit sums."""
    mean = np.float64(np.float32(np.add.accumulate(m)[-1] / len(m)))
    scale = 1.0 / len(m)
    sum_mean = np.float32(0)
    sum_difference = np.float32(0)
    for a, b in zip(m, c):
        sum_mean = np.float32(np.float64(sum_mean) + (a - mean) ** 2)
        sum_difference = np.float32(np.float64(sum_difference) + (a - b) ** 2)
    variance = np.float64(sum_mean) * scale
    if variance == 0:
        return None
    return float(np.float32((variance - np.float64(sum_difference) * scale) / variance))


def single_volume(q):
    """The volume in 10^6 units, which is rounded to 32 bits at each step."""
    total = np.float64(np.float32(np.add.accumulate(q)[-1]))
    return np.float64(np.float32(np.float64(np.float32(total * 86400)) / 1e6))


def nse(m, c):
    if np.ptp(m) == 0:
        return None
    return value(1 - np.mean(np.square(c - m)) / np.var(m))


def log_nse(m, c):
    e = np.mean(m) / 100
    if np.any(m + e <= 0) or np.any(c + e <= 0):
        return None
    return nse(np.log(m + e), np.log(c + e))


def kge(m, c, modified):
    if np.ptp(m) == 0 or np.ptp(c) == 0:
        return [None] * 4
    r = np.corrcoef(m, c)[0, 1]
    beta = c.mean() / m.mean()
    spread = np.std(c, ddof=1) / np.std(m, ddof=1)
    if modified:
        spread = (np.std(c, ddof=1) / c.mean()) / (np.std(m, ddof=1) / m.mean())
    result = 1 - np.linalg.norm(np.array([r, spread, beta]) - 1)
    if not np.isfinite(result):
        return [None] * 4
    return [float(result), float(r), float(spread), float(beta)]


def month(day):
    return (datetime.date(1899, 12, 30) + datetime.timedelta(days=int(day))).month


def centre(dates, q):
    return np.average(dates, weights=q) if q.sum() > 0 else np.nan


def measures(comparison):
    dates = np.array(comparison["dates"], dtype=float)
    m = np.array(comparison["measured"], dtype=float)
    c = np.array(comparison["computed"], dtype=float)
    there = ~(np.isnan(m) | np.isnan(c))
    result = {"left_out": int((~there).sum())}
    dates, m, c = dates[there], m[there], c[there]
    months = np.array([month(day) for day in dates])
    low = m <= np.sort(m)[int(np.ceil(np.round(len(m) * 3 / 10, 9))) - 1]
    result["R2"] = single_r2(m, c)
    result["NSE"] = nse(m, c)
    result["NSElog"] = log_nse(m, c)
    keys = ["KGE", "KGE_r", "KGE_alpha", "KGE_beta"]
    result.update(zip(keys, kge(m, c, False)))
    keys = ["KGEmodified", "KGEmodified_r", "KGEmodified_gamma", "KGEmodified_beta"]
    result.update(zip(keys, kge(m, c, True)))
    result["RMSE"] = value(np.sqrt(np.mean((m - c) ** 2)))
    result["MAE"] = value(np.mean(np.abs(m - c)))
    result["VolumeDifference"] = value((single_volume(m) - single_volume(c)) / single_volume(m) * 100)
    result["HighestDaySize"] = value((c.max() / m.max() - 1) * 100)
    result["HighestDayDate"] = value(dates[c.argmax()] - dates[m.argmax()])
    result["LowFlowVolume"] = value((c[low].sum() - m[low].sum()) / m[low].sum() * 100)
    result["CentreOfMass"] = value(centre(dates, c) - centre(dates, m))
    for number in range(1, 13):
        chosen = months == number
        result[f"Month{number}"] = value(np.mean(c[chosen] - m[chosen])) if chosen.any() else None
        total = m[chosen].sum()
        result[f"Month{number}Percent"] = value((c[chosen].sum() - total) / total * 100) if total else None
    return result


def main():
    np.seterr(all="ignore")
    with open(sys.argv[1], encoding="utf-8") as file:
        comparisons = json.load(file)
    with open(sys.argv[2], "w", encoding="utf-8") as file:
        json.dump([measures(comparison) for comparison in comparisons], file)


main()
