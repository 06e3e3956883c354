#include "prep/table_columns.h"

#include "base/text.h"
#include "prep/table_cells.h"
#include "store/rows.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <utility>

namespace nivora {
namespace {

/// A header of the file: the text, and the unit in brackets at its end.
struct Heading {
    std::string text;
    std::string name;  ///< without the unit
    std::string unit;
};

Heading heading_of(std::string_view cell) {
    Heading heading;
    heading.text = std::string{trimmed(to_utf8(cell))};
    heading.name = heading.text;
    const char last = heading.text.empty() ? '\0' : heading.text.back();
    if (last != ')' && last != ']') return heading;
    // A unit may hold brackets itself, as in "An (cm/(°C·day))": it begins at the first one.
    const std::size_t opened = heading.text.find(last == ')' ? '(' : '[');
    if (opened == std::string::npos || opened == 0) return heading;
    heading.name = std::string{trimmed(std::string_view{heading.text}.substr(0, opened))};
    heading.unit = std::string{
        trimmed(std::string_view{heading.text}.substr(opened + 1, heading.text.size() - opened - 2))};
    return heading;
}

class Matching {
public:
    Matching(std::span<const std::string_view> header, std::size_t line, const TableLoad& load,
             const LoadTarget& target)
        : line_(line), load_(load), target_(target) {
        for (const std::string_view cell : header) headings_.push_back(heading_of(cell));
        columns_.cells = header.size();
    }

    LoadedColumns match() {
        find_key();
        if (load_.wide_field.empty()) {
            match_long();
        } else {
            match_wide();
        }
        if (columns_.values.empty()) refuse("no column of the file holds values of the table");
        check_units_are_used();
        return std::move(columns_);
    }

private:
    [[noreturn]] void refuse(const std::string& reason) const { throw TableFault(line_, reason); }

    [[nodiscard]] const char* key_name() const { return target_.monthly ? "Month" : "Date"; }

    /// The header that is stated for a meaning.
    [[nodiscard]] const NamedColumn* stated(std::string_view meaning) const {
        const auto named =
            std::find_if(load_.columns.begin(), load_.columns.end(),
                         [&](const NamedColumn& column) { return same_name(column.meaning, meaning); });
        return named == load_.columns.end() ? nullptr : &*named;
    }

    /// The place of a header, in full or without its unit; nothing if the file has none of it.
    [[nodiscard]] std::optional<std::size_t> find(std::string_view header) const {
        std::optional<std::size_t> found;
        for (std::size_t i = 0; i < headings_.size(); ++i) {
            if (!same_name(headings_[i].text, header) && !same_name(headings_[i].name, header)) continue;
            if (found) refuse(fmt::format("two columns have the header '{}'", shown_cell(header)));
            found = i;
        }
        return found;
    }

    [[nodiscard]] std::size_t existing(const NamedColumn& column) const {
        const auto found = find(column.header);
        if (!found) refuse(fmt::format("no column has the header '{}'", shown_cell(column.header)));
        return *found;
    }

    [[nodiscard]] std::optional<std::size_t> find_stated_or(const char* name) const {
        const NamedColumn* const column = stated(name);
        if (std::count_if(load_.columns.begin(), load_.columns.end(),
                          [&](const NamedColumn& other) { return same_name(other.meaning, name); }) > 1) {
            refuse(fmt::format("two columns are stated as '{}'", name));
        }
        return column != nullptr ? std::optional{existing(*column)} : find(name);
    }

    void find_key() {
        const auto found = find_stated_or(key_name());
        if (!found) {
            refuse(
                fmt::format("no column has the header '{}'; the first row of the file has to be its headers",
                            key_name()));
        }
        columns_.key = *found;
    }

    [[nodiscard]] const Field* field_of(std::string_view name) const {
        const auto field = std::find_if(target_.fields.begin(), target_.fields.end(),
                                        [&](const Field& known) { return same_name(known.name, name); });
        return field == target_.fields.end() ? nullptr : &*field;
    }

    [[nodiscard]] const Field& known_field(std::string_view name) const {
        const Field* const field = field_of(name);
        if (field != nullptr) return *field;
        std::string names;
        for (const Field& known : target_.fields) names += (names.empty() ? "" : ", ") + known.name;
        refuse(fmt::format("the table '{}' has no field '{}'; its fields are {}", target_.table,
                           shown_cell(name), names));
    }

    void match_long() {
        columns_.zone = find_stated_or("Zone");
        if (!load_.zone.empty()) {
            if (columns_.zone) refuse("the file has a column 'Zone', and a zone of all rows is stated");
            columns_.fixed_zone = known_zone(load_.zone);
        } else if (!columns_.zone) {
            refuse(
                "no column has the header 'Zone'; state the zone of all rows, or the field of a file with a "
                "column for each zone");
        }
        if (load_.columns.empty()) {
            for (std::size_t i = 0; i < headings_.size(); ++i) {
                if (i == columns_.key || columns_.zone == i) continue;
                add_value(i, known_field(headings_[i].name), 0);
            }
            return;
        }
        for (const NamedColumn& column : load_.columns) {
            if (!is_key(column.meaning)) add_value(existing(column), known_field(column.meaning), 0);
        }
    }

