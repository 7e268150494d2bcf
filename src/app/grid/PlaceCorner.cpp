#include "app/grid/PlaceCorner.h"

#include <QVBoxLayout>

namespace tavrel::app {

PlaceCorner::PlaceCorner(QWidget& corner) : QLabel(&corner) {
    setObjectName(QStringLiteral("place"));
    auto* layout = new QVBoxLayout(&corner);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(this);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setTextFormat(Qt::PlainText);
    setAlignment(Qt::AlignCenter);
}

void PlaceCorner::Show(const RowMarks& marks, int currentRow) {
    const int place = marks.PlaceOf(currentRow);
    const std::size_t count = marks.List().size();
    // In two lines, which any number of differences fits.
    setText(count == 0 ? QString()
                       : (place == 0 ? QStringLiteral("–") : QString::number(place)) +
                             QStringLiteral("\n/ %1").arg(count));
    parentWidget()->setToolTip(marks.InWords());
}

}  // namespace tavrel::app
