#include "report/HtmlPage.h"

#include <array>

#include "grid/CellRoles.h"
#include "report/DisplayText.h"

namespace tavrel::report {

namespace {

// Painted cells keep the window's light colours, with black text, in the dark scheme too.  No state is told
// by colour alone: differing cells are bold in a frame, one-sided rows say which side, marked rows say in
// words what differs.
constexpr std::string_view kStyle = R"css(
:root{color-scheme:light dark;--back:#fff;--text:#000;--bar:#f0f2f5;--head:#e4e8ee;--line:#c4cad3;--gap:#f3f3f3;
 --compare:var(--mark);--current:#0050d0}
@media (prefers-color-scheme:dark){:root{--back:#15171b;--text:#e8e8e8;--bar:#1f2329;--head:#2a2f37;--line:#444b56;
 --gap:#1d2025;--compare:#12383c;--current:#ffd84d}}
*{box-sizing:border-box}
html,body{height:100%;margin:0}
body{display:flex;flex-direction:column;background:var(--back);color:var(--text);
 font:14px/1.35 "Malgun Gothic","Apple SD Gothic Neo","Noto Sans CJK KR","Noto Sans KR",sans-serif}
header{padding:.6rem .9rem;background:var(--bar);border-bottom:1px solid var(--line)}
h1{margin:0 0 .3rem;font-size:1.15rem}
h1+p{margin:0 0 .5rem;font-weight:700}
.tools{display:flex;flex-wrap:wrap;gap:.5rem 1rem;align-items:center}
button{font:inherit;padding:.3rem .8rem}
#place{min-width:6em}
main{flex:1;min-height:0;overflow:auto;position:relative}
table{border-collapse:separate;border-spacing:0;table-layout:fixed;width:100%;min-width:1200px}
caption{position:absolute;clip-path:inset(50%);width:1px;height:1px;overflow:hidden;white-space:nowrap}
thead{position:sticky;top:0;z-index:1}
th,td{border:solid var(--line);border-width:0 1px 1px 0;padding:1px 4px;text-align:left;vertical-align:top;
 overflow-wrap:anywhere;white-space:pre-wrap}
thead th{background:var(--head)}
tbody th{font-weight:400;text-align:right;background:var(--head);white-space:nowrap}
.n{text-align:center}
.c{background:var(--compare);text-align:center;white-space:nowrap}
.d .c,thead .c{background:var(--mark);color:var(--mark-text)}
.c b{font-size:1.35em;line-height:1}
.c small{margin-left:.3em;color:#000}
.r{background:var(--differs);color:var(--differs-text);font-weight:700;box-shadow:inset 0 0 0 2px #000}
.o{background:var(--one-sided);color:var(--one-sided-text);font-style:italic}
.x{background:var(--gap)}
.v{position:absolute;clip-path:inset(50%);width:1px;height:1px;overflow:hidden;white-space:nowrap}
.part{content-visibility:auto}
.only .s{display:none}
tr.at>*{box-shadow:inset 0 3px var(--current),inset 0 -3px var(--current)}
:focus-visible{outline:3px solid var(--current);outline-offset:-3px}
@page{size:A4 landscape;margin:10mm}
@media print{:root{--back:#fff;--text:#000;--bar:#fff;--head:#eee;--line:#888;--gap:#f6f6f6;
  --compare:var(--mark)}
 html,body{height:auto}body{display:block;font-size:8pt}
 main{overflow:visible}table{min-width:0}thead{position:static;display:table-header-group}
 tr{break-inside:avoid}.tools,.v{display:none}tr.at>*{box-shadow:none}
 .r{box-shadow:inset 0 0 0 2px #000!important}.part{content-visibility:visible}
 *{print-color-adjust:exact;-webkit-print-color-adjust:exact}}
)css";

struct RoleVariable {
    std::string_view name;
    grid::CellRole role;
};
constexpr std::array<RoleVariable, 3> kRoleVariables = {{
    {"differs", grid::CellRole::Differs},
    {"one-sided", grid::CellRole::OneSided},
    {"mark", grid::CellRole::Compare},
}};

std::string CssColour(grid::Colour colour) {
    return "rgb(" + std::to_string(grid::RedOf(colour)) + ',' + std::to_string(grid::GreenOf(colour)) + ',' +
           std::to_string(grid::BlueOf(colour)) + ')';
}

}  // namespace

std::string HtmlStyle() {
    std::string style = "\n:root{";
    for (const RoleVariable& variable : kRoleVariables) {
        const grid::ColourPair& colours = grid::ColoursOf(variable.role).light;
        style.append("--").append(variable.name).append(":").append(CssColour(colours.back));
        style.append(";--")
            .append(variable.name)
            .append("-text:")
            .append(CssColour(colours.text))
            .append(";");
    }
    return style.append("}").append(kStyle);
}

// The search never wraps around, as in the window.
const std::string_view kHtmlScript = R"js(
(function () {
  "use strict";
  var marked = Array.prototype.slice.call(document.querySelectorAll("tr.d"));
  var place = document.getElementById("place");
  var only = document.getElementById("only");
  var at = -1;

  function go(step) {
    var next = at < 0 && step < 0 ? -1 : at + step;
    if (next < 0 || next >= marked.length) {
      place.textContent = "더이상 비교결과에서 다른곳을 찾을 수 없습니다.";
      return;
    }
    if (at >= 0) {
      marked[at].classList.remove("at");
    }
    at = next;
    var row = marked[at];
    row.classList.add("at");
    var cell = row.querySelector(".c");
    cell.tabIndex = -1;
    cell.focus({ preventScroll: true });
    cell.scrollIntoView({ block: "center", inline: "nearest" });
    place.textContent = (at + 1) + " / " + marked.length;
  }

  document.getElementById("next").addEventListener("click", function () { go(1); });
  document.getElementById("previous").addEventListener("click", function () { go(-1); });
  document.addEventListener("keydown", function (event) {
    if (event.key === "F3") {
      event.preventDefault();
      go(event.shiftKey && !event.ctrlKey && !event.altKey ? -1 : 1);
    }
  });
  only.addEventListener("change", function () {
    document.body.classList.toggle("only", only.checked);
    if (at >= 0) {
      marked[at].scrollIntoView({ block: "center" });
    }
  });
})();
)js";

std::string HtmlText(std::string_view utf8) {
    std::string out;
    for (const char c : Printable(utf8)) {
        switch (c) {
            case '&':
                out += "&amp;";
                break;
            case '<':
                out += "&lt;";
                break;
            case '>':
                out += "&gt;";
                break;
            case '"':
                out += "&quot;";
                break;
            case '\'':
                out += "&#39;";
                break;
            default:
                out += c;
        }
    }
    return out;
}

void WriteHtmlHead(std::ostream& out, std::string_view title) {
    out << "<!DOCTYPE html>\n<html lang=\"ko\">\n<head>\n<meta charset=\"utf-8\">\n"
           "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; style-src "
           "'unsafe-inline'; "
           "script-src 'unsafe-inline'\">\n"
           "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
           "<meta name=\"generator\" content=\"Tavrel " TAVREL_VERSION "\">\n<title>"
        << HtmlText(title) << "</title>\n<style>" << HtmlStyle() << "</style>\n</head>\n";
}

}  // namespace tavrel::report
