// Whether texts can be read: their contrast by the guidelines for readable content, on light and dark
// palettes.
#include "tests/accessibility/every_window_fixture.h"
#include "widgets/colours.h"
#include "widgets/entry_box.h"
#include "widgets/value_grid_model.h"

#include <QAbstractButton>
#include <QGroupBox>
#include <QImage>
#include <QStyle>
#include <QTextBlock>
#include <QTextEdit>
#include <algorithm>
#include <map>
#include <optional>
#include <utility>

namespace nivora {
namespace {

/// Sets the palette of the program for a test.
class ContrastTest : public EveryWindowTest, public testing::WithParamInterface<bool> {
protected:
    ContrastTest() {
        if (is_dark()) QApplication::setPalette(QPalette{QColor{45, 48, 52}});
        settle();
    }
    ~ContrastTest() override { QApplication::setPalette(usual_); }
    ContrastTest(const ContrastTest&) = delete;
    ContrastTest& operator=(const ContrastTest&) = delete;

    static bool is_dark() { return GetParam(); }

    static void expect_readable(const std::string& where, const QPalette& palette, QPalette::ColorGroup group,
                                QPalette::ColorRole text, QPalette::ColorRole ground) {
        const QColor ink = palette.color(group, text);
        const QColor behind = palette.color(group, ground);
        EXPECT_GE(contrast(ink, behind), k_readable_contrast)
            << where << ": " << from_qt(ink.name()) << " on " << from_qt(behind.name());
    }

    /// A text and what it stands on, by the kind of the element.
    static std::optional<std::pair<QPalette::ColorRole, QPalette::ColorRole>> colours(
        const QWidget& element) {
        if (qobject_cast<const QLineEdit*>(&element) != nullptr ||
            qobject_cast<const QTextEdit*>(&element) != nullptr || element.inherits("QPlainTextEdit") ||
            qobject_cast<const QAbstractItemView*>(&element) != nullptr)
            return std::pair{QPalette::Text, QPalette::Base};
        if (qobject_cast<const QLabel*>(&element) != nullptr || element.inherits("QCheckBox") ||
            element.inherits("QRadioButton") || qobject_cast<const QGroupBox*>(&element) != nullptr)
            return std::pair{QPalette::WindowText, QPalette::Window};
        // The caption of a button that is off says what can't be done now, not what is.
        const bool button = qobject_cast<const QAbstractButton*>(&element) != nullptr && element.isEnabled();
        if (button || qobject_cast<const QComboBox*>(&element) != nullptr)
            return std::pair{QPalette::ButtonText, QPalette::Button};
        return std::nullopt;
    }

    static void check(const OpenedWindow& opened) {
        // Boxes and the print dialog are those of Qt, and show no values in disabled elements.
        const bool own = qobject_cast<const NivoraWindow*>(&opened.window) != nullptr;
        for (const QWidget* element : opened.window.findChildren<QWidget*>()) {
            if (!element->isVisible() || (!own && !element->isEnabled())) continue;
            const auto pair = colours(*element);
            if (!pair) continue;
            const auto group = element->isEnabled() ? QPalette::Active : QPalette::Disabled;
            const std::string where = opened.name + ", " + element->metaObject()->className() + ' ' +
                                      from_qt(element->objectName());
            expect_readable(where, element->palette(), group, pair->first, pair->second);
            if (own && pair->second == QPalette::Base && element->isEnabled())
                expect_readable(where + ", selected", element->palette(), group, QPalette::HighlightedText,
                                QPalette::Highlight);
        }
    }

    /// The contrast between the ground of a picture and what differs most from it.
    static double contrast_in(const QImage& picture) {
        std::map<QRgb, int> counts;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x) ++counts[picture.pixel(x, y)];
        const auto most = [](const auto& one, const auto& other) { return one.second < other.second; };
        const QColor ground = QColor::fromRgb(std::max_element(counts.begin(), counts.end(), most)->first);
        double highest = 1.0;
        for (const auto& [colour, count] : counts)
            highest = std::max(highest, contrast(QColor::fromRgb(colour), ground));
        return highest;
    }
    /// A cell without the lines around it.
    static QImage picture_of(GridView& grid, int row, int column) {
        const QRect cell = grid.visualRect(grid.model()->index(row, column)).adjusted(2, 2, -3, -3);
        return grid.viewport()->grab(cell).toImage();
    }

    QPalette usual_ = QApplication::palette();
};

TEST_P(ContrastTest, OfTheTextsOfAllWindowsIsReadable) {
    for_each_window([](const OpenedWindow& opened) { check(opened); });
}

TEST_P(ContrastTest, OfARefusedCellIsReadable) {
    auto& grid = *find<GridView>("vaSpread1");
    grid.cells().mark({0, 0, 2, 2});
    settle();
    EXPECT_GE(contrast_in(picture_of(grid, 1, 1)), k_readable_contrast);
    grid.cells().mark({});
}

TEST_P(ContrastTest, OfMarkedFiguresIsReadable) {
    ValueGridModel figures({QStringLiteral("Winter"), QStringLiteral("Summer")}, {QString{}}, nullptr);
    figures.set_text(0, 0, QStringLiteral("88888"));
    figures.highlight({{0, 0}});
    GridView grid(&figures, dialogs_);
    grid.show();
    settle();
    EXPECT_GE(contrast_in(picture_of(grid, 0, 0)), k_readable_contrast);
}

TEST_P(ContrastTest, OfARefusedBoxIsReadable) {
    auto& box = *find<QLineEdit>("Text(2)");
    double shown = 0.0;
    dialogs_.while_shown = [&] {
        shown = contrast(box.palette().color(QPalette::Text), box.palette().color(QPalette::Base));
    };
    refuse_entry(box, {.text = "Refused"}, dialogs_);
    EXPECT_GE(shown, k_readable_contrast);
}

TEST_P(ContrastTest, OfLinksInTheHelpAndTheAboutWindowIsReadable) {
    const QPalette palette = QApplication::palette();
    frmAbout about;
    for (const QLabel* label : about.findChildren<QLabel*>())
        expect_readable("about", label->palette(), QPalette::Active, QPalette::Link, QPalette::Window);
    frmNVRHelp help({session_, quick_help_, program_.path(), printing_});
    help.show_topic(0);
    const auto* text = help.findChild<QTextEdit*>(QStringLiteral("txtHelp"));
    int links = 0;
    for (QTextBlock block = text->document()->begin(); block.isValid(); block = block.next()) {
        for (auto at = block.begin(); !at.atEnd(); ++at) {
            const QTextCharFormat format = at.fragment().charFormat();
            if (!format.isAnchor()) continue;
            ++links;
            EXPECT_GE(contrast(format.foreground().color(), palette.color(QPalette::Base)),
                      k_readable_contrast);
        }
    }
    EXPECT_GT(links, 0);
}

INSTANTIATE_TEST_SUITE_P(Palettes, ContrastTest, testing::Bool(),
                         [](const auto& tested) { return tested.param ? "Dark" : "Light"; });

}  // namespace
}  // namespace nivora
