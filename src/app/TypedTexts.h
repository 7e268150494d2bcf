// Remembering what is typed: not each letter, which would keep the disk busy, but what stands there when the
// typing pauses.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <QTimer>

#include "app/logic/FormSettings.h"

namespace tavrel::app {

/// So long after the last change it is written, in milliseconds.
inline constexpr int kTypingPause = 500;

class TypedTexts {
  public:
    using Write = std::function<void(Remembered entry, const std::string& text)>;
    /// `write` gets each entry that changed, one by one; what waits when this ends is lost.
    explicit TypedTexts(Write write);

    void Changed(Remembered entry, std::string text);
    /// Writes at once what waits.
    void Flush();

  private:
    Write write_;
    std::vector<std::pair<Remembered, std::string>> waiting_;  ///< one for each entry, first changed first
    QTimer pause_;
};

}  // namespace tavrel::app
