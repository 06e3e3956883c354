// Which columns of a table the user sees, and in which order.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nivora {

/// A column that a view offers, by a name without blanks that stays the same from one version to the next.
struct OfferedColumn {
    std::string name;
    bool shown_at_first = true;
};

/// The columns of one view: as the view offers them, until the user hides or moves some. The first column
/// names the rows: it is always shown, and stays first. Columns are given by their place among those offered.
class ColumnLayout {
public:
    ColumnLayout() = default;
    /// @param kept the text of an earlier layout. What it does not name goes to where the view offers it;
    /// what
    ///             it names and the view does not offer now is kept for the next time.
    ColumnLayout(const std::vector<OfferedColumn>& offered, std::string_view kept);

    /// The columns that are seen, from the left to the right.
    [[nodiscard]] std::vector<std::size_t> shown() const;
    /// All columns that are offered, in the same order.
    [[nodiscard]] std::vector<std::size_t> all() const;
    [[nodiscard]] bool is_shown(std::size_t column) const;

    /// Whether a column may be hidden: not the first, and not the only one beside it.
    [[nodiscard]] bool can_hide(std::size_t column) const;
    void show(std::size_t column, bool shown);
    /// Whether a seen column has another one at this side that it may change places with.
    [[nodiscard]] bool can_move(std::size_t column, bool right) const;
    void move(std::size_t column, bool right);
    void show_all();
    /// Whether nothing differs from what the view offers.
    [[nodiscard]] bool is_original() const;
    void restore();

    /// The layout as a text to be kept; empty if nothing differs from what the view offers.
    [[nodiscard]] std::string text() const;

private:
    struct Entry {
        std::string name;
        bool shown = true;
        std::optional<std::size_t> offered = {};  ///< nothing: not offered now
        bool shown_at_first = true;
    };
    [[nodiscard]] std::optional<std::size_t> place_of(std::size_t column) const;
    [[nodiscard]] std::optional<std::size_t> neighbour(std::size_t place, bool right) const;

    std::vector<Entry> entries_;
};

}  // namespace nivora
