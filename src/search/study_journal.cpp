#include "search/study_journal.h"

#include "base/durable_file.h"
#include "base/output_file.h"

#include <fmt/format.h>

#include <charconv>
#include <string_view>
#include <system_error>
#include <utility>

namespace nivora {
namespace {

constexpr std::string_view k_first_line = "nivora search 1";
constexpr std::uintmax_t k_most_bytes = std::uintmax_t{1} << 30;

std::string head_of(const JournalTitle& title) {
    return fmt::format("{}\n{}\n{}\n{} {}\n", k_first_line, title.basin, title.options, title.lanes,
                       title.costs);
}

/// Takes a line from a text; nothing where none is complete.
std::optional<std::string_view> take_line(std::string_view& text) {
    const std::size_t end = text.find('\n');
    if (end == std::string_view::npos) return std::nullopt;
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(end + 1);
    return line;
}

template <typename Number>
bool take_number(std::string_view& line, Number& number) {
    while (line.starts_with(' ')) line.remove_prefix(1);
    const auto read = std::from_chars(line.data(), line.data() + line.size(), number);
    if (read.ec != std::errc{}) return false;
    line.remove_prefix(static_cast<std::size_t>(read.ptr - line.data()));
    return true;
}

}  // namespace

StudyJournal::StudyJournal(std::size_t lanes) : lanes_(lanes) {}

StudyJournal::StudyJournal(std::vector<Costs> known) : lanes_(known.size()), in_memory_(true) {
    for (std::size_t lane = 0; lane < known.size(); ++lane) {
        resumed_ += known[lane].size();
        lanes_[lane].costs = std::move(known[lane]);
    }
}

StudyJournal::StudyJournal(std::filesystem::path file, const JournalTitle& title, bool resume)
    : lanes_(title.lanes), path_(std::move(file)) {
    if (resume) {
        read(title);
        file_.open(path_, std::ios::binary | std::ios::app);
    } else {
        refuse_unwritable(path_);
        file_.open(path_, std::ios::binary | std::ios::trunc);
        write(head_of(title));
    }
    flush();
}

void StudyJournal::read(const JournalTitle& title) {
    const std::string content = read_whole_file(path_, k_most_bytes);
    const auto refuse = [&](std::string_view reason) {
        throw FileError{fmt::format("{}: {}", path_text(path_), reason)};
    };
    std::string_view rest = content;
    if (take_line(rest) != k_first_line) refuse("this is not the state of a search");
    const auto basin = take_line(rest);
    const auto options = take_line(rest);
    // The options first, since some of them, such as No Snow mode, show in the digest of the basin.
    if (options && options != title.options) {
        refuse(fmt::format(
            "the options are not those that the search was begun with; begin anew without --resume, or "
            "use these: {}",
            title.changed_options(*options, title.options)));
    }
    if (basin != title.basin) {
        const std::string changed = title.changed_basin(basin.value_or(""), title.basin);
        refuse(
            fmt::format("the basin is not the one that the search was begun with{}; begin anew without "
                        "--resume",
                        changed.empty() ? changed : ": its " + changed + " have changed"));
    }
    if (take_line(rest) != fmt::format("{} {}", title.lanes, title.costs)) refuse("the state is damaged");
    while (auto line = take_line(rest)) {
        std::size_t lane = 0;
        bool good = take_number(*line, lane) && lane < lanes_.size();
        std::vector<double> costs(title.costs);
        for (double& cost : costs) good = good && take_number(*line, cost);
        if (!good || !line->empty()) refuse("the state is damaged; begin anew without --resume");
        lanes_[lane].costs.push_back(std::move(costs));
        ++resumed_;
    }
    std::error_code fault;
    std::filesystem::resize_file(path_, content.size() - rest.size(), fault);
    if (fault) refuse(fault.message());
}

std::optional<std::vector<double>> StudyJournal::next(std::size_t lane) {
    Lane& own = lanes_[lane];
    if (own.taken == own.costs.size()) return std::nullopt;
    return std::move(own.costs[own.taken++]);
}

void StudyJournal::keep(std::size_t lane, const std::vector<double>& costs) {
    if (in_memory_) lanes_[lane].kept.push_back(costs);
    if (path_.empty()) return;
    std::string line = std::to_string(lane);
    for (const double cost : costs)
        line += fmt::format(" {}", cost);  // the shortest text that gives the bits back
    const std::lock_guard lock{mutex_};
    write(line + "\n");
}

void StudyJournal::write(const std::string& text) {
    file_.write(text.data(), static_cast<std::streamsize>(text.size()));
    if (!file_) throw FileError{fmt::format("{}: can't be written; is the disk full?", path_text(path_))};
}

void StudyJournal::flush() {
    if (path_.empty()) return;
    const std::lock_guard lock{mutex_};
    file_.flush();
    if (!file_) throw FileError{fmt::format("{}: can't be written; is the disk full?", path_text(path_))};
}

}  // namespace nivora
