#include "session/run_list.h"

#include "base/durable_file.h"
#include "base/number_text.h"
#include "base/text.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <utility>

namespace nivora {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view k_first_line = "Nivora list of runs 1";
constexpr std::string_view k_last_word = "end";
constexpr std::uintmax_t k_largest_file = 16U << 20U;

/// A text without tabs and line breaks.
std::string escaped(std::string_view text) {
    std::string field;
    for (const char letter : text) {
        switch (letter) {
            case '\\': field += "\\\\"; break;
            case '\t': field += "\\t"; break;
            case '\n': field += "\\n"; break;
            default: field += letter;
        }
    }
    return field;
}

std::string unescaped(std::string_view field) {
    std::string text;
    for (std::size_t i = 0; i < field.size(); ++i) {
        const bool marked = field[i] == '\\' && i + 1 < field.size();
        if (marked) ++i;
        if (marked && field[i] == 't') {
            text += '\t';
        } else if (marked && field[i] == 'n') {
            text += '\n';
        } else {
            text += field[i];
        }
    }
    return text;
}

std::string line_of(const ListedRun& run) {
    std::string line = fmt::format(
        "{}\t{}\t{}\t{}\t{}\t{}\t{}\t{}\t{}\t{}\t{}\t{}\t{}\t{}", shortest_text(run.time), escaped(run.basin),
        escaped(run.simulation), escaped(run.renamed), escaped(run.kind), escaped(run.scenario),
        run.completed ? 1 : 0, run.start, run.end, static_cast<int>(run.units), run.interval,
        run.no_snow ? 1 : 0, shortest_text(run.initial_runoff), escaped(run.lag));
    for (const auto& value : run.statistics) line += '\t' + (value ? shortest_text(*value) : std::string{});
    return line;
}

std::vector<std::string_view> parts_of(std::string_view text, char between) {
    std::vector<std::string_view> parts;
    for (;;) {
        const std::size_t end = text.find(between);
        parts.push_back(text.substr(0, end));
        if (end == std::string_view::npos) return parts;
        text.remove_prefix(end + 1);
    }
}

/// Reads the fields of a line one after the other; what can't be read makes the line invalid.
class Fields {
public:
    explicit Fields(std::string_view line) : fields_(parts_of(line, '\t')) {}

    std::string text() { return unescaped(next()); }
    double number() {
        const auto value = exact_number(next());
        valid_ = valid_ && value.has_value();
        return value.value_or(0.0);
    }
    /// A whole number within limits.
    std::int64_t whole(std::int64_t low, std::int64_t high) {
        const std::string_view field = next();
        std::int64_t value = 0;
        const auto [end, error] = std::from_chars(field.data(), field.data() + field.size(), value);
        valid_ = valid_ && error == std::errc{} && end == field.data() + field.size() && value >= low &&
                 value <= high;
        return valid_ ? value : low;
    }
    std::optional<float> figure() {
        const std::string_view field = next();
        if (field.empty()) return std::nullopt;
        const auto value = exact_number(field);
        valid_ = valid_ && value && std::isfinite(static_cast<float>(*value));
        return value ? std::optional{static_cast<float>(*value)} : std::nullopt;
    }
    [[nodiscard]] bool all_read() const { return valid_ && at_ == fields_.size(); }

private:
    std::string_view next() {
        if (at_ < fields_.size()) return fields_[at_++];
        valid_ = false;
        return {};
    }

    std::vector<std::string_view> fields_;
    std::size_t at_ = 0;
    bool valid_ = true;
};

std::optional<ListedRun> run_of(std::string_view line) {
    constexpr auto k_last_day = static_cast<std::int64_t>(k_largest_day);
    Fields fields{line};
    ListedRun run;
    run.time = fields.number();
    run.basin = fields.text();
    run.simulation = fields.text();
    run.renamed = fields.text();
    run.kind = fields.text();
    run.scenario = fields.text();
    run.completed = fields.whole(0, 1) == 1;
    run.start = fields.whole(-k_last_day, k_last_day);
    run.end = fields.whole(-k_last_day, k_last_day);
    run.units = static_cast<Units>(fields.whole(-1, 1));
    run.interval = static_cast<int>(fields.whole(0, 9));
    run.no_snow = fields.whole(0, 1) == 1;
    run.initial_runoff = fields.figure().value_or(0.0F);
    run.lag = fields.text();
    for (auto& value : run.statistics) value = fields.figure();
    if (!fields.all_read() || !(std::abs(run.time) <= k_largest_day)) return std::nullopt;
    return run;
}

/// Removes the oldest runs of a basin beyond a number.
void keep_last(std::vector<ListedRun>& runs, std::string_view basin, std::size_t most) {
    auto more = static_cast<std::size_t>(
        std::count_if(runs.begin(), runs.end(), [&](const ListedRun& run) { return run.basin == basin; }));
    std::erase_if(runs, [&](const ListedRun& run) {
        if (run.basin != basin || more <= most) return false;
        --more;
        return true;
    });
}

}  // namespace

