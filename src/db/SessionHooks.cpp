#include "db/SessionHooks.h"

#include <utility>

namespace tavrel::modDBsub {

namespace {

platform::MessageBox* messagesInUse = nullptr;
StatementListener listenerInUse;

}  // namespace

platform::MessageBox* UseMessages(platform::MessageBox* messages) {
    return std::exchange(messagesInUse, messages);
}

void ShowMessage(const platform::Message& message) {
    if (messagesInUse != nullptr) {
        messagesInUse->Show(message);
    }
}

std::string_view NameOf(StatementKind kind) {
    switch (kind) {
        case StatementKind::Execute:
            return "execute";
        case StatementKind::Value:
            return "value";
        case StatementKind::Open:
            return "open";
        case StatementKind::Count:
            return "count";
    }
    return {};
}

StatementListener ListenToStatements(StatementListener listener) {
    return std::exchange(listenerInUse, std::move(listener));
}

void TellListener(StatementKind kind, const std::string& statement) {
    if (listenerInUse) {
        listenerInUse(kind, statement);
    }
}

}  // namespace tavrel::modDBsub
