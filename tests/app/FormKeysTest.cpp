// Keys, navigation, path fields, browsing, the buttons of one side.
#include <QCheckBox>
#include <QDropEvent>
#include <QMimeData>
#include <QTimer>
#include <QUrl>
#include <QWheelEvent>
#include <gmock/gmock.h>

#include "app/FormFixture.h"
#include "jet/database/Database.h"
#include "support/TemporaryFolder.h"

namespace tavrel::app {
namespace {

constexpr const char* kNoMore = "더이상 비교결과에서 다른곳을 찾을 수 없습니다.";
using Texts = std::vector<std::string>;

MATCHER_P(HasText, text, "") {
    return arg.text == text;
}

class FormKeys : public FormFixture {
  protected:
    [[nodiscard]] int ActiveRow() const { return form_->Grid().ActiveRow(); }
};

TEST_F(FormKeys, StepFromMarkToMarkWithoutWrapping) {
    struct Step {
        int from;
        Qt::KeyboardModifiers modifiers;
        int to;  ///< 0: there is none
    };
    const Step steps[] = {
        {5, Qt::NoModifier, 9},      {5, Qt::ShiftModifier, 3},
        {5, Qt::ControlModifier, 9}, {5, Qt::ShiftModifier | Qt::ControlModifier, 9},
        {5, Qt::AltModifier, 9},     {5, Qt::ShiftModifier | Qt::AltModifier, 9},
        {9, Qt::NoModifier, 0},      {9, Qt::ShiftModifier, 3},
        {3, Qt::ShiftModifier, 0},   {1, Qt::ShiftModifier, 0},
        {10, Qt::NoModifier, 0},     {2, Qt::NoModifier, 3},
    };
    Open();
    FillGrid("  !     ! ");
    for (const Step& step : steps) {
        Activate(7, step.from);
        Path(1).setFocus();
        QTest::keyClick(&Path(1), Qt::Key_F3, step.modifiers);
        EXPECT_EQ(ActiveRow(), step.to == 0 ? step.from : step.to);
        EXPECT_EQ(form_->Grid().ActiveColumn(), step.to == 0 ? 7 : 12);
        EXPECT_EQ(messages.Texts(), step.to == 0 ? Texts{kNoMore} : Texts{});
        EXPECT_EQ(QApplication::focusWidget(), &Find<GridView>("spList"));
    }
}

TEST_F(FormKeys, ButtonsStepToo) {
    Open();
    FillGrid(" ! !");
    Click("cmdMove_0");
    Click("cmdMove_0");
    EXPECT_EQ(ActiveRow(), 4);
    EXPECT_EQ(Find<GridView>("spList").currentIndex().row(), 3);
    Click("cmdMove_1");
    EXPECT_EQ(ActiveRow(), 2);
}

TEST_F(FormKeys, WorkWhicheverControlHasTheFocus) {
    Open();
    const auto widgets = form_->findChildren<QWidget*>();
    int tried = 0;
    for (QWidget* widget : widgets) {
        if (widget->focusPolicy() == Qt::NoFocus || !widget->isVisible() || widget->objectName().isEmpty()) {
            continue;
        }
        widget->setFocus();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_F5, Qt::ControlModifier);
        EXPECT_EQ(messages.Texts(), Texts{"DataBase 파일을 선택하세요."}) << FromQt(widget->objectName());
        EXPECT_EQ(QApplication::focusWidget(), &Path(0));
        ++tried;
    }
    EXPECT_EQ(tried, 20);
    QTest::keyClick(&Path(1), Qt::Key_F4);
    QTest::keyClick(&Path(1), Qt::Key_Return);
    EXPECT_TRUE(messages.Texts().empty());
    QTest::keyClick(&Path(1), Qt::Key_Escape, Qt::ShiftModifier);
    EXPECT_FALSE(form_->isVisible());
}

TEST_F(FormKeys, AHeldEscapeClosesNothingMore) {
    Open();
    QKeyEvent held(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier, QString(), true);
    QApplication::sendEvent(&Path(0), &held);
    EXPECT_TRUE(form_->isVisible());
    QWidget box;  // gets the press, and is gone when the release comes
    box.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&box));
    QTest::keyPress(box.windowHandle(), Qt::Key_Escape);
    QTest::keyPress(form_->windowHandle(), Qt::Key_Escape);
    EXPECT_TRUE(form_->isVisible());
    FillGrid("! !");
    Activate(12, 1);
    QKeyEvent stepping(QEvent::KeyPress, Qt::Key_F3, Qt::NoModifier, QString(), true);
    QApplication::sendEvent(&Path(0), &stepping);
    EXPECT_EQ(ActiveRow(), 3);
    QTest::keyRelease(form_->windowHandle(), Qt::Key_Escape);
    QTest::qWait(5);
    QTest::keyPress(form_->windowHandle(), Qt::Key_Escape);
    EXPECT_FALSE(form_->isVisible());
    QTest::keyRelease(form_->windowHandle(), Qt::Key_Escape);
}

