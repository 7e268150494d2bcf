// Progress of long work: one line on standard error, only when a person looks at it, and only when it takes
// long.
#pragma once

#include <chrono>
#include <string>

#include "platform/Dialogs.h"

namespace tavrel::cli {

/// The line: "label [step/steps] percent".  Gone when the object goes.
class ProgressLine {
  public:
    explicit ProgressLine(std::string label);
    ~ProgressLine() { Clear(); }
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    /// The part of the work that is being done now.
    [[nodiscard]] platform::ProgressBar& Phase() { return phase_; }
    /// All parts together.
    [[nodiscard]] platform::ProgressBar& Overall() { return overall_; }
    /// Takes the line away: something else is to be written.
    void Clear();

  private:
    using Clock = std::chrono::steady_clock;

    class Bar : public platform::ProgressBar {
      public:
        explicit Bar(ProgressLine& line) : line_(line) {}
        void SetMaximum(int maximum) override { maximum_ = maximum; }
        void SetValue(int value) override;
        [[nodiscard]] int Value() const override { return value_; }
        void SetVisible(bool visible) override;
        [[nodiscard]] int Maximum() const { return maximum_; }

      private:
        ProgressLine& line_;
        int maximum_ = 0;
        int value_ = 0;
    };

    void Refresh();
    void Draw();

    std::string label_;
    bool watched_;  ///< standard error is a terminal
    bool drawn_ = false;
    Clock::time_point nextDraw_;
    Bar phase_{*this};
    Bar overall_{*this};
};

}  // namespace tavrel::cli
