#include "directory/details_fields.hpp"

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "directory/account_expiry.hpp"
#include "session/form1.hpp"
#include "session/hourglass.hpp"
#include "session/loaded_domain.hpp"
#include "session/session.hpp"

namespace twk::directory {

using session::Session;

bool check_drive_letter(Session& session) {
  const std::string& drive = session.form1.UM_Drive_Letter.text;
  if (drive.empty() || (drive.size() == 2 && drive[1] == ':' && drive[0] >= '@' && drive[0] <= 'Z'))
    return true;
  session.platform.dialogs.beep();
  session.status.panel1 = "Home Drive Format Incorrect";
  return false;
}

void stage_typed_expiry(Session& session, platform::User& user) {
  platform::Clock& clock = session.platform.clock;
  const std::string& typed = session.form1.AccExpires.text;
  base::Trap unknown;
  std::string stored;
  unknown([&] { stored = expiry_text(clock, expiry_of(user)); });
  if (typed != stored || unknown.number() != 0)
    put_expiry(user, expiry_of_text(clock, typed));
}

bool save_shown_user(Session& session, bool (*save)(Session& session)) {
  bool saved = false;
  base::Trap trap;
  trap([&] { saved = save(session); });
  session.CurrentUser.reset();
  if (trap.number() != 0)
    session.status.panel1 = "Error saving user: " + base::in_words(trap.number(), trap.description());
  return saved;
}

void show_lock_out(Session& session, bool locked) {
  session.form1.chkAcctLockedOut.value = locked ? 1 : 0;
  session.form1.chkAcctLockedOut.enabled = locked;
}

void show_membership(Session& session, const std::string& key, const std::string& name,
                     const std::string& icon, bool primary) {
  if (session.domain.own_groups.find_key(key) == nullptr) {
    std::vector<std::string> sub_items;
    if (primary)
      sub_items.emplace_back(kPrimaryGroup);
    session.domain.own_groups.add(key, name, icon, std::move(sub_items));
  }
  if (const controls::ListRow* const row = session.domain.other_groups.find_key(base::trim(key)))
    session.domain.other_groups.remove(*row);
}

}  // namespace twk::directory
