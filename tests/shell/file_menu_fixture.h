// The File menu with the four flags of a basin.
#pragma once

#include "base/durable_file.h"
#include "tests/shell/main_window_fixture.h"

namespace nivora {

namespace fs = std::filesystem;

/// The four flags of a basin.
struct Flags {
    bool New_Basin = false;
    bool Basin_Changed = false;
    bool Input_Changed = false;
    bool Output_Valid = false;

    bool operator==(const Flags&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const Flags& flags) {
    return out << "New_Basin " << flags.New_Basin << " Basin_Changed " << flags.Basin_Changed
               << " Input_Changed " << flags.Input_Changed << " Output_Valid " << flags.Output_Valid;
}

inline constexpr Flags k_fresh{.New_Basin = true};
inline constexpr Flags k_opened{};

class FileMenuTest : public MainWindowTest {
protected:
    [[nodiscard]] Flags flags() const {
        const BasinState& basin = session_.basin;
        return {basin.New_Basin, basin.Basin_Changed, basin.Input_Changed, basin.Output_Valid};
    }
    void set(const Flags& flags) {
        session_.basin.New_Basin = flags.New_Basin;
        session_.basin.Basin_Changed = flags.Basin_Changed;
        session_.basin.Input_Changed = flags.Input_Changed;
        session_.basin.Output_Valid = flags.Output_Valid;
    }
    /// Each combination of the three flags that a user's work sets, with Basin_Changed as given.
    [[nodiscard]] static std::vector<Flags> worked(bool changed) {
        std::vector<Flags> all;
        for (const bool input : {false, true}) {
            for (const bool output : {false, true}) all.push_back({false, changed, input, output});
        }
        return all;
    }
    [[nodiscard]] std::optional<std::string> stored_description(const fs::path& file) {
        BasinDatabase database{file, Access::ReadOnly};
        return read_basin_description(database).description;
    }
    void expect_question(const std::string& text) {
        EXPECT_EQ(last_message().text, text);
        EXPECT_EQ(last_message().title, "Save Data?");
        EXPECT_EQ(last_message().buttons, Buttons::YesNoCancel);
    }
    /// A fresh basin with zones and without a simulation.
    void define_fresh() {
        choose_units(0, Answer::Yes);
        give_zones("2", Answer::Yes);
    }
};

}  // namespace nivora
