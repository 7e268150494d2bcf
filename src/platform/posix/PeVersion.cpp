#include "platform/posix/PeVersion.h"

#include <algorithm>
#include <array>
#include <optional>

namespace tavrel::platform {
namespace {

// Where the headers keep what leads to the resources; all numbers are little-endian.
constexpr std::uint16_t kDosSignature = 0x5A4D;     // "MZ"
constexpr std::uint64_t kPeOffsetAt = 0x3C;         // in the DOS header
constexpr std::uint32_t kPeSignature = 0x00004550;  // "PE", two zeros
constexpr std::uint64_t kSectionCountAt = 6;        // from the PE signature, as are the next two
constexpr std::uint64_t kOptionalSizeAt = 20;
constexpr std::uint64_t kOptionalHeaderAt = 24;
constexpr std::uint64_t kSectionSize = 40;
constexpr std::uint64_t kResourceDirectory = 2;  // index among the data directories
constexpr std::uint16_t kMostSections = 96;      // more are not loaded
constexpr std::uint32_t kVersionType = 16;
constexpr std::uint32_t kVersionName = 1;
constexpr std::uint32_t kSubfolder = 0x80000000;
constexpr std::uint32_t kLargestResource = 1U << 20U;
/// The first of these is taken, else whatever language stands first.
constexpr std::array<std::uint32_t, 3> kPreferredLanguages = {0x0412, 0, 0x0409};

/// By the kind of optional header: where the number of data directories stands; they follow it.
struct HeaderKind {
    std::uint16_t magic;
    std::uint64_t directoryCountAt;
};
constexpr HeaderKind kHeaderKinds[] = {{0x010B, 92}, {0x020B, 108}};  // 32 bit, 64 bit

struct Section {
    std::uint32_t address;
    std::uint32_t rawSize;
    std::uint32_t rawOffset;
};

/// Numbers and bytes at offsets; nothing for what does not lie in the file.
class Reader {
  public:
    explicit Reader(File& file) : file_(file), size_(file.Size()) {}

    std::optional<std::vector<std::uint8_t>> Bytes(std::uint64_t offset, std::uint32_t count) {
        if (offset > size_ || count > size_ - offset) {
            return std::nullopt;
        }
        std::vector<std::uint8_t> bytes(count);
        file_.ReadAt(offset, bytes);
        return bytes;
    }

    std::optional<std::uint32_t> Number32(std::uint64_t offset) { return Number(offset, 4); }
    std::optional<std::uint16_t> Number16(std::uint64_t offset) {
        const auto number = Number(offset, 2);
        return number ? std::optional(static_cast<std::uint16_t>(*number)) : std::nullopt;
    }

  private:
    std::optional<std::uint32_t> Number(std::uint64_t offset, std::uint32_t width) {
        const auto bytes = Bytes(offset, width);
        if (!bytes) {
            return std::nullopt;
        }
        std::uint32_t number = 0;
        for (std::uint32_t i = 0; i < width; ++i) {
            number |= static_cast<std::uint32_t>((*bytes)[i]) << 8U * i;
        }
        return number;
    }

    File& file_;
    std::uint64_t size_;
};

class PeFile {
  public:
    explicit PeFile(File& file) : reader_(file) {}

    std::vector<std::uint8_t> VersionResource() {
        if (!FindHeader() || !ReadSections()) {
            return {};
        }
        const auto address = ResourceAddress();
        const auto root = address ? OffsetOf(*address) : std::nullopt;
        if (!root) {
            return {};
        }
        root_ = *root;
        const auto names = Subfolder(0, kVersionType);
        const auto languages = names ? Subfolder(*names, kVersionName) : std::nullopt;
        const auto leaf = languages ? PreferredLanguage(*languages) : std::nullopt;
        return leaf ? Data(*leaf) : std::vector<std::uint8_t>();
    }

  private:
    bool FindHeader() {
        if (reader_.Number16(0) != kDosSignature) {
            return false;
        }
        const auto offset = reader_.Number32(kPeOffsetAt);
        if (!offset || reader_.Number32(*offset) != kPeSignature) {
            return false;
        }
        header_ = *offset;
        return true;
    }

