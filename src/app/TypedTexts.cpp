#include "app/TypedTexts.h"

#include <algorithm>

namespace tavrel::app {

TypedTexts::TypedTexts(Write write) : write_(std::move(write)) {
    pause_.setSingleShot(true);
    pause_.setInterval(kTypingPause);
    QObject::connect(&pause_, &QTimer::timeout, &pause_, [this] { Flush(); });
}

void TypedTexts::Changed(Remembered entry, std::string text) {
    const auto found = std::ranges::find(waiting_, entry, &std::pair<Remembered, std::string>::first);
    if (found == waiting_.end()) {
        waiting_.emplace_back(entry, std::move(text));
    } else {
        found->second = std::move(text);
    }
    pause_.start();
}

void TypedTexts::Flush() {
    pause_.stop();
    for (const auto& [entry, text] : std::exchange(waiting_, {})) {
        write_(entry, text);
    }
}

}  // namespace tavrel::app