    void match_wide() {
        if (!load_.zone.empty()) refuse("a zone of all rows is stated, and a column for each zone as well");
        const Field& field = known_field(load_.wide_field);
        if (load_.columns.empty() ||
            std::all_of(load_.columns.begin(), load_.columns.end(),
                        [&](const NamedColumn& named) { return is_key(named.meaning); })) {
            for (std::size_t i = 0; i < headings_.size(); ++i) {
                if (i != columns_.key) add_value(i, field, known_zone(headings_[i].name));
            }
            return;
        }
        for (const NamedColumn& column : load_.columns) {
            if (!is_key(column.meaning)) add_value(existing(column), field, known_zone(column.meaning));
        }
    }

    [[nodiscard]] bool is_key(std::string_view meaning) const {
        return same_name(meaning, key_name()) || (load_.wide_field.empty() && same_name(meaning, "Zone"));
    }

    [[nodiscard]] int known_zone(std::string_view text) const {
        const auto zone = zone_of_text(text, target_);
        if (zone) return *zone;
        refuse(fmt::format("'{}' is none of the {} zones of the basin", shown_cell(text), target_.zones));
    }

    void add_value(std::size_t cell, const Field& field, int zone) {
        const bool taken =
            std::any_of(columns_.values.begin(), columns_.values.end(), [&](const ValueColumn& other) {
                return other.zone == zone && same_name(columns_.fields[other.field].name, field.name);
            });
        if (taken) {
            refuse(zone == 0 ? fmt::format("two columns give the field '{}'", field.name)
                             : fmt::format("two columns give zone {}", zone));
        }
        auto known = std::find_if(columns_.fields.begin(), columns_.fields.end(),
                                  [&](const Field& other) { return same_name(other.name, field.name); });
        if (known == columns_.fields.end()) known = columns_.fields.insert(known, field);
        columns_.values.push_back({.cell = cell,
                                   .field = static_cast<std::size_t>(known - columns_.fields.begin()),
                                   .zone = zone,
                                   .conversion = conversion_of(field, headings_[cell])});
    }

    /// The unit that is stated for a field, else the one in the header.
    [[nodiscard]] UnitConversion conversion_of(const Field& field, const Heading& heading) const {
        std::string_view unit = heading.unit;
        for (const StatedUnit& stated_unit : load_.units) {
            if (stated_unit.field.empty() || same_name(stated_unit.field, field.name))
                unit = stated_unit.unit;
        }
        if (unit.empty()) return {};
        if (target_.units != Units::Metric && target_.units != Units::English) {
            refuse(fmt::format(
                "the unit '{}' can't be converted, because the units of the basin are not fixed yet",
                shown_cell(unit)));
        }
        const auto conversion = unit_conversion(field.name, unit, target_.units);
        if (conversion) return *conversion;
        const std::string units = units_of_field(field.name);
        refuse(units.empty()
                   ? fmt::format("values of {} have no unit that can be converted, and '{}' is stated",
                                 field.name, shown_cell(unit))
                   : fmt::format("'{}' is no unit of {}; known are {}", shown_cell(unit), field.name, units));
    }

    /// A unit of a field that the file does not give would be a slip.
    void check_units_are_used() const {
        for (const StatedUnit& unit : load_.units) {
            for (const StatedUnit& other : load_.units) {
                if (same_name(unit.field, other.field) && !same_name(unit.unit, other.unit))
                    refuse(fmt::format("two units are stated for '{}': '{}' and '{}'", unit.field,
                                       shown_cell(unit.unit), shown_cell(other.unit)));
            }
            if (unit.field.empty()) {
                if (columns_.fields.size() == 1) continue;
                refuse(fmt::format("the unit '{}' is stated without a field, and the file gives several",
                                   shown_cell(unit.unit)));
            }
            const bool used =
                std::any_of(columns_.fields.begin(), columns_.fields.end(),
                            [&](const Field& field) { return same_name(field.name, unit.field); });
            if (!used)
                refuse(fmt::format("a unit is stated for '{}', which the file does not give", unit.field));
        }
    }

    std::size_t line_;
    const TableLoad& load_;
    const LoadTarget& target_;
    std::vector<Heading> headings_;
    LoadedColumns columns_;
};

}  // namespace

std::optional<int> zone_of_text(std::string_view text, const LoadTarget& target) {
    const std::string_view name = trimmed(text);
    int number = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), number);
    if (error == std::errc{} && end == name.data() + name.size())
        return number >= 1 && number <= target.zones ? std::optional{number} : std::nullopt;
    for (int zone = 1; zone <= target.zones; ++zone) {
        const auto index = static_cast<std::size_t>(zone - 1);
        if (index < target.zone_names.size() && same_name(target.zone_names[index], name)) return zone;
    }
    for (int zone = 1; zone <= target.zones; ++zone) {
        if (same_name(zone_letter(zone), name)) return zone;
    }
    return std::nullopt;
}

LoadedColumns match_columns(std::span<const std::string_view> header, std::size_t line, const TableLoad& load,
                            const LoadTarget& target) {
    return Matching{header, line, load, target}.match();
}

}  // namespace nivora
