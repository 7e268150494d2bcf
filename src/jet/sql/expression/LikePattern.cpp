#include "jet/sql/expression/LikePattern.h"

#include <algorithm>

#include "jet/sql/expression/Nodes.h"
#include "text/Case.h"
#include "text/Utf.h"

namespace tavrel::jet::sql {

namespace {

void SplitUpper(std::string_view text, std::u32string& characters) {
    characters.clear();
    for (const char c : text) {
        if ((static_cast<unsigned char>(c) & 0x80) != 0) {
            characters.clear();
            break;
        }
        characters.push_back(static_cast<char32_t>(c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c));
    }
    if (!characters.empty() || text.empty()) {
        return;
    }
    const std::string upper = text::Upper(text);
    for (std::size_t at = 0; at < upper.size();) {
        characters.push_back(text::NextCodePoint(upper, at));
    }
}

}  // namespace

bool LikePattern::Element::Accepts(char32_t c) const {
    if (kind == Kind::Any) {
        return true;
    }
    const bool inside =
        std::ranges::any_of(ranges, [c](const Range& range) { return c >= range.first && c <= range.last; });
    return inside != negated;
}

LikePattern::LikePattern(std::string_view pattern) : source_(pattern) {
    std::u32string upper;
    SplitUpper(pattern, upper);
    for (std::size_t at = 0; at < upper.size();) {
        if (upper[at] == U'[' && upper.find(U']', at) != std::u32string::npos) {
            at = ReadSet(upper, at + 1);
            continue;
        }
        Element element;
        element.kind = upper[at] == U'%'   ? Element::Kind::Run
                       : upper[at] == U'_' ? Element::Kind::Any
                                           : Element::Kind::Character;
        element.ranges.push_back({upper[at], upper[at]});
        elements_.push_back(std::move(element));
        ++at;
    }
}

/// Reads behind the opening bracket; returns the place behind the closing one.  [] matches nothing at all and
/// is left out.
std::size_t LikePattern::ReadSet(std::u32string_view upper, std::size_t at) {
    Element element;
    element.kind = Element::Kind::Set;
    element.negated = upper[at] == U'!';
    at += element.negated ? 1 : 0;
    while (upper[at] != U']') {
        const bool range = at + 2 < upper.size() && upper[at + 1] == U'-' && upper[at + 2] != U']';
        element.ranges.push_back({upper[at], range ? upper[at + 2] : upper[at]});
        at += range ? 3 : 1;
    }
    if (!element.ranges.empty()) {
        elements_.push_back(std::move(element));
    }
    return at + 1;
}

/// When a character does not fit, the last % takes one more: no earlier one ever has to.
bool LikePattern::Matches(std::string_view text) const {
    SplitUpper(text, characters_);
    constexpr std::size_t kNone = static_cast<std::size_t>(-1);
    std::size_t element = 0;
    std::size_t at = 0;
    std::size_t lastRun = kNone;
    std::size_t runEnd = 0;
    while (at < characters_.size()) {
        if (element < elements_.size() && elements_[element].kind == Element::Kind::Run) {
            lastRun = element++;
            runEnd = at;
        } else if (element < elements_.size() && elements_[element].Accepts(characters_[at])) {
            ++element;
            ++at;
        } else if (lastRun != kNone) {
            element = lastRun + 1;
            at = ++runEnd;
        } else {
            return false;
        }
    }
    return std::all_of(elements_.begin() + static_cast<std::ptrdiff_t>(element), elements_.end(),
                       [](const Element& rest) { return rest.kind == Element::Kind::Run; });
}

namespace {

class LikeNode : public Node {
  public:
    LikeNode(NodePtr text, NodePtr pattern, bool negated)
        : Node(ColumnType::Boolean),
          text_(std::move(text)),
          pattern_(std::move(pattern)),
          negated_(negated),
          compiled_("") {}

    const Value& Evaluate() override {
        result_ = ToValue(Test());
        return result_;
    }
    Truth Test() override {
        const Value& text = text_->Evaluate();
        const Value& pattern = pattern_->Evaluate();
        if (IsNull(text) || IsNull(pattern)) {
            return Truth::Unknown;
        }
        Spell(pattern, spelledPattern_);
        if (spelledPattern_ != compiled_.Source()) {
            compiled_ = LikePattern(spelledPattern_);
        }
        Spell(text, spelledText_);
        return ToTruth(compiled_.Matches(spelledText_) != negated_);
    }

  private:
    static void Spell(const Value& value, std::string& out) {
        out.clear();
        AppendText(value, out);
    }

    NodePtr text_;
    NodePtr pattern_;
    bool negated_;
    LikePattern compiled_;
    std::string spelledPattern_;
    std::string spelledText_;
    Value result_;
};

}  // namespace

NodePtr MakeLike(NodePtr text, NodePtr pattern, bool negated) {
    for (const NodePtr* operand : {&text, &pattern}) {
        if (FamilyOf((*operand)->Type()) == Family::Bytes) {
            throw MakeError(errors::kTypeMismatch);
        }
    }
    return std::make_unique<LikeNode>(std::move(text), std::move(pattern), negated);
}

}  // namespace tavrel::jet::sql
