// Errors as the data provider raises them: what callers of Connection and Recordset see.
#pragma once

#include <cstdint>

#include "text/Error.h"

namespace tavrel::db {

/// ADO's own errors and the run-time's: small positive numbers.  The engine uses some of them for other
/// failures, but its own never come through ADO with their own number.
namespace adoErrors {
inline constexpr std::int32_t kOverflow = 6;
inline constexpr std::int32_t kTypeMismatch = 13;
inline constexpr std::int32_t kObjectNotSet = 91;
inline constexpr std::int32_t kNoCurrentRecord = 3021;
inline constexpr std::int32_t kItemNotFound = 3265;
inline constexpr std::int32_t kObjectClosed = 3704;
inline constexpr std::int32_t kObjectOpen = 3705;
inline constexpr std::int32_t kProviderNotFound = 3706;
inline constexpr std::int32_t kConnectionUnusable = 3709;
}  // namespace adoErrors

/// One of ADO's own errors (or the run-time's) with its Korean description.
Error AdoError(std::int32_t number);

/// A failure of the engine as the provider reports it: the provider's 32-bit number (below 0), the engine's
/// description, and beside them the engine's own number.
class ProviderError : public Error {
  public:
    explicit ProviderError(const Error& engine);
    [[nodiscard]] std::int32_t EngineNumber() const { return engineNumber_; }

  private:
    std::int32_t engineNumber_;
};

/// Called from a handler: throws what is being handled as the provider reports it.  An engine's Error becomes
/// a ProviderError, a lack of memory Error 7; anything else goes on unchanged.
[[noreturn]] void ThrowAsProvider();

/// Runs `work`, its failures thrown by ThrowAsProvider.
template <typename Work>
auto AsProvider(Work work) {
    try {
        return work();
    } catch (...) {
        ThrowAsProvider();
    }
}

}  // namespace tavrel::db