TEST_F(FormKeys, EscapeClosesTheFindLineFirst) {
    Open();
    QTest::keyClick(&Path(0), Qt::Key_F, Qt::ControlModifier);
    QWidget* focused = QApplication::focusWidget();
    ASSERT_NE(focused, &Path(0));
    QTest::keyClick(focused, Qt::Key_Escape);
    EXPECT_FALSE(focused->isVisible());
    EXPECT_TRUE(form_->isVisible());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    EXPECT_FALSE(form_->isVisible());
}

TEST_F(FormKeys, TheWheelTurnsNoListThatItPassesOver) {
    Open();
    auto& list = Find<QComboBox>("cmbApp");
    const auto wheel = [](QWidget& widget) {
        const QPoint place(10, 5);
        QWheelEvent event(place, widget.mapToGlobal(place), {}, {0, -120}, {}, {}, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&widget, &event);
    };
    Path(1).setFocus();
    wheel(list);
    EXPECT_EQ(list.currentIndex(), 0);
    EXPECT_EQ(TextOf("txtDBPath_0"), "");
    wheel(Find<QComboBox>("cmbTblName_0"));
    EXPECT_EQ(QApplication::focusWidget(), &Path(1));
    list.setFocus();
    wheel(list);
    EXPECT_EQ(list.currentIndex(), 1);
}

TEST_F(FormKeys, AnErrorBoxLeavesThePathSelected) {
    settings.values = {{"최근DB_A", "/none.mdb"}, {"최근DB_B", "/no.mdb"}};
    Form1 form({.settings = settings});  // with boxes on the screen
    ASSERT_TRUE(form.Form_Load());
    form.show();
    form.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
    auto& path = *form.findChild<QLineEdit*>("txtDBPath_0");
    for (QWidget* focused :
         {static_cast<QWidget*>(form.findChild<GridView*>()), static_cast<QWidget*>(&path)}) {
        focused->setFocus();
        path.deselect();
        QTimer::singleShot(0, [] {
            QWidget* box = QApplication::activeModalWidget();
            ASSERT_NE(box, nullptr);
            EXPECT_TRUE(QTest::qWaitForWindowActive(box));
            QTest::keyClick(box, Qt::Key_Return);
        });
        QTest::keyClick(focused, Qt::Key_F5);
        if (QGuiApplication::platformName() == "offscreen") {
            form.activateWindow();  // nothing else does there
        }
        ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
        EXPECT_EQ(QApplication::focusWidget(), &path);
        EXPECT_EQ(FromQt(path.selectedText()), "/none.mdb");
    }
}

