#include "directory/account_marks.hpp"

#include <limits>

#include "base/errors.hpp"
#include "directory/domain_search.hpp"
#include "directory/lockout.hpp"
#include "directory/names.hpp"
#include "directory/user_details.hpp"
#include "platform/adsi.hpp"
#include "platform/query.hpp"
#include "session/loaded_domain.hpp"
#include "session/session.hpp"

namespace twk::directory {
namespace {

constexpr std::int64_t kNeverExpires = std::numeric_limits<std::int64_t>::max();

std::uint8_t with(std::uint8_t marks, std::uint8_t mark, bool on) {
  return static_cast<std::uint8_t>(on ? marks | mark : marks & ~mark);
}

/// 0 for never, in whichever form that is stored.
std::int64_t end_in_steps(const platform::Recordset& row, std::size_t first) {
  const std::int64_t ends = number_of(row.field(first + 2));
  return ends == kNeverExpires ? 0 : ends;
}

}  // namespace

std::string marks_in_words(std::uint8_t marks) {
  std::string words;
  for (const auto& [mark, word] :
       {std::pair{mark::kDisabled, "disabled"}, {mark::kLocked, "locked"}, {mark::kExpired, "expired"}}) {
    if ((marks & mark) != 0)
      words += (words.empty() ? "" : ", ") + std::string(word);
  }
  return words;
}

AccountMarks::AccountMarks(session::Session& session)
    : session_(session), now_(base::to_filetime(session.platform.clock.utc_now())) {}

std::uint8_t AccountMarks::of(const platform::Recordset& row, std::size_t first) {
  const std::int64_t locked = number_of(row.field(first + 1));
  if (locked > 0 && !lockout_duration_) {
    lockout_duration_ = 0;
    base::Trap unread;
    unread([&] { lockout_duration_ = lockout_duration(account_domain(session_)); });
  }
  const std::int64_t ends = end_in_steps(row, first);
  std::uint8_t marks = 0;
  marks = with(marks, mark::kDisabled, (number_of(row.field(first)) & platform::kFlagAccountDisabled) != 0);
  marks = with(marks, mark::kLocked, locked > 0 && !is_lock_over(locked, *lockout_duration_, now_));
  return with(marks, mark::kExpired, ends > 0 && ends <= now_);
}

std::optional<base::Date> AccountMarks::end_of(const platform::Recordset& row, std::size_t first) {
  const std::int64_t ends = end_in_steps(row, first);
  return ends == 0 ? std::nullopt : std::optional(base::from_filetime(ends));
}

void set_mark(session::Session& session, std::string_view path, std::uint8_t mark, bool on) {
  controls::TreeView& tree = session.domain.tree;
  const bool active_directory = session::is_active_directory(session);
  // Of the sub-items, see `LoadedDomain::users`.
  const std::size_t state = active_directory ? 4 : 3;
  if (controls::TreeNode* const node = tree.find(active_directory ? std::string(path) : nt_user_key(path)))
    tree.set_marks(*node, with(node->marks, mark, on));
  for (controls::ListView* const list : {&session.domain.users, &session.domain.selection}) {
    const controls::ListRow* const row = list->find_key(path);
    if (row == nullptr)
      continue;
    controls::ListRow& shown = list->at(list->place_of(*row));
    list->set_marks(shown, with(shown.marks, mark, on));
    if (shown.sub_items.size() >= state)
      list->set_sub_item(shown, state, marks_in_words(shown.marks));
  }
}

}  // namespace twk::directory
