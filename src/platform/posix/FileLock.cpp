#include "platform/posix/FileLock.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>

namespace tavrel::platform {
namespace {

/// Calls `lock` until no signal interrupts it.  False only when somebody else holds the file.
template <typename LockCall>
bool Granted(LockCall lock) {
    while (lock() != 0) {
        if (errno == EWOULDBLOCK || errno == EAGAIN || errno == EACCES) {
            return false;
        }
        if (errno != EINTR) {
            return true;  // no locks here: nobody can hold one
        }
    }
    return true;
}

/// A lock on the bytes of the file, owned by the open file and not by the process, so that two openings
/// within one process see each other and closing one does not drop the other's.
bool TryRangeLock([[maybe_unused]] const Descriptor& file, [[maybe_unused]] LockKind kind) {
#ifdef F_OFD_SETLK
    struct flock range = {};
    range.l_type = kind == LockKind::Shared ? F_RDLCK : F_WRLCK;
    range.l_whence = SEEK_SET;
    range.l_start = 0;
    range.l_len = 0;  // to the end, wherever it will be
    return Granted([&] { return ::fcntl(file.Number(), F_OFD_SETLK, &range); });
#else
    return true;
#endif
}

}  // namespace

bool TryLock(const Descriptor& file, LockKind kind) {
    const int operation = (kind == LockKind::Shared ? LOCK_SH : LOCK_EX) | LOCK_NB;
    return Granted([&] { return ::flock(file.Number(), operation); }) && TryRangeLock(file, kind);
}

}  // namespace tavrel::platform
