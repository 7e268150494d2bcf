// Key presses that the window gets before the control that has the focus.
#pragma once

#include <cstdint>
#include <functional>

#include <QElapsedTimer>
#include <QKeyEvent>
#include <QObject>
#include <QWidget>

namespace tavrel::app {

/// Key codes and shift states as the form's handlers take them.
namespace keys {
inline constexpr std::int16_t kEscape = 27;
inline constexpr std::int16_t kF3 = 114;
inline constexpr std::int16_t kF5 = 116;
inline constexpr std::int16_t kShift = 1;
inline constexpr std::int16_t kCtrl = 2;
inline constexpr std::int16_t kAlt = 4;
}  // namespace keys

/// Tells a fresh press of a key from one that is still held.  Not every such press is marked as a repeated
/// one: when the first closes a box, its release often goes to the box that is gone.
class HeldKey {
  public:
    /// Takes the key's events as the program's windows get them.
    void Take(const QKeyEvent& event);
    /// The press that was taken last is of a key that was held before.
    [[nodiscard]] bool IsHeld() const { return held_; }

  private:
    bool down_ = false;
    bool held_ = false;
    quint64 released_ = 0;     ///< timestamp of the last release
    QElapsedTimer lastPress_;  ///< since then
};

/// Watches the whole program for as long as it lives; calls the handler for presses of the form's own keys
/// within the form, which then go nowhere else.
class KeyCommands : public QObject {
  public:
    using Handler = std::function<void(std::int16_t keyCode, std::int16_t shift)>;
    KeyCommands(QWidget& form, Handler handler);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    QWidget& form_;
    Handler handler_;
    HeldKey escape_;
};

}  // namespace tavrel::app
