// What the library that stands in for the system is asked for, by name in its environment.
#pragma once

namespace tavrel::testing {

/// Kinds of calls.
enum { kOpen, kRead, kWrite, kSync, kTruncate, kRename, kUnlink, kMkdir, kMemory, kKindCount };
inline const char* kKinds[kKindCount] = {"open",   "read",   "write", "sync",  "truncate",
                                         "rename", "unlink", "mkdir", "memory"};

/// How the call goes wrong: it fails; it and all that follow fail; half of it is done, as may be; nothing
/// more can be read; half of it is done and it fails; the program ends in front of it; the program ends when
/// half is done.
enum { kNone = -1, kOnce, kOn, kShort, kEnd, kTorn, kKill, kTornKill };
inline const char* kModes[] = {"once", "on", "short", "end", "torn", "kill", "tornkill"};

/// With this code a program ends that was to be killed.
inline constexpr int kKilledExit = 99;

}  // namespace tavrel::testing
