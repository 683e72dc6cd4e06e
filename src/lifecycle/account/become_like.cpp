#include "lifecycle/account/become_like.hpp"

#include <functional>
#include <map>

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "directory/domain_search.hpp"
#include "platform/adsi.hpp"
#include "platform/ldap_text.hpp"

namespace twk::lifecycle {
namespace {

using directory::AccountDomain;
using platform::ObjectPtr;

/// Groups by their folded paths.
using Groups = std::map<std::string, ObjectPtr>;

/// The primary group of an Active Directory account, which is not among its `Groups`; null when it cannot be
/// found.
ObjectPtr primary_group(const AccountDomain& domain, const ObjectPtr& user) {
  const platform::Value sid = platform::value_or_empty(*user, "objectSid");
  const auto* const bytes = std::get_if<base::Bytes>(&sid.data);
  if (bytes == nullptr || bytes->size() < 4)
    return nullptr;
  auto rid =
      static_cast<std::uint32_t>(directory::number_of(platform::value_or_empty(*user, "primaryGroupID")));
  std::string group(bytes->begin(), bytes->end() - 4);
  for (int i = 0; i < 4; ++i, rid >>= 8U)
    group += static_cast<char>(rid & 0xFFU);
  ObjectPtr found;
  directory::search_domain(
      domain, {}, directory::groups_with("(objectSid=" + platform::escape_filter_bytes(group) + ")"),
      {"distinguishedName"}, [&](directory::FoundRow& row) {
        found = domain.services.directory.GetObject(directory::ldap_path(domain, row[0].text()));
        return false;
      });
  return found;
}

Groups groups_of(const AccountDomain& domain, const ObjectPtr& user) {
  Groups groups;
  for (const ObjectPtr& group : user->Groups())
    groups.emplace(base::upper(group->ADsPath()), group);
  if (!domain.active_directory)
    return groups;
  if (const ObjectPtr primary = primary_group(domain, user))
    groups.emplace(base::upper(primary->ADsPath()), primary);
  return groups;
}

/// One change, whose failure is kept.
class Change {
 public:
  explicit Change(LikeOutcome& outcome) : outcome_(outcome) {}

  bool run(const std::string& what, const std::function<void()>& change) {
    base::Trap trap;
    if (trap(change))
      return true;
    outcome_.failures.push_back(what + ": " + base::in_words(trap.number(), trap.description()));
    return false;
  }

 private:
  LikeOutcome& outcome_;
};

}  // namespace

LikeOutcome become_like(const AccountDomain& domain, const ObjectPtr& user, const ObjectPtr& like,
                        bool exactly) {
  LikeOutcome outcome;
  Change change(outcome);
  const Groups own = groups_of(domain, user);
  const Groups wanted = groups_of(domain, like);
  const std::string path = user->ADsPath();
  for (const auto& [key, group] : wanted) {
    const std::string name = platform::plain_name(group->Name());
    if (!own.contains(key) && change.run("Error Joining " + name, [&] { group->Add(path); }))
      outcome.joined.push_back(name);
  }
  const ObjectPtr primary = domain.active_directory ? primary_group(domain, user) : nullptr;
  for (const auto& [key, group] : own) {
    const std::string name = platform::plain_name(group->Name());
    const bool stays =
        wanted.contains(key) || (primary != nullptr && base::equals_fold(primary->ADsPath(), key));
    if (exactly && !stays && change.run("Error Leaving " + name, [&] { group->Remove(path); }))
      outcome.left.push_back(name);
  }
  if (!domain.active_directory)
    return outcome;
  const std::size_t prefix = directory::ldap_path(domain, {}).size() + 1;
  outcome.dn = path.substr(prefix);
  const std::string unit = like->Parent();
  if (base::equals_fold(unit, user->Parent()))
    return outcome;
  change.run("Error Moving to " + unit.substr(prefix), [&] {
    const ObjectPtr moved = domain.services.directory.GetObject(unit)->MoveHere(path, std::nullopt);
    outcome.dn = moved->ADsPath().substr(prefix);
    outcome.moved_to = unit.substr(prefix);
  });
  return outcome;
}

}  // namespace twk::lifecycle
