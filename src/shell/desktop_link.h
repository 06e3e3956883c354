// The calls upward, handed on to the main window once it is there.
#pragma once

#include "session/desktop.h"

namespace nivora {

/// The session is made before the main window, which is made with the session: this stands between the two.
class DesktopLink : public Desktop {
public:
    void lead_to(Desktop* target) { target_ = target; }

    void commit_edits() override {
        if (target_ != nullptr) target_->commit_edits();
    }
    bool refuses_typed_box() override { return target_ != nullptr && target_->refuses_typed_box(); }
    void go_to_field(const UnstorableField& field) override {
        if (target_ != nullptr) target_->go_to_field(field);
    }
    void refresh_main_window() override {
        if (target_ != nullptr) target_->refresh_main_window();
    }
    void show_help_topic(int topic) override {
        if (target_ != nullptr) target_->show_help_topic(topic);
    }
    void open_daily_editor() override {
        if (target_ != nullptr) target_->open_daily_editor();
    }
    void show_results() override {
        if (target_ != nullptr) target_->show_results();
    }
    void close_results() override {
        if (target_ != nullptr) target_->close_results();
    }

private:
    Desktop* target_ = nullptr;
};

}  // namespace nivora
