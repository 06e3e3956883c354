// A program with settings and a script of colours, for the windows that change how things are painted.
#pragma once

#include "tests/shell/main_window_fixture.h"
#include "widgets/colours.h"
#include "widgets/qt_text.h"

#include <gmock/gmock.h>

#include <deque>

namespace nivora {

constexpr std::int32_t k_orange = 255 + 128 * 0x100;
constexpr std::int32_t k_navy = 128 * 0x10000;

/// Answers with the colours of a script, and records which colours were shown first.
class ScriptedColours : public Colours {
public:
    std::int32_t Choose_Color(QWidget* owner, std::int32_t first) override {
        owners.push_back(owner);
        firsts.push_back(first);
        if (answers.empty()) {
            ADD_FAILURE() << "asked for a colour that the test does not expect";
            return k_cancelled;
        }
        const std::int32_t answer = answers.front();
        answers.pop_front();
        return answer;
    }

    std::deque<std::int32_t> answers;
    std::vector<std::int32_t> firsts;
    std::vector<QWidget*> owners;
};

class ColourWindowTest : public MainWindowTest {
protected:
    [[nodiscard]] WindowContext context() { return {session_, quick_help_, program_.path(), printing_}; }

    template <typename Element>
    static Element* in(const QWidget& window, const char* name) {
        auto* element = window.findChild<Element*>(QString::fromUtf8(name));
        EXPECT_NE(element, nullptr) << name;
        return element;
    }
    static QImage picture(QWidget& widget) {
        return widget.grab().toImage().convertToFormat(QImage::Format_RGB32);
    }
    static QColor colour_at(QWidget& widget, QPoint place) { return picture(widget).pixelColor(place); }

    ScriptedColours colours_;
};

}  // namespace nivora
