// <windows.h> without the macros that take this program's own names away.  Include it last.
#pragma once

#define WIN32_LEAN_AND_MEAN
#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef UNICODE
#define UNICODE
#endif
#include <windows.h>
// After windows.h, which declares what it uses.
#include <aclapi.h>
#include <shellapi.h>

#undef ReplaceFile
#undef MessageBox