TEST_F(FormKeys, TabFollowsTheReading) {
    Open();
    std::vector<std::string> order;
    Find<QPushButton>("cmdComp").setFocus();
    for (const ControlEntry& control : ControlTable()) {
        if (control.kind == ControlKind::Panel || control.kind == ControlKind::MessageField ||
            control.kind == ControlKind::ProgressBar) {
            continue;
        }
        EXPECT_EQ(FromQt(QApplication::focusWidget()->objectName()), ObjectName(control));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
}

TEST_F(FormKeys, AnOptionEmptiesTheGrid) {
    Open();
    FillGrid("!!");
    Click("Check1_1");
    EXPECT_EQ(form_->Grid().RowCount(), 0);
    EXPECT_EQ(Find<GridView>("spList").model()->rowCount(), 0);
    EXPECT_EQ(settings.values["체크박스옵션_1"], "1");
}

TEST_F(FormKeys, FocusSelectsTheWholePath) {
    Open();
    Path(0).setText("/abc.mdb");
    Path(1).setText("/xyz.mdb");
    Path(0).setFocus();
    EXPECT_EQ(Path(0).selectedText(), "/abc.mdb");
    QTest::mouseClick(&Path(1), Qt::LeftButton, {}, {20, 8});
    EXPECT_EQ(Path(1).selectedText(), "/xyz.mdb");
    QTest::mouseClick(&Path(1), Qt::LeftButton, {}, {20, 8});
    EXPECT_EQ(Path(1).selectedText(), "");
}

TEST_F(FormKeys, ThePasswordShowsStars) {
    Open();
    auto& field = Find<QLineEdit>("txtPwd_0");
    QTest::keyClicks(&field, "ab");
    EXPECT_EQ(field.displayText(), "**");
}

class FormDrop : public FormKeys {
  protected:
    struct Result {
        bool entered;
        bool dropped;
    };
    static Result Drop(QWidget& target, const QMimeData& data, QPoint place = {5, 5}) {
        QDragEnterEvent enter(place, Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(&target, &enter);
        QDropEvent drop(place, Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(&target, &drop);
        return {enter.isAccepted(), drop.isAccepted()};
    }
};

TEST_F(FormDrop, TakesTheFirstFileOnly) {
    Open();
    QMimeData data;
    data.setUrls(
        {QUrl::fromLocalFile("/d/첫.mdb"), QUrl::fromLocalFile("/d/2.mdb"), QUrl::fromLocalFile("/d/3.mdb")});
    EXPECT_TRUE(Drop(Path(1), data).dropped);
    EXPECT_EQ(TextOf("txtDBPath_1"), "/d/첫.mdb");
    EXPECT_EQ(settings.values["최근DB_B"], "/d/첫.mdb");
}

TEST_F(FormDrop, FilesOnTheGridFillASideOrBoth) {
    Open();
    QWidget& grid = *Find<GridView>("spList").viewport();
    QMimeData one;
    one.setUrls({QUrl::fromLocalFile("/d/하나.mdb")});
    EXPECT_TRUE(Drop(grid, one, {grid.width() - 20, 9}).dropped);
    EXPECT_EQ(TextOf("txtDBPath_0") + ";" + TextOf("txtDBPath_1"), ";/d/하나.mdb");
    EXPECT_TRUE(Drop(grid, one, {20, 9}).entered);
    EXPECT_EQ(TextOf("txtDBPath_0"), "/d/하나.mdb");
    QMimeData two;
    two.setUrls({QUrl::fromLocalFile("/d/1.mdb"), QUrl::fromLocalFile("/d/2.mdb")});
    EXPECT_TRUE(Drop(grid, two, {20, 9}).dropped);
    EXPECT_EQ(TextOf("txtDBPath_0") + ";" + TextOf("txtDBPath_1"), "/d/1.mdb;/d/2.mdb");
    QMimeData text;
    text.setText("/d/1.mdb");
    EXPECT_FALSE(Drop(grid, text).dropped);
}

TEST_F(FormDrop, RefusesWhatIsNoFile) {
    Open();
    QMimeData text;
    text.setText("/d/1.mdb");
    QMimeData web;
    web.setUrls({QUrl("https://example.org/1.mdb")});
    for (const QMimeData* data : {&text, &web}) {
        const Result result = Drop(Path(0), *data);
        EXPECT_FALSE(result.entered);
        EXPECT_FALSE(result.dropped);
    }
    EXPECT_EQ(TextOf("txtDBPath_0"), "");
}

TEST_F(FormKeys, BrowsingRemembersTheFolder) {
    Open();
    const std::string program = FromQt(QCoreApplication::applicationDirPath());
    Click("cmdDB_0");  // cancelled
    files.answer = "/data/x.mdb";
    Click("cmdDB_0");
    files.answer = "";
    Click("cmdDB_1");
    Path(0).setText("  ");
    Click("cmdDB_0");
    ASSERT_EQ(files.asked.size(), 4U);
    const std::pair<std::string, std::string> expected[] = {
        {"", program}, {"", program}, {"/data/x.mdb", "/data"}, {"", "/data"}};
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(files.asked[i].name, expected[i].first) << i;
        EXPECT_EQ(files.asked[i].folder, expected[i].second) << i;
        EXPECT_EQ(files.asked[i].filter, "MDB File (mdb) (*.mdb *.MDB)");
    }
    EXPECT_EQ(TextOf("txtDBPath_0"), "  ");
    EXPECT_EQ(settings.values["최근DB_A"], "  ");
}

TEST_F(FormKeys, CommandsOfOneSideCheckItsPath) {
    const testing::TemporaryFolder folder;
    const std::string path = folder.File("b.mdb");
    jet::Database::Create(path, {.sortOrder = jet::kSortKorean, .password = "kq5183", .created = {}})
        ->Flush();
    Open();
    Path(0).setText("  ");
    Path(1).setText(ToQt(path));
    Click("cmdAccess_0");
    EXPECT_EQ(messages.Texts(), Texts{"DB경로가 입력되지 않았습니다."});
    EXPECT_EQ(QApplication::focusWidget(), &Path(0));
    Click("cmdAccess_1");
    EXPECT_EQ(opened, Texts{path});
    Click("cmdCompact_1");
    messages.answer = platform::MessageAnswer::Yes;
    Click("cmdCompact_0");
    Click("cmdCompact_1");
    const std::string question = "정말 압축 및 복구를 하시겠습니까?";
    EXPECT_THAT(
        messages.heard,
        ::testing::ElementsAre(HasText(question), HasText(question), HasText("DB경로가 입력되지 않았습니다."),
                               HasText(question), HasText("압축 및 복구를 완료하였습니다.")));
}

}  // namespace
}  // namespace tavrel::app
