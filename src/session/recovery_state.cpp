#include "session/recovery_state.h"

#include "base/durable_file.h"

#include <fmt/format.h>

#include <charconv>
#include <iterator>
#include <type_traits>

namespace nivora {
namespace {

constexpr std::string_view k_first_line = "Nivora recovery state";
constexpr std::uintmax_t k_largest_file = 1U << 30U;
constexpr std::size_t k_most_items = 1'000'000;  // of a list; more are a damaged number

template <typename T>
inline constexpr bool k_is_optional = false;
template <typename T>
inline constexpr bool k_is_optional<std::optional<T>> = true;
template <typename T>
inline constexpr bool k_is_vector = false;
template <typename T>
inline constexpr bool k_is_vector<std::vector<T>> = true;
template <typename T>
inline constexpr bool k_is_array = false;
template <typename T, std::size_t N>
inline constexpr bool k_is_array<std::array<T, N>> = true;

/// A text on one line.
std::string escaped(std::string_view text) {
    std::string line;
    line.reserve(text.size());
    for (const char letter : text) {
        if (letter == '\n' || letter == '\\') line += '\\';
        line += letter == '\n' ? 'n' : letter;
    }
    return line;
}

std::string unescaped(std::string_view line) {
    std::string text;
    text.reserve(line.size());
    for (std::size_t i = 0; i < line.size(); ++i) {
        const bool marked = line[i] == '\\' && i + 1 < line.size();
        if (marked) ++i;
        text += marked && line[i] == 'n' ? '\n' : line[i];
    }
    return text;
}

/// Writes a line for each value: a key, and after a blank the value. A missing value is a key alone.
class Writer {
public:
    template <typename T>
    void operator()(std::string_view key, const T& value);

    std::string lines;
};

/// Reads the lines in the order in which Writer writes them.
class Reader {
public:
    explicit Reader(std::string_view lines) : rest_(lines) {}

    template <typename T>
    void operator()(std::string_view key, T& value);

    /// What follows the lines that were read.
    [[nodiscard]] std::string_view rest() const { return rest_; }

private:
    [[nodiscard]] bool has_value(std::string_view key) const;
    std::string_view take(std::string_view key);

