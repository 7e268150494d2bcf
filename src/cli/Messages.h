// The message box of a program without a window.
#pragma once

#include <string>
#include <vector>

#include "platform/Dialogs.h"

namespace tavrel::cli {

/// Keeps what was said; the command decides whether it was a failure.  Answers with the default button.
class KeptMessages : public platform::MessageBox {
  public:
    platform::MessageAnswer Show(const platform::Message& message) override;
    /// Everything on standard error.
    void ComplainOfAll() const;
    void ComplainOfAllButLast() const;

  private:
    std::vector<std::string> texts_;
};

}  // namespace tavrel::cli
