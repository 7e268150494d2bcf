#include "app/logic/FormSettings.h"

#include <charconv>

#include "platform/Dialogs.h"
#include "platform/Settings.h"

namespace tavrel::app {

namespace {

constexpr const char* kSection = "환경설정";

/// In the order of Remembered.
constexpr std::array<std::string_view, 9> kKeys = {
    "최근DB_A",     "최근DB_B",       "최근테이블_A",   "최근테이블_B",   "최근DB_A암호",
    "최근DB_B암호", "체크박스옵션_0", "체크박스옵션_1", "체크박스옵션_2",
};

/// The whole text as a decimal number; 0 when it is none or too large.
int NumberOf(std::string_view text) {
    int number = 0;
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), number);
    return failure == std::errc() && end == text.data() + text.size() ? number : 0;
}

}  // namespace

std::string_view SettingsKey(Remembered entry) {
    return kKeys[static_cast<std::size_t>(entry)];
}

std::string FormSettings::Read(Remembered entry) const {
    return store_.GetSetting(platform::kProgramTitle, kSection, std::string(SettingsKey(entry)));
}

int FormSettings::ReadNumber(Remembered entry) const {
    return NumberOf(Read(entry));
}

void FormSettings::Write(Remembered entry, const std::string& value) {
    store_.SaveSetting(platform::kProgramTitle, kSection, std::string(SettingsKey(entry)), value);
}

void FormSettings::Sync() {
    store_.Sync();
}

}  // namespace tavrel::app
