#include "cli/TerminalProgress.h"

#include <cstdint>
#include <iostream>

#include "platform/Console.h"

namespace tavrel::cli {

namespace {

constexpr std::chrono::milliseconds kBeforeFirst{300};
constexpr std::chrono::milliseconds kBetween{100};

}  // namespace

ProgressLine::ProgressLine(std::string label)
    : label_(std::move(label)),
      watched_(platform::IsTerminal(platform::Stream::Error)),
      nextDraw_(Clock::now() + kBeforeFirst) {}

void ProgressLine::Bar::SetValue(int value) {
    value_ = value;
    line_.Refresh();
}

void ProgressLine::Bar::SetVisible(bool visible) {
    if (!visible) {
        line_.Clear();
    }
}

void ProgressLine::Refresh() {
    if (!watched_) {
        return;
    }
    const Clock::time_point now = Clock::now();
    if (now >= nextDraw_) {
        nextDraw_ = now + kBetween;
        Draw();
    }
}

void ProgressLine::Draw() {
    std::cerr << "\r\x1b[K" << label_;
    if (overall_.Maximum() > 0) {
        std::cerr << " [" << overall_.Value() << '/' << overall_.Maximum() << ']';
    }
    if (phase_.Maximum() > 0) {
        std::cerr << ' ' << std::int64_t{phase_.Value()} * 100 / phase_.Maximum() << '%';
    }
    std::cerr.flush();
    drawn_ = true;
}

void ProgressLine::Clear() {
    if (drawn_) {
        std::cerr << "\r\x1b[K";
        std::cerr.flush();
        drawn_ = false;
    }
}

}  // namespace tavrel::cli
