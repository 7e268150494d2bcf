// Where the session's messages go, and who listens to the statements that it sends.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "platform/Dialogs.h"

namespace tavrel::modDBsub {

// ---- messages

/// The message box of the whole module, set once by the program.  It must live as long as it is set; nullptr
/// takes it away.  While none is set, messages are dropped.  Returns the one that was set before.
platform::MessageBox* UseMessages(platform::MessageBox* messages);

/// Shows a message in the box that is set.
void ShowMessage(const platform::Message& message);

/// A message box for as long as the object lives; then the one before it again.
class MessagesScope {
  public:
    explicit MessagesScope(platform::MessageBox& messages) : before_(UseMessages(&messages)) {}
    ~MessagesScope() { UseMessages(before_); }
    MessagesScope(const MessagesScope&) = delete;
    MessagesScope& operator=(const MessagesScope&) = delete;

  private:
    platform::MessageBox* before_;
};

// ---- statements

/// Which helper a statement comes from.
enum class StatementKind : std::uint8_t {
    Execute,  ///< DBExecute
    Value,    ///< DBGetValue, the query of DBNextCode, the probe of DBChkExistence
    Open,     ///< DBOpenRs
    Count     ///< DBCount
};

/// "execute", "value", "open", "count".
std::string_view NameOf(StatementKind kind);

/// Called for every statement in the order in which they are sent, before it runs and whether it will succeed
/// or not, with the text that is sent (TRUNCATE already replaced).  What it throws leaves the helper.
using StatementListener = std::function<void(StatementKind, const std::string& statement)>;

/// An empty function takes the listener away.  Returns the one that was set before.
StatementListener ListenToStatements(StatementListener listener);

/// Tells the listener; nothing when there is none.
void TellListener(StatementKind kind, const std::string& statement);

/// A listener for as long as the object lives; then the one before it again.
class ListenerScope {
  public:
    explicit ListenerScope(StatementListener listener) : before_(ListenToStatements(std::move(listener))) {}
    ~ListenerScope() { ListenToStatements(std::move(before_)); }
    ListenerScope(const ListenerScope&) = delete;
    ListenerScope& operator=(const ListenerScope&) = delete;

  private:
    StatementListener before_;
};

}  // namespace tavrel::modDBsub
