#include "prep/daily_edits.h"

#include "base/text.h"
#include "store/transactions.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <iterator>
#include <vector>

namespace nivora {
namespace {

constexpr char k_value = 'v';
constexpr char k_mass_edit = 'm';

[[noreturn]] void refuse_line() {
    throw StoreError(StoreFault::Damaged, "A kept change of the daily editor can't be read.");
}

/// The words of a line, one after the other.
class Words {
public:
    explicit Words(std::string_view line) : rest_(line) {}

    std::string_view next() {
        if (rest_.empty()) refuse_line();
        const std::size_t blank = std::min(rest_.find(' '), rest_.size());
        const std::string_view word = rest_.substr(0, blank);
        rest_.remove_prefix(std::min(blank + 1, rest_.size()));
        return word;
    }

    template <typename Number>
    Number number() {
        const std::string_view word = next();
        Number value{};
        const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
        if (error != std::errc{} || end != word.data() + word.size()) refuse_line();
        return value;
    }

private:
    std::string_view rest_;
};

std::size_t field_index(const std::vector<Field>& fields, std::string_view name) {
    const auto found = std::find_if(fields.begin(), fields.end(),
                                    [&](const Field& field) { return same_name(field.name, name); });
    if (found == fields.end()) refuse_line();
    return static_cast<std::size_t>(found - fields.begin());
}

void apply(DailyFields& daily, const std::vector<Field>& fields, std::string_view line) {
    Words words{line};
    const std::string_view kind = words.next();
    const std::size_t field = field_index(fields, words.next());
    if (kind == std::string_view{&k_value, 1}) {
        const auto row = words.number<std::int64_t>();
        return daily.store(row, field, words.number<double>());
    }
    if (kind != std::string_view{&k_mass_edit, 1}) refuse_line();
    const int zone = words.number<int>();
    const auto first = words.number<DayCount>();
    const auto last = words.number<DayCount>();
    const auto edit = words.number<int>() == 0 ? MassEdit::Add : MassEdit::Multiply;
    daily.change(zone, {first, last}, field, edit, words.number<double>());
}

std::string value_line(const std::string& field, std::int64_t row, double value) {
    return fmt::format("{} {} {} {}\n", k_value, field, row, value);
}

}  // namespace

void DailyEdits::begin(const std::string& table) {
    end();
    table_ = table;
}

void DailyEdits::add_value(const std::string& field, std::int64_t row, double value) {
    lines_ += value_line(field, row, value);
}

void DailyEdits::type_value(const std::string& field, std::int64_t row, double value) {
    typed_ = value_line(field, row, value);
}

void DailyEdits::add_mass_edit(const std::string& field, int zone, const Period& days, MassEdit edit,
                               double number) {
    fmt::format_to(std::back_inserter(lines_), "{} {} {} {} {} {} {}\n", k_mass_edit, field, zone, days.start,
                   days.end, edit == MassEdit::Add ? 0 : 1, number);
}

void DailyEdits::end() {
    table_.clear();
    lines_.clear();
    typed_.clear();
    ++editing_;
}

std::size_t count_daily_edits(std::string_view lines) {
    return static_cast<std::size_t>(std::count(lines.begin(), lines.end(), '\n'));
}

void apply_daily_edits(BasinDatabase& database, const std::string& table, std::string_view lines) {
    std::vector<Field> fields;
    for (const Field& field : database.table_fields(table)) {
        const bool number = field.type == FieldType::Integer || field.type == FieldType::Single ||
                            field.type == FieldType::Double;
        if (number && !same_name(field.name, "Zone")) fields.push_back(field);
    }
    HeldTransaction transaction{database};
    DailyFields daily{database, {.table = table, .fields = fields, .period = {}}};
    while (!lines.empty()) {
        const std::size_t end = lines.find('\n');
        if (end == std::string_view::npos) refuse_line();
        apply(daily, fields, lines.substr(0, end));
        lines.remove_prefix(end + 1);
    }
    transaction.commit();
}

}  // namespace nivora
