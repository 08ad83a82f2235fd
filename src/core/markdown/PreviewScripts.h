// The scripts the live preview sends to its page, and the numbers it derives from settings. Pure
// functions: the preview controller and its tests share them.
#pragma once

#include <QString>

#include <string>
#include <string_view>

namespace mirtex::PreviewScripts {

// `text` (UTF-8) as a JSON string literal, quotes included: quotes, backslashes and control
// characters escaped, and U+2028/U+2029 too so that the literal is also valid JavaScript.
std::string jsonStringLiteral(std::string_view text);
QString jsonStringLiteral(const QString &text);

// Replaces the page's content in place (the element with id "page"), keeping the scroll position.
std::string updateScript(std::string_view body);

// Scrolls the page to the editor's top line (0-based); `atEnd` scrolls to the bottom.
QString followScript(int line, bool atEnd);

// Defines window.mirtexFollow(line, atEnd) in the page; evaluated after every load.
QString followFunction();

// Answers the 0-based source line shown at the top of the page (the inverse of mirtexFollow).
QString topLineScript();

// Scrolls to the element whose id is `fragment` (a link inside the page).
QString fragmentScript(const QString &fragment);

// The page zoom for the editor's zoom step.
double pageZoom(int zoomStep);

// The page's body and what surrounds it: a page too large to be loaded in one piece is loaded
// empty and then filled. Returns false when `page` has no content element.
struct PageParts
{
    QString shell; // the page with an empty content element
    QString body;
};

bool splitPage(const QString &page, PageParts &parts);

} // namespace mirtex::PreviewScripts
