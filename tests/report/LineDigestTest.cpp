#include <gtest/gtest.h>

#include "report/LineDigest.h"

namespace tavrel::report {
namespace {

// printf 'a\nb\n' | sha256sum, and so on
constexpr char kOfNothing[] = "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855";
constexpr char kOfAAndB[] = "911169ddaaf146aff539f58c26c489af3b892dff0fe283c1c264c65ae5aa59a2";

std::string DigestOf(const std::vector<std::string>& lines, std::size_t memory) {
    LineDigest digest(memory);
    for (const std::string& line : lines) {
        digest.Add(line);
    }
    EXPECT_EQ(digest.Count(), lines.size());
    return digest.HexDigest();
}

TEST(LineDigest, DoesNotDependOnOrder) {
    EXPECT_EQ(DigestOf({}, 1000), kOfNothing);
    EXPECT_EQ(DigestOf({"a", "b"}, 1000), kOfAAndB);
    EXPECT_EQ(DigestOf({"b", "a"}, 1000), kOfAAndB);
    EXPECT_NE(DigestOf({"a", "b", "b"}, 1000), kOfAAndB);
}

// Bytes above 7F come after the others; a prefix comes first.
TEST(LineDigest, SortsInFilesAsInMemory) {
    std::vector<std::string> lines;
    for (int i = 0; i < 2000; ++i) {
        lines.push_back(
            std::string(static_cast<std::size_t>(i * 7919 % 97), static_cast<char>(i * 31 % 256)));
    }
    const std::string inMemory = DigestOf(lines, std::size_t{1} << 30);
    EXPECT_EQ(DigestOf(lines, 20'000), inMemory);
    EXPECT_EQ(DigestOf(lines, 1'000), inMemory);
}

}  // namespace
}  // namespace tavrel::report
