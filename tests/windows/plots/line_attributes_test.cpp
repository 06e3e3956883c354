#include "tests/windows/plots/colour_window_fixture.h"
#include "windows/plots/colour_field.h"
#include "windows/plots/frmLineAtt.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTest>
#include <QToolButton>
#include <set>

namespace nivora {
namespace {

using testing::ElementsAre;

class LineAttributesTest : public ColourWindowTest {
protected:
    frmLineAtt& open(const LineQuestion& question) {
        line_window_ = std::make_unique<frmLineAtt>(context(), colours_, question);
        line_window_->show();
        return *line_window_;
    }
    [[nodiscard]] QSpinBox* line() const { return in<QSpinBox>(*line_window_, "UpDown1"); }
    [[nodiscard]] QSpinBox* width() const { return in<QSpinBox>(*line_window_, "UpDown2"); }
    [[nodiscard]] QComboBox* style() const { return in<QComboBox>(*line_window_, "Combo1"); }
    [[nodiscard]] QComboBox* fill() const { return in<QComboBox>(*line_window_, "Combo2"); }
    [[nodiscard]] ColourField* colour() const { return in<ColourField>(*line_window_, "Picture2"); }
    [[nodiscard]] LineSample* sample() const { return in<LineSample>(*line_window_, "Picture1"); }
    void press(const char* button) const { in<QPushButton>(*line_window_, button)->click(); }
    [[nodiscard]] const LineTable& lines() const { return session_.settings.lines; }

    static std::vector<std::string> entries(const QComboBox& list) {
        std::vector<std::string> result;
        for (int i = 0; i < list.count(); ++i) result.push_back(from_qt(list.itemText(i)));
        return result;
    }
    /// The colours along the middle of a picture, without its frame.
    static std::set<QRgb> colours_across(QWidget& widget) {
        const QImage image = picture(widget);
        std::set<QRgb> colours;
        for (int x = 2; x < image.width() - 2; ++x) colours.insert(image.pixel(x, image.height() / 2));
        return colours;
    }

