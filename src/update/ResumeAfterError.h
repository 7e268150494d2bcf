// How the update's procedures take errors: each is told, and the procedure goes on.
#pragma once

#include <string>
#include <string_view>

#include "platform/Dialogs.h"
#include "text/ProcedureError.h"

namespace tavrel::update {

/// Runs the steps of one procedure.
class ResumeAfterError {
  public:
    ResumeAfterError(platform::MessageBox& messages, std::string_view procedure, std::string_view place)
        : messages_(messages), procedure_(procedure), place_(place) {}

    /// Runs a step.  An error that it throws is shown, and the step counts as done.
    template <typename Step>
    void Run(Step step) const {
        try {
            step();
        } catch (const Error& error) {
            messages_.Say(ProcedureErrorText(error, procedure_, place_));
        }
    }

    /// Asks a question that decides whether the statements behind it run.  When it fails, the statement that
    /// follows is the first of those: the answer is then yes.
    template <typename Question>
    [[nodiscard]] bool Ask(Question question) const {
        bool answer = true;
        Run([&] { answer = question(); });
        return answer;
    }

  private:
    platform::MessageBox& messages_;
    std::string procedure_;
    std::string place_;
};

}  // namespace tavrel::update
