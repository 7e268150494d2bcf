// What the window remembers from one use to the next.
#pragma once

#include <array>
#include <string>
#include <string_view>

namespace tavrel::platform {
class SettingsStore;
}

namespace tavrel::app {

enum class Remembered { PathA, PathB, TableA, TableB, PasswordA, PasswordB, Option0, Option1, Option2 };

/// The entry of a side or an option box; index 0 is the one named.
inline Remembered Entry(Remembered first, int index) {
    return static_cast<Remembered>(static_cast<int>(first) + index);
}

std::string_view SettingsKey(Remembered entry);

/// The window's entries in the store.  Reading and writing throw Error as the store does.
class FormSettings {
  public:
    /// The store is not owned.
    explicit FormSettings(platform::SettingsStore& store) : store_(store) {}

    [[nodiscard]] std::string Read(Remembered entry) const;
    /// The number stored; 0 when it is missing or no number.
    [[nodiscard]] int ReadNumber(Remembered entry) const;
    void Write(Remembered entry, const std::string& value);
    /// Returns when what was written is on the medium.
    void Sync();

  private:
    platform::SettingsStore& store_;
};

}  // namespace tavrel::app
