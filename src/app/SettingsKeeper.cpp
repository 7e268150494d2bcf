#include "app/SettingsKeeper.h"

namespace tavrel::app {

namespace {

constexpr const char* kCannotRemember = "설정을 읽거나 저장할 수 없습니다.\r\n\r\n";

}  // namespace

SettingsKeeper::SettingsKeeper(platform::SettingsStore& store, platform::MessageBox& messages)
    : settings_(store), messages_(messages) {
    pause_.setSingleShot(true);
    pause_.setInterval(kTypingPause);
    QObject::connect(&pause_, &QTimer::timeout, &pause_, [this] { Flush(); });
}

void SettingsKeeper::Write(Remembered entry, const std::string& value) {
    try {
        settings_.Write(entry, value);
        pause_.start();
    } catch (const Error& error) {
        Tell(error);
    }
}

void SettingsKeeper::Flush() {
    pause_.stop();
    try {
        settings_.Sync();
    } catch (const Error& error) {
        Tell(error);
    }
}

void SettingsKeeper::Tell(const Error& error) {
    if (!failed_) {
        failed_ = true;
        messages_.Say(kCannotRemember + error.Description());
    }
}

}  // namespace tavrel::app
