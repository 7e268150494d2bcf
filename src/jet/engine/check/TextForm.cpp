#include "jet/engine/check/TextForm.h"

#include <algorithm>

namespace tavrel::jet::check {

TextFacts ExamineText(ByteView stored, bool compress, TextKind kind) {
    const bool compressed = stored.size() >= 2 && stored[0] == 0xFF && stored[1] == 0xFE;
    const std::u16string units = DecodeUnits(stored);
    TextFacts facts{units.size() * 2, TextForm::Right};
    if (compressed && !compress) {
        facts.form = TextForm::Wrong;
    } else if (compress) {
        const ByteVector wanted = StoreText(units, true, kind);
        if (!std::equal(wanted.begin(), wanted.end(), stored.begin(), stored.end())) {
            facts.form = compressed ? TextForm::Wrong : TextForm::NotCompressed;
        }
    }
    return facts;
}

}  // namespace tavrel::jet::check
