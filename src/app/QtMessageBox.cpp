#include "app/QtMessageBox.h"

#include <array>

#include <QApplication>
#include <QElapsedTimer>
#include <QMessageBox>
#include <QPushButton>
#include <QThread>

#include "app/text/QtText.h"

namespace tavrel::app {

namespace {

using platform::MessageAnswer;
using platform::MessageButtons;
using platform::MessageIcon;

struct IconLine {
    MessageIcon icon;
    QMessageBox::Icon shown;
};
constexpr std::array<IconLine, 5> kIcons = {{
    {MessageIcon::None, QMessageBox::NoIcon},
    {MessageIcon::Information, QMessageBox::Information},
    {MessageIcon::Question, QMessageBox::Question},
    {MessageIcon::Exclamation, QMessageBox::Warning},
    {MessageIcon::Critical, QMessageBox::Critical},
}};

struct ButtonLine {
    MessageButtons set;
    int place;  ///< 1 or 2, as the default button is named
    QMessageBox::StandardButton button;
    MessageAnswer answer;
    const char* text;
};
constexpr std::array<ButtonLine, 3> kButtons = {{
    {MessageButtons::Ok, 1, QMessageBox::Ok, MessageAnswer::Ok, "확인"},
    {MessageButtons::YesNo, 1, QMessageBox::Yes, MessageAnswer::Yes, "예(&Y)"},
    {MessageButtons::YesNo, 2, QMessageBox::No, MessageAnswer::No, "아니요(&N)"},
}};

/// An ordinary pointer while a box waits for its answer, though the window may show the hourglass.
class ArrowPointer {
  public:
    ArrowPointer() : needed_(QApplication::overrideCursor() != nullptr) {
        if (needed_) {
            QApplication::setOverrideCursor(Qt::ArrowCursor);
        }
    }
    ~ArrowPointer() {
        if (needed_) {
            QApplication::restoreOverrideCursor();
        }
    }
    ArrowPointer(const ArrowPointer&) = delete;
    ArrowPointer& operator=(const ArrowPointer&) = delete;

  private:
    bool needed_;
};

void AddButtons(QMessageBox& box, const platform::Message& message) {
    for (const ButtonLine& line : kButtons) {
        if (line.set != message.buttons) {
            continue;
        }
        QPushButton* button = box.addButton(line.button);
        button->setText(QString::fromUtf8(line.text));
        button->setIcon({});  // some desktops put one there
        if (line.place == message.defaultButton) {
            box.setDefaultButton(button);
        }
    }
}

void SetIcon(QMessageBox& box, MessageIcon icon) {
    for (const IconLine& line : kIcons) {
        if (line.icon == icon) {
            box.setIcon(line.shown);
        }
    }
}

/// Paints the window where the box stood, which on a desktop without compositor shows the box until then.
/// The command that asked goes on at once, and until it is done nothing else paints.  When the box is really
/// gone is told by the window's being active again; a window that does not become so is not waited for long.
void PaintBehindBox(const QWidget& window) {
    constexpr int kLongestWait = 300;  // ms
    constexpr int kStep = 5;           // ms
    QElapsedTimer waited;
    waited.start();
    const auto paint = [] { QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents); };
    paint();
    while (window.isVisible() && !window.isActiveWindow() && waited.elapsed() < kLongestWait) {
        QThread::msleep(kStep);
        paint();
    }
}

int Run(QMessageBox& box) {
    const ArrowPointer arrow;
    return box.exec();
}

}  // namespace

platform::MessageAnswer QtMessageBox::Show(const platform::Message& message) {
    QMessageBox box(&window_);
    box.setWindowTitle(ToQt(message.title));
    box.setTextFormat(Qt::PlainText);
    box.setText(ToQt(message.text).replace(QStringLiteral("\r\n"), QStringLiteral("\n")));
    SetIcon(box, message.icon);
    AddButtons(box, message);
    const int pressed = Run(box);
    PaintBehindBox(window_);
    for (const ButtonLine& line : kButtons) {
        if (line.set == message.buttons && line.button == pressed) {
            return line.answer;
        }
    }
    // Closed without a button: what does least.
    return message.buttons == MessageButtons::Ok ? MessageAnswer::Ok : MessageAnswer::No;
}

}  // namespace tavrel::app
