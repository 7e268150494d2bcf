#include "app/DatabaseOpener.h"

#include <QDeadlineTimer>
#include <QFileInfo>
#include <QProcess>

#include "app/text/QtText.h"
#include "platform/OpenWithProgram.h"

namespace tavrel::app {

namespace {

constexpr const char* kNoProgram = "이 데이터베이스를 열 수 있는 프로그램이 없습니다.\r\n\r\n";

/// What the desktop's opener ends with when no program takes the file.
constexpr int kToolMissing = 3;
constexpr int kActionFailed = 4;
/// An opener that ends later than this (ms) has run a program to its end: whatever that says, there was one.
constexpr int kLongestSearch = 10'000;

}  // namespace

void DatabaseOpener::TellNoProgram(const std::string& path) {
    messages_.Say(kNoProgram + path);
}

/// The process has no owner but itself: what was opened goes on when the window is gone.
void DatabaseOpener::Watch(const std::string& path) {
    auto* opener = new QProcess;
    opener->setStandardInputFile(QProcess::nullDevice());
    opener->setProcessChannelMode(QProcess::ForwardedChannels);
    connect(opener, &QProcess::finished, opener, &QObject::deleteLater);
    connect(opener, &QProcess::finished, this,
            [this, path, search = QDeadlineTimer(kLongestSearch)](int code) {
                if (!search.hasExpired() && (code == kToolMissing || code == kActionFailed)) {
                    TellNoProgram(path);
                }
            });
    connect(opener, &QProcess::errorOccurred, this, [this, path, opener](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) {
            opener->deleteLater();
            TellNoProgram(path);
        }
    });
    // In full, so that a name that begins with a hyphen is no option.
    opener->start(QStringLiteral("xdg-open"), {QFileInfo(ToQt(path)).absoluteFilePath()});
}

void DatabaseOpener::Open(const std::string& path) {
#ifdef _WIN32
    if (!platform::OpenWithAssociatedProgram(path)) {
        TellNoProgram(path);
    }
#else
    Watch(path);
#endif
}

}  // namespace tavrel::app
