#include "engine/table_days.h"

namespace nivora {
namespace {

constexpr const char* k_recession_text =
    " Present x, y recession coefficient values result in k => 1 which was replaced by the limit k = 0.99 in "
    "order to avoid impossible results.  The user is advised to select new x and y values to keep k < 1. ";

}  // namespace

TableDays::TableDays(SimResults& results, const RunRows& rows, const BasinInputs& inputs, RunState& run,
                     Dialogs& dialogs)
    : results_(results),
      run_(run),
      dialogs_(dialogs),
      columns_(step_columns(results, run.ClimateStep)),
      basin_(runoff_basin(inputs)),
      days_(days_of(rows.by_day, basin_.zones)),
      inputs_(columns_, basin_, rows, run) {}

DayInput TableDays::input(std::size_t day) {
    return inputs_.computed() ? inputs_.day(day) : day_input(columns_, basin_, days_[day], run_);
}

bool TableDays::is_heavy(std::size_t day) {
    return is_heavy_on_average(columns_, basin_, days_[day], rain_share_);
}

bool TableDays::accepts_limit() {
    return dialogs_.message({.text = k_recession_text, .buttons = Buttons::OkCancel}) == Answer::Ok;
}

void TableDays::forget_days_after(std::size_t last) {
    if (!inputs_.computed()) return;
    inputs_.undo();
    for (std::size_t day = 0; day <= last; ++day)
        static_cast<void>(day_input(columns_, basin_, days_[day], run_));
}

void TableDays::keep_final() {
    if (days_.empty()) return;
    const auto last = static_cast<float>(columns_.computed[row(days_.size() - 1)]);
    if (std::isfinite(last)) run_.FinalQ[static_cast<std::size_t>(run_.ClimateStep)] = last;
}

}  // namespace nivora
