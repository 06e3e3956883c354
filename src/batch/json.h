// JSON as the batch program prints it.
#pragma once

#include "base/calendar.h"
#include "base/single.h"
#include "engine/batch_dialogs.h"

#include <nlohmann/json.hpp>

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace nivora {

/// JSON whose numbers are Singles, printed with the fewest digits that read back to the same bits.
using Json = nlohmann::basic_json<nlohmann::ordered_map, std::vector, std::string, bool, std::int64_t,
                                  std::uint64_t, float>;

/// The keys of the six statistics, in the order of their labels.
inline constexpr std::array<const char*, 6> k_statistics_keys{
    "MeasuredVolume", "AvgMeasuredQ", "ComputedVolume", "AvgComputedQ", "VolumeDifference", "CoefficientR2"};

/// The messages of a run, each with `title`, `text` and `answer`.
[[nodiscard]] inline Json messages_json(const std::vector<ReportedMessage>& messages) {
    Json list = Json::array();
    for (const ReportedMessage& message : messages) {
        list.push_back(
            {{"title", message.title}, {"text", message.text}, {"answer", answer_name(message.answer)}});
    }
    return list;
}

/// The notes of a run: `kind`, `step` in a climate evaluation, `zones`, the days that a note is about, a
/// value if the kind has one, and the `text`.
[[nodiscard]] inline Json notes_json(const std::vector<RunNote>& notes, Units units) {
    Json list = Json::array();
    for (const RunNote& note : notes) {
        Json json{{"kind", note_name(note.kind)}};
        if (note.step > 0) json["step"] = note.step;
        json["zones"] = note.zones;
        json["first"] = iso_date_text(note.first);
        json["last"] = iso_date_text(note.last);
        json["days"] = note.days;
        json["periodDays"] = note.period_days();
        if (!is_missing(static_cast<double>(note.value))) json["value"] = note.value;
        json["text"] = note_text(note, units);
        list.push_back(json);
    }
    return list;
}

[[nodiscard]] inline std::string printed(const Json& json) {
    return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace nivora
