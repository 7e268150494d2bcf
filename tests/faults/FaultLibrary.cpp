// Stands between tavrel-cli and the system (LD_PRELOAD, Linux): lets the n-th call of a kind go wrong, counts
// the calls, or records what they change.  Only files below one folder count, and memory.
//
// | variable      | value |
// |---------------|------------------------------------------------------------------------------------------|
// | FAULTS_ROOT   | the folder | | FAULTS_KIND   | the kind of call that goes wrong: a name of kKinds | |
// FAULTS_AT     | which of them, counted from 1                                                            |
// | FAULTS_MODE   | how: a name of kModes | | FAULTS_COUNTS | a file for the number of calls of each kind, in
// the order of kKinds                      | | FAULTS_RECORD | a file for the calls that change something:
// "<call> <number> <position> <length>\n" each, | |               | and as many bytes of data or path behind
// it                                              |
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "FaultNames.h"

extern "C" void* __libc_malloc(std::size_t size);
extern "C" void* __libc_calloc(std::size_t count, std::size_t size);
extern "C" void* __libc_realloc(void* old, std::size_t size);

namespace {

using namespace tavrel::testing;

constexpr int kDescriptors = 1024;
constexpr time_t kNow = 1700000000;

struct Plan {
    const char* root = nullptr;
    int kind = -1;
    int mode = -1;
    long at = 0;
    int record = -1;
    const char* counts = nullptr;
};

Plan gPlan;
long gCalls[kKindCount];
bool gOurs[kDescriptors];

template <std::size_t N>
int PlaceOf(const char* (&names)[N], const char* name) {
    for (std::size_t i = 0; name != nullptr && i < N; ++i) {
        if (std::strcmp(names[i], name) == 0) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

int OpenDirectly(const char* path, int flags, mode_t mode) {
    return static_cast<int>(syscall(SYS_openat, AT_FDCWD, path, flags, mode));
}

__attribute__((constructor)) void ReadPlan() {
    gPlan.root = std::getenv("FAULTS_ROOT");
    gPlan.mode = PlaceOf(kModes, std::getenv("FAULTS_MODE"));
    const char* at = std::getenv("FAULTS_AT");
    gPlan.at = at == nullptr ? 0 : std::atol(at);
    gPlan.counts = std::getenv("FAULTS_COUNTS");
    if (const char* record = std::getenv("FAULTS_RECORD")) {
        gPlan.record = OpenDirectly(record, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    }
    gPlan.kind = PlaceOf(kKinds, std::getenv("FAULTS_KIND"));
}

__attribute__((destructor)) void TellCounts() {
    const int file =
        gPlan.counts == nullptr ? -1 : OpenDirectly(gPlan.counts, O_WRONLY | O_CREAT | O_TRUNC, 0600);
    for (const long calls : gCalls) {
        dprintf(file, "%ld\n", calls);
    }
}

/// What is to happen to this call of the kind; the program may end here.
int ModeOfNext(int kind) {
    const long call = ++gCalls[kind];
    if (kind != gPlan.kind || call < gPlan.at || (call > gPlan.at && gPlan.mode != kOn)) {
        return kNone;
    }
    if (gPlan.mode == kKill) {
        _exit(kKilledExit);
    }
    return gPlan.mode;
}

/// For calls that do their work or do nothing.
bool Fails(int kind, bool ours) {
    if (!ours || ModeOfNext(kind) == kNone) {
        return false;
    }
    errno = EIO;
    return true;
}

bool NoMemory() {
    if (ModeOfNext(kMemory) == kNone) {
        return false;
    }
    errno = ENOMEM;
    return true;
}

/// The folder itself, which is synced, too, or something in it.
bool IsOurs(const char* path) {
    const std::size_t length = gPlan.root == nullptr ? 0 : std::strlen(gPlan.root);
    return length > 0 && std::strncmp(path, gPlan.root, length) == 0 &&
           (path[length] == '\0' || path[length] == '/');
}

bool IsOurs(int descriptor) {
    return descriptor >= 0 && descriptor < kDescriptors && gOurs[descriptor];
}

void Record(const char* call, int number, off_t position, const void* bytes, std::size_t length) {
    if (gPlan.record < 0) {
        return;
    }
    const int reason = errno;
    dprintf(gPlan.record, "%s %d %lld %zu\n", call, number, static_cast<long long>(position), length);
    for (std::size_t done = 0; done < length;) {
        const ssize_t count = write(gPlan.record, static_cast<const char*>(bytes) + done, length - done);
        if (count <= 0) {
            std::abort();
        }
        done += static_cast<std::size_t>(count);
    }
    errno = reason;
}

void Record(const char* call, int number, const char* path) {
    Record(call, number, 0, path, std::strlen(path));
}

/// `result` of a call that has changed what `path` names.
int Changed(long result, const char* call, const char* path, bool ours) {
    if (result == 0 && ours) {
        Record(call, 0, path);
    }
    return static_cast<int>(result);
}

ssize_t WriteDirectly(int descriptor, const void* bytes, std::size_t length, off_t position) {
    const ssize_t count = syscall(SYS_pwrite64, descriptor, bytes, length, position);
    if (count > 0) {
        Record("write", descriptor, position, bytes, static_cast<std::size_t>(count));
    }
    return count;
}

}  // namespace

extern "C" {

int open(const char* path, int flags, ...) {
    va_list more;
    va_start(more, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(more, mode_t) : 0;
    va_end(more);
    const bool ours = IsOurs(path);
    if (Fails(kOpen, ours)) {
        return -1;
    }
    const int descriptor = OpenDirectly(path, flags, mode);
    if (descriptor >= 0 && descriptor < kDescriptors) {
        gOurs[descriptor] = ours;
        if (ours) {
            Record("open", descriptor, path);
        }
    }
    return descriptor;
}

ssize_t pread(int descriptor, void* bytes, size_t length, off_t position) {
    const int mode = IsOurs(descriptor) ? ModeOfNext(kRead) : kNone;
    if (mode == kOnce || mode == kOn) {
        errno = EIO;
        return -1;
    }
    if (mode == kEnd) {
        return 0;
    }
    return syscall(SYS_pread64, descriptor, bytes, mode == kShort ? (length + 1) / 2 : length, position);
}

ssize_t pwrite(int descriptor, const void* bytes, size_t length, off_t position) {
    if (!IsOurs(descriptor)) {
        return syscall(SYS_pwrite64, descriptor, bytes, length, position);
    }
    const int mode = ModeOfNext(kWrite);
    if (mode == kOnce || mode == kOn) {
        errno = ENOSPC;
        return -1;
    }
    const ssize_t count =
        WriteDirectly(descriptor, bytes, mode == kNone ? length : (length + 1) / 2, position);
    if (mode == kTornKill) {
        _exit(kKilledExit);
    }
    if (mode == kTorn) {
        errno = EIO;
        return -1;
    }
    return count;
}

/// Nothing is really synced: it is slow, and a program that is killed loses nothing.
int fsync(int descriptor) {
    if (!IsOurs(descriptor)) {
        return static_cast<int>(syscall(SYS_fsync, descriptor));
    }
    if (Fails(kSync, true)) {
        return -1;
    }
    Record("sync", descriptor, "");
    return 0;
}

int fdatasync(int descriptor) {
    return fsync(descriptor);
}

int ftruncate(int descriptor, off_t size) noexcept {
    const bool ours = IsOurs(descriptor);
    if (Fails(kTruncate, ours)) {
        return -1;
    }
    const long result = syscall(SYS_ftruncate, descriptor, size);
    if (result == 0 && ours) {
        Record("truncate", descriptor, size, "", 0);
    }
    return static_cast<int>(result);
}

int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags) noexcept {
    const bool ours = IsOurs(to);
    if (Fails(kRename, ours)) {
        return -1;
    }
    const long result = syscall(SYS_renameat2, fromFolder, from, toFolder, to, flags);
    if (result == 0 && ours) {
        Record("from", 0, from);
    }
    return Changed(result, "to", to, ours);
}

int rename(const char* from, const char* to) noexcept {
    return renameat2(AT_FDCWD, from, AT_FDCWD, to, 0);
}

int unlink(const char* path) noexcept {
    const bool ours = IsOurs(path);
    return Fails(kUnlink, ours) ? -1
                                : Changed(syscall(SYS_unlinkat, AT_FDCWD, path, 0), "unlink", path, ours);
}

int mkdir(const char* path, mode_t mode) noexcept {
    const bool ours = IsOurs(path);
    return Fails(kMkdir, ours) ? -1
                               : Changed(syscall(SYS_mkdirat, AT_FDCWD, path, mode), "mkdir", path, ours);
}

/// The same at every run, so that what is written is the same, too.
time_t time(time_t* out) noexcept {
    if (out != nullptr) {
        *out = kNow;
    }
    return kNow;
}

int clock_gettime(clockid_t clock, timespec* out) noexcept {
    const long result = syscall(SYS_clock_gettime, clock, out);
    if (clock == CLOCK_REALTIME) {
        *out = {.tv_sec = kNow, .tv_nsec = 0};
    }
    return static_cast<int>(result);
}

void* malloc(size_t size) noexcept {
    return NoMemory() ? nullptr : __libc_malloc(size);
}

void* calloc(size_t count, size_t size) noexcept {
    return NoMemory() ? nullptr : __libc_calloc(count, size);
}

void* realloc(void* old, size_t size) noexcept {
    return NoMemory() ? nullptr : __libc_realloc(old, size);
}

}  // extern "C"
