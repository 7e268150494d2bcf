// What happens when the user does something.
#include <QCoreApplication>
#include <QDir>

#include "app/Form1.h"
#include "app/logic/DatabasePath.h"
#include "app/logic/GridCommands.h"
#include "app/logic/Products.h"
#include "text/Error.h"
#include "workbench/CompactCommand.h"
#include "workbench/OpenInAccess.h"

namespace tavrel::app {

namespace {

/// In both cases: some desktops' dialogs take a pattern by the letter.
constexpr const char* kDatabaseFilter = "MDB File (mdb) (*.mdb *.MDB)";

std::string ProgramFolder() {
    return FromQt(QDir::toNativeSeparators(QCoreApplication::applicationDirPath()));
}

}  // namespace

std::string Form1::PathOf(int index) const {
    return workbench_.txtDBPath[static_cast<std::size_t>(index)]->Text();
}

void Form1::Form_KeyDown(std::int16_t keyCode, std::int16_t shift) {
    if (keyCode == keys::kF3) {
        cmdMove_Click(shift == keys::kShift ? 1 : 0);
    } else if (keyCode == keys::kF5) {
        cmdComp_Click();
    } else if (keyCode == keys::kEscape && !controls_.Grid().CloseFindLine()) {
        close();
    }
}

void Form1::cmdComp_Click() {
    settings_.Flush();  // the run may take long, and the typing has ended
    run_.cmdComp_Click();
}

void Form1::cmdMove_Click(std::int16_t index) {
    app::cmdMove_Click(index, grid_, messages_);
}

/// The listing was made under the old options, so it goes; the user starts the next one.
void Form1::Check1_Click(int index) {
    if (!isVisible()) {
        return;
    }
    grid_.SetRowCount(0);
    const int value = workbench_.Check1[static_cast<std::size_t>(index)]->Value();
    settings_.Write(Entry(Remembered::Option0, index), std::to_string(value));
}

void Form1::cmbApp_Click() {
    if (!isVisible()) {
        return;
    }
    const Product& product = ProductOfItem(FromQt(controls_.Box("cmbApp").currentText()));
    workbench_.AppCode = product.code;
    if (PathOf(0).empty()) {
        controls_.Field("txtDBPath", 0).setText(ToQt(product.defaultPath));
    }
}

/// Whichever field changed, DB A's path chooses the product.
void Form1::txtDBPath_Change(int index) {
    if (!isVisible()) {
        return;
    }
    settings_.Write(Entry(Remembered::PathA, index), PathOf(index));
    if (const auto item = ProductOfPath(PathOf(0))) {
        controls_.Box("cmbApp").setCurrentIndex(*item);
    }
}

void Form1::txtPwd_Change(int index) {
    if (isVisible()) {
        settings_.Write(Entry(Remembered::PasswordA, index),
                        workbench_.txtPwd[static_cast<std::size_t>(index)]->Text());
    }
}

void Form1::cmbTblName_Change(int index) {
    if (isVisible()) {
        settings_.Write(Entry(Remembered::TableA, index),
                        workbench_.cmbTblName[static_cast<std::size_t>(index)]->Text());
    }
}

void Form1::cmdDB_Click(int index) {
    const std::string path = BrowseDbFile(BrowseStart(PathOf(index), PathOf(1 - index)));
    if (!path.empty()) {
        controls_.Field("txtDBPath", index).setText(ToQt(path));
    }
}

std::string Form1::BrowseDbFile(const std::string& startPath) {
    if (LastBrowseDir.empty()) {
        LastBrowseDir = ProgramFolder();
    }
    std::string chosen = files_.AskOpen({startPath, LastBrowseDir, kDatabaseFilter});
    if (!chosen.empty()) {
        LastBrowseDir = FolderOf(chosen);
    }
    return chosen;
}

bool Form1::ValidateDbPath(const std::string& path, int index) {
    return app::ValidateDbPath(path, *workbench_.txtDBPath[static_cast<std::size_t>(index)], messages_);
}

void Form1::cmdAccess_Click(int index) {
    workbench::cmdAccess_Click(
        *workbench_.txtDBPath[static_cast<std::size_t>(index)],
        [this, index](const std::string& path) { return ValidateDbPath(path, index); },
        [this](const std::string& path) { OpenDatabase(path); });
}

void Form1::OpenDatabase(const std::string& path) {
    if (services_.openDatabase) {
        services_.openDatabase(path);
    } else {
        opener_.Open(path);
    }
}

void Form1::cmdCompact_Click(int index) {
    settings_.Flush();
    workbench::cmdCompact_Click(
        {.txtDBPath = workbench_.txtDBPath[static_cast<std::size_t>(index)],
         .pointer = &pointer_,
         .messages = &messages_,
         .validateDbPath = [this, index](const std::string& path) { return ValidateDbPath(path, index); }});
}

}  // namespace tavrel::app
