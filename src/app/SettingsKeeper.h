// Remembering what the user types and chooses: each change at once, what it costs to have it on the medium
// when the typing pauses.
#pragma once

#include <string>

#include <QTimer>

#include "app/logic/FormSettings.h"
#include "platform/Dialogs.h"
#include "text/Error.h"

namespace tavrel::app {

/// So long after the last change the changes are brought to the medium, in milliseconds.
inline constexpr int kTypingPause = 500;

class SettingsKeeper {
  public:
    /// Neither is owned.  What cannot be read or remembered is told in a box, once: it keeps nobody from
    /// working.
    SettingsKeeper(platform::SettingsStore& store, platform::MessageBox& messages);

    /// Throws Error as the store does.
    [[nodiscard]] const FormSettings& Stored() const { return settings_; }
    void Write(Remembered entry, const std::string& value);
    /// Waits no longer for the pause.
    void Flush();
    void Tell(const Error& error);

  private:
    FormSettings settings_;
    platform::MessageBox& messages_;
    QTimer pause_;
    bool failed_ = false;  ///< has been told
};

}  // namespace tavrel::app
