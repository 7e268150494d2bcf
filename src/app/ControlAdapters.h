// The window's widgets as the commands see controls.  While a command works the event loop is not entered, so
// what must be seen at once is painted at once.
#pragma once

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QProgressBar>

#include "app/text/QtText.h"
#include "workbench/WorkbenchControls.h"

namespace tavrel::app {

class LineEditText : public platform::TextField {
  public:
    explicit LineEditText(QLineEdit& field) : field_(field) {}
    [[nodiscard]] std::string Text() const override { return FromQt(field_.text()); }
    /// The text is selected, so that typing replaces it.  The field's own coming of the focus is not waited
    /// for: after a message box the window is often not active again yet, and the focus comes with that.
    void SetFocus() override {
        field_.setFocus();
        field_.selectAll();
    }

  private:
    QLineEdit& field_;
};

class ComboText : public platform::TextField {
  public:
    explicit ComboText(QComboBox& box) : box_(box) {}
    [[nodiscard]] std::string Text() const override { return FromQt(box_.currentText()); }
    void SetFocus() override { box_.setFocus(); }

  private:
    QComboBox& box_;
};

class CheckBoxOption : public platform::OptionBox {
  public:
    explicit CheckBoxOption(QCheckBox& box) : box_(box) {}
    [[nodiscard]] int Value() const override { return box_.isChecked() ? 1 : 0; }

  private:
    QCheckBox& box_;
};

class ProgressBarView : public platform::ProgressBar {
  public:
    explicit ProgressBarView(QProgressBar& bar) : bar_(bar) {}

    void SetMaximum(int maximum) override {
        // A range of nothing would be shown as "busy", for ever in motion.
        bar_.setRange(0, std::max(maximum, 1));
        Show();
    }
    void SetValue(int value) override {
        value_ = value;
        Show();
    }
    [[nodiscard]] int Value() const override { return value_; }
    void SetVisible(bool visible) override {
        bar_.setVisible(visible);
        Show();
    }

  private:
    void Show() {
        bar_.setValue(std::clamp(value_, 0, bar_.maximum()));
        if (bar_.isVisible()) {
            bar_.repaint();
        }
    }

    QProgressBar& bar_;
    int value_ = 0;
};

class MessageFieldView : public workbench::MessageField {
  public:
    explicit MessageFieldView(QLineEdit& field) : field_(field) {}
    void SetVisible(bool visible) override {
        field_.setVisible(visible);
        // Hiding leaves a hole that what lies below must fill before the loop is entered again.
        (visible ? &field_ : field_.parentWidget())->repaint();
    }
    void SetFocus() override { field_.setFocus(); }

  private:
    QLineEdit& field_;
};

/// The hourglass over the whole window, whatever pointer a control has of its own.
class WindowPointer : public platform::Pointer {
  public:
    WindowPointer() = default;
    WindowPointer(const WindowPointer&) = delete;
    WindowPointer& operator=(const WindowPointer&) = delete;
    ~WindowPointer() override { SetHourglass(false); }

    void SetHourglass(bool on) override {
        if (on && !on_) {
            QApplication::setOverrideCursor(Qt::WaitCursor);
        } else if (!on && on_) {
            QApplication::restoreOverrideCursor();
        }
        on_ = on;
    }

  private:
    bool on_ = false;
};

}  // namespace tavrel::app
