// What a session does after its device or the memory has failed: nothing.  Some procedures tell an error and let
// their caller go on; a database in which what they were to do is missing must not be taken for a finished one.
#pragma once

namespace tavrel::modDBsub {

/// A session begins: what an earlier one met is forgotten.
void ForgetFault();

/// Throws again what ended the session; nothing while it is whole.
void RequireNoFault();

/// Called from a handler: the session ends when what is being handled is a failure of the device or a lack of memory.
void NoteFault();

/// Runs `work` for the session.
template <typename Work>
auto InSession(Work work) {
    RequireNoFault();
    try {
        return work();
    } catch (...) {
        NoteFault();
        throw;
    }
}

}  // namespace tavrel::modDBsub
