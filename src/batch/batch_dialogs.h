// Dialogs of the batch program: lines on standard error, answered without a user.
#pragma once

#include "base/dialogs.h"
#include "engine/run_notes.h"

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace nivora {

/// A message as the batch program reports it.
struct ReportedMessage {
    std::string title;
    std::string text;
    Answer answer = Answer::Ok;
};

/// Answers every question so that the work goes on, or so that it is refused, and reports each on one line.
class BatchDialogs : public Dialogs {
public:
    BatchDialogs(std::ostream& report, bool refuse) : report_(report), refuse_(refuse) {}

    Answer message(const Message& message) override;
    /// Gives the prepared text once. Asked again, the text was not accepted: the prompt says why and is
    /// reported.
    std::optional<std::string> input(const InputBox& box) override;
    std::optional<std::filesystem::path> file(const FileQuestion& question) override;

    /// The text that the next input box gets; without one it gets what it proposes.
    void prepare_input(std::string text) { input_ = std::move(text); }

    /// From now on each input box is a question of its own that gets what it proposes, and is reported.
    void accept_proposals() { proposals_accepted_ = true; }

    /// Reports what went wrong outside the model in the same form.
    void report_problem(const std::string& title, const std::string& text);

    /// Reports each note of a run on a line of its own. A note says no to nothing.
    void report_notes(const std::vector<RunNote>& notes, Units units);

    [[nodiscard]] const std::vector<ReportedMessage>& messages() const { return messages_; }
    /// Whether a message said no: one that asked nothing, or a text that was not accepted.
    [[nodiscard]] bool said_no() const { return said_no_; }

private:
    void report(const ReportedMessage& message);

    std::ostream& report_;
    bool refuse_;
    std::optional<std::string> input_;
    bool input_given_ = false;
    bool said_no_ = false;
    bool proposals_accepted_ = false;
    std::vector<ReportedMessage> messages_;
};

}  // namespace nivora
