#include "batch/progress.h"

#include <fmt/format.h>

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <ostream>

namespace nivora {
namespace {

constexpr std::size_t k_bar_width = 30;
constexpr std::chrono::milliseconds k_between_bars{100};
constexpr std::chrono::seconds k_between_lines{5};

std::string time_text(double seconds) {
    const auto whole = std::lround(std::min(seconds, 359999.0));
    if (whole < 3600) return fmt::format("{}:{:02}", whole / 60, whole % 60);
    return fmt::format("{}:{:02}:{:02}", whole / 3600, whole / 60 % 60, whole % 60);
}

}  // namespace

bool errors_go_to_terminal() { return isatty(STDERR_FILENO) != 0; }

Progress::Progress(std::ostream& report, bool terminal, std::string pieces, std::size_t total, Clock clock)
    : report_(report),
      terminal_(terminal),
      pieces_(std::move(pieces)),
      total_(std::max<std::size_t>(total, 1)),
      clock_(std::move(clock)),
      start_(clock_()),
      next_(start_ + (terminal ? std::chrono::seconds{0} : k_between_lines)) {}

Progress::~Progress() {
    if (terminal_ && printed_) report_ << '\n' << std::flush;
}

void Progress::update(std::size_t done) {
    const auto now = clock_();
    const std::lock_guard lock{mutex_};
    // The last piece is always shown on a terminal, and beside lines that were printed before.
    const bool last = done >= total_ && !full_ && (terminal_ || printed_);
    if (now < next_ && !last) return;
    next_ =
        now + (terminal_ ? std::chrono::duration_cast<std::chrono::steady_clock::duration>(k_between_bars)
                         : std::chrono::duration_cast<std::chrono::steady_clock::duration>(k_between_lines));
    full_ = done >= total_;
    printed_ = true;
    print(std::min(done, total_), now);
}

void Progress::print(std::size_t done, std::chrono::steady_clock::time_point now) {
    const double seconds = std::chrono::duration<double>(now - start_).count();
    const double rate = seconds > 0.0 ? static_cast<double>(done) / seconds : 0.0;
    const double share = static_cast<double>(done) / static_cast<double>(total_);
    std::string text = fmt::format("{} of {} {}, {:.0f} a second", done, total_, pieces_, rate);
    if (rate > 0.0 && done < total_)
        text += fmt::format(", {} left", time_text(static_cast<double>(total_ - done) / rate));
    if (!terminal_) {
        report_ << text << '\n' << std::flush;
        return;
    }
    const auto full = static_cast<std::size_t>(share * static_cast<double>(k_bar_width));
    // The code clears what a longer text left behind.
    report_ << fmt::format("\r[{}{}] {:3.0f} %  {}\x1b[K", std::string(full, '#'),
                           std::string(k_bar_width - full, '.'), share * 100.0, text)
            << std::flush;
}

}  // namespace nivora
