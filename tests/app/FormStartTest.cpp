// Starting, remembering, choosing a product.
#include <QCheckBox>

#include "app/FormFixture.h"
#include "app/logic/FormSettings.h"

namespace tavrel::app {
namespace {

using Written = std::vector<std::pair<std::string, std::string>>;

class FormStart : public FormFixture {
  protected:
    QComboBox& List() { return Find<QComboBox>("cmbApp"); }
    QLineEdit& Typed(const char* box) { return *Find<QComboBox>(box).lineEdit(); }
};

TEST_F(FormStart, IsEmptyTheFirstTime) {
    Open();
    EXPECT_EQ(FromQt(form_->windowTitle()), "Tavrel v1.0.1 (Made by Ardel)");
    for (const char* field : {"txtDBPath_0", "txtDBPath_1", "txtPwd_0", "txtPwd_1"}) {
        EXPECT_EQ(TextOf(field), "") << field;
    }
    EXPECT_EQ(List().currentIndex(), 0);
    EXPECT_EQ(List().currentText(), "[제품선택]");
    EXPECT_EQ(form_->AppCode(), "");
    EXPECT_FALSE(Find<QCheckBox>("Check1_0").isChecked());
    EXPECT_TRUE(settings.written.empty());
}

TEST_F(FormStart, RestoresWithoutWritingOrChoosingAProduct) {
    settings.values = {{"최근DB_A", "C:\\VintrelII\\DBS\\dbMain.mdb"},
                       {"최근DB_B", "/b.mdb"},
                       {"최근테이블_A", "고객"},
                       {"최근테이블_B", "t"},
                       {"최근DB_A암호", "=비밀 "},
                       {"최근DB_B암호", "b"},
                       {"체크박스옵션_0", "1"},
                       {"체크박스옵션_1", "yes"},
                       {"체크박스옵션_2", "1"}};
    Open();
    EXPECT_EQ(TextOf("txtDBPath_0"), "C:\\VintrelII\\DBS\\dbMain.mdb");
    EXPECT_EQ(TextOf("txtDBPath_1"), "/b.mdb");
    EXPECT_EQ(Typed("cmbTblName_0").text(), "고객");
    EXPECT_EQ(Typed("cmbTblName_1").text(), "t");
    EXPECT_EQ(TextOf("txtPwd_0"), "=비밀 ");
    EXPECT_EQ(TextOf("txtPwd_1"), "b");
    EXPECT_TRUE(Find<QCheckBox>("Check1_0").isChecked());
    EXPECT_FALSE(Find<QCheckBox>("Check1_1").isChecked());
    EXPECT_TRUE(Find<QCheckBox>("Check1_2").isChecked());
    EXPECT_EQ(List().currentIndex(), 0);
    EXPECT_TRUE(settings.written.empty());

    QTest::keyClicks(&Path(1), "x");
    EXPECT_EQ(List().currentText(), "VintrelII");
    EXPECT_EQ(form_->AppCode(), "KilmII");
}

TEST_F(FormStart, WritesEachChangeAtOnceAndNothingElse) {
    Open();
    QTest::keyClicks(&Path(0), "ab");
    QTest::keyClicks(&Path(1), "c");
    QTest::keyClicks(&Typed("cmbTblName_0"), "t");
    QTest::keyClicks(&Typed("cmbTblName_1"), "u");
    QTest::keyClicks(&Find<QLineEdit>("txtPwd_0"), "p");
    QTest::keyClicks(&Find<QLineEdit>("txtPwd_1"), "q");
    const Written typed = {{"최근DB_A", "a"},     {"최근DB_A", "ab"},    {"최근DB_B", "c"},
                           {"최근테이블_A", "t"}, {"최근테이블_B", "u"}, {"최근DB_A암호", "p"},
                           {"최근DB_B암호", "q"}};
    EXPECT_EQ(std::exchange(settings.written, {}), typed);
    Click("Check1_2");
    Click("Check1_2");
    const Written clicked = {{"체크박스옵션_2", "1"}, {"체크박스옵션_2", "0"}};
    EXPECT_EQ(std::exchange(settings.written, {}), clicked);
    QTest::keyClick(&Path(0), Qt::Key_F5);
    form_->close();
    EXPECT_TRUE(settings.written.empty());
}

TEST_F(FormStart, SyncsWhenTheTypingPausesBeforeItWorksAndWhenItCloses) {
    using Synced = std::vector<std::size_t>;
    Open();
    QTest::keyClicks(&Path(0), "ab");
    EXPECT_EQ(settings.synced, Synced{});
    PauseTyping();
    EXPECT_EQ(settings.synced, Synced{2});
    QTest::keyClicks(&Path(0), "c");
    QTest::keyClick(&Path(0), Qt::Key_F5);
    EXPECT_EQ(settings.synced, (Synced{2, 3}));
    QTest::keyClicks(&Path(1), "d");
    QTest::keyClick(&Path(1), Qt::Key_Escape);
    EXPECT_EQ(settings.synced, (Synced{2, 3, 4}));
}

TEST_F(FormStart, TellsOnceThatNothingCanBeRemembered) {
    Open();
    settings.failing = true;
    QTest::keyClicks(&Path(0), "abc");
    EXPECT_EQ(messages.Texts().size(), 1U);
    EXPECT_EQ(TextOf("txtDBPath_0"), "abc");
}

TEST_F(FormStart, AProductOffersItsPathToAnEmptyDbAOnly) {
    Open();
    QTest::keyClick(&List(), Qt::Key_Down);
    EXPECT_EQ(form_->AppCode(), "breltII");
    EXPECT_EQ(TextOf("txtDBPath_0"), R"(C:\DalvorII\DBS\dbMain.mdb)");
    EXPECT_EQ(settings.values["최근DB_A"], R"(C:\DalvorII\DBS\dbMain.mdb)");
    EXPECT_EQ(TextOf("txtDBPath_1"), "");
    Path(0).setText("/x.mdb");
    List().setCurrentIndex(4);
    EXPECT_EQ(form_->AppCode(), "norbixII");
    EXPECT_EQ(TextOf("txtDBPath_0"), "/x.mdb");
    List().setCurrentIndex(0);
    EXPECT_EQ(form_->AppCode(), "");
}

TEST_F(FormStart, APathWithoutPatternLeavesTheProduct) {
    Open();
    List().setCurrentIndex(4);
    Path(0).setText("/data/x.mdb");
    EXPECT_EQ(List().currentText(), "PellamII");
    Path(0).setText("/srv/DalvorII/project.mdb");
    EXPECT_EQ(List().currentText(), "DalvorII");
}

TEST_F(FormStart, EndsWhenANewerVersionTakesOver) {
    settings.values["최근DB_A"] = "x";
    Form1 form({.settings = settings, .messages = &messages, .runAutoUpdate = [](auto&) { return false; }});
    EXPECT_FALSE(form.Form_Load());
    EXPECT_EQ(form.windowTitle(), "");
    EXPECT_EQ(form.findChild<QLineEdit*>("txtDBPath_0")->text(), "");
}

}  // namespace
}  // namespace tavrel::app
