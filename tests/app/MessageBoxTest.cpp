// Message boxes and the grid's menu as they appear on the screen.
#include <QApplication>
#include <QDialogButtonBox>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

#include "app/GridMenu.h"
#include "app/KoreanWords.h"
#include "app/QtMessageBox.h"
#include "app/text/QtText.h"

namespace tavrel::app {
namespace {

using platform::MessageAnswer;
using platform::MessageButtons;
using platform::MessageIcon;

struct Seen {
    std::string title;
    std::string text;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    std::vector<std::string> buttons;
    std::string defaultButton;
};

class MessageBoxes : public ::testing::Test {
  protected:
    /// Shows the message, presses the key, returns what was answered.
    MessageAnswer Answer(const platform::Message& message, Qt::Key key) {
        QTimer::singleShot(0, [&] {
            auto* box = dynamic_cast<QMessageBox*>(QApplication::activeModalWidget());
            ASSERT_NE(box, nullptr);
            seen = {FromQt(box->windowTitle()), FromQt(box->text()), box->icon(), {}, {}};
            for (const QAbstractButton* button : box->buttons()) {
                seen.buttons.push_back(FromQt(button->text()));
            }
            seen.defaultButton = box->defaultButton() != nullptr ? FromQt(box->defaultButton()->text()) : "";
            hourglass = QApplication::overrideCursor() != nullptr &&
                        QApplication::overrideCursor()->shape() == Qt::WaitCursor;
            QTest::keyClick(box, key);
        });
        return QtMessageBox(window).Show(message);
    }

    QWidget window;
    Seen seen;
    bool hourglass = false;
};

TEST_F(MessageBoxes, CarryTextIconAndButtons) {
    QApplication::setOverrideCursor(Qt::WaitCursor);
    EXPECT_EQ(Answer({.text = "파일을 찾을 수 없습니다.\r\n\r\n<b>&x.mdb"}, Qt::Key_Return),
              MessageAnswer::Ok);
    EXPECT_FALSE(hourglass);
    EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
    QApplication::restoreOverrideCursor();
    EXPECT_EQ(seen.title, "Tavrel");
    EXPECT_EQ(seen.text, "파일을 찾을 수 없습니다.\n\n<b>&x.mdb");
    EXPECT_EQ(seen.icon, QMessageBox::NoIcon);
    EXPECT_EQ(seen.buttons, std::vector<std::string>{"확인"});
    EXPECT_EQ(Answer({.text = "!", .icon = MessageIcon::Exclamation}, Qt::Key_Escape), MessageAnswer::Ok);
    EXPECT_EQ(seen.icon, QMessageBox::Warning);
    Answer({.text = "i", .icon = MessageIcon::Information}, Qt::Key_Escape);
    EXPECT_EQ(seen.icon, QMessageBox::Information);
}

TEST_F(MessageBoxes, AnswerQuestionsWithTheDefaultButton) {
    const platform::Message question = {.text = "?", .buttons = MessageButtons::YesNo, .defaultButton = 2};
    EXPECT_EQ(Answer(question, Qt::Key_Return), MessageAnswer::No);
    EXPECT_EQ(seen.defaultButton, "아니요(&N)");
    EXPECT_EQ(seen.buttons.size(), 2U);
    EXPECT_EQ(Answer(question, Qt::Key_Y), MessageAnswer::Yes);
    EXPECT_EQ(Answer(question, Qt::Key_Escape), MessageAnswer::No);
    EXPECT_EQ(Answer({.text = "?", .buttons = MessageButtons::YesNo}, Qt::Key_Return), MessageAnswer::Yes);
}

TEST_F(MessageBoxes, AreGoneFromTheScreenBeforeTheWorkGoesOn) {
    window.setAutoFillBackground(true);
    window.setPalette(QPalette(Qt::green));
    window.resize(900, 700);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    QTimer::singleShot(0,
                       [] { ASSERT_TRUE(QTest::qWaitForWindowActive(QApplication::activeModalWidget())); });
    Answer({.text = "정말?", .buttons = MessageButtons::YesNo}, Qt::Key_Y);
    const QImage shown = window.screen()->grabWindow(window.winId()).toImage();  // as the work finds it
    ASSERT_FALSE(shown.isNull());
    const QRgb back = shown.pixel(2, 2);
    for (int y = 0; y < shown.height(); y += 5) {
        for (int x = 0; x < shown.width(); x += 5) {
            ASSERT_EQ(shown.pixel(x, y), back) << x << ", " << y;
        }
    }
}

TEST_F(MessageBoxes, TheToolkitSpeaksKorean) {
    const QDialogButtonBox buttons(QDialogButtonBox::Cancel);
    EXPECT_TRUE(buttons.button(QDialogButtonBox::Cancel)->text().startsWith("취소"));
    const CommonWords words;  // as where the toolkit's own translation is missing
    EXPECT_EQ(FromQt(words.translate("QPlatformTheme", "Cancel")), "취소");
    EXPECT_EQ(FromQt(words.translate("QLineEdit", "&Paste")), "붙여넣기(&P)");
    EXPECT_TRUE(words.translate("QLineEdit", "no such word").isNull());
}

TEST_F(MessageBoxes, TheGridsMenuOffersCopyingAndSaving) {
    std::vector<std::string> done;
    const GridMenuActions actions = {
        .copy = [&] { done.emplace_back("copy"); },
        .copyWithHeaders = [&] { done.emplace_back("with headers"); },
        .copyCell = [&] { done.emplace_back("cell"); },
        .copyDiffering = [&] { done.emplace_back("differing"); },
        .selectAll = [&] { done.emplace_back("all"); },
        .swapSides = [&] { done.emplace_back("swap"); },
        .save = [&](const ReportFormatLine& f) { done.emplace_back(f.suffix); },
        .script = [&](const ScriptLine& d) { done.push_back("from " + std::to_string(d.from)); }};
    const auto menu = MakeGridMenu(window, true, actions);
    for (QAction* action : menu->actions()) {
        action->trigger();
    }
    EXPECT_EQ(done, (std::vector<std::string>{"copy", "with headers", "cell", "differing", "all", ".html",
                                              ".csv", ".json", "from 0", "from 1", "swap"}));
    done.clear();
    const auto empty = MakeGridMenu(window, false, actions);
    for (QAction* action : empty->actions()) {
        action->trigger();
    }
    EXPECT_EQ(done, std::vector<std::string>{"swap"});
}

}  // namespace
}  // namespace tavrel::app
