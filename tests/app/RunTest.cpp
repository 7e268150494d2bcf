// The compare run at the window: what is seen while it works, what is saved afterwards.
#include <array>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <QCheckBox>
#include <QPushButton>

#include "app/FormFixture.h"
#include "app/SaveComparison.h"
#include "app/SaveScript.h"
#include "support/RunProgram.h"
#include "support/TemporaryFolder.h"

namespace tavrel::app {
namespace {

/// Counts what is painted of a widget, and remembers what the pointer was.
class PaintWatch : public QObject {
  public:
    explicit PaintWatch(QWidget& widget) { widget.installEventFilter(this); }
    int painted = 0;
    bool underHourglass = false;

  protected:
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            ++painted;
            const QCursor* cursor = QApplication::overrideCursor();
            underHourglass = cursor != nullptr && cursor->shape() == Qt::WaitCursor;
        }
        return false;
    }
};

class Run : public FormFixture {
  protected:
    /// Opens the window with the two sample databases filled in.
    void OpenWithDatabases() {
        const testing::ProgramResult made = testing::RunCli({"demo", folder.Path()});
        ASSERT_EQ(made.exitCode, 0) << made.errors;
        std::istringstream paths(made.output);
        std::getline(paths, settings.values["최근DB_A"]);
        std::getline(paths, settings.values["최근DB_B"]);
        Open();
        QApplication::processEvents();  // what showing the window left to be painted
    }
    void ExpectDifferences() {
        const auto texts = messages.Texts();
        ASSERT_EQ(texts.size(), 1U);
        EXPECT_GT(std::atoi(texts[0].c_str()), 5);
        EXPECT_TRUE(texts[0].ends_with("건의 다른곳이 발견 되었습니다.")) << texts[0];
    }

    testing::TemporaryFolder folder;
};

TEST_F(Run, SurvivesALookupThatFails) {
    Open();
    Path(0).setText(QString(5000, 'x'));
    Click("cmdComp");
    const auto texts = messages.Texts();
    ASSERT_EQ(texts.size(), 1U);
    EXPECT_TRUE(texts[0].starts_with("Error ")) << texts[0];
    EXPECT_TRUE(form_->isVisible());
}

TEST_F(Run, ShowsItsProgressWithoutTakingInput) {
    OpenWithDatabases();
    PaintWatch phase(Find<QProgressBar>("ProgressBar1_0"));
    PaintWatch overall(Find<QProgressBar>("ProgressBar1_1"));
    PaintWatch grid(*Find<GridView>("spList").viewport());
    bool barsVisible = false;
    bool cellShown = true;
    messages.whileShown = [&] {
        barsVisible = Find<QProgressBar>("ProgressBar1_0").isVisible();
        cellShown = Find<GridView>("spList").model()->rowCount() > 0;
    };
    QApplication::postEvent(&Path(0), new QKeyEvent(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, "a"));
    form_->Form_KeyDown(keys::kF5, 0);
    ExpectDifferences();
    EXPECT_GE(phase.painted, 5);
    EXPECT_GE(overall.painted, 4);
    EXPECT_TRUE(phase.underHourglass);
    EXPECT_EQ(grid.painted, 0);
    EXPECT_TRUE(barsVisible);
    EXPECT_FALSE(cellShown);
    EXPECT_FALSE(TextOf("txtDBPath_0").ends_with("a"));
    EXPECT_EQ(Find<QProgressBar>("ProgressBar1_1").value(), 5);
    EXPECT_FALSE(Find<QProgressBar>("ProgressBar1_0").isVisible());
    EXPECT_EQ(QApplication::focusWidget(), &Find<GridView>("spList"));
    EXPECT_EQ(form_->Grid().Text(12, form_->Grid().ActiveRow()), "!");
    QApplication::processEvents();
    EXPECT_GE(grid.painted, 1);
    EXPECT_TRUE(TextOf("txtDBPath_0").ends_with("a") || TextOf("txtDBPath_0") == "a");
}

TEST_F(Run, ShowsTheMessageFieldWhileCopiesAreMade) {
    OpenWithDatabases();
    Find<QComboBox>("cmbApp").setCurrentIndex(1);
    PaintWatch field(Find<QLineEdit>("maketb"));
    copies.work = [&](workbench::WorkbenchControls& controls) {
        EXPECT_EQ(controls.AppCode, "breltII");
        controls.maketb->SetVisible(true);
        controls.maketb->SetFocus();
        EXPECT_TRUE(Find<QLineEdit>("maketb").isVisible());
        EXPECT_EQ(field.painted, 1);
        controls.maketb->SetVisible(false);
    };
    Click("cmdComp");
    EXPECT_FALSE(Find<QLineEdit>("maketb").isVisible());
    EXPECT_EQ(field.painted, 1);
}

TEST_F(Run, SavesTheSqlFromOneSideToTheOther) {
    OpenWithDatabases();
    QTest::keyClick(&Path(0), Qt::Key_F5);
    const compare::ComparisonResult result(form_->Grid(), 0);
    const std::array<ScriptSide, 2> sides = {
        {{std::string(result.PathA()), ""}, {std::string(result.PathB()), ""}}};
    for (const ScriptLine& direction : ScriptDirections()) {
        messages.Texts();
        files.answer = folder.File("바꿈.sql");
        SaveScript(sides, direction, folder.Path(), files, messages);
        std::ifstream in(files.answer);
        std::stringstream text;
        text << in.rdbuf();
        EXPECT_NE(text.str().find("-- A: " + sides[direction.from].path), std::string::npos);
        EXPECT_NE(text.str().find("TABLE"), std::string::npos) << text.str();
    }
    files.answer = folder.File("never.sql");
    messages.Texts();
    SaveScript({{{folder.File("none.mdb"), ""}, sides[1]}}, ScriptDirections()[0], "", files, messages);
    EXPECT_NE(messages.Texts().at(0).find("3024"), std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(files.answer));
}

TEST_F(Run, ShowsDifferencesOnlyAndSavesThem) {
    settings.values["체크박스옵션_2"] = "1";
    OpenWithDatabases();
    QTest::keyClick(&Path(0), Qt::Key_F5);
    const int shown = Find<GridView>("spList").model()->rowCount();
    EXPECT_LT(shown, form_->Grid().RowCount());
    EXPECT_EQ(messages.Texts(),
              std::vector<std::string>{std::to_string(shown) + "건의 다른곳이 발견 되었습니다."});
    const compare::ComparisonResult result(form_->Grid(), shown);
    const std::string field(form_->Grid().Text(5, form_->Grid().ActiveRow()));
    for (const ReportFormatLine& format : ReportFormats()) {
        files.answer = folder.File(std::string("결과") + format.suffix);
        SaveComparison(result, format, folder.Path(), files, messages);
        std::ifstream in(files.answer);
        std::stringstream text;
        text << in.rdbuf();
        EXPECT_NE(text.str().find(field), std::string::npos) << format.suffix;
        EXPECT_EQ(files.asked.back().name, std::string("dalvorii-96-dalvorii-133") + format.suffix);
    }
    files.answer = folder.File("no/such/folder.csv");
    SaveComparison(result, ReportFormats()[1], "", files, messages);
    const auto texts = messages.Texts();
    ASSERT_EQ(texts.size(), 1U);
    EXPECT_TRUE(texts[0].starts_with("파일을 저장할 수 없습니다.\r\n\r\n" + files.answer)) << texts[0];
}

}  // namespace
}  // namespace tavrel::app
