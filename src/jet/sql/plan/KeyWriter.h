// Values as bytes whose order is that of the values: Nulls first, then numbers, texts, bytes.  Equal values
// have equal keys, whatever number types they come in.
#pragma once

#include "jet/sql/expression/Node.h"

namespace tavrel::jet::sql {

/// How numbers are written.  Keys compare only with keys of the same mode.
enum class KeyMode : std::uint8_t {
    General,   ///< by their value as Double
    Currency,  ///< exactly; for values that are all Currency or Null
    Decimal    ///< by value as Double and then exactly; for values that are all Decimal or Null
};
/// The mode for values of two types that are to meet.
KeyMode KeyModeOf(StaticType a, StaticType b);

void AppendKey(const Value& value, KeyMode mode, const TextComparer& texts, ByteVector& out);

/// The key of a row: some expressions, one behind the other.
class KeyWriter {
  public:
    explicit KeyWriter(const TextComparer& texts) : texts_(&texts) {}
    void Add(NodePtr node, KeyMode mode, bool descending = false);

    /// The key of the present row; good until the next call.
    ByteView Write();
    /// True when one of the values just written was Null.
    [[nodiscard]] bool HadNull() const { return hadNull_; }
    [[nodiscard]] std::size_t Size() const { return parts_.size(); }
    [[nodiscard]] bool Empty() const { return parts_.empty(); }

  private:
    struct Part {
        NodePtr node;
        KeyMode mode;
        bool descending;
    };
    const TextComparer* texts_;
    std::vector<Part> parts_;
    ByteVector key_;
    bool hadNull_ = false;
};

}  // namespace tavrel::jet::sql
