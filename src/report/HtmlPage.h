// What is the same in every HTML report: looks and behaviour.
#pragma once

#include <ostream>
#include <string>
#include <string_view>

namespace tavrel::report {

/// Content of the style element.
std::string HtmlStyle();
/// Content of the script element.
extern const std::string_view kHtmlScript;

/// The document as far as its head goes: what a page may load, its title, its style.
void WriteHtmlHead(std::ostream& out, std::string_view title);

/// Text for element content and quoted attribute values.
std::string HtmlText(std::string_view utf8);

}  // namespace tavrel::report
