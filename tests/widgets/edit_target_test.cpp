// What Cut, Copy and Paste of an Edit menu work on.

#include "widgets/edit_target.h"

#include "tests/widgets/grid_fixture.h"

namespace nivora {
namespace {

class EditTargetTest : public GridTest {
protected:
    EditTargetTest() : target_(window_.get()) { beside_->setFocus(); }

    EditTarget target_;
};

TEST_F(EditTargetTest, ABoxWithTheFocusIsTheTarget) {
    beside_->setText(QStringLiteral("Alder Creek"));
    beside_->setSelection(0, 5);
    target_.cut();
    EXPECT_EQ(clipboard(), "Alder");
    EXPECT_EQ(from_qt(beside_->text()), " Creek");
    beside_->end(false);
    target_.paste();
    EXPECT_EQ(from_qt(beside_->text()), " CreekAlder");
    beside_->setSelection(1, 5);
    target_.copy();
    EXPECT_EQ(clipboard(), "Creek");
    EXPECT_EQ(edits_, 0);
}

TEST_F(EditTargetTest, AGridWithTheFocusIsTheTarget) {
    grid_->setFocus();
    go_to(2, Column::k_integer);
    target_.cut();
    EXPECT_EQ(clipboard(), "2\n");
    EXPECT_EQ(at(2, Column::k_integer), "0");
    go_to(4, Column::k_integer);
    target_.paste();
    EXPECT_EQ(at(4, Column::k_integer), "2");
}

TEST_F(EditTargetTest, TheEditorOfACellIsTheTargetWhileItIsOpen) {
    grid_->setFocus();
    go_to(2, Column::k_text);
    key(Qt::Key_F2);
    put_on_clipboard(QStringLiteral("X"));
    ASSERT_NE(editor(), nullptr);
    editor()->end(false);
    target_.paste();
    ASSERT_NE(editor(), nullptr);
    EXPECT_EQ(from_qt(editor()->text()), "t2X");
    key(Qt::Key_Return);
    EXPECT_EQ(at(2, Column::k_text), "t2X");
}

TEST_F(EditTargetTest, AMenuBarThatTakesTheFocusLeavesTheTargetAsItWas) {
    grid_->setFocus();
    go_to(2, Column::k_text);
    key(Qt::Key_F2);
    window_->menuBar()->setFocus(Qt::MenuBarFocusReason);
    target_.copy();
    EXPECT_EQ(clipboard(), "t2\n");
}

TEST_F(EditTargetTest, AnythingElseThatHasTheFocusIsNoTarget) {
    put_on_clipboard(QStringLiteral("77"));
    auto* other = new QWidget(window_->centralWidget());
    other->setFocusPolicy(Qt::StrongFocus);
    other->show();
    go_to(2, Column::k_integer);
    other->setFocus();
    target_.paste();
    EXPECT_EQ(at(2, Column::k_integer), "2");
    EXPECT_EQ(pastes_, 0);
}

}  // namespace
}  // namespace nivora
