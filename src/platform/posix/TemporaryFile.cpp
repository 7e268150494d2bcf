#include "platform/TemporaryFile.h"

#include "text/Error.h"

namespace tavrel::platform {

TemporaryFile OpenTemporaryFile() {
    TemporaryFile file(std::tmpfile());
    if (!file) {
        throw MakeError(errors::kDiskFull);
    }
    return file;
}

}  // namespace tavrel::platform
