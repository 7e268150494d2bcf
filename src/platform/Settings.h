// The per-user settings store: texts by application, section and key.
//
// On Windows the registry, below HKEY_CURRENT_USER\Software\VB and VBA Program Settings; elsewhere one INI
// file for each application below the XDG configuration folder.  Values stand there as they are, passwords
// too, so the file can be read and written by its owner only.
#pragma once

#include <string>

namespace tavrel::platform {

class SettingsStore {
  public:
    virtual ~SettingsStore() = default;
    /// The value; empty when the key is missing.  Throws Error when the store cannot be read.
    virtual std::string GetSetting(const std::string& application, const std::string& section,
                                   const std::string& key) = 0;
    /// Returns when everybody who asks is told the value.  It outlives the program, and with Sync the
    /// machine's losing its power, too.  Throws Error when it could not be stored: the store is then as it
    /// was.
    virtual void SaveSetting(const std::string& application, const std::string& section,
                             const std::string& key, const std::string& value) = 0;
    /// Returns when what was saved before is on the medium.  Costs much where the medium is slow, so it is
    /// not for each letter that is typed.  Throws Error when it could not be brought there.
    virtual void Sync() = 0;
};

/// The store of the user who runs the program.  Lives as long as the program.
SettingsStore& UserSettings();

}  // namespace tavrel::platform
