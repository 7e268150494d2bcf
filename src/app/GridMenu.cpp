#include "app/GridMenu.h"

namespace tavrel::app {

namespace {

/// The shortcut is only shown: the grid itself takes the key.
QAction* AddEdit(QMenu& menu, const char* text, const QKeySequence& key,
                 const std::function<void()>& action) {
    QAction* added = menu.addAction(QString::fromUtf8(text), action);
    added->setShortcut(key);
    added->setShortcutContext(Qt::WidgetShortcut);
    added->setShortcutVisibleInContextMenu(true);
    return added;
}

}  // namespace

std::unique_ptr<QMenu> MakeGridMenu(QWidget& parent, bool filled, const GridMenuActions& actions) {
    auto menu = std::make_unique<QMenu>(&parent);
    AddEdit(*menu, "복사", QKeySequence::Copy, actions.copy);
    AddEdit(*menu, "제목과 함께 복사", Qt::CTRL | Qt::SHIFT | Qt::Key_C, actions.copyWithHeaders);
    AddEdit(*menu, "셀 내용 복사", {}, actions.copyCell);
    AddEdit(*menu, "다른 행만 복사", {}, actions.copyDiffering);
    AddEdit(*menu, "모두 선택", QKeySequence::SelectAll, actions.selectAll);
    menu->addSeparator();
    for (QAction* action : menu->actions()) {
        action->setEnabled(filled);
    }
    for (const ReportFormatLine& format : ReportFormats()) {
        QAction* added = menu->addAction(QString::fromUtf8(format.command),
                                         [save = actions.save, &format] { save(format); });
        added->setEnabled(filled && actions.save);
    }
    menu->addSeparator();
    for (const ScriptLine& direction : ScriptDirections()) {
        QAction* added = menu->addAction(QString::fromUtf8(direction.command),
                                         [script = actions.script, &direction] { script(direction); });
        added->setEnabled(filled && actions.script);
    }
    menu->addSeparator();
    menu->addAction(QStringLiteral("A와 B 바꾸기"), actions.swapSides);
    return menu;
}

}  // namespace tavrel::app
