// A lack of memory before the program begins.  Static objects of the libraries take memory, too, and what
// they throw then nobody can catch: the user is to get the message and the exit code that every other lack of
// memory has.
#include <cstdlib>
#include <exception>
#include <new>

#include "cli/Failure.h"

namespace tavrel::cli {
namespace {

std::terminate_handler gUsual = nullptr;

[[noreturn]] void SayAndEnd() {
    try {
        if (std::current_exception()) {
            throw;
        }
    } catch (const std::bad_alloc&) {
        SayThatMemoryRanOut();
        std::_Exit(static_cast<int>(ExitCode::Failed));
    } catch (...) {
        // Everything but a lack of memory ends as it would without this handler.
    }
    gUsual();
    std::abort();
}

struct Installed {
    Installed() { gUsual = std::set_terminate(SayAndEnd); }
};

#ifdef __GNUC__
[[gnu::init_priority(101)]]  // before the objects of all other sources
#endif
const Installed kInstalled;

}  // namespace
}  // namespace tavrel::cli
