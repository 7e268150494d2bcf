// The key of a text: weights instead of characters, so that letter case does not count and marks count last.
//
//   7F | primary weights | 01 | marks | [01 01 01 | positional characters] | 00
//
// The two sections between marks and positional characters (letter case, extra weights) are always empty
// here. Marks have a byte for each weight; those at the end that say "none" are left out.  A positional
// character gives no weight but four bytes: its place, 8007 + 4 for each weight before it, big-endian, and
// two bytes of its own.
#include <algorithm>
#include <functional>

#include "jet/index/Collation.h"
#include "jet/index/KeyEncoder.h"
#include "text/Case.h"
#include "text/Utf.h"

namespace tavrel::jet {

namespace {

constexpr std::uint8_t kTextFollows = 0x7F;
constexpr std::uint8_t kSectionEnd = 0x01;
constexpr std::uint8_t kKeyEnd = 0x00;
constexpr std::uint8_t kStandIn = 0xFF;
constexpr std::size_t kFirstPlace = 0x8007;
constexpr std::size_t kPlaceStep = 4;

std::uint8_t High(std::size_t value) {
    return static_cast<std::uint8_t>(value >> 8);
}
std::uint8_t Low(std::size_t value) {
    return static_cast<std::uint8_t>(value);
}

class TextKeyBuilder {
  public:
    /// The key goes behind what `key` holds.
    explicit TextKeyBuilder(ByteVector& key) : key_(key) { key_.push_back(kTextFollows); }

    /// False when a positional character stands too far behind for its place to be written.
    bool Add(const TextWeight& weight) {
        switch (weight.kind) {
            case WeightKind::Positional:
                return AddPositional(weight.primary);
            case WeightKind::Expansion:
                AddWeight(High(weight.primary), weight.mark);
                AddWeight(Low(weight.primary), weight.mark);
                return true;
            default:
                AddWeight(weight.primary, weight.mark);
                return true;
        }
    }

    void AddStandIn(char16_t unit) {
        const std::u16string upper = text::Utf16FromUtf8(text::Upper(text::Utf8FromUtf16({&unit, 1})));
        const std::uint32_t code = upper.size() == 1 ? upper.front() : unit;
        key_.push_back(kStandIn);
        for (const unsigned shift : {14U, 7U, 0U}) {
            key_.push_back(static_cast<std::uint8_t>((code >> shift & 0x7F) + 2));
        }
        ++weights_;
    }

    void Finish() {
        key_.push_back(kSectionEnd);
        AppendBytes(key_, marks_);
        if (!positional_.empty()) {
            key_.insert(key_.end(), 3, kSectionEnd);
            AppendBytes(key_, positional_);
        }
        key_.push_back(kKeyEnd);
    }

  private:
    void AddWeight(std::uint16_t primary, std::uint8_t mark) {
        if (High(primary) != 0) {
            key_.push_back(High(primary));
        }
        key_.push_back(Low(primary));
        ++weights_;
        if (mark != kNoMark) {
            marks_.resize(weights_ - 1, kNoMark);
            marks_.push_back(mark);
        }
    }

    bool AddPositional(std::uint16_t bytes) {
        const std::size_t place = kFirstPlace + kPlaceStep * weights_;
        if (place > 0xFFFF) {
            return false;
        }
        positional_.insert(positional_.end(), {High(place), Low(place), High(bytes), Low(bytes)});
        return true;
    }

    ByteVector& key_;
    ByteVector marks_;  ///< up to the last weight that has one
    ByteVector positional_;
    std::size_t weights_ = 0;
};

}  // namespace

bool IsKnownSortOrder(std::uint16_t sortOrder) {
    return Collation::Find(sortOrder) != nullptr;
}

bool AppendTextKey(ByteVector& key, std::u16string_view text, std::uint16_t sortOrder, bool ascending,
                   UnknownWeights unknown) {
    const bool standIns = unknown == UnknownWeights::StandIn;
    const Collation* collation = Collation::Find(sortOrder);
    if (collation == nullptr && !standIns) {
        return false;
    }
    const std::size_t begin = key.size();
    text = text.substr(0, text.find_last_not_of(u' ') + 1);
    TextKeyBuilder builder(key);
    while (!text.empty()) {
        const auto match = collation == nullptr ? std::nullopt : collation->At(text);
        if (!match && standIns) {
            builder.AddStandIn(text.front());
        } else if (!match || !builder.Add(match->weight)) {
            key.resize(begin);
            return false;
        }
        text.remove_prefix(match ? match->units : 1);
    }
    builder.Finish();
    if (!ascending) {
        const std::span<std::uint8_t> added = std::span(key).subspan(begin);
        std::ranges::transform(added, added.begin(), std::bit_not<std::uint8_t>());
        key.push_back(kKeyEnd);
    }
    return true;
}

std::optional<ByteVector> EncodeTextKey(std::u16string_view text, std::uint16_t sortOrder, bool ascending,
                                        UnknownWeights unknown) {
    ByteVector key;
    key.reserve(2 * text.size() + 8);
    return AppendTextKey(key, text, sortOrder, ascending, unknown) ? std::optional(std::move(key))
                                                                   : std::nullopt;
}

}  // namespace tavrel::jet