    bool ReadSections() {
        const auto count = reader_.Number16(header_ + kSectionCountAt);
        const auto optionalSize = reader_.Number16(header_ + kOptionalSizeAt);
        if (!count || !optionalSize || *count > kMostSections) {
            return false;
        }
        const std::uint64_t first = header_ + kOptionalHeaderAt + *optionalSize;
        for (std::uint64_t at = first; at < first + *count * kSectionSize; at += kSectionSize) {
            const auto address = reader_.Number32(at + 12);
            const auto rawSize = reader_.Number32(at + 16);
            const auto rawOffset = reader_.Number32(at + 20);
            if (!address || !rawSize || !rawOffset) {
                return false;
            }
            sections_.push_back({*address, *rawSize, *rawOffset});
        }
        return true;
    }

    std::optional<std::uint32_t> ResourceAddress() {
        const std::uint64_t optional = header_ + kOptionalHeaderAt;
        const auto magic = reader_.Number16(optional);
        const auto* kind = std::ranges::find(kHeaderKinds, magic.value_or(0), &HeaderKind::magic);
        if (kind == std::ranges::end(kHeaderKinds)) {
            return std::nullopt;
        }
        const std::uint64_t count = optional + kind->directoryCountAt;
        if (reader_.Number32(count).value_or(0) <= kResourceDirectory) {
            return std::nullopt;
        }
        return reader_.Number32(count + 4 + 8 * kResourceDirectory);
    }

    /// The place in the file of what is loaded at `address`.
    [[nodiscard]] std::optional<std::uint64_t> OffsetOf(std::uint32_t address) const {
        for (const Section& section : sections_) {
            if (address >= section.address && address - section.address < section.rawSize) {
                return std::uint64_t{section.rawOffset} + (address - section.address);
            }
        }
        return std::nullopt;
    }

    /// Calls `take(id, target)` for the folder's numbered entries until it returns true.  `folder` and
    /// targets count from the resources' beginning.
    template <typename Take>
    void VisitEntries(std::uint32_t folder, Take take) {
        const std::uint64_t place = root_ + folder;
        const auto named = reader_.Number16(place + 12);
        const auto numbered = reader_.Number16(place + 14);
        if (!named || !numbered) {
            return;
        }
        const std::uint64_t first = place + 16 + std::uint64_t{*named} * 8;
        for (std::uint64_t at = first; at < first + std::uint64_t{*numbered} * 8; at += 8) {
            const auto id = reader_.Number32(at);
            const auto target = reader_.Number32(at + 4);
            if (!id || !target || take(*id, *target)) {
                return;
            }
        }
    }

    std::optional<std::uint32_t> Subfolder(std::uint32_t folder, std::uint32_t wanted) {
        std::optional<std::uint32_t> found;
        VisitEntries(folder, [&](std::uint32_t id, std::uint32_t target) {
            if (id == wanted && (target & kSubfolder) != 0) {
                found = target & ~kSubfolder;
            }
            return id == wanted;
        });
        return found;
    }

    std::optional<std::uint32_t> PreferredLanguage(std::uint32_t folder) {
        std::optional<std::uint32_t> best;
        std::size_t bestRank = kPreferredLanguages.size() + 1;
        VisitEntries(folder, [&](std::uint32_t language, std::uint32_t target) {
            const auto rank = static_cast<std::size_t>(std::ranges::find(kPreferredLanguages, language) -
                                                       kPreferredLanguages.begin());
            if (rank < bestRank && (target & kSubfolder) == 0) {
                best = target;
                bestRank = rank;
            }
            return bestRank == 0;
        });
        return best;
    }

    std::vector<std::uint8_t> Data(std::uint32_t leaf) {
        const auto address = reader_.Number32(root_ + leaf);
        const auto size = reader_.Number32(root_ + leaf + 4);
        if (!address || !size || *size > kLargestResource) {
            return {};
        }
        const auto offset = OffsetOf(*address);
        return offset ? reader_.Bytes(*offset, *size).value_or(std::vector<std::uint8_t>())
                      : std::vector<std::uint8_t>();
    }

    Reader reader_;
    std::uint64_t header_ = 0;
    std::uint64_t root_ = 0;
    std::vector<Section> sections_;
};

}  // namespace

std::vector<std::uint8_t> ReadPeVersion(File& file) {
    return PeFile(file).VersionResource();
}

}  // namespace tavrel::platform
