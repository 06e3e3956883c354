#include "prep/located_json.h"

#include "base/text.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <set>

namespace nivora {
namespace {

using Json = nlohmann::ordered_json;

/// How deep a definition may be nested; no sound one comes near it.
constexpr int k_deepest = 64;

/// A text that counts its lines while it is read.
class CountedText {
public:
    explicit CountedText(std::string_view text) : text_(text) {}

    void go_to(std::size_t place) {
        // The reader looks one character ahead, behind the end of a number: that one does not count yet.
        const std::size_t sure = std::max<std::size_t>(place, 1) - 1;
        if (sure <= counted_) return;
        lines_ +=
            static_cast<std::size_t>(std::count(text_.begin() + static_cast<std::ptrdiff_t>(counted_),
                                                text_.begin() + static_cast<std::ptrdiff_t>(sure), '\n'));
        counted_ = sure;
    }

    [[nodiscard]] std::size_t line() const { return lines_ + 1; }
    [[nodiscard]] std::string_view text() const { return text_; }

private:
    std::string_view text_;
    std::size_t counted_ = 0;
    std::size_t lines_ = 0;
};

/// The characters of a counted text, as the library reads them.
class CountedIterator {
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = const char&;

    CountedIterator(CountedText& text, std::size_t place) : text_(&text), place_(place) {}

    reference operator*() const { return text_->text()[place_]; }
    CountedIterator& operator++() {
        text_->go_to(++place_);
        return *this;
    }
    CountedIterator operator++(int) {
        const CountedIterator before = *this;
        ++*this;
        return before;
    }
    bool operator==(const CountedIterator& other) const { return place_ == other.place_; }
    bool operator!=(const CountedIterator& other) const { return place_ != other.place_; }

private:
    CountedText* text_;
    std::size_t place_;
};

/// Follows the reader through the text and notes the line of each value.
class PlaceNotes {
public:
    PlaceNotes(LocatedJson& json, const CountedText& text) : json_(json), text_(text) {}

    bool take(int depth, Json::parse_event_t event, const Json& parsed) {
        if (depth > k_deepest) too_deep_ = true;
        if (too_deep_) return false;
        switch (event) {
            case Json::parse_event_t::object_start: open(false); break;
            case Json::parse_event_t::array_start: open(true); break;
            case Json::parse_event_t::object_end:
            case Json::parse_event_t::array_end: levels_.pop_back(); break;
            case Json::parse_event_t::key: take_key(parsed.get_ref<const std::string&>()); break;
            case Json::parse_event_t::value: next_place(); break;
        }
        return true;
    }

    [[nodiscard]] bool too_deep() const { return too_deep_; }

private:
    struct Level {
        std::string place;
        bool is_array = false;
        std::size_t elements = 0;
        std::string key = {};
        std::set<std::string> keys = {};
    };

    /// The place of the value that begins here.
    std::string next_place() {
        std::string place;
        if (!levels_.empty()) {
            Level& level = levels_.back();
            place = level.is_array ? element_place(level.place, level.elements++)
                                   : member_place(level.place, level.key);
        }
        json_.lines.emplace(place, text_.line());
        return place;
    }

    void open(bool is_array) { levels_.push_back({.place = next_place(), .is_array = is_array}); }

    void take_key(const std::string& key) {
        Level& level = levels_.back();
        level.key = key;
        if (!level.keys.insert(key).second)
            json_.second_keys.emplace_back(member_place(level.place, key), text_.line());
    }

    LocatedJson& json_;
    const CountedText& text_;
    std::vector<Level> levels_ = {};
    bool too_deep_ = false;
};

}  // namespace

std::string member_place(const std::string& place, std::string_view key) {
    const std::string name = one_line(to_utf8(key));
    return place.empty() ? name : place + "." + name;
}

std::string element_place(const std::string& place, std::size_t index) {
    return fmt::format("{}[{}]", place, index);
}

LocatedJson read_located_json(std::string_view text) {
    constexpr std::string_view k_mark = "\xEF\xBB\xBF";
    if (text.starts_with(k_mark)) text.remove_prefix(k_mark.size());
    LocatedJson json;
    CountedText counted{text};
    PlaceNotes notes{json, counted};
    try {
        json.value = Json::parse(CountedIterator{counted, 0}, CountedIterator{counted, text.size()},
                                 [&notes](int depth, Json::parse_event_t event, Json& parsed) {
                                     return notes.take(depth, event, parsed);
                                 });
        if (notes.too_deep()) json.syntax_problem = "its values are nested too deeply";
    } catch (const Json::out_of_range&) {
        json.syntax_problem = "it holds a number that is too large";
    } catch (const Json::exception&) {
        json.syntax_problem = "this is not JSON: a comma, bracket or quotation mark is missing or too many";
    }
    json.problem_line = counted.line();
    return json;
}

}  // namespace nivora
