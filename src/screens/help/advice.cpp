#include "screens/help/advice.hpp"

#include <QRegularExpression>
#include <QStringList>

namespace twk::screens {
namespace {

/// "the name … is in use" as an expression.
QRegularExpression expression_of(const QString& words) {
  QStringList parts;
  for (const QString& part : words.split("…"))
    parts << QRegularExpression::escape(part);
  return QRegularExpression(parts.join(".*"), QRegularExpression::CaseInsensitiveOption);
}

bool fits(const QString& cell, const QString& message) {
  const qsizetype end = cell.lastIndexOf('"');
  if (cell.startsWith('"') && end > 1)
    return message.contains(expression_of(cell.mid(1, end - 1)));
  return message.contains("the step \"" + cell.section(" (", 0, 0) + "\"");
}

}  // namespace

std::optional<QString> find_advice(const QString& page, const QString& message) {
  for (const QString& line : page.split('\n')) {
    const QString cell = line.section('|', 1, 1).trimmed();
    if (line.startsWith("| ") && fits(cell, message))
      return cell;
  }
  return std::nullopt;
}

}  // namespace twk::screens
