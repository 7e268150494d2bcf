#include "survey/KeptReason.h"

namespace tavrel::survey {

platform::MessageAnswer KeptReason::Show(const platform::Message& message) {
    text_ += text_.empty() ? "" : " ";
    for (const char c : message.text) {
        const bool breaks = c == '\r' || c == '\n';
        if (!breaks || (!text_.empty() && text_.back() != ' ')) {
            text_ += breaks ? ' ' : c;
        }
    }
    if (message.buttons == platform::MessageButtons::Ok) {
        return platform::MessageAnswer::Ok;
    }
    return message.defaultButton == 1 ? platform::MessageAnswer::Yes : platform::MessageAnswer::No;
}

}  // namespace tavrel::survey
