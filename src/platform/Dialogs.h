// What a command shows while it works and when it ends: small interfaces that the window, the command line
// and the tests each fill in their own way.
#pragma once

#include <string>

namespace tavrel::platform {

inline constexpr const char* kProgramTitle = "Tavrel";

enum class MessageIcon { None, Information, Question, Exclamation, Critical };
enum class MessageButtons { Ok, YesNo };
enum class MessageAnswer { Ok, Yes, No };

struct Message {
    std::string text;
    MessageIcon icon = MessageIcon::None;
    MessageButtons buttons = MessageButtons::Ok;
    int defaultButton = 1;  ///< 1 or 2
    std::string title = kProgramTitle;
};

/// Where message boxes go.
class MessageBox {
  public:
    virtual ~MessageBox() = default;
    virtual MessageAnswer Show(const Message& message) = 0;
    void Say(const std::string& text) { Show(Message{.text = text}); }
};

/// A progress bar: Value runs from 0 to Maximum.
class ProgressBar {
  public:
    virtual ~ProgressBar() = default;
    virtual void SetMaximum(int maximum) = 0;
    virtual void SetValue(int value) = 0;
    [[nodiscard]] virtual int Value() const = 0;
    virtual void SetVisible(bool visible) = 0;
    void Advance(int steps = 1) { SetValue(Value() + steps); }
};

/// A text field, a combo box's text or a check box: something with a text and perhaps the focus.
class TextField {
  public:
    virtual ~TextField() = default;
    [[nodiscard]] virtual std::string Text() const = 0;
    virtual void SetFocus() = 0;
};

class OptionBox {
  public:
    virtual ~OptionBox() = default;
    /// 0 unticked, 1 ticked.
    [[nodiscard]] virtual int Value() const = 0;
};

/// The mouse pointer of the window.
class Pointer {
  public:
    virtual ~Pointer() = default;
    virtual void SetHourglass(bool on) = 0;
};

}  // namespace tavrel::platform
