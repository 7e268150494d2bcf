#include "jet/compact/IndexOutput.h"

#include <algorithm>

#include "jet/index/IndexPage.h"
#include "jet/storage/DataPage.h"

namespace tavrel::jet::compact {

namespace {

constexpr std::size_t kRowBytes = 4;
constexpr std::size_t kChildBytes = 4;

/// Puts a page's bytes together.
class PageComposer {
  public:
    PageComposer(std::uint8_t type, PageNumber owner, std::size_t level) {
        page_[0] = type;
        page_[1] = 0x01;
        PutU32(page_, 0x04, owner);
        page_[0x1A] = static_cast<std::uint8_t>(level);
    }
    void Link(PageNumber previous, PageNumber next, PageNumber tail) {
        PutU32(page_, 0x0C, previous);
        PutU32(page_, 0x10, next);
        PutU32(page_, 0x14, tail);
    }
    void SetPrefix(std::size_t prefix) { PutU16(page_, 0x18, static_cast<std::uint16_t>(prefix)); }
    void Add(ByteView bytes) {
        std::memcpy(page_.data() + kIndexEntries + used_, bytes.data(), bytes.size());
        used_ += bytes.size();
    }
    void EndEntry() { page_[0x1B + used_ / 8] |= static_cast<std::uint8_t>(1U << used_ % 8); }
    const Page& Finish() {
        PutU16(page_, 0x02, static_cast<std::uint16_t>(kIndexRoom - used_));
        return page_;
    }

  private:
    Page page_{};
    std::size_t used_ = 0;
};

std::size_t CommonLength(ByteView left, ByteView right, std::size_t limit) {
    std::size_t length = 0;
    limit = std::min({limit, left.size(), right.size()});
    while (length < limit && left[length] == right[length]) {
        ++length;
    }
    return length;
}

bool SameKey(ByteView left, ByteView right) {
    return left.size() == right.size() &&
           std::memcmp(left.data(), right.data(), left.size() - kRowBytes) == 0;
}

}  // namespace

IndexOutput::IndexOutput(PageOutput& out, PageNumber table) : out_(out), table_(table), leaf_(Take()) {}

PageNumber IndexOutput::Take() {
    written_.pages.push_back(out_.Take());
    return written_.pages.back();
}

void IndexOutput::Add(ByteView entry) {
    ++written_.entries;
    if (ends_.empty()) {
        ++written_.distinctKeys;
        StartLeaf(entry);
        return;
    }
    const ByteView first = ByteView(bytes_).first(ends_.front());
    const std::size_t lastStart = ends_.size() == 1 ? 0 : ends_[ends_.size() - 2];
    written_.distinctKeys += SameKey(ByteView(bytes_).subspan(lastStart), entry) ? 0 : 1;
    const std::size_t shared = CommonLength(first, entry, prefix_);
    if (bytes_.size() + entry.size() - shared * ends_.size() > kIndexRoom) {
        const PageNumber next = Take();
        WriteLeaf(next);
        previousLeaf_ = leaf_;
        leaf_ = next;
        StartLeaf(entry);
        return;
    }
    prefix_ = shared;
    AppendBytes(bytes_, entry);
    ends_.push_back(bytes_.size());
}

void IndexOutput::StartLeaf(ByteView entry) {
    bytes_.assign(entry.begin(), entry.end());
    ends_.assign(1, entry.size());
    prefix_ = entry.size();
}

/// The shared front of later entries is left out if they do not fit otherwise.
void IndexOutput::WriteLeaf(PageNumber next) {
    PageComposer page(kPageTypeLeaf, table_, 0);
    page.Link(previousLeaf_, next, 0);
    const std::size_t prefix = bytes_.size() > kIndexRoom ? prefix_ : 0;
    page.SetPrefix(prefix);
    std::size_t start = 0;
    for (const std::size_t end : ends_) {
        const std::size_t from = start == 0 ? 0 : start + prefix;
        page.Add(ByteView(bytes_).subspan(from, end - from));
        page.EndEntry();
        start = end;
    }
    out_.Put(leaf_, page.Finish());
    const std::size_t lastStart = ends_.size() < 2 ? 0 : ends_[ends_.size() - 2];
    AddChild(0, {leaf_, ByteVector(bytes_.begin() + static_cast<std::ptrdiff_t>(lastStart), bytes_.end())});
}

void IndexOutput::AddChild(std::size_t level, Child child) {
    if (level == levels_.size()) {
        levels_.emplace_back();
    }
    Level& nodes = levels_[level];
    Node& current = nodes.current;
    if (!current.children.empty()) {
        if (current.page == 0) {
            current.page = Take();
        }
        const std::size_t more = current.children.back().last.size() + kChildBytes;
        if (current.used + more > kIndexRoom) {
            Node next{.page = Take(), .previous = current.page, .children = {}, .used = 0};
            std::optional<Node> full = std::move(nodes.held);
            nodes.held = std::move(current);
            nodes.current = std::move(next);
            if (full) {
                WriteNode(level, std::move(*full), nodes.held->page);
            }
        } else {
            current.used += more;
        }
    }
    nodes.current.children.push_back(std::move(child));
}

/// Every child but the last, the tail, is named with the greatest entry below it.
void IndexOutput::WriteNode(std::size_t level, Node node, PageNumber next) {
    PageComposer page(kPageTypeNode, table_, level + 1);
    page.Link(node.previous, next, node.children.back().page);
    for (std::size_t i = 0; i + 1 < node.children.size(); ++i) {
        ByteVector number;
        AppendU32Be(number, node.children[i].page);
        page.Add(node.children[i].last);
        page.Add(number);
        page.EndEntry();
    }
    out_.Put(node.page, page.Finish());
    AddChild(level + 1, {node.page, std::move(node.children.back().last)});
}

/// A level of one page is the root.
PageNumber IndexOutput::FinishNodes() {
    for (std::size_t level = 0;; ++level) {
        Level& nodes = levels_[level];
        if (!nodes.held && nodes.current.children.size() == 1) {
            return nodes.current.children.front().page;
        }
        if (nodes.held) {
            // A last node with a tail only would have no entry: its neighbour gives one away if that leaves
            // it one.
            if (nodes.current.children.size() == 1 && nodes.held->children.size() > 2) {
                nodes.current.children.insert(nodes.current.children.begin(),
                                              std::move(nodes.held->children.back()));
                nodes.held->children.pop_back();
            }
            WriteNode(level, std::move(*nodes.held), nodes.current.page);
        }
        WriteNode(level, std::move(nodes.current), 0);
    }
}

WrittenIndex IndexOutput::Finish() {
    WriteLeaf(0);
    written_.root = FinishNodes();
    return std::move(written_);
}

}  // namespace tavrel::jet::compact
