// Damaged files: whatever the bytes say, reading ends in an answer or in a clear error, soon and in little
// memory.
//
// To look into one case: TAVREL_MUTATIONS=first,count runs those seeds only and tells each before it starts.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>

#include <gmock/gmock.h>

#include "support/Corpus.h"
#include "support/Mutations.h"

namespace tavrel::testing {
namespace {

/// Generous: the slowest takes a twentieth of it, and sanitizers make all of it slower.
constexpr std::chrono::seconds kLimit{20};

struct Source {
    const char* file;
    std::uint32_t mutations;
};

FileBytes ReadFile(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

class MutationTest : public ::testing::TestWithParam<Source> {
  protected:
    static void Run(const FileBytes& sound, std::uint32_t count) {
        std::uint32_t first = 1;
        const char* chosen = std::getenv("TAVREL_MUTATIONS");
        if (chosen != nullptr) {
            std::sscanf(chosen, "%u,%u", &first, &count);
        }
        std::size_t answered = 0;
        std::size_t refused = 0;
        for (std::uint32_t seed = first; seed < first + count; ++seed) {
            FileBytes file = sound;
            const std::string done = Mutator(seed).Mutate(file);
            if (chosen != nullptr) {
                std::cerr << seed << ": " << done << std::endl;
            }
            const auto start = std::chrono::steady_clock::now();
            Exercise exercise;
            ASSERT_NO_THROW(exercise = ReadEverything(file)) << "seed " << seed << ": " << done;
            ASSERT_LT(std::chrono::steady_clock::now() - start, kLimit) << "seed " << seed << ": " << done;
            answered += exercise.answers != 0 ? 1 : 0;
            refused += exercise.errors + exercise.findings != 0 ? 1 : 0;
        }
        // Damage that never gets in, or is never seen, would test nothing.
        EXPECT_TRUE(chosen != nullptr || (answered > count / 2 && refused > count / 4))
            << answered << " " << refused;
    }
};

TEST_P(MutationTest, SampleDatabase) {
    TAVREL_NEEDS_CORPUS();
    const FileBytes sound = ReadFile(std::filesystem::path(SharedFolder()) / "corpus" / GetParam().file);
    ASSERT_FALSE(sound.empty());
    Run(sound, GetParam().mutations);
}

constexpr Source kSources[] = {
    {"wedding-ko.mdb", 250},     {"coal-washing-1.mdb", 250},  {"motel.mdb", 250},     {"course-2.mdb", 250},
    {"jet-station-tr.mdb", 200}, {"airport-tickets.mdb", 200}, {"library-ko.mdb", 100}};

INSTANTIATE_TEST_SUITE_P(Files, MutationTest, ::testing::ValuesIn(kSources), [](const auto& source) {
    std::string name = source.param.file;
    std::erase_if(name, [](char c) { return std::isalnum(static_cast<unsigned char>(c)) == 0; });
    return name;
});

}  // namespace
}  // namespace tavrel::testing
