// The window of a simulation's definition, opened in each of its modes.
#pragma once

#include "tests/windows/prep/prep_window_fixture.h"
#include "windows/prep/SimOptions.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QPlainTextEdit>
#include <QRadioButton>

namespace nivora {

class SimOptionsWindowTest : public PrepWindowTest {
protected:
    /// Opens the window on a working record with all its parameters.
    void open_to_add(const std::string& name) {
        make_parameter_table(name);
        session_.prep.working_record = new_simulation_record(session_.basin, name);
        session_.prep.SimOptions_Mode = SimOptionsMode::Add;
        open();
    }
    void open_to_edit() {
        session_.prep.SimOptions_Mode = SimOptionsMode::Edit;
        open();
    }
    void open() {
        auto window = std::make_unique<SimOptions>(context());
        opened_ = window->open();
        window_ = std::move(window);
        if (opened_) show_window();
    }

    QLineEdit* box(int index) { return find<QLineEdit>("mtxt(" + std::to_string(index) + ")"); }
    std::string text(int index) { return from_qt(box(index)->text()); }
    QPlainTextEdit* comments() { return find<QPlainTextEdit>("mtxt(15)"); }
    QRadioButton* units(int index) { return find<QRadioButton>("optUnits(" + std::to_string(index) + ")"); }
    QRadioButton* temperature(int index) {
        return find<QRadioButton>("optTempType(" + std::to_string(index) + ")");
    }
    QCheckBox* by_zone(int index) { return find<QCheckBox>("ByZone(" + std::to_string(index) + ")"); }
    std::string caption(const std::string& name) { return from_qt(find<QLabel>(name)->text()); }
    std::string frame(const std::string& name) { return from_qt(find<QGroupBox>(name)->title()); }
    std::vector<std::string> first_values() {
        std::vector<std::string> texts;
        for (int index = 6; index <= 14; ++index) texts.push_back(text(index));
        return texts;
    }
    /// A, Tcrit, lapse rate, cs, cr, RCA, lag, x, y.
    void fill_first_values() {
        const std::array<const char*, 9> values{"0.45", "0.75", "0.65", "0.8",  "0.7",
                                                "1",    "18",   "1.05", "0.025"};
        for (std::size_t i = 0; i < values.size(); ++i)
            box(static_cast<int>(i) + 6)->setText(QString::fromUtf8(values.at(i)));
    }
    void fill_period(const char* start, const char* end) {
        box(2)->setText(QString::fromUtf8(start));
        box(3)->setText(QString::fromUtf8(end));
    }
    /// A parameter row of zone 1 on a day of October 1980 that differs in each field.
    static ParameterRow full_row(std::int16_t zone, int day) {
        ParameterRow row;
        row.zone = zone;
        row.date = october(day);
        row.tcrit = 0.75F;
        row.lag_hours = 18.0F;
        row.lapse_rate = 0.65F;
        row.an = 0.45F;
        row.cs = 0.8F;
        row.cr = 0.7F;
        row.rca = std::int16_t{1};
        row.xcoeff = 1.05;
        row.ycoeff = 0.025;
        return row;
    }

    bool opened_ = false;
};

}  // namespace nivora
