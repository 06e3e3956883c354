// The rules that connect the boxes of the basin definition, without a window.
#pragma once

#include "session/main_window_rules.h"

#include <optional>
#include <string>

namespace nivora {

/// The text of the basin that a box shows.
[[nodiscard]] std::string& basin_box_text(BasinState& basin, BasinBox box);
[[nodiscard]] const std::string& basin_box_text(const BasinState& basin, BasinBox box);

/// The units that labels and headers name: those of the basin, before they are fixed those that are chosen,
/// and metric units before any are.
[[nodiscard]] Units shown_units(const BasinState& basin, std::optional<Units> chosen);

/// What has the focus after Enter in a box.
struct AfterEnter {
    enum class Place { Box, UnitsList, ZoneGrid };

    Place place = Place::Box;
    BasinBox box = BasinBox::Name;  ///< if the place is a box

    bool operator==(const AfterEnter&) const = default;
};
/// After the name comes the list of units while it is open, otherwise the number of zones while that is open.
[[nodiscard]] AfterEnter after_enter(BasinBox box, bool units_open, bool zones_open);

/// The question about unlikely zones, which is asked once: not again about values that were confirmed.
class UnusualZoneQuestion {
public:
    /// The zones to ask about; nothing if there are none or they were confirmed.
    [[nodiscard]] std::optional<UnusualZones> open_for(const BasinState& basin) const;
    void confirm(const UnusualZones& zones) { confirmed_ = zones.question.text; }
    /// Another basin is opened.
    void forget() { confirmed_.clear(); }

private:
    std::string confirmed_;
};

}  // namespace nivora
