// The numbers that the OLE DB provider reports for the engine's errors.
#pragma once

#include <cstdint>

#include "text/Error.h"

namespace tavrel::db {

/// The 32-bit number that ADO shows; 0x80004005 for errors without one of their own.
std::int32_t AdoNumber(const Error& error);

/// The number for statements that could not be made sense of, as callers test for it.
namespace adoNumbers {
inline constexpr std::int32_t kUnspecified = static_cast<std::int32_t>(0x80004005);
inline constexpr std::int32_t kCannotConvert = static_cast<std::int32_t>(0x80040E07);
inline constexpr std::int32_t kParameterMissing = static_cast<std::int32_t>(0x80040E10);
inline constexpr std::int32_t kErrorsInCommand = static_cast<std::int32_t>(0x80040E14);
inline constexpr std::int32_t kErrorsOccurred = static_cast<std::int32_t>(0x80040E21);
inline constexpr std::int32_t kNoTable = static_cast<std::int32_t>(0x80040E37);
inline constexpr std::int32_t kAuthenticationFailed = static_cast<std::int32_t>(0x80040E4D);
inline constexpr std::int32_t kDataOverflow = static_cast<std::int32_t>(0x80040E57);
}  // namespace adoNumbers

}  // namespace tavrel::db
