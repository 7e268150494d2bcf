// A progress bar that takes one step a row without being called for each: a bar shows no more than some
// hundred states.
#pragma once

#include <algorithm>

#include "platform/Dialogs.h"

namespace tavrel::compare {

class PhaseProgress {
  public:
    /// Gives the bar the maximum and the value 0.
    PhaseProgress(platform::ProgressBar& bar, int maximum) : bar_(bar) {
        bar_.SetMaximum(maximum);
        bar_.SetValue(0);
        interval_ = std::max(maximum / kStates, 1);
    }
    PhaseProgress(const PhaseProgress&) = delete;
    PhaseProgress& operator=(const PhaseProgress&) = delete;

    /// One row more.
    void Step() {
        ++value_;
        if (value_ - shown_ >= interval_) {
            Show();
        }
    }

    /// There is more to do than was thought.  To be shown at the next step.
    void SetMaximum(int maximum) { maximum_ = maximum; }

    /// The bar shows the value reached.  REQUIRED at the end of the phase.
    void Finish() { Show(); }

  private:
    static constexpr int kStates = 200;

    void Show() {
        if (maximum_ > 0) {
            bar_.SetMaximum(maximum_);
            maximum_ = 0;
        }
        bar_.SetValue(value_);
        shown_ = value_;
    }

    platform::ProgressBar& bar_;
    int interval_ = 1;
    int value_ = 0;
    int shown_ = 0;
    int maximum_ = 0;  ///< still to be told; 0 = nothing
};

}  // namespace tavrel::compare
