#include "screens/help/help_pages.hpp"

#include <QStringList>

#include "format/reference.hpp"
#include "screens/widgets/text.hpp"
#include "session/settings_schema.hpp"

namespace twk::screens {
namespace {

QString cell(std::string_view text, const char* element = "td") {
  return QString("<%1 align=\"left\">%2</%1>").arg(element, to_qt(text).toHtmlEscaped());
}
QString code(std::string_view text) {
  return "<td align=\"left\"><code>" + to_qt(text).toHtmlEscaped() + "</code></td>";
}

QString table(std::initializer_list<const char*> headings, const QStringList& rows) {
  QString html =
      "<table border=\"1\" cellspacing=\"0\" cellpadding=\"4\" style=\"border-collapse: collapse\"><tr>";
  for (const char* const heading : headings)
    html += cell(heading, "th");
  return html + "</tr><tr>" + rows.join("</tr><tr>") + "</tr></table>";
}

QString formats() {
  QStringList rows;
  for (const format::FormatPart& part : format::all_format_parts())
    rows << cell(part.written) + cell(part.meaning) + code(part.example) + cell(part.result);
  return table({"Written", "Means", "Example", "For John Smith"}, rows);
}

QString variables() {
  QStringList rows;
  for (const format::KnownVariable& one : format::all_known_variables())
    rows << code(one.written) + cell(one.meaning) + cell(one.where);
  return table({"Variable", "Value", "In"}, rows);
}

QString settings() {
  QStringList rows;
  for (const session::Setting& one : session::all_settings())
    rows << code(one.full_name()) + cell(one.taken()) + cell(one.initial) + cell(one.meaning);
  return table({"Setting", "Takes", "Default", "Meaning"}, rows);
}

}  // namespace

QString with_references(QString html) {
  return html.replace("<!--formats-->", formats())
      .replace("<!--variables-->", variables())
      .replace("<!--settings-->", settings());
}

}  // namespace twk::screens
