// Builds the text of legacy data files item by item, for tests of their reader and of the import.
#pragma once

#include "prep/legacy_file.h"
#include "tests/prep/days.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace nivora {

/// The parts of a legacy file. The defaults are version 3.2, metric, two zones, 1 to 3 April 1996, and in
/// each section one value for all days of a zone.
///
/// If item 16 is present and each section has one line, item n up to 27 is on line n, the extra value on line
/// 28, the pairs of area and elevation on lines 29 to 36, and section n on line 36 + n.
struct LegacyParts {
    std::string version = "Version 3.2";
    std::string start = "0401";
    std::string units = "0";
    std::string end = "0403";
    std::string filler = "0";  ///< items 5 to 15 and 20
    std::optional<std::string> item_16 = "0";
    std::string name = "\"Alder Brook\"";
    std::string zones = "2";
    std::string year = "1996";
    std::string x = "0.9";
    std::string x_later = "0.8";
    std::string y = "0.05";
    std::string y_later = "0.04";
    std::string change_day = "\"\"";
    std::string reference_elevation = "1800";
    std::optional<std::string> threshold = "5";  ///< item 27
    std::optional<std::string> extra = "0";
    std::vector<std::string> pairs{"40,1500", "60,2500", "0,0", "0,0", "0,0", "0,0", "0,0", "0,0"};
    std::array<std::string, k_legacy_sections> sections{"366*10/",            // runoff
                                                        "366*12,366*6/",      // Tmax
                                                        "366*4,366*-2/",      // Tmin
                                                        "366*8,366*2/",       // Tavg
                                                        "366*0.5,366*0.7/",   // Precip
                                                        "366*0.4,366*0.9/",   // SCA
                                                        "366*1,366*1.5/",     // Tcrit
                                                        "366*18,366*12/",     // LagTime
                                                        "366*0.65,366*0.6/",  // LapseRate
                                                        "366*0.4,366*0.5/",   // An
                                                        "366*0.9,366*0.8/",   // Cs
                                                        "366*0.7,366*0.6/",   // Cr
                                                        "366*1,366*0/"};      // RCA
    std::string line_end = "\n";

    std::string& section(LegacySection which) { return sections.at(static_cast<std::size_t>(which)); }

    /// The text of the file. A line feed within a part becomes `line_end`.
    [[nodiscard]] std::string text() const {
        std::vector<std::string> lines{version, start, units, end};
        for (int item = 5; item <= 15; ++item) lines.push_back(filler);
        if (item_16) lines.push_back(*item_16);
        for (const std::string& item :
             {name, zones, year, filler, x, x_later, y, y_later, change_day, reference_elevation}) {
            lines.push_back(item);
        }
        if (threshold) lines.push_back(*threshold);
        if (extra) lines.push_back(*extra);
        lines.insert(lines.end(), pairs.begin(), pairs.end());
        lines.insert(lines.end(), sections.begin(), sections.end());
        std::string result;
        for (const std::string& line : lines) {
            for (const char character : line) {
                if (character == '\n') {
                    result += line_end;
                } else {
                    result += character;
                }
            }
            result += line_end;
        }
        return result;
    }

    [[nodiscard]] LegacyFile read() const { return read_legacy_file(text()); }
};

/// Eight pairs of area and elevation: areas 10, 20 ... and elevations 1000, 1100 ... for the zones, then 0,0.
[[nodiscard]] inline std::vector<std::string> legacy_pairs(int zones) {
    std::vector<std::string> pairs;
    for (int zone = 1; zone <= k_most_legacy_zones; ++zone) {
        pairs.push_back(zone <= zones ? std::to_string(zone * 10) + "," + std::to_string(900 + zone * 100)
                                      : "0,0");
    }
    return pairs;
}

/// A section in which every slot has a different number: 1000 times the zone, plus the day's ordinal.
[[nodiscard]] inline std::string numbered_section(int zones) {
    std::string section;
    for (int zone = 1; zone <= zones; ++zone) {
        for (int day = 1; day <= k_legacy_days; ++day) {
            section += std::to_string(1000 * zone + day);
            const bool last = zone == zones && day == k_legacy_days;
            section += last ? "/" : day % 12 == 0 ? "\n" : ",";
        }
    }
    return section;
}

}  // namespace nivora
