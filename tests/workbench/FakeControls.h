// Controls of a window that remember what was done to them.
#pragma once

#include <string>
#include <vector>

#include "workbench/WorkbenchControls.h"

namespace tavrel::workbench {

struct FakeText : platform::TextField {
    std::string text;
    int focused = 0;
    [[nodiscard]] std::string Text() const override { return text; }
    void SetFocus() override { ++focused; }
};

struct FakeOption : platform::OptionBox {
    int value = 0;
    [[nodiscard]] int Value() const override { return value; }
};

struct FakeBar : platform::ProgressBar {
    int maximum = -1;
    int value = -1;
    bool visible = false;
    int calls = 0;
    void SetMaximum(int newMaximum) override { maximum = newMaximum; }
    void SetValue(int newValue) override {
        value = newValue;
        ++calls;
    }
    [[nodiscard]] int Value() const override { return value; }
    void SetVisible(bool show) override { visible = show; }
};

struct FakePointer : platform::Pointer {
    int turnedOn = 0;
    bool hourglass = false;
    void SetHourglass(bool on) override {
        hourglass = on;
        turnedOn += on ? 1 : 0;
    }
};

struct FakeMessages : platform::MessageBox {
    std::vector<std::string> texts;
    platform::MessageAnswer Show(const platform::Message& message) override {
        texts.push_back(message.text);
        return platform::MessageAnswer::Ok;
    }
};

struct FakeMessageField : MessageField {
    bool visible = false;
    int shown = 0;
    int focused = 0;
    void SetVisible(bool show) override {
        visible = show;
        shown += show ? 1 : 0;
    }
    void SetFocus() override { focused += visible ? 1 : 0; }
};

struct FocusCounter : grid::GridObserver {
    int focused = 0;
    int allChanged = 0;
    void FocusRequested() override { ++focused; }
    void AllChanged() override { ++allChanged; }
};

/// A whole window.
struct FakeWindow {
    FakeWindow() {
        grid.Observe(&observer);
        bars[1].value = 2;  // where the run stands when the comparison begins
        controls = {.txtDBPath = {&paths[0], &paths[1]},
                    .txtPwd = {&passwords[0], &passwords[1]},
                    .cmbTblName = {&tables[0], &tables[1]},
                    .Check1 = {&options[0], &options[1], &options[2]},
                    .ProgressBar1 = {&bars[0], &bars[1]},
                    .maketb = &messageField,
                    .pointer = &pointer,
                    .messages = &messages,
                    .spList = &grid,
                    .AppCode = {}};
    }

    /// Bit i ticks Check1(i).
    void Tick(unsigned bits) {
        for (unsigned i = 0; i < 3; ++i) {
            options[i].value = static_cast<int>(bits >> i & 1U);
        }
    }

    std::array<FakeText, 2> paths, passwords, tables;
    std::array<FakeOption, 3> options;
    std::array<FakeBar, 2> bars;
    FakePointer pointer;
    FakeMessages messages;
    FakeMessageField messageField;
    FocusCounter observer;
    grid::ResultGrid grid;
    WorkbenchControls controls;
};

}  // namespace tavrel::workbench
