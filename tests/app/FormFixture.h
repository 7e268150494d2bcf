// A window with everything around it in the test's hands.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include <QApplication>
#include <QTest>
#include <gtest/gtest.h>

#include "app/Form1.h"
#include "app/text/QtText.h"
#include "platform/Settings.h"
#include "text/Error.h"

namespace tavrel::app {

struct MemorySettings : platform::SettingsStore {
    std::map<std::string, std::string> values;  ///< by key
    std::vector<std::pair<std::string, std::string>> written;
    std::vector<std::size_t> synced;  ///< count of the changes written before each Sync
    bool failing = false;

    std::string GetSetting(const std::string& application, const std::string& section,
                           const std::string& key) override {
        EXPECT_EQ(application + "/" + section, "Tavrel/환경설정");
        return values[key];
    }
    void SaveSetting(const std::string& application, const std::string& section, const std::string& key,
                     const std::string& value) override {
        EXPECT_EQ(application + "/" + section, "Tavrel/환경설정");
        if (failing) {
            throw MakeError(errors::kDiskFull);
        }
        values[key] = value;
        written.emplace_back(key, value);
    }
    void Sync() override { synced.push_back(written.size()); }
};

struct HeardMessages : platform::MessageBox {
    std::vector<platform::Message> heard;
    std::function<void()> whileShown;
    platform::MessageAnswer answer = platform::MessageAnswer::No;  ///< to questions
    platform::MessageAnswer Show(const platform::Message& message) override {
        heard.push_back(message);
        if (whileShown) {
            whileShown();
        }
        return message.buttons == platform::MessageButtons::Ok ? platform::MessageAnswer::Ok : answer;
    }
    /// The texts since the last call.
    std::vector<std::string> Texts() {
        std::vector<std::string> texts;
        for (const platform::Message& message : std::exchange(heard, {})) {
            EXPECT_EQ(message.icon, platform::MessageIcon::None);
            EXPECT_EQ(message.buttons, platform::MessageButtons::Ok);
            EXPECT_EQ(message.title, "Tavrel");
            texts.push_back(message.text);
        }
        return texts;
    }
};

struct ChosenFiles : FileChooser {
    std::vector<FileQuestion> asked;
    std::string answer;
    std::string AskOpen(const FileQuestion& question) override {
        asked.push_back(question);
        return answer;
    }
    std::string AskSave(const FileQuestion& question) override { return AskOpen(question); }
};

/// Stands in for the working copies: does what it is told while the copies would be made.
struct FakeCopies : workbench::WorkingCopies {
    std::function<void(workbench::WorkbenchControls&)> work;
    bool Prepare(workbench::WorkbenchControls& controls, std::string&, std::string&) override {
        if (work) {
            work(controls);
        }
        return false;
    }
};

class FormFixture : public ::testing::Test {
  protected:
    void TearDown() override { EXPECT_EQ(QApplication::overrideCursor(), nullptr); }

    Form1& Open() {
        form_ = std::make_unique<Form1>(
            FormServices{.settings = settings,
                         .messages = &messages,
                         .files = &files,
                         .copies = &copies,
                         .openDatabase = [this](const std::string& path) { opened.push_back(path); }});
        EXPECT_TRUE(form_->Form_Load());
        form_->show();
        form_->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(form_.get()));
        return *form_;
    }

    template <typename Widget>
    Widget& Find(const char* name) {
        auto* found = form_->findChild<Widget*>(QString::fromLatin1(name));
        if (found == nullptr) {
            throw std::logic_error(name);
        }
        return *found;
    }
    QLineEdit& Path(int side) { return Find<QLineEdit>(side == 0 ? "txtDBPath_0" : "txtDBPath_1"); }
    std::string TextOf(const char* field) { return FromQt(Find<QLineEdit>(field).text()); }
    void Click(const char* button) {
        QTest::mouseClick(&Find<QAbstractButton>(button), Qt::LeftButton, {}, {8, 8});
    }

    static void PauseTyping() { QTest::qWait(kTypingPause + 100); }

    /// Rows of the listing with a mark where `marks` has one; made as a comparison makes them.
    void FillGrid(const std::string& marks) {
        auto& grid = const_cast<grid::ResultGrid&>(form_->Grid());
        grid.SetRepaint(false);
        grid.SetRowCount(static_cast<int>(marks.size()));
        for (int row = 1; row <= grid.RowCount(); ++row) {
            grid.PutText(1, row, "table");
            grid.PutText(5, row, "field" + std::to_string(row));
            grid.PutText(12, row, marks[static_cast<std::size_t>(row - 1)] == '!' ? "!" : "");
        }
        grid.SetRepaint(true);
    }
    void Activate(int column, int row) {
        const_cast<grid::ResultGrid&>(form_->Grid()).ActivateCell(column, row);
    }

    MemorySettings settings;
    HeardMessages messages;
    ChosenFiles files;
    FakeCopies copies;
    std::vector<std::string> opened;
    std::unique_ptr<Form1> form_;
};

}  // namespace tavrel::app
