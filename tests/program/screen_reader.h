// Reads what the windows of a running program show, as a screen reader for blind users does.
#pragma once

#include "tests/program/started_program.h"

#include <QDBusConnection>
#include <QString>
#include <optional>
#include <string>
#include <vector>

namespace nivora {

/// A window, button, box, cell ... of a running program.
class ScreenElement {
public:
    ScreenElement(QDBusConnection bus, QString program, QString path);

    /// What the element is: "push button", "text", "table", "label" ...
    [[nodiscard]] std::string role() const;
    [[nodiscard]] std::string name() const;
    /// The content of a box.
    [[nodiscard]] std::string text() const;
    [[nodiscard]] std::vector<ScreenElement> children() const;

    /// Whether it is on the screen at present.
    [[nodiscard]] bool is_showing() const { return has_state(25); }
    [[nodiscard]] bool is_enabled() const { return has_state(8); }
    [[nodiscard]] bool is_focused() const { return has_state(12); }
    [[nodiscard]] bool is_active() const { return has_state(1); }
    [[nodiscard]] bool is_checked() const { return has_state(4); }

    struct Point {
        int x = 0;
        int y = 0;
    };
    /// Where to click it.
    [[nodiscard]] Point middle() const;

    /// The first visible element below this one, in reading order, with this role and name.
    [[nodiscard]] std::optional<ScreenElement> find(const std::string& role, const std::string& name) const;
    /// The names and texts of everything visible below, for the failure message of a search.
    [[nodiscard]] std::string all_words() const;

private:
    [[nodiscard]] bool has_state(unsigned number) const;

    QDBusConnection bus_;
    QString program_;
    QString path_;
};

class ScreenReader {
public:
    explicit ScreenReader(const std::string& bus_address);

    /// The windows of a program that are visible at present.
    [[nodiscard]] std::vector<ScreenElement> windows(pid_t program) const;
    /// The visible window with a title.
    [[nodiscard]] std::optional<ScreenElement> window(pid_t program, const std::string& title) const;

private:
    QDBusConnection bus_;
};

}  // namespace nivora