std::string run_list_text(const std::vector<ListedRun>& runs) {
    std::string text = std::string{k_first_line} + '\n';
    for (const ListedRun& run : runs) text += line_of(run) + '\n';
    return text + fmt::format("{} {}\n", k_last_word, runs.size());
}

std::optional<std::vector<ListedRun>> read_run_list_text(std::string_view text) {
    const auto lines = parts_of(text, '\n');
    constexpr std::size_t k_other_lines = 3;  // the first, the last and what follows its line break
    if (lines.size() < k_other_lines || lines.front() != k_first_line || !lines.back().empty())
        return std::nullopt;
    const std::size_t count = lines.size() - k_other_lines;
    if (lines[lines.size() - 2] != fmt::format("{} {}", k_last_word, count)) return std::nullopt;
    std::vector<ListedRun> runs;
    for (std::size_t line = 1; line <= count; ++line) {
        auto run = run_of(lines[line]);
        if (!run) return std::nullopt;
        runs.push_back(*std::move(run));
    }
    return runs;
}

std::string listed_basin(const fs::path& basin_file) {
    if (basin_file.empty()) return {};
    std::error_code error;
    const fs::path absolute = fs::absolute(basin_file, error);
    return path_text((error ? basin_file : absolute).lexically_normal());
}

void RunList::keep_in(fs::path file) {
    file_ = std::move(file);
    fault_.clear();
    may_write_ = true;
    read();
}

void RunList::read() {
    std::error_code error;
    if (!fs::exists(fs::symlink_status(file_, error))) return;
    try {
        if (auto kept = read_run_list_text(read_whole_file(file_, k_largest_file))) {
            kept->insert(kept->end(), runs_.begin(), runs_.end());
            runs_ = *std::move(kept);
            return;
        }
        move_aside();
    } catch (const FileError& fault) {
        may_write_ = false;
        fault_ = std::string{"The list of earlier runs can't be read. "} + fault.what();
    }
}

void RunList::move_aside() {
    fs::path aside = file_;
    aside += ".damaged";
    std::error_code error;
    fs::rename(file_, aside, error);
    may_write_ = !error;
    fault_ = fmt::format("The list of earlier runs is damaged and can't be read. {}",
                         error ? "Its file '" + path_text(file_) + "' stays as it is."
                               : "It was kept as '" + path_text(aside) + "'.");
}

std::vector<ListedRun> RunList::runs_of(std::string_view basin) const {
    std::vector<ListedRun> found;
    std::copy_if(runs_.begin(), runs_.end(), std::back_inserter(found),
                 [&](const ListedRun& run) { return run.basin == basin; });
    return found;
}

void RunList::add(ListedRun run) {
    const std::string basin = run.basin;
    runs_.push_back(std::move(run));
    keep_last(runs_, basin, k_most_listed_of_basin);
    if (runs_.size() > k_most_listed)
        runs_.erase(runs_.begin(), runs_.end() - static_cast<std::ptrdiff_t>(k_most_listed));
    write();
}

void RunList::rename(std::string_view basin, std::string_view former, std::string_view name) {
    bool any = false;
    for (ListedRun& run : runs_) {
        const std::string& known = run.renamed.empty() ? run.simulation : run.renamed;
        if (run.basin != basin || !same_name(known, former)) continue;
        run.renamed = run.simulation == name ? std::string{} : std::string{name};
        any = true;
    }
    if (any) write();
}

void RunList::write() {
    if (file_.empty() || !may_write_) return;
    try {
        fs::create_directories(file_.parent_path());
        write_whole_file(file_, run_list_text(runs_));
        fault_.clear();
    } catch (const FileError& fault) {
        fault_ = std::string{"The list of runs can't be written. "} + fault.what();
    } catch (const fs::filesystem_error& fault) {
        fault_ = "The list of runs can't be written. " + fault.code().message() + ".";
    }
}

}  // namespace nivora
