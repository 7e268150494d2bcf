// The sentence with which a procedure reports an error that it has caught.
#pragma once

#include <string>
#include <string_view>

#include "text/Error.h"

namespace tavrel {

/// "Error 3031 (…) in procedure MyOpenDB of Module modCmpDB".  `place` is "Module " and a name, or "Form
/// Form1".
inline std::string ProcedureErrorText(const Error& error, std::string_view procedure,
                                      std::string_view place) {
    std::string text = "Error " + std::to_string(error.Number()) + " (" + error.Description() + ")";
    text.append(" in procedure ").append(procedure).append(" of ").append(place);
    return text;
}

}  // namespace tavrel
