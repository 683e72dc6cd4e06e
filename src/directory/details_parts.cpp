#include "directory/details_parts.hpp"

#include "base/errors.hpp"
#include "base/text.hpp"
#include "directory/account_expiry.hpp"
#include "session/loaded_domain.hpp"
#include "session/session.hpp"

namespace twk::directory {

using session::Session;

bool check_drive_letter(Session& session, const std::string& drive) {
  if (drive.empty() || (drive.size() == 2 && drive[1] == ':' && drive[0] >= '@' && drive[0] <= 'Z'))
    return true;
  session.platform.dialogs.beep();
  session.status.panel1 = "Home Drive Format Incorrect";
  return false;
}

void stage_typed_expiry(Session& session, platform::User& user, const std::string& typed) {
  platform::Clock& clock = session.platform.clock;
  base::Trap unknown;
  std::string stored;
  unknown([&] { stored = expiry_text(clock, expiry_of(user)); });
  if (typed != stored || unknown.number() != 0)
    put_expiry(user, expiry_of_text(clock, typed));
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
