#include "app/GridDesk.h"

#include <QCoreApplication>
#include <QDir>
#include <QDropEvent>

#include "app/DroppedFiles.h"
#include "app/GridMenu.h"
#include "app/logic/DatabasePath.h"
#include "app/text/QtText.h"

namespace tavrel::app {

namespace {

constexpr const char* kOpenPage = "저장하였습니다. 지금 열어 보시겠습니까?";

std::string FolderBeside(const std::string& database) {
    return database.empty() ? FromQt(QDir::toNativeSeparators(QCoreApplication::applicationDirPath()))
                            : FolderOf(database);
}

/// The second field gets what the first showed; the other way round, too.
template <typename Get, typename Set>
void Swap(Get get, Set set) {
    const QString a = get(0);
    const QString b = get(1);
    set(0, b);
    set(1, a);
}

}  // namespace

GridDesk::GridDesk(Services services) : services_(std::move(services)) {
    GridView& view = services_.controls.Grid();
    view.onContextMenu = [this](const QPoint& place) { ShowMenu(place); };
    view.viewport()->setAcceptDrops(true);
    view.viewport()->installEventFilter(this);
}

void GridDesk::ShowMenu(const QPoint& place) {
    GridView& view = services_.controls.Grid();
    GridMenuActions actions = {.copy = [&view] { view.CopySelection(); },
                               .copyWithHeaders = [&view] { view.CopyWithHeaders(); },
                               .copyCell = [&view] { view.CopyCell(); },
                               .copyDiffering = [&view] { view.CopyDiffering(); },
                               .selectAll = [&view] { view.selectAll(); },
                               .swapSides = [this] { SwapSides(); },
                               .save = {},
                               .script = {}};
    if (services_.run.IsListed()) {
        actions.save = [this](const ReportFormatLine& format) { Save(format); };
        actions.script = [this](const ScriptLine& direction) { SaveSql(direction); };
    }
    MakeGridMenu(view, services_.grid.RowCount() > 0, actions)->exec(place);
}

compare::ComparisonResult GridDesk::Listing() const {
    return {services_.grid, services_.run.Differences()};
}

std::string GridDesk::Folder() const {
    return saveFolder_.empty() ? FolderBeside(FromQt(services_.controls.Field("txtDBPath", 0).text()))
                               : saveFolder_;
}

void GridDesk::SaveSql(const ScriptLine& direction) {
    const compare::ComparisonResult listing = Listing();
    const auto password = [this](int side) {
        return FromQt(services_.controls.Field("txtPwd", side).text());
    };
    SaveScript({{{std::string(listing.PathA()), password(0)}, {std::string(listing.PathB()), password(1)}}},
               direction, Folder(), services_.files, services_.messages);
}

void GridDesk::Save(const ReportFormatLine& format) {
    const std::string saved =
        SaveComparison(Listing(), format, Folder(), services_.files, services_.messages);
    if (saved.empty()) {
        return;
    }
    saveFolder_ = FolderOf(saved);
    const bool isPage = format.name == "html";
    if (isPage && services_.messages.Show({.text = kOpenPage, .buttons = platform::MessageButtons::YesNo}) ==
                      platform::MessageAnswer::Yes) {
        services_.openFile(saved);
    }
}

void GridDesk::SwapSides() {
    FormControls& controls = services_.controls;
    for (const char* name : {"txtDBPath", "txtPwd"}) {
        Swap([&](int side) { return controls.Field(name, side).text(); },
             [&](int side, const QString& text) { controls.Field(name, side).setText(text); });
    }
    Swap([&](int side) { return controls.Box("cmbTblName", side).currentText(); },
         [&](int side, const QString& text) { controls.Box("cmbTblName", side).setEditText(text); });
}

int GridDesk::SideAt(int x) const {
    const GridView& view = services_.controls.Grid();
    const int middle = grid::kCompareColumn - 1;
    return x < view.columnViewportPosition(middle) + view.columnWidth(middle) / 2 ? 0 : 1;
}

/// Two files are A and B; one is the side's on which it is dropped.
void GridDesk::Drop(const QStringList& files, int x) {
    if (files.size() == 1) {
        services_.controls.Field("txtDBPath", SideAt(x)).setText(files[0]);
        return;
    }
    for (const int side : {0, 1}) {
        services_.controls.Field("txtDBPath", side).setText(files[side]);
    }
}

bool GridDesk::eventFilter(QObject* watched, QEvent* event) {
    const bool dropped = event->type() == QEvent::Drop;
    if (!dropped && event->type() != QEvent::DragEnter && event->type() != QEvent::DragMove) {
        return QObject::eventFilter(watched, event);
    }
    auto& drag = static_cast<QDropEvent&>(*event);
    const QStringList files = DroppedFiles(*drag.mimeData());
    if (files.isEmpty()) {
        drag.ignore();
        return true;
    }
    drag.acceptProposedAction();
    if (dropped) {
        Drop(files, static_cast<int>(drag.position().x()));
    }
    return true;
}

}  // namespace tavrel::app
