#include "screens/main/badge.hpp"

#include "screens/widgets/text.hpp"
#include "screens/widgets/tool_tip.hpp"
#include "windows/state/whereabouts.hpp"

namespace twk::screens {
namespace {

using windows::Whereabouts;

/// "on dc1 as jo", as far as it is known.
QString logon_of(const Whereabouts& place) {
  QString text;
  if (!place.controller.empty())
    text += " on " + to_qt(place.controller);
  if (!place.account.empty())
    text += " as " + to_qt(place.account);
  return text;
}

}  // namespace

QString title_of(const windows::Desktop& session) {
  const Whereabouts& place = session.whereabouts;
  const QString domain = to_qt(session.DomainName);
  switch (place.kind) {
    case Whereabouts::Kind::kLab:
      return "Lab " + domain + " - " + to_qt(place.folder) + " - Tarnwick";
    case Whereabouts::Kind::kDomain:
      return domain + logon_of(place) + " - Tarnwick";
    case Whereabouts::Kind::kUnknown:
      break;
  }
  return "Tarnwick";
}

QLabel* make_badge(const windows::Desktop& session, QWidget* parent) {
  const Whereabouts& place = session.whereabouts;
  const bool lab = place.kind == Whereabouts::Kind::kLab;
  auto* const badge = new QLabel(parent);
  badge->setObjectName("badge");
  badge->setTextFormat(Qt::PlainText);
  badge->setVisible(place.kind != Whereabouts::Kind::kUnknown);
  const QString domain = to_qt(session.DomainName);
  badge->setText((lab ? "LAB " : "REAL DOMAIN ") + domain);
  const QString more = lab ? "A lab, in the folder " + to_qt(place.folder) + ": nothing leaves this computer."
                           : "A real domain: " + domain + logon_of(place) + ".";
  badge->setToolTip(as_tool_tip(more));
  badge->setAccessibleName(badge->text());
  badge->setAccessibleDescription(more);
  QFont font = badge->font();
  font.setBold(true);
  badge->setFont(font);
  // Colours of its own: they must be the same in every palette, and their words readable on them.
  badge->setStyleSheet(
      QString("QLabel { background: %1; color: white; padding: 1px 6px; border-radius: 3px; }")
          .arg(lab ? "#1b6e3c" : "#a3261b"));
  return badge;
}

}  // namespace twk::screens
