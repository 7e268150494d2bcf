// Takes any bytes as a database file and reads all that is in it.  Give it a folder with a few small
// databases to start from:
//
//   fuzz-open -max_len=300000 -rss_limit_mb=1024 -timeout=20 FOLDER
#include "support/Mutations.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    tavrel::testing::ReadEverything(tavrel::testing::FileBytes(data, data + size));
    return 0;
}
