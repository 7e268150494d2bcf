// A page of rows.
//
// | offset | size    | content                                                                     |
// |--------|---------|-----------------------------------------------------------------------------|
// | 00     | u8 u8   | 01 01                                                                       |
// | 02     | u16     | free bytes: lowest row start - (0E + 2 * rows)                              |
// | 04     | u32     | owner: definition page; "LVAL" for long values; 0 for usage maps; 1 = page 1 |
// | 08     | u32     | 0; on the first page of a long-value chain its mark                         |
// | 0C     | u16     | number of row slots                                                         |
// | 0E     | u16 * n | slots: flags | start; row i ends where row i-1 starts, row 0 at the page end |
#pragma once

#include <optional>
#include <span>

#include "jet/storage/Bytes.h"

namespace tavrel::jet {

inline constexpr std::uint8_t kPageTypeData = 1;
inline constexpr std::uint8_t kPageTypeDefinition = 2;
inline constexpr std::uint8_t kPageTypeNode = 3;
inline constexpr std::uint8_t kPageTypeLeaf = 4;
inline constexpr std::uint8_t kPageTypeMap = 5;
inline constexpr std::uint32_t kOwnerLongValues = 0x4C41564C;  // "LVAL"
inline constexpr std::size_t kDataHeader = 0x0E;
inline constexpr unsigned kMaxSlots = 255;
/// The longest row that fits a page of its own.
inline constexpr std::size_t kMaxRowBytes = kPageSize - kDataHeader - 2;

inline constexpr std::uint16_t kSlotMoved = 0x4000;   ///< first 4 bytes: pointer to the row
inline constexpr std::uint16_t kSlotHidden = 0x8000;  ///< target of a moved slot
inline constexpr std::uint16_t kSlotDeleted = 0xC000;

struct Slot {
    std::uint16_t flags = 0;  ///< top two bits
    ByteView row;
};

/// A checked view on a page's rows.
class DataPageView {
  public:
    /// Throws 3428 when the page is no data page or its slot count is impossible.
    explicit DataPageView(ByteView page);
    [[nodiscard]] unsigned SlotCount() const { return count_; }
    [[nodiscard]] std::uint32_t Owner() const { return U32(page_, 4); }
    [[nodiscard]] std::uint32_t ChainMark() const { return U32(page_, 8); }
    [[nodiscard]] unsigned FreeBytes() const { return U16(page_, 2); }
    /// Whether other rows may join: the page of a part of a long-value chain stays alone with it.  The
    /// followers of a chain look like a page with one value, so that only a page with several rows is sure to
    /// be shared.
    [[nodiscard]] bool MayShare() const {
        return Owner() != kOwnerLongValues || (ChainMark() == 0 && SlotCount() > 1);
    }
    /// Throws 3428 when the slot is missing or its bounds are impossible.
    [[nodiscard]] Slot At(unsigned row) const;

  private:
    ByteView page_;
    unsigned count_;
};

/// A slot's new bytes and flags.
struct SlotContent {
    std::uint8_t row = 0;
    ByteView bytes;
    std::uint16_t flags = 0;
};

/// Changes to a data page.  The caller has made the page writable.
class DataPageEditor {
  public:
    explicit DataPageEditor(Page& page) : page_(page) {}
    /// Makes an empty page.
    void Format(std::uint32_t owner, std::uint32_t chainMark = 0);
    /// Room for a row of that length and its slot.
    [[nodiscard]] bool Fits(std::size_t length) const;
    /// REQUIRES: Fits(row.size()).  Returns the slot number.
    std::uint8_t Append(ByteView row, std::uint16_t flags = 0);
    /// Puts other bytes and flags into a slot, whatever the length; rows move inside the page when needed,
    /// and the space of deleted ones is used.  False, and nothing changed, when there is no room.
    bool Replace(std::uint8_t row, ByteView bytes, std::uint16_t flags);
    /// Puts other bytes and flags into slots, ascending, laying the page out once.
    /// REQUIRES: what they grow by is at most RoomAfterTidy().
    void ReplaceMany(std::span<const SlotContent> slots);
    /// Marks a slot deleted.  Its number is not used again.
    void Delete(std::uint8_t row);
    /// Moves the rows together at the end of the page, so that the space of deleted ones is free.
    void Tidy();
    /// Bytes that a row and its slot could have after Tidy.
    [[nodiscard]] unsigned RoomAfterTidy() const { return RoomAfterTidy(DataPageView(page_)); }
    [[nodiscard]] static unsigned RoomAfterTidy(const DataPageView& view);
    /// Rows that are not deleted.
    [[nodiscard]] unsigned LiveRows() const;

  private:
    void PutInPlace(std::size_t start, const SlotContent& slot);
    void LayOut(std::span<const SlotContent> replaced);

    Page& page_;
};

}  // namespace tavrel::jet
