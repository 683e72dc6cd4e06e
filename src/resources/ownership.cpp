#include "resources/ownership.hpp"

#include <vector>

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "session/session.hpp"

namespace twk::resources {
namespace {

using platform::FileEntry;
using platform::SecurityDescriptor;
using session::Session;

/// True when the call succeeded; otherwise its number is shown after `text`.
template <typename Call>
bool or_tell(Session& session, std::string_view text, Call&& call) {
  base::Trap trap;
  if (trap(call))
    return true;
  session.platform.dialogs.MsgBox(std::string(text) + base::to_text(trap.number()), platform::Buttons::kOk,
                                  platform::Icon::kNone, {});
  return false;
}

bool adjust_privilege(Session& session, std::string_view name, bool enable) {
  platform::Security& security = session.platform.security;
  std::unique_ptr<platform::ProcessToken> token;
  std::uint64_t privilege = 0;
  return or_tell(session, "OpenProcessToken failed with error code ",
                 [&] { token = security.OpenProcessToken(); }) &&
         or_tell(session, "LookupPrivilegeValue failed with error code ",
                 [&] { privilege = security.LookupPrivilegeValue(name); }) &&
         or_tell(session, "AdjustTokenPrivileges failed with error code ",
                 [&] { token->AdjustTokenPrivileges(privilege, enable); });
}

/// Matches a name against a mask with "*" and "?", ignoring case. Goes back only to the last "*", so that no
/// mask takes more than name times mask steps.
bool fits(std::string_view name, std::string_view mask) {
  if (mask == "*.*")
    return true;
  std::size_t at_name = 0;
  std::size_t at_mask = 0;
  std::size_t star = base::npos;
  std::size_t covered = 0;
  while (at_name < name.size()) {
    if (at_mask < mask.size() && mask[at_mask] == '*') {
      star = at_mask++;
      covered = at_name;
    } else if (at_mask < mask.size() && (mask[at_mask] == '?' || mask[at_mask] == name[at_name])) {
      ++at_mask;
      ++at_name;
    } else if (star != base::npos) {
      at_mask = star + 1;
      at_name = ++covered;
    } else {
      return false;
    }
  }
  return mask.find_first_not_of('*', at_mask) == base::npos;
}

/// The walk over a tree.
struct TreeWalk {
  Session& session;
  std::string mask;  ///< in capitals
  const SecurityDescriptor& list;
  const SecurityDescriptor& owner;
  TreeOutcome outcome;
};

void note_reason(TreeWalk& walk, const std::string& path, const std::string& reason) {
  if (walk.outcome.first_reason.empty())
    walk.outcome.first_reason = path + ": " + reason;
}

/// Nothing for a folder that cannot be read.
std::vector<FileEntry> entries_of(TreeWalk& walk, const std::string& folder) {
  std::vector<FileEntry> entries;
  base::Trap trap;
  if (!trap([&] { entries = walk.session.platform.files.list(folder); })) {
    ++walk.outcome.refused;
    note_reason(walk, folder, base::in_words(trap.number(), trap.description()));
  }
  return entries;
}

/// The owner first: the owner of a file can write its list, whatever the old one said. True when both are
/// written.
bool write(TreeWalk& walk, const std::string& path) {
  platform::Security& security = walk.session.platform.security;
  base::Trap trap;
  const auto tried = [&](std::uint32_t part, const SecurityDescriptor& descriptor) {
    const bool written = trap([&] { security.SetFileSecurity(path, part, descriptor); });
    if (!written)
      note_reason(walk, path, base::in_words(trap.number(), trap.description()));
    return written;
  };
  const bool owner = tried(platform::security_information::kOwner, walk.owner);
  return tried(platform::security_information::kDacl, walk.list) && owner;
}

/// A folder occurs in both passes and counts in the first.
void take_over(TreeWalk& walk, const std::string& folder, const std::string& name, bool counts) {
  const bool written = write(walk, folder + name);
  if (counts)
    ++(written ? walk.outcome.written : walk.outcome.refused);
  walk.session.run.view().files(name, 0);
}

void walk_folder(TreeWalk& walk, std::string path) {
  walk.outcome.stopped = !walk.session.run.goes_on();
  if (walk.outcome.stopped)
    return;
  if (!path.ends_with('\\'))
    path += '\\';
  std::vector<std::string> folders;
  for (FileEntry& entry : entries_of(walk, path)) {
    if (!entry.directory)
      continue;
    take_over(walk, path, entry.name, true);
    folders.push_back(std::move(entry.name));
  }
  for (const FileEntry& entry : entries_of(walk, path)) {
    if (fits(base::upper(entry.name), walk.mask))
      take_over(walk, path, entry.name, !entry.directory);
  }
  for (auto folder = folders.begin(); folder != folders.end() && !walk.outcome.stopped; ++folder)
    walk_folder(walk, path + *folder);
}

}  // namespace

bool EnablePrivilege(Session& session, std::string_view name) {
  return adjust_privilege(session, name, true);
}

bool DisablePrivilege(Session& session, std::string_view name) {
  return adjust_privilege(session, name, false);
}

TreeOutcome SetTreeSecurity(Session& session, std::string path, std::string_view mask,
                            const SecurityDescriptor& daclDescriptor,
                            const SecurityDescriptor& ownerDescriptor) {
  TreeWalk walk{session, base::upper(mask), daclDescriptor, ownerDescriptor, {}};
  walk_folder(walk, std::move(path));
  return walk.outcome;
}

}  // namespace twk::resources
