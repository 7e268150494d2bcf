// The update log: which bill notes the patches have changed, and when.
//
// It lies in the program's folder as DB_UPDATE_LOG.log (where that folder cannot be written: in the folder of
// the user's state), grows over all runs and is never cut.  Lines end in CR LF and are in the system's code
// page for texts.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/File.h"

namespace tavrel::patch {

class UpdateLog {
  public:
    /// Opens the log for appending and makes it when there is none.  Throws Error.
    UpdateLog();

    /// Appends a line; `utf8` without its end.  Throws Error.
    void Line(std::string_view utf8);

    /// Another folder than the program's; empty: the program's again.
    static void UseFolder(const std::string& folder);
    [[nodiscard]] static std::string Path();

  private:
    std::unique_ptr<platform::File> file_;
};

/// The time of day now: "오전 09:05:07", "오후 12:00:00".
std::string TimeText();
/// The same of a given time; hours from 0 to 23.
std::string TimeText(int hour, int minute, int second);

}  // namespace tavrel::patch
