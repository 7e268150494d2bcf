#include "db/SessionFault.h"

#include <algorithm>
#include <exception>
#include <new>

#include "db/AdoErrors.h"
#include "text/Error.h"

namespace tavrel::modDBsub {

namespace {

std::exception_ptr sessionFault;

/// The engine's numbers for what no statement is to blame for.
constexpr std::int32_t kFaults[] = {errors::kOutOfMemory, errors::kDeviceFault, errors::kDiskFull,
                                    errors::kNoDiskSpace, errors::kReadFault,   errors::kNetworkError};

bool IsFault(const Error& error) {
    const auto* provider = dynamic_cast<const db::ProviderError*>(&error);
    const std::int32_t number = provider != nullptr ? provider->EngineNumber() : error.Number();
    return std::ranges::find(kFaults, number) != std::end(kFaults);
}

}  // namespace

void ForgetFault() {
    sessionFault = nullptr;
}

void RequireNoFault() {
    if (sessionFault) {
        std::rethrow_exception(sessionFault);
    }
}

void NoteFault() {
    try {
        throw;
    } catch (const Error& error) {
        if (IsFault(error)) {
            sessionFault = std::current_exception();
        }
    } catch (const std::bad_alloc&) {
        sessionFault = std::current_exception();
    } catch (...) {
        return;  // not the session's
    }
}

}  // namespace tavrel::modDBsub
