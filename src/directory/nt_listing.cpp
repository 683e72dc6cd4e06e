#include "directory/nt_listing.hpp"

#include "directory/account_marks.hpp"
#include "platform/adsi.hpp"

namespace twk::directory {

using platform::ListedUser;
using platform::ObjectPtr;

void list_nt_users(const ObjectPtr& domain, const std::function<bool(const ListedUser&)>& visit) {
  if (auto* const listing = dynamic_cast<platform::AccountListing*>(domain.get()))
    return listing->list_users(visit);
  const std::vector<std::string> users{"User"};
  domain->enumerate(users, [&](const ObjectPtr& user) { return visit({user->Name(), {}, {}, 0}); });
}

NtUserRow nt_user_row(const ListedUser& user) {
  NtUserRow row;
  if ((user.flags & platform::kFlagAccountDisabled) != 0)
    row.marks |= mark::kDisabled;
  if ((user.flags & platform::kFlagLockedOut) != 0)
    row.marks |= mark::kLocked;
  row.texts = {user.full_name, user.description, marks_in_words(row.marks)};
  return row;
}

}  // namespace twk::directory
