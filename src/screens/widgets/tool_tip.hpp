#pragma once

#include <QString>
#include <QTextDocument>
#include <Qt>

namespace twk::screens {

/// A text as a tool tip, letter by letter: what looks like markup is not taken for it.
inline QString as_tool_tip(const QString& text) {
  return Qt::mightBeRichText(text) ? "<span>" + text.toHtmlEscaped() + "</span>" : text;
}

}  // namespace twk::screens
