// Half of the changes to a database know of pages and links; blind ones seldom get past the header.
#include <algorithm>

#include "support/Mutations.h"

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize,
                                               unsigned int seed) {
    constexpr std::size_t kPage = 4096;
    if (seed % 2 == 0 || size < kPage) {
        return LLVMFuzzerMutate(data, size, maxSize);
    }
    tavrel::testing::FileBytes file(data, data + size);
    tavrel::testing::Mutator(seed).Mutate(file);  // never makes it longer
    std::ranges::copy(file, data);
    return file.size();
}
