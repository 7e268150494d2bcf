// What is done with the listing and at the grid: its menu, saving it, swapping the sides, files dropped
// there.
#pragma once

#include <functional>
#include <string>

#include <QObject>

#include "app/FileChooser.h"
#include "app/FormControls.h"
#include "app/SaveComparison.h"
#include "app/SaveScript.h"
#include "workbench/CompareRun.h"

namespace tavrel::app {

class GridDesk : public QObject {
  public:
    struct Services {
        FormControls& controls;
        const grid::ResultGrid& grid;
        const workbench::CompareRun& run;
        FileChooser& files;
        platform::MessageBox& messages;
        std::function<void(const std::string&)> openFile;  ///< opens a saved page
    };
    /// Everything must outlive the desk but the grid's widget, which may go with it.
    explicit GridDesk(Services services);

    /// The entries of A and B change places: path, password and table.  The listing stays as it is.
    void SwapSides();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void ShowMenu(const QPoint& place);
    void Save(const ReportFormatLine& format);
    void SaveSql(const ScriptLine& direction);
    [[nodiscard]] compare::ComparisonResult Listing() const;
    [[nodiscard]] std::string Folder() const;
    void Drop(const QStringList& files, int x);
    [[nodiscard]] int SideAt(int x) const;

    Services services_;
    std::string saveFolder_;  ///< where the last listing was saved; empty before
};

}  // namespace tavrel::app
