#include "resources/ownership.hpp"

#include <vector>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "session/session.hpp"

namespace twk::resources {
namespace {

using platform::FileEntry;
using platform::SecurityDescriptor;
using session::Session;

/// True when the call came through; else its number is shown behind `text`.
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

/// A name against a mask with "*" and "?", case left out. Goes back to the last "*" alone, so that no mask
/// takes more than name times mask steps.
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

/// Nothing for a folder that cannot be looked through.
std::vector<FileEntry> entries_of(Session& session, const std::string& folder) {
  std::vector<FileEntry> entries;
  base::Trap trap;
  trap([&] { entries = session.platform.files.list(folder); });
  return entries;
}

/// The owner first: whoever owns a file can write its list, whatever the old one said.
void write(Session& session, const std::string& path, const SecurityDescriptor& list,
           const SecurityDescriptor& owner) {
  platform::Security& security = session.platform.security;
  base::Trap trap;
  trap([&] { security.SetFileSecurity(path, platform::security_information::kOwner, owner); });
  trap([&] { security.SetFileSecurity(path, platform::security_information::kDacl, list); });
}

}  // namespace

bool EnablePrivilege(Session& session, std::string_view name) {
  return adjust_privilege(session, name, true);
}

bool DisablePrivilege(Session& session, std::string_view name) {
  return adjust_privilege(session, name, false);
}

void SetTreeSecurity(Session& session, std::string path, std::string_view mask,
                     const SecurityDescriptor& daclDescriptor, const SecurityDescriptor& ownerDescriptor) {
  if (!path.ends_with('\\'))
    path += '\\';
  const auto take_over = [&](const std::string& name) {
    write(session, path + name, daclDescriptor, ownerDescriptor);
    session.multi_user.progress.caption = name;
  };
  std::vector<std::string> folders;
  for (FileEntry& entry : entries_of(session, path)) {
    if (!entry.directory)
      continue;
    take_over(entry.name);
    folders.push_back(std::move(entry.name));
  }
  const std::string upper_mask = base::upper(mask);
  for (const FileEntry& entry : entries_of(session, path)) {
    if (fits(base::upper(entry.name), upper_mask))
      take_over(entry.name);
  }
  for (const std::string& folder : folders)
    SetTreeSecurity(session, path + folder, mask, daclDescriptor, ownerDescriptor);
}

}  // namespace twk::resources
