// The menu entries that the first pages of the help tell a new user to choose exist.

#include "session/help_texts.h"
#include "tests/shell/main_window_fixture.h"
#include "widgets/qt_text.h"

#include <gmock/gmock.h>

#include <QMenu>
#include <QMenuBar>
#include <QRegularExpression>

namespace nivora {
namespace {

class FirstStepsTest : public MainWindowTest {
protected:
    /// The page for the first hour, and the numbered steps from a new basin to a result.
    [[nodiscard]] QStringList pages() const {
        const QString main = to_qt(Help_Text(program_.path(), 0));
        const auto begin = main.indexOf(QStringLiteral("FROM A NEW BASIN TO A RESULT"));
        const auto end = main.indexOf(QStringLiteral("HOW THE MODEL COMPUTES A DAY"));
        EXPECT_GE(begin, 0);
        EXPECT_GT(end, begin);
        return {to_qt(Help_Text(program_.path(), 1)), main.mid(begin, end - begin)};
    }
    [[nodiscard]] static QString plain(const QAction* action) {
        return action->text().remove(QLatin1Char('&')).remove(QStringLiteral(" ..."));
    }
    /// Whether a text begins with an entry of a menu; if a comma follows,
    /// an entry of its submenu must come next.
    [[nodiscard]] static bool leads_to_an_entry(const QMenu* menu, const QString& text) {
        for (const QAction* entry : menu->actions()) {
            const QString caption = plain(entry);
            if (caption.isEmpty() || !text.startsWith(caption)) continue;
            const QString rest = text.mid(caption.size());
            const bool goes_on = rest.size() > 2 && rest.startsWith(QLatin1Char(',')) && rest.at(2).isUpper();
            if (!goes_on) return true;
            if (entry->menu() != nullptr && leads_to_an_entry(entry->menu(), rest.mid(2))) return true;
        }
        return false;
    }
};

TEST_F(FirstStepsTest, EveryEntryThatTheyNameIsInItsMenu) {
    int mentions = 0;
    for (const QString& page : pages()) {
        for (const QAction* action : window_->menuBar()->actions()) {
            if (action->isSeparator()) continue;
            const QRegularExpression mention(QStringLiteral("\\b%1, ([A-Z][^.]*)").arg(plain(action)));
            for (auto found = mention.globalMatch(page); found.hasNext();) {
                const QString named = found.next().captured(1);
                ++mentions;
                EXPECT_TRUE(action->menu() != nullptr && leads_to_an_entry(action->menu(), named))
                    << plain(action).toStdString() << ", " << named.toStdString();
            }
        }
    }
    EXPECT_GT(mentions, 8);
}

TEST_F(FirstStepsTest, TheyLeadToNoEmptyMenu) {
    int empty_menus = 0;
    for (const QAction* action : window_->menuBar()->actions()) {
        if (action->isSeparator() || (action->menu() != nullptr && !action->menu()->isEmpty())) continue;
        ++empty_menus;
        const QRegularExpression way(
            QStringLiteral("\\b(open|choose|with|in|menus?|and) %1\\b").arg(plain(action)));
        for (const QString& page : pages()) {
            EXPECT_FALSE(page.contains(way)) << way.match(page).captured(0).toStdString();
        }
    }
    EXPECT_GT(empty_menus, 0);
}

}  // namespace
}  // namespace nivora
