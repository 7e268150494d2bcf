// What is the same in every HTML report: looks and behaviour.
#pragma once

#include <string>
#include <string_view>

namespace tavrel::report {

/// Content of the style element.
extern const std::string_view kHtmlStyle;
/// Content of the script element.
extern const std::string_view kHtmlScript;

/// Text for element content and quoted attribute values.
std::string HtmlText(std::string_view utf8);

}  // namespace tavrel::report
