// The import of legacy files: any bytes are either read or refused, and what is read fits a basin.

#include "prep/legacy_import.h"

#include "base/scripted_dialogs.h"
#include "store/table_io.h"
#include "store/transactions.h"

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <random>

namespace {

using namespace nivora;

namespace fs = std::filesystem;

void require(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
}

std::optional<LegacyFile> read(std::string_view text) {
    try {
        return read_legacy_file(text);
    } catch (const LegacyFileError& error) {
        const std::string_view said = error.what();
        require(said.size() < 400, "a refusal is short");
        require(said.find_first_of("\r\n") == std::string_view::npos, "a refusal is one line");
        require(error.line() >= 1, "lines count from 1");
        return std::nullopt;
    }
}

void check(const LegacyFile& file) {
    require(file.start <= file.end && file.end - file.start < k_legacy_days, "the period has 1 to 366 days");
    require(!file.zones.empty() && file.zones.size() <= k_most_legacy_zones, "there are 1 to 8 zones");
    for (const LegacyZone& zone : file.zones) {
        require(std::isfinite(zone.area) && std::isfinite(zone.elevation), "zones are finite");
    }
    require(file.version > 0.0F && std::isfinite(file.version), "the version is a number");
    require(std::isfinite(file.x) && std::isfinite(file.y), "x and y are finite");
    require(std::isfinite(file.x_later) && std::isfinite(file.y_later), "the later x and y are finite");
    require(!file.change_day || *file.change_day >= file.start, "x and y change from the start on");
    require(std::isfinite(file.reference_elevation.value_or(0.0)), "the reference elevation is finite");
    require(std::isfinite(static_cast<float>(file.rain_threshold.value_or(0.0))),
            "the threshold is a Single");
    for (std::size_t section = 0; section < file.values.size(); ++section) {
        const auto& zones = file.values[section];
        require(zones.size() == (section == 0 ? 1 : file.zones.size()), "each zone has its values");
        for (const auto& days : zones) {
            for (const float value : days) require(std::isfinite(value), "values are finite");
        }
    }
}

/// Requires that the text reads the same with every kind of line end.
void check_line_ends(std::string_view text, const std::optional<LegacyFile>& file) {
    if (text.find('\r') != std::string_view::npos) return;
    for (const char* line_end : {"\r\n", "\r"}) {
        std::string other;
        for (const char character : text) {
            if (character == '\n') {
                other += line_end;
            } else {
                other += character;
            }
        }
        const auto again = read(other);
        require(again.has_value() == file.has_value(), "every line end reads the same");
        if (!file) continue;
        require(again->values == file->values && again->start == file->start && again->end == file->end &&
                    again->basin_name == file->basin_name,
                "every line end gives the same file");
    }
}

/// A blank basin that all imports share; each of them is rolled back.
class BlankBasin {
public:
    BlankBasin()
        : folder_(fs::temp_directory_path() / ("nivora-fuzz-" + std::to_string(std::random_device{}()))) {
        fs::create_directory(folder_);
        BasinDatabase::create_template(folder_ / "basin.mdb");
        database_.emplace(folder_ / "basin.mdb", Access::ReadWrite);
    }
    BlankBasin(const BlankBasin&) = delete;
    BlankBasin& operator=(const BlankBasin&) = delete;
    ~BlankBasin() {
        database_.reset();
        std::error_code ignored;  // a folder that cannot be removed stays among the temporary files
        fs::remove_all(folder_, ignored);
    }

    /// Imports twice, the second time over the rows of the first import.
    void import(const LegacyFile& file, bool overwrite) {
        const auto answer = overwrite ? Answer::Yes : Answer::No;
        atomically_if(*database_, [&] {
            ScriptedDialogs first;
            first.then_text("fuzzed");
            require(import_legacy(*database_, file, "offered", first).has_value(), "a blank basin takes it");
            check_rows(file, "fuzzed");
            LegacyFile other_zones = file;
            other_zones.zones.front().area = file.zones.front().area == 1.0 ? 2.0 : 1.0;
            ScriptedDialogs second;
            second.then(answer).then_text("again").then(answer);
            require(import_legacy(*database_, other_zones, "offered", second).has_value(),
                    "its own basin takes it");
            check_rows(file, "again");
            require(first.complaints().empty() && second.complaints().empty(), "no other question is asked");
            return false;
        });
    }

private:
    void check_rows(const LegacyFile& file, const char* name) {
        const auto rows = static_cast<std::size_t>(file.end - file.start + 1) * file.zones.size();
        const auto days = read_table<PhysicalRow>(*database_, template_table(k_physical_data));
        require(days.size() == rows, "each zone and day has one row");
        const auto parameters = read_table<ParameterRow>(*database_, parameter_table(name));
        require(parameters.size() == rows, "each zone and day has its parameters");
        for (const ParameterRow& row : parameters) require(row.rca.has_value(), "no rain switch is missing");
    }

    fs::path folder_;
    std::optional<BasinDatabase> database_;
};

/// A number that depends on the bytes alone, so that an input always takes the same path.
std::uint64_t number_of(std::string_view bytes) {
    std::uint64_t number = 14695981039346656037U;
    for (const char byte : bytes) number = (number ^ static_cast<unsigned char>(byte)) * 1099511628211U;
    return number ^ (number >> 32U);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::uint64_t k_line_ends_of = 8;  // the store is slow compared with the reader
    constexpr std::uint64_t k_imports_of = 32;
    const std::string_view text{reinterpret_cast<const char*>(data), size};
    const std::uint64_t number = number_of(text);
    const auto file = read(text);
    if (file) check(*file);
    if (number % k_line_ends_of == 0) check_line_ends(text, file);
    if (file && number / k_line_ends_of % k_imports_of == 0) {
        static BlankBasin basin;
        basin.import(*file, number / k_line_ends_of / k_imports_of % 2 == 0);
    }
    return 0;
}
