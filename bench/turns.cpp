#include "bench/turns.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>

namespace nivora {
namespace {

double least(const std::vector<double>& seconds) { return *std::min_element(seconds.begin(), seconds.end()); }

double median(std::vector<double> seconds) {
    std::sort(seconds.begin(), seconds.end());
    return seconds.at(seconds.size() / 2);
}

}  // namespace

void tell_turns(const std::string& what, const Turns& turns, std::optional<double> goal) {
    const double low = least(turns.ours);
    const double low_floor = least(turns.floor);
    const double middle = median(turns.ours);
    const double middle_floor = median(turns.floor);
    const std::string wanted = goal ? fmt::format("{:.2f}", *goal) : "-";
    const std::string line = fmt::format("{:58} {:9.3f} {:9.3f} {:5.2f}   {:9.3f} {:9.3f} {:5.2f}   {:>5}",
                                         what, 1e3 * low, 1e3 * low_floor, low / low_floor, 1e3 * middle,
                                         1e3 * middle_floor, middle / middle_floor, wanted);
    fmt::print("{}\n", line);
    std::fflush(stdout);
    if (const char* table = std::getenv("NIVORA_BENCH_TABLE"))
        std::ofstream{table, std::ios::app} << line << '\n';
}

}  // namespace nivora
