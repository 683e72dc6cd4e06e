#include "directory/loading/orphans.hpp"

#include "base/errors.hpp"
#include "base/text.hpp"
#include "directory/names.hpp"
#include "session/loaded_domain.hpp"
#include "session/session.hpp"

namespace twk::directory {

void OrphanTable::store(std::string_view distinguished_name, std::string_view name) {
  orphans_.at(next_) = {std::string(distinguished_name), std::string(name)};
  last_ = next_;
  if (next_ < kLastSlot)
    ++next_;
}

int OrphanTable::attach_once(session::Session& session, std::size_t last) {
  int failures = 0;
  controls::TreeView& tree = session.domain.tree;
  for (std::size_t slot = last; slot > 0; --slot) {
    Orphan& orphan = orphans_.at(slot);
    if (orphan.distinguished_name.empty())
      continue;
    const std::size_t comma = orphan.distinguished_name.find(',');
    const std::string parent =
        comma == base::npos ? std::string() : orphan.distinguished_name.substr(comma + 1);
    base::Trap trap;
    trap([&] {
      controls::TreeNode& node = tree.add_under(parent, orphan.distinguished_name, orphan.name, "OU");
      if (!session.LoadAllUsersFlag)
        tree.add(&node, {}, std::string(kDummyNode), {});
    });
    if (trap.number() == base::error::kParentNotFound) {
      ++failures;
      if (session::logs_load(session))
        session.log.line("Not Added to Treeview:" + orphan.distinguished_name);
    } else {
      orphan.distinguished_name.clear();
    }
  }
  return failures;
}

void OrphanTable::attach(session::Session& session) {
  for (int pass = 1; pass < kMostPasses && attach_once(session, last_) > 0; ++pass) {
  }
}

}  // namespace twk::directory
