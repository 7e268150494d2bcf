#include "app/KeyCommands.h"

#include <algorithm>
#include <array>

#include <QCoreApplication>

namespace tavrel::app {

namespace {

struct KeyLine {
    Qt::Key key;
    std::int16_t code;
    bool repeats;  ///< holding the key is pressing it again and again
};
constexpr std::array<KeyLine, 3> kKeys = {
    {{Qt::Key_F3, keys::kF3, true}, {Qt::Key_F5, keys::kF5, true}, {Qt::Key_Escape, keys::kEscape, false}}};

struct ShiftLine {
    Qt::KeyboardModifier modifier;
    std::int16_t state;
};
constexpr std::array<ShiftLine, 3> kShifts = {
    {{Qt::ShiftModifier, keys::kShift}, {Qt::ControlModifier, keys::kCtrl}, {Qt::AltModifier, keys::kAlt}}};

std::int16_t ShiftState(Qt::KeyboardModifiers modifiers) {
    int state = 0;
    for (const ShiftLine& line : kShifts) {
        state |= modifiers.testFlag(line.modifier) ? line.state : 0;
    }
    return static_cast<std::int16_t>(state);
}

}  // namespace

void HeldKey::Take(const QKeyEvent& event) {
    constexpr qint64 kLongestToRepeat = 1000;  // ms; no desktop lets a held key wait longer
    if (event.type() == QEvent::KeyRelease) {
        down_ = event.isAutoRepeat();
        released_ = event.timestamp();
        return;
    }
    const bool repeated = event.isAutoRepeat() || (released_ != 0 && event.timestamp() == released_);
    held_ = repeated || (down_ && lastPress_.elapsed() < kLongestToRepeat);
    down_ = true;
    lastPress_.start();
}

KeyCommands::KeyCommands(QWidget& form, Handler handler) : form_(form), handler_(std::move(handler)) {
    QCoreApplication::instance()->installEventFilter(this);
}

bool KeyCommands::eventFilter(QObject* watched, QEvent* event) {
    const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease;
    if (isKey && watched->isWindowType() && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
        escape_.Take(*static_cast<QKeyEvent*>(event));
    }
    if (event->type() != QEvent::KeyPress || !watched->isWidgetType() ||
        static_cast<QWidget*>(watched)->window() != &form_) {
        return false;
    }
    const auto* press = static_cast<const QKeyEvent*>(event);
    const auto line = std::ranges::find(kKeys, press->key(), &KeyLine::key);
    if (line == kKeys.end()) {
        return false;
    }
    // The Esc that closed a box is often still held when the window is back; it is not to close that, too.
    if (line->repeats || !(press->isAutoRepeat() || escape_.IsHeld())) {
        handler_(line->code, ShiftState(press->modifiers()));
    }
    return true;
}

}  // namespace tavrel::app
