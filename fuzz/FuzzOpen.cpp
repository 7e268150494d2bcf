// Takes any bytes as a database file and reads all that is in it.  Give it a folder with a few small
// databases to start from:
//
//   fuzz-open -max_len=300000 -rss_limit_mb=1024 -timeout=20 FOLDER
#include <algorithm>

#include "support/Mutations.h"

using tavrel::testing::FileBytes;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    tavrel::testing::ReadEverything(FileBytes(data, data + size));
    return 0;
}

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

/// Half of the changes know of pages and links; blind ones seldom get past the header.
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize,
                                               unsigned int seed) {
    constexpr std::size_t kPage = 4096;
    if (seed % 2 == 0 || size < kPage) {
        return LLVMFuzzerMutate(data, size, maxSize);
    }
    FileBytes file(data, data + size);
    tavrel::testing::Mutator(seed).Mutate(file);  // never makes it longer
    std::ranges::copy(file, data);
    return file.size();
}
