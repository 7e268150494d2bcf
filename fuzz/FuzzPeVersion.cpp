// Takes any bytes as a program file and reads its version resource.  Start from a folder with a few small
// program files:
//
//   fuzz-pe-version -max_len=20000 FOLDER
#include "platform/posix/PeVersion.h"
#include "support/MemoryFile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    tavrel::testing::MemoryFile file({data, data + size});
    tavrel::platform::ReadPeVersion(file);
    return 0;
}
