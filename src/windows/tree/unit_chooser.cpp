#include "windows/tree/unit_chooser.hpp"

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "controls/drawing_off.hpp"
#include "directory/names.hpp"
#include "directory/tree/change_ou.hpp"
#include "directory/units.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/hourglass.hpp"
#include "windows/state/tree_commands.hpp"

namespace twk::windows {
namespace {

void list_places(Desktop& session, const UnitQuestion& question) {
  controls::ListView& list = session.unit_chooser.units;
  const Hourglass hourglass(session.form1);
  const controls::DrawingOff off(list);
  list.clear();
  const std::string domain = directory::domain_distinguished_name(session.DomainName);
  const auto add = [&](const std::string& dn, std::string text, const char* icon, std::string users) {
    if (!question.fits || question.fits(dn))
      list.add(dn, std::move(text), icon, {std::move(users)});
  };
  if (question.with_domain)
    add(domain, session.DomainName, "DOMAIN", {});
  if (question.with_containers)
    add("CN=Users," + domain, "Users", "OU", {});
  for (const directory::Unit& unit : directory::list_units(session))
    add(unit.dn, directory::unit_in_words(unit.dn), "OU", std::to_string(unit.users));
}

}  // namespace

std::optional<std::string> choose_unit(Desktop& session, const UnitQuestion& question) {
  UnitChooser& window = session.unit_chooser;
  base::Trap trap;
  if (!trap([&] { list_places(session, question); })) {
    session.platform.dialogs.MsgBox(
        "The OU's cannot be read: " + base::in_words(trap.number(), trap.description()),
        platform::Buttons::kOk, platform::Icon::kExclamation, question.title);
    return std::nullopt;
  }
  window.title = question.title;
  window.question.caption = question.question;
  window.accepted = false;
  session.platform.dialogs.show_modal("Choose_OU");
  const controls::ListRow* const row = window.units.selected();
  std::optional<std::string> chosen;
  if (window.accepted && row != nullptr)
    chosen = row->key;
  window.units.clear();
  return chosen;
}

void follow_move(Desktop& session, const std::string& path, const std::string& unit) {
  const std::string key = directory::follow_moved_user(session, path, unit);
  if (session.form1.USERID_W2K.text.get() == path)
    session.form1.USERID_W2K.text = key;
}

bool Choose_OU_Move_Click(Desktop& session) {
  UnitChooser& window = session.unit_chooser;
  window.accepted = window.units.selected() != nullptr;
  return window.accepted;
}

}  // namespace twk::windows
