// The manual window: numbered topics of the help text.
#pragma once

#include "widgets/nivora_window.h"
#include "widgets/page_dialogs.h"

#include <array>
#include <optional>

class QTextBrowser;

namespace nivora {

class HelpSearch;

class frmNVRHelp : public NivoraWindow {
    Q_OBJECT

public:
    explicit frmNVRHelp(const WindowContext& context, QWidget* parent = nullptr);

    /// Shows a topic and names it in the caption.
    void show_topic(int topic);

private:
    void make_menus();
    void show_manual();
    void tell_unavailable(const std::array<QString, 2>& reasons,
                          const std::optional<std::filesystem::path>& unopened);
    void copy();
    void print();
    void add_keys();
    void find(bool backward);
    [[nodiscard]] bool find_in_page(bool backward, bool from_end);
    [[nodiscard]] std::optional<int> other_topic_with(const QString& wanted, bool backward);

    QTextBrowser* text_;
    HelpSearch* search_;
    int topic_ = 0;
    FontChooser fonts_;
};

}  // namespace nivora
