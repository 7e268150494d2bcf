#include "jet/compact/RowMap.h"

namespace tavrel::jet::compact {

// ---- ScratchNumbers

ScratchNumbers::ScratchNumbers(platform::File& file, std::uint64_t at, std::size_t residentBlocks)
    : file_(file), at_(at), limit_(residentBlocks) {}

void ScratchNumbers::Clear() {
    size_ = 0;
    frameOf_.clear();
    stored_.clear();
    frames_.clear();
    hand_ = 0;
}

void ScratchNumbers::Append(std::size_t count) {
    size_ += count;
    const std::size_t blocks = (size_ + kBlockNumbers - 1) / kBlockNumbers;
    frameOf_.resize(blocks, kNotResident);
    stored_.resize(blocks, false);
}

std::uint32_t ScratchNumbers::Get(std::size_t index) {
    return (*Load(index / kBlockNumbers).numbers)[index % kBlockNumbers];
}

void ScratchNumbers::Set(std::size_t index, std::uint32_t value) {
    Frame& frame = Load(index / kBlockNumbers);
    (*frame.numbers)[index % kBlockNumbers] = value;
    frame.dirty = true;
}

ScratchNumbers::Frame& ScratchNumbers::Load(std::size_t block) {
    if (frameOf_[block] != kNotResident) {
        Frame& frame = frames_[frameOf_[block]];
        frame.used = true;
        return frame;
    }
    const std::size_t place = FreeFrame();
    Frame& frame = frames_[place];
    if (stored_[block]) {
        file_.ReadAt(at_ + block * sizeof(Block),
                     {reinterpret_cast<std::uint8_t*>(frame.numbers->data()), sizeof(Block)});
    } else {
        frame.numbers->fill(0);
    }
    frame.block = block;
    frame.dirty = false;
    frame.used = true;
    frameOf_[block] = static_cast<std::uint32_t>(place);
    return frame;
}

/// A new frame, or the first that was not used since the hand went by.
std::size_t ScratchNumbers::FreeFrame() {
    if (frames_.size() < limit_) {
        frames_.push_back({.numbers = std::make_unique<Block>()});
        return frames_.size() - 1;
    }
    while (frames_[hand_].used) {
        frames_[hand_].used = false;
        hand_ = (hand_ + 1) % frames_.size();
    }
    Evict(frames_[hand_]);
    return hand_;
}

void ScratchNumbers::Evict(Frame& frame) {
    if (frame.dirty) {
        file_.WriteAt(at_ + frame.block * sizeof(Block),
                      {reinterpret_cast<const std::uint8_t*>(frame.numbers->data()), sizeof(Block)});
        stored_[frame.block] = true;
    }
    frameOf_[frame.block] = kNotResident;
}

// ---- RowMap

RowMap::RowMap(ScratchNumbers& numbers, PageNumber pages)
    : numbers_(numbers), first_(pages, 0), slots_(pages, 0) {}

void RowMap::Clear() {
    for (const PageNumber page : pages_) {
        first_[page] = 0;
    }
    pages_.clear();
    numbers_.Clear();
}

void RowMap::AddPage(PageNumber page, unsigned slots) {
    first_[page] = static_cast<std::uint32_t>(numbers_.Size() + 1);
    slots_[page] = static_cast<std::uint8_t>(slots);
    numbers_.Append(slots);
    pages_.push_back(page);
}

void RowMap::Set(RowPointer from, RowPointer to) {
    numbers_.Set(first_[from.page] - 1 + from.row, to.ToU32());
}

RowPointer RowMap::Get(RowPointer from) {
    if (from.page >= first_.size() || first_[from.page] == 0 || from.row >= slots_[from.page]) {
        return {};
    }
    return RowPointer::FromU32(numbers_.Get(first_[from.page] - 1 + from.row));
}

}  // namespace tavrel::jet::compact
