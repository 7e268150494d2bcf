#include "jet/storage/Bytes.h"

namespace tavrel::jet {

void ThrowDamaged(std::string_view reason) {
    throw MakeError(errors::kDamaged, {}, reason);
}

}  // namespace tavrel::jet
