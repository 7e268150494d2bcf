// A file without a name that others could find, gone when it is closed.
#pragma once

#include <cstdio>
#include <memory>

namespace tavrel::platform {

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using TemporaryFile = std::unique_ptr<std::FILE, CloseFile>;

/// Opens one for writing and reading back bytes, in the folder that the system or the user has set for such
/// files. Throws Error 61 when it cannot be made.
TemporaryFile OpenTemporaryFile();

}  // namespace tavrel::platform
