// The words of the toolkit's own dialogs and menus in Korean, as the window's are.
#pragma once

#include <QTranslator>

namespace tavrel::app {

/// The few words that the window's users meet, for where the toolkit's own translation is not installed.
class CommonWords : public QTranslator {
  public:
    using QTranslator::QTranslator;
    [[nodiscard]] QString translate(const char* context, const char* sourceText,
                                    const char* disambiguation = nullptr, int n = -1) const override;
    [[nodiscard]] bool isEmpty() const override { return false; }
};

/// To be called once, when the application object is there, before a window is.
void InstallKoreanWords();

}  // namespace tavrel::app
