// The program's window: controls, layout, events.  The work is done by the commands that it calls.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include <QWidget>

#include "app/ControlAdapters.h"
#include "app/DatabaseOpener.h"
#include "app/FileChooser.h"
#include "app/FormControls.h"
#include "app/GridDesk.h"
#include "app/KeyCommands.h"
#include "app/QtMessageBox.h"
#include "app/SettingsKeeper.h"
#include "workbench/CompareRun.h"

namespace tavrel::app {

/// What the window gets from outside.  Nothing is owned; what is pointed to must outlive the window.
struct FormServices {
    platform::SettingsStore& settings;
    platform::MessageBox* messages = nullptr;    ///< null: boxes on the screen
    FileChooser* files = nullptr;                ///< null: dialogs on the screen
    workbench::WorkingCopies* copies = nullptr;  ///< null: no product can be compared
    /// False: a newer version takes over.  Empty: no update.
    std::function<bool(platform::MessageBox&)> runAutoUpdate = {};
    /// Opens a database in the program that belongs to it; empty: the system does, and a message says when it
    /// has none.
    std::function<void(const std::string&)> openDatabase = {};
};

class Form1 : public QWidget {
  public:
    explicit Form1(FormServices services);
    ~Form1() override;

    /// The start-up, to be run once, before the window is shown.  False: the program is to end.
    bool Form_Load();

    void Form_KeyDown(std::int16_t keyCode, std::int16_t shift);
    void cmdComp_Click();
    void cmdMove_Click(std::int16_t index);
    void cmdDB_Click(int index);
    void cmdAccess_Click(int index);
    void cmdCompact_Click(int index);
    void Check1_Click(int index);
    void cmbApp_Click();
    void txtDBPath_Change(int index);
    void txtPwd_Change(int index);
    void cmbTblName_Change(int index);

    /// The chosen path; empty when the user cancels.
    std::string BrowseDbFile(const std::string& startPath);
    bool ValidateDbPath(const std::string& path, int index);

    [[nodiscard]] const grid::ResultGrid& Grid() const { return grid_; }
    [[nodiscard]] const std::string& AppCode() const { return workbench_.AppCode; }

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

  private:
    void Form_Resize();
    void ConnectControls();
    void ConnectSide(int index);
    void RestoreSettings();
    void OpenDatabase(const std::string& path);
    [[nodiscard]] std::string PathOf(int index) const;

    FormServices services_;
    QtMessageBox ownMessages_;
    QtFileChooser ownFiles_;
    platform::MessageBox& messages_;
    FileChooser& files_;

    grid::ResultGrid grid_;
    FormControls controls_;
    WindowPointer pointer_;
    struct Adapters;
    std::unique_ptr<Adapters> adapters_;
    workbench::WorkbenchControls workbench_;
    workbench::CompareRun run_;
    KeyCommands keyCommands_;

    SettingsKeeper settings_;
    DatabaseOpener opener_;
    GridDesk desk_;
    std::string LastBrowseDir;
};

}  // namespace tavrel::app
