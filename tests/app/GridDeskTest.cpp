// What the grid's menu does at the window.
#include <QMenu>
#include <QTimer>
#include <gmock/gmock.h>

#include "app/FormFixture.h"
#include "support/RunProgram.h"
#include "support/TemporaryFolder.h"

namespace tavrel::app {
namespace {

using Texts = std::vector<std::string>;

class GridDeskAtWork : public FormFixture {
  protected:
    void Choose(const char* command) {
        QTimer::singleShot(0, [command] {
            auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            ASSERT_NE(menu, nullptr);
            for (QAction* action : menu->actions()) {
                if (action->text() == QString::fromUtf8(command)) {
                    menu->close();
                    action->trigger();
                }
            }
        });
        Find<GridView>("spList").onContextMenu(form_->mapToGlobal(QPoint(100, 200)));
    }

    testing::TemporaryFolder folder;
};

TEST_F(GridDeskAtWork, SavesBesideTheLastSavedAndOffersThePage) {
    ASSERT_EQ(testing::RunCli({"demo", folder.Path()}).exitCode, 0);
    settings.values = {{"최근DB_A", folder.File("demo-a.mdb")}, {"최근DB_B", folder.File("demo-b.mdb")}};
    std::filesystem::create_directory(folder.File("저장"));
    Open();
    QTest::keyClick(&Path(0), Qt::Key_F5);
    messages.heard.clear();
    const std::string page = folder.File("저장/x.html");
    files.answer = page;
    Choose("HTML로 저장…");
    EXPECT_EQ(files.asked.back().name, "demo-a-demo-b.html");
    EXPECT_EQ(files.asked.back().folder, folder.Path());
    EXPECT_EQ(messages.heard.back().text, "저장하였습니다. 지금 열어 보시겠습니까?");
    EXPECT_EQ(opened, Texts{});
    messages.answer = platform::MessageAnswer::Yes;
    Choose("HTML로 저장…");
    EXPECT_EQ(opened, Texts{page});
    files.answer = folder.File("none/x.html");
    Choose("HTML로 저장…");
    EXPECT_EQ(messages.heard.size(), 3U);
    files.answer = "";
    Choose("CSV로 저장…");
    EXPECT_EQ(files.asked.back().folder, folder.File("저장"));
    EXPECT_EQ(messages.heard.size(), 3U);
    EXPECT_EQ(opened, Texts{page});
}

TEST_F(GridDeskAtWork, SwapsTheEntriesOfBothSides) {
    settings.values = {{"최근DB_A", "/a.mdb"},
                       {"최근DB_B", "/b.mdb"},
                       {"최근테이블_A", "t"},
                       {"최근테이블_B", "u"},
                       {"최근DB_A암호", "p"}};
    Open();
    FillGrid("!!");
    Choose("A와 B 바꾸기");
    EXPECT_EQ(form_->Grid().RowCount(), 2);
    const std::map<std::string, std::string> swapped = {{"최근DB_A", "/b.mdb"}, {"최근DB_B", "/a.mdb"},
                                                        {"최근테이블_A", "u"},  {"최근테이블_B", "t"},
                                                        {"최근DB_A암호", ""},   {"최근DB_B암호", "p"}};
    for (const auto& [key, value] : swapped) {
        EXPECT_EQ(settings.values[key], value) << key;
    }
    EXPECT_EQ(TextOf("txtDBPath_0"), "/b.mdb");
}

}  // namespace
}  // namespace tavrel::app
