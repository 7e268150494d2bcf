#include "cli/OpenDatabase.h"

namespace tavrel::cli {

namespace {

// These commands serve those who diagnose a customer's file and may never have been told its password.  They
// read pages; the password enciphers none of them, so asking for it would protect nothing.  What works for
// the user, the snapshot and the comparison, keeps the engine's rule and asks.
jet::OpenOptions LookingOptions(const std::optional<std::string>& password) {
    return {.password = password.value_or(""), .checkPassword = password.has_value()};
}

}  // namespace

std::unique_ptr<jet::Database> OpenToInspect(const std::string& file,
                                             const std::optional<std::string>& password) {
    return jet::Database::Open(file, LookingOptions(password));
}

std::unique_ptr<jet::Database> OpenToCheck(const std::string& file,
                                           const std::optional<std::string>& password) {
    jet::OpenOptions options = LookingOptions(password);
    options.tolerant = true;
    return jet::Database::Open(file, options);
}

}  // namespace tavrel::cli
