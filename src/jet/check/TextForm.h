// Whether a text is stored in the form that the engine would have chosen.
#pragma once

#include "jet/storage/TextCoding.h"

namespace tavrel::jet::check {

enum class TextForm {
    Right,
    NotCompressed,  ///< plain where the compressed form would have done: harmless
    Wrong           ///< compressed where that is not allowed, or in another way
};

struct TextFacts {
    std::size_t plainBytes = 0;  ///< of the text in UTF-16
    TextForm form = TextForm::Right;
};

/// Throws 3428 when the bytes are no text.
TextFacts ExamineText(ByteView stored, bool compress, TextKind kind);

}  // namespace tavrel::jet::check
