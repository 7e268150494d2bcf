#include "cli/Messages.h"

#include "cli/Failure.h"

namespace tavrel::cli {

platform::MessageAnswer KeptMessages::Show(const platform::Message& message) {
    texts_.push_back(message.text);
    if (message.buttons == platform::MessageButtons::Ok) {
        return platform::MessageAnswer::Ok;
    }
    return message.defaultButton == 1 ? platform::MessageAnswer::Yes : platform::MessageAnswer::No;
}

void KeptMessages::ComplainOfAllButLast() const {
    for (std::size_t i = 0; i + 1 < texts_.size(); ++i) {
        Complain(texts_[i]);
    }
}

void KeptMessages::ComplainOfAll() const {
    for (const std::string& text : texts_) {
        Complain(text);
    }
}

}  // namespace tavrel::cli
