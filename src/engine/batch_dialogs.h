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

/// Answers every question so that the work continues, or so that it is refused, and reports each on one line.
class BatchDialogs : public Dialogs {
public:
    BatchDialogs(std::ostream& report, bool refuse) : report_(report), refuse_(refuse) {}

    Answer message(const Message& message) override;
    /// Returns the prepared text once. A second question means that it was not accepted: the prompt says why
    /// and is reported.
    std::optional<std::string> input(const InputBox& box) override;
    std::optional<FileAnswer> file(const FileQuestion& question) override;

    /// Sets the answer to the next input box; without one the answer is the box's own proposal.
    void prepare_input(std::string text) { input_ = std::move(text); }

    /// From now on each input box is answered with its own proposal, and is reported.
    void accept_proposals() { proposals_accepted_ = true; }

    /// Reports an error outside the model in the same form.
    void report_problem(const std::string& title, const std::string& text);

    /// Reports what the user should know on a line of its own; it is not a refusal.
    void report_note(const std::string& text);

    /// Reports each note of a run on a line of its own. A note is not a refusal.
    void report_notes(const std::vector<RunNote>& notes, Units units);

    [[nodiscard]] const std::vector<ReportedMessage>& messages() const { return messages_; }
    /// Whether something was refused: by a message that asked nothing, or because a text was not accepted.
    [[nodiscard]] bool was_refused() const { return refused_; }

private:
    void report(const ReportedMessage& message);

    std::ostream& report_;
    bool refuse_;
    std::optional<std::string> input_;
    bool input_given_ = false;
    bool refused_ = false;
    bool proposals_accepted_ = false;
    std::vector<ReportedMessage> messages_;
};

}  // namespace nivora
