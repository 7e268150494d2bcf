#include <limits>

#include <gtest/gtest.h>

#include "text/Format.h"
#include "text/Sha256.h"

namespace tavrel::text {
namespace {

TEST(Format, DoublesInTheirShortestForm) {
    const struct {
        double value;
        const char* text;
    } cases[] = {
        {0.0, "0.0"},
        {-0.0, "-0.0"},
        {1.0, "1.0"},
        {-1234.5, "-1234.5"},
        {0.1, "0.1"},
        {1.0 / 3, "0.3333333333333333"},
        {0.0001, "0.0001"},
        {0.00001, "1e-05"},
        {1e15, "1000000000000000.0"},
        {9999999999999998.0, "9999999999999998.0"},
        {1e16, "1e+16"},
        {1.5e100, "1.5e+100"},
        {5e-324, "5e-324"},
        {std::numeric_limits<double>::max(), "1.7976931348623157e+308"},
        {std::numeric_limits<double>::infinity(), "Infinity"},
        {-std::numeric_limits<double>::infinity(), "-Infinity"},
        {std::numeric_limits<double>::quiet_NaN(), "NaN"},
    };
    for (const auto& number : cases) {
        EXPECT_EQ(FormatDouble(number.value), number.text);
    }
}

TEST(Format, ScaledIntegersKeepAllDecimals) {
    EXPECT_EQ(FormatScaled(125000, 4), "12.5000");
    EXPECT_EQ(FormatScaled(-5, 4), "-0.0005");
    EXPECT_EQ(FormatScaled(0, 4), "0.0000");
    EXPECT_EQ(FormatScaled(-42, 0), "-42");
    EXPECT_EQ(FormatScaled(std::numeric_limits<std::int64_t>::min(), 4), "-922337203685477.5808");
}

// The examples that the standard's authors publish, and lengths round the block's borders.
TEST(Sha256, KnownDigests) {
    const struct {
        std::string text;
        const char* digest;
    } cases[] = {
        {"", "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"},
        {"abc", "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"},
        {"abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq",
         "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1"},
        {std::string(1000000, 'a'), "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0"},
    };
    for (const auto& known : cases) {
        Sha256 whole;
        whole.Update(known.text);
        EXPECT_EQ(whole.HexDigest(), known.digest);
    }
}

TEST(Sha256, PiecesGiveTheDigestOfTheWhole) {
    for (std::size_t length = 50; length < 140; ++length) {
        const std::string text(length, 'x');
        Sha256 whole;
        whole.Update(text);
        Sha256 pieces;
        for (std::size_t at = 0; at < length; at += 7) {
            pieces.Update(std::string_view(text).substr(at, 7));
        }
        EXPECT_EQ(pieces.HexDigest(), whole.HexDigest()) << length;
    }
}

}  // namespace
}  // namespace tavrel::text
