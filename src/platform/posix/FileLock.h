// Advisory locks on a whole file.
#pragma once

#include "platform/posix/Descriptor.h"

namespace tavrel::platform {

enum class LockKind { Shared, Exclusive };

/// Takes both kinds of advisory lock that other programs use, for as long as the descriptor is open, without
/// waiting. False when somebody holds one that forbids it.  A file system that knows no locks grants them.
bool TryLock(const Descriptor& file, LockKind kind);

}  // namespace tavrel::platform