    std::string_view rest_;
};

template <typename Archive, typename State>
void visit_run(Archive& in, State& run) {
    in("kind", run.RunKind), in("title", run.RunTitle), in("interval", run.UpdateInterval);
    in("start", run.RunStart), in("end", run.RunEnd), in("runoff", run.InitialRunoff);
    in("no-snow", run.NoSnow), in("lag", run.LagDistribution), in("last", run.LastRunSimulation);
    in("months", run.MonthDays), in("lapse-unit", run.LapseUnit), in("store", run.SnowStore);
    in("melt-start", run.MeltSeasonStart), in("final", run.FinalQ), in("stores", run.EndingStores);
    in("average-measured", run.AvgMeasuredQ), in("measured", run.MeasuredVolume);
    in("average-computed", run.AvgComputedQ), in("computed", run.ComputedVolume);
    in("difference", run.VolumeDifference), in("r2", run.CoefficientR2), in("former-r2", run.former_r2);
    in("statistics", run.statistics), in("notes", run.notes), in("totals", run.zone_totals);
    in("results", run.results_enabled);
}

template <typename Archive, typename State>
void visit_state(Archive& in, State& state) {
    in("file", state.basin_file), in("content", state.known_content), in("counter", state.change_counter);
    in("basin-changed", state.Basin_Changed), in("input-changed", state.Input_Changed);
    in("output-valid", state.Output_Valid), in("outdated", state.results_outdated);
    in("results-time", state.results_time);
    in("name", state.basin_name), in("description", state.basin_description);
    in("zones", state.zones_text), in("elevation", state.reference_elevation_text);
    in("latitude", state.latitude_text), in("longitude", state.longitude_text);
    in("zone-count", state.ZoneCount), in("zone", state.zones), in("simulation", state.simulations);
    in("row", state.current_row);
    visit_run(in, state.run);
}

/// The members of what has no line of its own.
template <typename Archive, typename Value>
void visit_members(Archive& in, std::string_view key, Value& value) {
    using T = std::remove_const_t<Value>;
    if constexpr (std::is_same_v<T, FileContent>) {
        in(key, value.size), in(key, value.digest);
    } else if constexpr (std::is_same_v<T, RunNote>) {
        in(key, value.kind), in(key, value.step), in(key, value.zones), in(key, value.start);
        in(key, value.end), in(key, value.first), in(key, value.last), in(key, value.days);
        in(key, value.value), in(key, value.value_day), in(key, value.all_zones), in(key, value.negligible);
    } else if constexpr (std::is_same_v<T, ZoneTotals>) {
        in(key, value.first_day), in(key, value.last_day), in(key, value.precipitation), in(key, value.rain);
        in(key, value.zonal_melt), in(key, value.new_snow_melt);
    } else {
        T::visit(value, [&](auto& member) { in(key, member); });
    }
}

template <typename T>
void Writer::operator()(std::string_view key, const T& value) {
    if constexpr (std::is_same_v<T, std::string>) {
        fmt::format_to(std::back_inserter(lines), "{} {}\n", key, escaped(value));
    } else if constexpr (std::is_same_v<T, bool>) {
        fmt::format_to(std::back_inserter(lines), "{} {}\n", key, value ? 1 : 0);
    } else if constexpr (std::is_enum_v<T>) {
        (*this)(key, static_cast<int>(value));
    } else if constexpr (std::is_arithmetic_v<T>) {
        fmt::format_to(std::back_inserter(lines), "{} {}\n", key, value);
    } else if constexpr (k_is_optional<T>) {
        if (!value) {
            fmt::format_to(std::back_inserter(lines), "{}\n", key);
            return;
        }
        (*this)(key, *value);
    } else if constexpr (k_is_vector<T>) {
        (*this)(key, value.size());
        for (const auto& item : value) (*this)(key, item);
    } else if constexpr (k_is_array<T>) {
        for (const auto& item : value) (*this)(key, item);
    } else {
        visit_members(*this, key, value);
    }
}

bool Reader::has_value(std::string_view key) const {
    return rest_.size() > key.size() && rest_.substr(0, key.size()) == key && rest_[key.size()] == ' ';
}

std::string_view Reader::take(std::string_view key) {
    const std::size_t end = rest_.find('\n');
    const std::string_view line = rest_.substr(0, end);
    const bool other_key =
        line.substr(0, key.size()) != key || (line.size() > key.size() && line[key.size()] != ' ');
    if (end == std::string_view::npos || other_key)
        throw RecoveryError(fmt::format("has no value of '{}'", key));
    rest_.remove_prefix(end + 1);
    return line.substr(std::min(key.size() + 1, line.size()));
}

template <typename T>
void Reader::operator()(std::string_view key, T& value) {
    if constexpr (std::is_same_v<T, std::string>) {
        value = unescaped(take(key));
    } else if constexpr (std::is_same_v<T, bool>) {
        value = take(key) == "1";
    } else if constexpr (std::is_enum_v<T>) {
        int number = 0;
        (*this)(key, number);
        value = static_cast<T>(number);
    } else if constexpr (std::is_arithmetic_v<T>) {
        const std::string_view text = take(key);
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
        if (error != std::errc{} || end != text.data() + text.size())
            throw RecoveryError(fmt::format("has no number as the value of '{}'", key));
    } else if constexpr (k_is_optional<T>) {
        value.reset();
        if (has_value(key)) {
            (*this)(key, value.emplace());
        } else {
            take(key);
        }
    } else if constexpr (k_is_vector<T>) {
        std::size_t items = 0;
        (*this)(key, items);
        if (items > k_most_items) throw RecoveryError(fmt::format("has too many values of '{}'", key));
        value.resize(items);
        for (auto& item : value) (*this)(key, item);
    } else if constexpr (k_is_array<T>) {
        for (auto& item : value) (*this)(key, item);
    } else {
        visit_members(*this, key, value);
    }
}

FileContent digest_of(std::string_view text) {
    ContentDigest digest;
    digest.add(text);
    return digest.content();
}

}  // namespace

RecoveryState recovery_state(const BasinState& basin, const RunState& run,
                             const std::optional<FileContent>& known_content) {
    RecoveryState state;
    if (!basin.New_Basin) state.basin_file = path_text(basin.Basin_File);
    state.known_content = known_content;
    state.Basin_Changed = basin.Basin_Changed;
    state.Input_Changed = basin.Input_Changed;
    state.Output_Valid = basin.Output_Valid && run.ClimateStep == 0;
    state.results_outdated = basin.results_outdated;
    state.results_time = basin.results_time;
    state.basin_name = basin.basin_name;
    state.basin_description = basin.basin_description;
    state.zones_text = basin.zones_text;
    state.reference_elevation_text = basin.reference_elevation_text;
    state.latitude_text = basin.latitude_text;
    state.longitude_text = basin.longitude_text;
    state.ZoneCount = basin.ZoneCount;
    state.zones = basin.zones;
    state.simulations = basin.simulations;
    if (basin.current_row) state.current_row = *basin.current_row;
    state.run = run;
    return state;
}

std::string recovery_lines(const RecoveryState& state) {
    Writer writer;
    visit_state(writer, state);
    return std::move(writer.lines);
}

std::string recovery_text(double time, std::string_view lines, std::string_view table,
                          std::string_view edits) {
    Writer body;
    body("time", time);
    body.lines += lines;
    body("editor", std::string{table});
    body.lines += edits;
    const FileContent content = digest_of(body.lines);
    return fmt::format("{}\nform {}\nsize {}\nchecksum {}\n{}", k_first_line, k_recovery_form, content.size,
                       content.digest, body.lines);
}

RecoveryState read_recovery_text(std::string_view text) {
    if (text.substr(0, k_first_line.size() + 1) != std::string{k_first_line} + '\n')
        throw RecoveryError("is not a recovery file of Nivora");
    Reader head{text.substr(k_first_line.size() + 1)};
    int form = 0;
    head("form", form);
    if (form != k_recovery_form)
        throw RecoveryError(
            fmt::format("was written by another version of Nivora (form {}, this version reads {})", form,
                        k_recovery_form));
    FileContent expected;
    head("size", expected.size), head("checksum", expected.digest);
    if (head.rest().size() < expected.size) throw RecoveryError("is not complete");
    if (digest_of(head.rest()) != expected) throw RecoveryError("is damaged: its checksum is wrong");
    Reader body{head.rest()};
    RecoveryState state;
    body("time", state.time);
    visit_state(body, state);
    body("editor", state.edited_table);
    state.daily_edits = body.rest();
    return state;
}

std::optional<RecoveryState> read_recovery_file(const std::filesystem::path& file) {
    std::error_code problem;
    const auto status = std::filesystem::symlink_status(file, problem);
    if (status.type() == std::filesystem::file_type::not_found) return std::nullopt;
    // A start that takes it for none would overwrite the working file.
    if (status.type() == std::filesystem::file_type::none)
        throw RecoveryError("can't be read: " + problem.message());
    try {
        return read_recovery_text(read_whole_file(file, k_largest_file));
    } catch (const FileError& error) {
        throw RecoveryError(error.what());
    }
}

}  // namespace nivora
