#include "search/study_changes.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstddef>
#include <vector>

namespace nivora {
namespace {

using OptionsJson = nlohmann::ordered_json;

constexpr std::size_t k_longest_value = 80;

void add_to_list(std::string& list, std::string_view text) {
    list += fmt::format("{}{}", list.empty() ? "" : ", ", text);
}

/// NAME:DIGEST, one after the other.
std::vector<std::string_view> digests_of(std::string_view text) {
    std::vector<std::string_view> parts;
    parts.reserve(text.size() / 8 + 1);
    for (;;) {
        const std::size_t end = text.find_first_of(", ");
        parts.push_back(text.substr(0, end));
        if (end == std::string_view::npos) return parts;
        text.remove_prefix(end + 1);
    }
}

std::string option_text(const std::string& name, const OptionsJson& value) {
    std::string text = value.dump(-1, ' ', true);
    if (text.size() > k_longest_value) text = text.substr(0, k_longest_value) + "...";
    return name + " " + text;
}

}  // namespace

std::string changed_inputs(std::string_view stored, std::string_view asked) {
    const auto before = digests_of(stored);
    const auto now = digests_of(asked);
    if (before.size() != now.size()) return {};
    std::vector<std::string_view> names;
    std::string list;
    for (std::size_t i = 0; i < now.size(); ++i) {
        const std::size_t colon = now[i].find(':');
        if (before[i] == now[i] || colon == std::string_view::npos) continue;
        const std::string_view name = now[i].substr(0, colon);
        if (std::find(names.begin(), names.end(), name) != names.end()) continue;
        names.push_back(name);
        add_to_list(list, name);
    }
    return list;
}

std::string changed_option_values(std::string_view stored, std::string_view asked) {
    const OptionsJson before = OptionsJson::parse(stored, nullptr, false);
    const OptionsJson now = OptionsJson::parse(asked, nullptr, false);
    if (!before.is_object() || !now.is_object()) return stored == asked ? std::string{} : std::string{stored};
    std::string list;
    for (const auto& [name, value] : before.items()) {
        if (!now.contains(name) || now[name] != value) add_to_list(list, option_text(name, value));
    }
    for (const auto& [name, value] : now.items()) {
        if (!before.contains(name)) add_to_list(list, "no " + name);
    }
    // The same options in another form.
    if (list.empty() && stored != asked) return std::string{stored};
    return list;
}

}  // namespace nivora
