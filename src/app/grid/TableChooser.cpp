#include "app/grid/TableChooser.h"

#include <algorithm>

#include <QDialog>
#include <QListWidget>
#include <QVBoxLayout>

#include "app/text/QtText.h"

namespace tavrel::app {

namespace {

constexpr QSize kListSize = {320, 360};

QString LineOf(const TableRows& table) {
    const QString name = ToQt(table.name);
    return table.differences == 0 ? name : QStringLiteral("%1  (%2)").arg(name).arg(table.differences);
}

}  // namespace

void OpenTableChooser(QWidget& parent, const std::vector<TableRows>& tables, int currentRow,
                      std::function<void(int modelRow)> choose) {
    auto* dialog = new QDialog(&parent);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(QStringLiteral("테이블 (다른 곳의 수)"));
    auto* list = new QListWidget;
    list->setAccessibleName(QStringLiteral("테이블"));
    for (const TableRows& table : tables) {
        auto* item = new QListWidgetItem(LineOf(table), list);
        item->setData(Qt::UserRole, table.firstRow);
        if (table.firstRow <= currentRow) {
            list->setCurrentItem(item);
        }
    }
    QObject::connect(list, &QListWidget::itemActivated, dialog,
                     [dialog, choose = std::move(choose)](const QListWidgetItem* item) {
                         dialog->accept();
                         choose(item->data(Qt::UserRole).toInt());
                     });
    auto* layout = new QVBoxLayout(dialog);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addWidget(list);
    dialog->resize(kListSize);
    dialog->open();
    list->scrollToItem(list->currentItem(), QAbstractItemView::PositionAtCenter);
}

}  // namespace tavrel::app
