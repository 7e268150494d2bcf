// Why a file could not be compared, out of the messages that a user would have been shown.
#pragma once

#include <stdexcept>
#include <string>

#include "platform/Dialogs.h"

namespace tavrel::survey {

/// The reason, on one line.
class Failure : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Keeps what is said; answers with the default button.
class KeptReason : public platform::MessageBox {
  public:
    platform::MessageAnswer Show(const platform::Message& message) override;
    /// Everything that was said, line breaks as blanks.
    [[nodiscard]] const std::string& Text() const { return text_; }

  private:
    std::string text_;
};

}  // namespace tavrel::survey
