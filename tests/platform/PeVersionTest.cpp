// The reader of version resources against damaged program files.
#ifndef _WIN32
#include <fstream>
#include <iterator>
#include <random>

#include <gtest/gtest.h>

#include "platform/posix/PeVersion.h"
#include "support/MemoryFile.h"
#include "support/PeFiles.h"
#include "support/TemporaryFolder.h"

namespace tavrel::platform {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes ProgramFile(tavrel::testing::PeKind kind) {
    const tavrel::testing::TemporaryFolder folder;
    const std::string path = folder.File("a.exe");
    tavrel::testing::MakePeFile(path, tavrel::testing::VersionScript("VALUE \"FileVersion\", \"1.2\""), kind);
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::size_t SizeFound(const Bytes& bytes) {
    tavrel::testing::MemoryFile file(bytes);  // throws for a read outside
    return ReadPeVersion(file).size();
}

TEST(PeVersion, SurvivesAnyDamage) {
    if (!tavrel::testing::CanMakePeFiles()) {
        GTEST_SKIP() << "the MinGW tools are not there";
    }
    for (const auto kind : {tavrel::testing::PeKind::Bits64, tavrel::testing::PeKind::Bits32}) {
        const Bytes whole = ProgramFile(kind);
        const std::size_t size = SizeFound(whole);
        ASSERT_GT(size, 100U);
        for (std::size_t length = 0; length < whole.size(); length += 3) {
            const std::size_t found =
                SizeFound(Bytes(whole.begin(), whole.begin() + static_cast<long>(length)));
            EXPECT_TRUE(found == 0 || found == size) << length;
        }
        std::mt19937 random(7);
        std::size_t lost = 0;
        for (int round = 0; round < 20000; ++round) {
            Bytes damaged = whole;
            for (int i = 0; i < 3; ++i) {
                damaged[random() % damaged.size()] = static_cast<std::uint8_t>(random() % 4 * 85);
            }
            lost += SizeFound(damaged) == 0 ? 1 : 0;
        }
        EXPECT_GT(lost, 100U);  // the damage is felt
    }
}

}  // namespace
}  // namespace tavrel::platform
#endif
