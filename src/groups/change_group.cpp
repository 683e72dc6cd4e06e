#include "groups/change_group.hpp"

#include <functional>
#include <vector>

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "directory/operations.hpp"
#include "platform/adsi.hpp"
#include "platform/group_type.hpp"
#include "platform/ldap_text.hpp"
#include "session/activity_log.hpp"
#include "session/loaded_domain.hpp"
#include "session/session.hpp"
#include "stores/template_store.hpp"

namespace twk::groups {
namespace {

using platform::ObjectPtr;
using session::Session;
namespace group_type = platform::group_type;

constexpr std::int32_t kScopes = group_type::kGlobal | group_type::kLocal | group_type::kUniversal;

GroupOutcome refused(std::string text) {
  return {session::kRed, std::move(text)};
}

ObjectPtr bind(Session& session, const std::string& dn) {
  return session.platform.directory.GetObject("LDAP://" + session.DomainName + "/" + dn);
}

bool is_taken(Session& session, std::string_view name) {
  const std::string filter = "(sAMAccountName=" + platform::escape_filter_value(name) + ")";
  return !directory::run_query(session,
                               "<LDAP://" + session.DomainName + ">;" + filter + ";sAMAccountName;subtree")
              ->at_eof();
}

/// Why no group can have that name; empty when one can.
std::string name_refusal(Session& session, std::string_view name, std::string_view old_name) {
  if (name.empty())
    return "The name of a group cannot be blank.";
  if (const auto character = base::find_invisible_character(name))
    return "The name \"" + std::string(name) + "\" cannot hold the character " + *character + ".";
  if (!base::equals_fold(name, old_name) && is_taken(session, name))
    return "The name \"" + std::string(name) + "\" is in use: choose another one.";
  return {};
}

/// Both names or none: the account's is put back when the entry's is refused.
void write_names(Session& session, const ObjectPtr& group, const std::string& name,
                 const std::string& old_account) {
  const std::string path = group->ADsPath();
  const ObjectPtr parent = session.platform.directory.GetObject(group->Parent());
  group->Put("sAMAccountName", name);
  group->SetInfo();
  try {
    parent->MoveHere(path, "CN=" + platform::escape_dn_value(name));
  } catch (const base::RuntimeError&) {
    group->Put("sAMAccountName", old_account);
    group->SetInfo();
    throw;
  }
}

/// Names of the templates that give their users the group.
std::vector<std::string> templates_with(Session& session, std::string_view group) {
  std::vector<std::string> names;
  stores::each_template(session, [&](const records::TemplateRecord& record) {
    bool has = base::equals_fold(record.PrimaryGroup, group);
    for (std::size_t i = 0; i < static_cast<std::size_t>(record.GroupCount); ++i)
      has = has || base::equals_fold(record.Groups.at(i), group);
    if (has)
      names.push_back(record.Name);
    return false;
  });
  return names;
}

std::int32_t bit_of(GroupScope scope) {
  switch (scope) {
    case GroupScope::kDomainLocal:
      return group_type::kLocal;
    case GroupScope::kGlobal:
      return group_type::kGlobal;
    case GroupScope::kUniversal:
      break;
  }
  return group_type::kUniversal;
}

/// Runs the change; a failure is the outcome, in the directory's words.
GroupOutcome outcome_of(const std::string& what, const std::function<GroupOutcome()>& change) {
  GroupOutcome outcome;
  base::Trap trap;
  if (trap([&] { outcome = change(); }))
    return outcome;
  // What usually is the reason of an unwilling server is none of a group's.
  const std::string why = trap.number() == platform::ads_error::kUnwilling
                              ? trap.description()
                              : base::in_words(trap.number(), trap.description());
  return refused("Error Changing Group " + what + ": " + why);
}

}  // namespace

GroupOutcome rename_group(Session& session, const std::string& dn, std::string_view new_name) {
  const std::string name(base::trim(new_name));
  return outcome_of(dn, [&]() -> GroupOutcome {
    const ObjectPtr group = bind(session, dn);
    const std::string old_name = platform::plain_name(group->Name());
    const std::string old_account = platform::text_or_empty(*group, "sAMAccountName");
    if (const std::string why = name_refusal(session, name, old_account); !why.empty())
      return refused(why);
    const std::vector<std::string> templates = templates_with(session, old_name);
    write_names(session, group, name, old_account);
    const std::string done = "Renamed group " + old_name + " to " + name;
    if (templates.empty() || base::equals_fold(old_name, name))
      return {session::kGreen, done};
    std::string list;
    for (const std::string& one : templates)
      list += (list.empty() ? "\"" : ", \"") + one + "\"";
    return {session::kYellow,
            done + ", but these templates name " + old_name + ", so choose the group there again: " + list};
  });
}

GroupOutcome change_group_type(Session& session, const std::string& dn, std::optional<GroupScope> scope,
                               std::optional<GroupKind> kind) {
  return outcome_of(dn, [&]() -> GroupOutcome {
    const ObjectPtr group = bind(session, dn);
    const std::string name = platform::plain_name(group->Name());
    const std::int32_t before = group->Get("groupType").integer();
    std::int32_t after = before;
    if (scope)
      after = (after & ~kScopes) | bit_of(*scope);
    if (kind)
      after = *kind == GroupKind::kSecurity ? after | group_type::kSecurity : after & ~group_type::kSecurity;
    if (after == before)
      return {session::kGreen, name + " is so already"};
    group->Put("groupType", after);
    group->SetInfo();
    return {session::kGreen, "Changed group " + name};
  });
}

}  // namespace twk::groups
