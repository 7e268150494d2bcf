#include "jet/index/IndexReader.h"

#include <algorithm>

namespace tavrel::jet {

namespace {

bool Less(ByteView left, ByteView right) {
    return std::ranges::lexicographical_compare(left, right);
}

}  // namespace

IndexPageContent IndexReader::Load(PageNumber page) {
    IndexPageContent content = ReadIndexPage(pager_.Read(page));
    if (content.owner != owner_ || content.leaf != (content.level == 0)) {
        ThrowDamaged("인덱스 페이지 " + std::to_string(page) + "이(가) 이 인덱스의 것이 아님");
    }
    return content;
}

/// Each step goes one level down, so that no circle is possible.
void IndexReader::Descend(ByteView key) {
    leaf_ = Load(root_);
    while (!leaf_.leaf) {
        const auto child = std::ranges::lower_bound(leaf_.entries, key, Less, NodeBound);
        const unsigned level = leaf_.level;
        leaf_ = Load(child == leaf_.entries.end() ? leaf_.tail : NodeChild(*child));
        if (leaf_.level + 1U != level) {
            ThrowDamaged("인덱스 페이지의 수준이 잘못됨");
        }
    }
}

bool IndexReader::Seek(ByteView key) {
    Descend(key);
    leavesLeft_ = pager_.PageCount();
    const auto found = std::ranges::lower_bound(leaf_.entries, key, Less,
                                                [](const ByteVector& entry) { return ByteView(entry); });
    place_ = static_cast<std::size_t>(found - leaf_.entries.begin());
    return SkipEmptyLeaves();
}

bool IndexReader::Next() {
    before_ = leaf_.entries[place_];
    ++place_;
    if (!SkipEmptyLeaves()) {
        return false;
    }
    if (!Less(before_, leaf_.entries[place_])) {
        ThrowDamaged("인덱스 항목의 순서가 잘못됨");
    }
    return true;
}

bool IndexReader::SkipEmptyLeaves() {
    while (place_ >= leaf_.entries.size()) {
        if (leaf_.next == 0) {
            return false;
        }
        if (leavesLeft_-- == 0) {
            ThrowDamaged("인덱스 페이지가 원을 이룸");
        }
        leaf_ = Load(leaf_.next);
        if (!leaf_.leaf) {
            ThrowDamaged("인덱스 페이지의 수준이 잘못됨");
        }
        place_ = 0;
    }
    return true;
}

}  // namespace tavrel::jet
