// JSON as the batch program prints it.
#pragma once

#include "batch/batch_dialogs.h"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace nivora {

/// JSON whose numbers are Singles, printed with the fewest digits that read back to the same bits.
using Json = nlohmann::basic_json<nlohmann::ordered_map, std::vector, std::string, bool, std::int64_t,
                                  std::uint64_t, float>;

/// The messages of a run, each with `title`, `text` and `answer`.
[[nodiscard]] inline Json messages_json(const std::vector<ReportedMessage>& messages) {
    Json list = Json::array();
    for (const ReportedMessage& message : messages) {
        list.push_back(
            {{"title", message.title}, {"text", message.text}, {"answer", answer_name(message.answer)}});
    }
    return list;
}

[[nodiscard]] inline std::string printed(const Json& json) {
    return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace nivora
