// The text of a page.
#pragma once

#include <QString>

namespace HtmlText {

/// What a reader of the page AHtml would see, line by line, without empty lines and without lines that repeat
/// the one before. Takes any text, however wrong it is as HTML.
QString Of(const QString& AHtml);

} // namespace HtmlText