    std::unique_ptr<frmLineAtt> line_window_;
};

TEST_F(LineAttributesTest, ItsTextsAreThese) {
    const frmLineAtt& window = open({.fills = true});
    EXPECT_EQ(window.windowTitle(), QStringLiteral("Line Attributes"));
    std::set<std::string> labels;
    for (const QLabel* label : window.findChildren<QLabel*>()) labels.insert(from_qt(label->text()));
    EXPECT_THAT(labels, testing::IsSupersetOf(
                            {"Line Number:", "Line Style:", "Line Width:", "Color:", "&Fill Style:"}));
    EXPECT_THAT(entries(*style()), ElementsAre("Solid", "Dash", "Dot", "Dash-Dot", "Dash-Dot-Dot"));
    EXPECT_THAT(entries(*fill()),
                ElementsAre("Solid", "Transparent", "HorizontalLine", "VerticalLine", "UpwardDiagonal",
                            "DownwardDiagonal", "Cross", "DiagonalCross"));
    EXPECT_EQ(colour()->toolTip(), QStringLiteral("Current line color.  Click to change."));
    EXPECT_EQ(in<QToolButton>(window, "Image1")->toolTip(), QStringLiteral("Click to change colors"));
    EXPECT_EQ(in<QPushButton>(window, "Command1(0)")->text(), QStringLiteral("&Done"));
    EXPECT_EQ(in<QPushButton>(window, "Command1(1)")->text(), QStringLiteral("&Cancel"));
    EXPECT_EQ(in<QPushButton>(window, "Command1(2)")->text(), QStringLiteral("&Help"));
}

TEST_F(LineAttributesTest, ItOpensOnTheEditedLineWithTheValuesOfThatLine) {
    session_.settings.lines[2] = {1, k_orange, 1, 6};
    open({.edited_line = 3, .curves = 4, .fills = true});
    EXPECT_EQ(in<QLineEdit>(*line_window_, "Label3")->text(), QStringLiteral("3"));
    EXPECT_EQ(line()->minimum(), 1);
    EXPECT_EQ(line()->maximum(), 4);
    EXPECT_EQ(style()->currentText(), QStringLiteral("Dash"));
    EXPECT_EQ(in<QLineEdit>(*line_window_, "Label4")->text(), QStringLiteral("1"));
    EXPECT_EQ(fill()->currentText(), QStringLiteral("Cross"));
    EXPECT_EQ(colour()->fill().colour, k_orange);
}

TEST_F(LineAttributesTest, AfterACancelItOpensOnLine1) {
    open({.edited_line = k_no_edited_line, .curves = 4});
    EXPECT_EQ(line()->value(), 1);
}

TEST_F(LineAttributesTest, AnotherLineKeepsTheValuesOfTheFirst) {
    open({.edited_line = 1, .curves = 2});
    style()->setCurrentIndex(2);
    line()->setValue(2);
    EXPECT_EQ(style()->currentIndex(), default_lines()[1].style);
    EXPECT_EQ(colour()->fill().colour, default_lines()[1].colour);
    width()->setValue(3);
    line()->setValue(1);
    EXPECT_EQ(style()->currentIndex(), 2);
    EXPECT_EQ(width()->value(), 1);
    press("Command1(0)");
    EXPECT_EQ(lines()[0].style, 2);
    EXPECT_EQ(lines()[1].width, 3);
    EXPECT_EQ(lines()[2], default_lines()[2]);
}

TEST_F(LineAttributesTest, AWiderLineHasNoStyleAndGetsItBackAtWidth1) {
    open({.edited_line = 2, .curves = 2});
    const QRgb green = qRgb(0, 128, 0);
    EXPECT_THAT(colours_across(*sample()), testing::UnorderedElementsAre(green, qRgb(255, 255, 255)));
    width()->setValue(2);
    EXPECT_FALSE(style()->isEnabled());
    EXPECT_EQ(style()->currentIndex(), 1);
    EXPECT_THAT(colours_across(*sample()), ElementsAre(green));
    width()->setValue(1);
    EXPECT_TRUE(style()->isEnabled());
    EXPECT_THAT(colours_across(*sample()), testing::UnorderedElementsAre(green, qRgb(255, 255, 255)));
}

TEST_F(LineAttributesTest, AColourIsChosenByTheFieldAndByThePicture) {
    open({.edited_line = 1, .curves = 1});
    colours_.answers = {k_orange, k_navy, Colours::k_cancelled};
    QTest::mouseClick(colour(), Qt::LeftButton);
    EXPECT_EQ(colour_at(*colour(), {5, 5}), QColor(255, 128, 0));
    EXPECT_THAT(colours_across(*sample()), ElementsAre(qRgb(255, 128, 0)));
    in<QToolButton>(*line_window_, "Image1")->click();
    EXPECT_EQ(colour()->fill().colour, k_navy);
    colour()->click();
    EXPECT_EQ(colour()->fill().colour, k_navy);
    EXPECT_THAT(colours_.firsts, ElementsAre(default_lines()[0].colour, k_orange, k_navy));
    EXPECT_EQ(lines(), default_lines());
    press("Command1(0)");
    EXPECT_EQ(lines()[0].colour, k_navy);
}

TEST_F(LineAttributesTest, TheFillShowsOnlyForPlotsWithBands) {
    session_.settings.lines[0].fill = 2;
    open({.fills = false});
    EXPECT_FALSE(fill()->isVisible());
    EXPECT_FALSE(in<QLabel>(*line_window_, "Label2")->isVisible());
    EXPECT_EQ(colour_at(*colour(), {5, 5}), QColor(128, 0, 0));
    press("Command1(0)");
    EXPECT_EQ(lines()[0].fill, 2);
    open({.fills = true});
    EXPECT_TRUE(fill()->isVisible());
}

TEST_F(LineAttributesTest, APatternIsPaintedInTheColourOfTheLineOnWhite) {
    open({.fills = true});
    const auto colours = [this] {
        const QImage image = picture(*colour());
        std::set<QRgb> seen;
        for (int y = 3; y < image.height() - 3; ++y) {
            for (int x = 3; x < image.width() - 3; ++x) seen.insert(image.pixel(x, y));
        }
        return seen;
    };
    line()->setFocus();
    EXPECT_THAT(colours(), ElementsAre(qRgb(128, 0, 0)));
    fill()->setCurrentIndex(2);
    EXPECT_THAT(colours(), testing::UnorderedElementsAre(qRgb(128, 0, 0), qRgb(255, 255, 255)));
    fill()->setCurrentIndex(1);
    EXPECT_THAT(colours(), ElementsAre(qRgb(255, 255, 255)));
    press("Command1(0)");
    EXPECT_EQ(lines()[0].fill, 1);
}

TEST_F(LineAttributesTest, TheFrameOfAFieldReachesItsEdgesOnADenseScreen) {
    open({});
    line()->setFocus();
    QImage image(colour()->size() * 2, QImage::Format_RGB32);
    image.setDevicePixelRatio(2.0);
    colour()->render(&image);
    const QRgb frame = colour()->palette().color(QPalette::Mid).rgb();
    const int middle = image.height() / 2;
    EXPECT_EQ(image.pixel(0, middle), frame);
    EXPECT_EQ(image.pixel(1, middle), frame);
    EXPECT_NE(image.pixel(2, middle), frame);
    EXPECT_EQ(image.pixel(image.width() - 1, middle), frame);
    EXPECT_EQ(image.pixel(image.width() / 2, image.height() - 1), frame);
}

TEST_F(LineAttributesTest, DoneTellsTheLineAndCloses) {
    frmLineAtt& window = open({.edited_line = 2, .curves = 5});
    line()->setValue(4);
    press("Command1(0)");
    EXPECT_FALSE(window.isVisible());
    EXPECT_EQ(window.EditedLine(), 4);
}

TEST_F(LineAttributesTest, CancelAndTheCloseControlChangeNothing) {
    const auto change = [this] {
        width()->setValue(4);
        EXPECT_EQ(sample()->pen().width, 4);
    };
    open({.curves = 2});
    change();
    press("Command1(1)");
    EXPECT_FALSE(line_window_->isVisible());
    EXPECT_EQ(line_window_->EditedLine(), k_no_edited_line);
    open({.curves = 2});
    change();
    line_window_->close();
    EXPECT_EQ(line_window_->EditedLine(), k_no_edited_line);
    EXPECT_EQ(lines(), default_lines());
}

TEST_F(LineAttributesTest, ANumberThatIsStillBeingTypedCounts) {
    open({.curves = 12});
    line()->setFocus();
    line()->selectAll();
    QTest::keyClicks(line(), QStringLiteral("12"));
    press("Command1(0)");
    EXPECT_EQ(line_window_->EditedLine(), 12);
}

TEST_F(LineAttributesTest, HelpOpensItsTopic) {
    int topic = 0;
    session_.desktop.show_help_topic = [&](int number) { topic = number; };
    open({});
    press("Command1(2)");
    EXPECT_EQ(topic, 13);
}

TEST_F(LineAttributesTest, WhileQuickHelpIsOnEachControlIsExplainedAndNoneActs) {
    open({.fills = true});
    quick_help_.set_on(true);
    const std::vector<std::pair<QWidget*, std::string>> starts{
        {line(), "Line Number"},          {style(), "Line Style"}, {width(), "Line Width"},
        {colour(), "Current line color"}, {fill(), "Fill Style"},  {sample(), "A sample of the line"}};
    for (const auto& [widget, start] : starts) {
        QTest::mouseClick(widget, Qt::LeftButton);
        EXPECT_THAT(from_qt(line_window_->help_text()), testing::StartsWith(start));
    }
    EXPECT_TRUE(colours_.firsts.empty());
}

}  // namespace
}  // namespace nivora
