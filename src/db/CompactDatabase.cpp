#include "db/ConnectText.h"
#include "db/DBEngine.h"

namespace tavrel::db {

jet::CompactReport DBEngine::CompactDatabase(const std::string& source, const std::string& destination,
                                             const std::optional<std::string>& /*destinationLocale*/,
                                             const std::optional<std::int32_t>& /*options*/,
                                             const std::optional<std::string>& sourceLocale) {
    return jet::CompactDatabase(source, destination,
                                {.password = PasswordOf(sourceLocale.value_or(std::string())),
                                 .checkPassword = true,
                                 .progress = {}});
}

}  // namespace tavrel::db
