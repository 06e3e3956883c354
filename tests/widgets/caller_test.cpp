#include "widgets/caller.h"

#include <gtest/gtest.h>

#include <QWidget>

namespace nivora {
namespace {

TEST(CallingWindow, WhileNoneIsActiveItIsTheVisibleOneThatWasActiveLast) {
    QWidget first;
    QWidget second;
    QWidget third;
    // Windows that do not take the keyboard: none of them becomes active.
    for (QWidget* window : {&first, &second, &third}) {
        window->setAttribute(Qt::WA_ShowWithoutActivating);
        window->setWindowFlag(Qt::WindowDoesNotAcceptFocus);
        window->show();
    }
    note_activation(first);
    note_activation(third);
    note_activation(second);
    EXPECT_EQ(calling_window(), &second);
    note_activation(third);
    EXPECT_EQ(calling_window(), &third);
    third.hide();
    EXPECT_EQ(calling_window(), &second);
    note_activation(first);
    EXPECT_EQ(calling_window(), &first);
}

}  // namespace
}  // namespace nivora
