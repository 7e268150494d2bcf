#include "app/grid/FindLine.h"

#include <algorithm>

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QToolButton>

namespace tavrel::app {

namespace {

constexpr int kTextWidth = 180;

void AddButton(QHBoxLayout& line, const char* sign, const char* name, const std::function<void()>& action) {
    auto* button = new QToolButton;
    button->setText(QString::fromUtf8(sign));
    button->setToolTip(QString::fromUtf8(name));
    button->setAccessibleName(QString::fromUtf8(name));
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::NoFocus);
    QObject::connect(button, &QToolButton::clicked, button, action);
    line.addWidget(button);
}

}  // namespace

FindLine::FindLine(const GridModel& model, QWidget* parent)
    : QFrame(parent), model_(model), text_(new QLineEdit), count_(new QLabel) {
    setObjectName(QStringLiteral("findLine"));
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    text_->setPlaceholderText(QStringLiteral("테이블 또는 필드 찾기"));
    text_->setAccessibleName(QStringLiteral("테이블 또는 필드 찾기"));
    text_->setMinimumWidth(kTextWidth);
    text_->installEventFilter(this);
    count_->setAlignment(Qt::AlignCenter);
    auto* line = new QHBoxLayout(this);
    line->setContentsMargins(4, 3, 4, 3);
    line->setSpacing(3);
    line->addWidget(text_);
    line->addWidget(count_);
    AddButton(*line, "▲", "이전 찾기", [this] { Step(-1); });
    AddButton(*line, "▼", "다음 찾기", [this] { Step(1); });
    AddButton(*line, "✕", "닫기", [this] { onClose(); });
    connect(text_, &QLineEdit::textChanged, this, [this] { Typed(); });
    hide();
}

void FindLine::Open(int modelRow) {
    from_ = std::max(modelRow, 0);
    known_ = false;
    show();
    raise();
    text_->setFocus();
    text_->selectAll();
    Search();
}

void FindLine::Forget() {
    known_ = false;
    hits_.clear();
    from_ = 0;
    if (isVisible()) {
        Search();
    }
}

void FindLine::Place(const QRect& room, const QRect& hit) {
    const QSize size = sizeHint().boundedTo(room.size());
    QRect place({room.right() + 1 - size.width(), room.bottom() + 1 - size.height()}, size);
    if (place.intersects(hit)) {
        place.moveTop(room.top());
    }
    setGeometry(place);
}

/// The first hit from the row on is the one that counts; without one there, the first of all.
void FindLine::Search() {
    if (!known_) {
        known_ = true;
        hits_ = FindHits(model_, text_->text());
        const auto first = std::ranges::lower_bound(hits_, from_, {}, &Hit::modelRow);
        shown_ = first == hits_.end() ? 0 : static_cast<std::size_t>(first - hits_.begin());
    }
    count_->setText(text_->text().isEmpty() ? QString()
                    : hits_.empty()         ? QStringLiteral("없음")
                                            : QStringLiteral("%1 / %2").arg(shown_ + 1).arg(hits_.size()));
}

void FindLine::Show() {
    Search();
    if (!hits_.empty()) {
        onHit(hits_[shown_]);
    }
}

void FindLine::Typed() {
    known_ = false;
    Show();
}

void FindLine::Step(int by) {
    if (known_ && !hits_.empty()) {
        const auto count = static_cast<int>(hits_.size());
        shown_ = static_cast<std::size_t>((static_cast<int>(shown_) + by + count) % count);
    }
    Show();
}

bool FindLine::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        const auto* press = static_cast<const QKeyEvent*>(event);
        if (press->key() == Qt::Key_Return || press->key() == Qt::Key_Enter) {
            Step(press->modifiers().testFlag(Qt::ShiftModifier) ? -1 : 1);
            return true;
        }
    }
    return QFrame::eventFilter(watched, event);
}

}  // namespace tavrel::app
