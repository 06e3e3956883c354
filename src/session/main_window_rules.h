// The rules of the basin definition in the main window, without a window.
#pragma once

#include "session/session.h"

#include <optional>
#include <string>
#include <string_view>

namespace nivora {

/// The boxes of the basin definition, by their number.
enum class BasinBox {
    Name = 0,
    Zones = 1,
    ReferenceElevation = 2,
    Latitude = 3,
    Description = 4,
    Longitude = 5
};

/// The result of the check of a typed character.
enum class KeyVerdict { Passes, Dropped, DroppedWithBeep };

/// Whether a character may be typed into a box with this text. The rule does not cover Backspace and Enter.
[[nodiscard]] KeyVerdict key_verdict(BasinBox box, char32_t key, std::string_view text);

/// A box after a change of its text.
struct ChangedBox {
    std::string text;                ///< the new text of the box
    bool beep = false;               ///< the text was cut
    std::optional<Message> message;  ///< shown at once; the box keeps the focus
};

/// Cuts a text that is too long (more than 50 characters for a name, 255 for a description) and refuses a
/// minus sign that is not the first character of a latitude or longitude.
[[nodiscard]] ChangedBox changed_box(BasinBox box, const std::string& text);

/// Why a box cannot be left: its value is outside the limits, or the name is empty. An empty number is valid.
///
/// @param basin_units the basin's own units, which decide the limit of the reference elevation
[[nodiscard]] std::optional<Message> left_box_problem(BasinBox box, const std::string& text,
                                                      Units basin_units);

/// What is wrong with a latitude, in decimal degrees; nothing from -90 to 90.
[[nodiscard]] std::optional<Message> latitude_problem(double latitude);

/// Whether a box holds a number with limits: leaving it with a valid number counts as an edit.
[[nodiscard]] bool is_checked_number(BasinBox box);

/// The question before the units are fixed.
[[nodiscard]] Message units_question();
/// The question before the number of zones is fixed.
[[nodiscard]] Message zones_question();
/// The message for Enter in the list of units while none is chosen.
[[nodiscard]] Message units_missing();
/// The message for a number of zones that is entered before the units.
[[nodiscard]] Message units_before_zones();
/// Why no simulation can be added: what the basin lacks; nothing if one can.
[[nodiscard]] std::optional<Message> add_simulation_problem(const Session& session);
/// The message that explains no-snow mode when it is switched on.
[[nodiscard]] Message no_snow_description();

/// Asks about zones of an area above 10,000,000 or an elevation above the limit of the reference elevation,
/// all in one question; nothing if there is none. The text names every such value,
/// so equal texts are about equal values.
struct UnusualZones {
    Message question;
    int zone = 0;    ///< 1 to 16, the first of them
    int column = 0;  ///< of the zone grid, from 1
};
[[nodiscard]] std::optional<UnusualZones> unusual_zones(const BasinState& basin);

/// Switches no-snow mode and the commands that depend on it. @return the message to show when it is on
std::optional<Message> toggle_no_snow(Session& session);

/// Stores the units of a new basin in the working file at once. @throws StoreError
void fix_units(Session& session, Units units);

/// Fixes the number of zones of a new basin: its zone rows and its monthly rows, in the working file.
/// @throws StoreError
void fix_zones(Session& session, int zones);

/// Sums the zone areas after a cell of that column is left. The Run menu is enabled when there is an area.
void take_zone_areas(Session& session);

/// Makes the simulation of a grid row the current one and enables its commands.
void choose_simulation_row(Session& session, std::size_t row);

/// "Reference Elevation (m):" and "Basin Area (km²):" with the units of the basin.
[[nodiscard]] std::string reference_elevation_label(Units basin_units);
[[nodiscard]] std::string basin_area_label(Units basin_units);
/// The header of a column of the zone grid, 1 to 11, after the units were chosen.
[[nodiscard]] std::string zone_header(int column, Units basin_units);
/// The header of a column of the simulation grid, 1 to 17; that of the initial runoff has the unit of the
/// current simulation.
[[nodiscard]] std::string simulation_header(int column, Units units);

/// A text for a label with each "&" doubled, so that none marks an accelerator.
[[nodiscard]] std::string doubled_ampersands(std::string_view text);

}  // namespace nivora
