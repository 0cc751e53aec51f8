// HtmlPage: the page of the HTML report, composed when the program is built.
//
// Ownership: constants.
#pragma once

#include <string_view>

namespace havhost {

extern const std::string_view kHtmlBeforeData;
extern const std::string_view kHtmlAfterData;
// The Content-Security-Policy that the page states itself.
extern const std::string_view kHtmlPolicy;

}  // namespace havhost
