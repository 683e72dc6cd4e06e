#include "groups/new_group.hpp"

#include <array>
#include <optional>

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "controls/tree_view.hpp"
#include "directory/operations.hpp"
#include "platform/group_type.hpp"
#include "platform/ldap_text.hpp"
#include "session/activity_log.hpp"
#include "session/loaded_domain.hpp"
#include "session/session.hpp"

namespace twk::groups {
namespace {

using platform::ObjectPtr;
using session::Session;
namespace group_type = platform::group_type;

/// The maximum length of a group's name in a WinNT domain.
constexpr std::size_t kLongestNtName = 20;
constexpr const char* kGlobalOfNt = "Global";

struct GroupType {
  std::int32_t type;
  std::string_view text;
};

/// By kind, then by scope.
constexpr std::array<std::array<GroupType, 3>, 2> kTypes = {
    {{{{group_type::kSecurity | group_type::kLocal, "Security Group - Domain Local"},
       {group_type::kSecurity | group_type::kGlobal, "Security Group - Global"},
       {group_type::kSecurity | group_type::kUniversal, "Security Group - Universal"}}},
     {{{group_type::kLocal, "Distribution Group - Local Group"},
       {group_type::kGlobal, "Distribution Group - Global Group"},
       {group_type::kUniversal, "Distribution Group - Universal Group"}}}}};

GroupOutcome refuse(Session& session, const std::string& reason) {
  GroupOutcome outcome{session::kRed, "Error Adding Group:" + reason};
  session.platform.dialogs.MsgBox(outcome.text, platform::Buttons::kOk, platform::Icon::kExclamation, "");
  return outcome;
}

/// Why a text cannot be stored; empty when it can.
std::string refused_character(const std::string& text, const std::optional<std::string>& character) {
  return character ? "The text \"" + text + "\" cannot hold the character " + *character : std::string();
}

/// Runs what makes the group. A failure is reported in a box.
template <typename Make>
GroupOutcome make(Session& session, const std::string& name, const std::string& description, Make make_it) {
  std::string reason = refused_character(name, base::find_invisible_character(name));
  if (reason.empty())
    reason = refused_character(description, base::find_control_character(description));
  if (!reason.empty())
    return refuse(session, reason);
  base::Trap trap;
  trap(make_it);
  if (trap.number() != 0)
    return refuse(session, base::in_words(trap.number(), trap.description()));
  return {session::kGreen, "Added group " + name};
}

/// The distinguished name of the container for the group.
std::string container_name(Session& session) {
  const controls::TreeNode* const first = session.domain.tree.first();
  if (first == nullptr)
    throw base::RuntimeError(platform::ads_error::kServerDown, "No domain is loaded");
  return session.ManagedOU.empty() ? "cn=users," + first->key : first->key;
}

GroupOutcome add_ad_group(Session& session, const NewGroup& order) {
  const std::string name(base::trim(order.name));
  if (name.empty())
    return {};
  const GroupType& type =
      kTypes.at(static_cast<std::size_t>(order.kind)).at(static_cast<std::size_t>(order.scope));
  return make(session, name, order.description, [&] {
    const std::string container = container_name(session);
    const std::string escaped = platform::escape_dn_value(name);
    const ObjectPtr group =
        session.platform.directory.GetObject("LDAP://" + container)->Create("group", "CN=" + escaped);
    group->Put("samAccountName", name);
    if (!order.description.empty())
      group->Put("Description", order.description);
    group->Put("groupType", type.type);
    group->SetInfo();
    add_group_rows(session, {"LDAP://" + session.DomainName + "/cn=" + escaped + "," + container, name},
                   std::string(type.text), order.scope == GroupScope::kGlobal);
  });
}

GroupOutcome add_nt_group(Session& session, const NewGroup& order) {
  if (base::length(order.name) > kLongestNtName) {
    const std::string text = "Name Length too long, max 20 Chrs";
    session.platform.dialogs.MsgBox(text, platform::Buttons::kOk, platform::Icon::kExclamation,
                                    "Name Too Long");
    return {{}, text};
  }
  const std::string name(base::trim(order.name));
  if (name.empty())
    return {};
  return make(session, name, order.description, [&] {
    const ObjectPtr group =
        session.platform.directory.GetObject(directory::winnt_path(session))->Create("group", name);
    if (!order.description.empty())
      group->Put("Description", order.description);
    group->SetInfo();
    add_group_rows(session, {name, name}, kGlobalOfNt, true);
  });
}

}  // namespace

bool has_scope(const Session& session, GroupScope scope) {
  switch (scope) {
    case GroupScope::kDomainLocal:
      return session::is_active_directory(session);
    case GroupScope::kUniversal:
      return session.DirectoryMode == session::kNativeMode;
    case GroupScope::kGlobal:
      break;
  }
  return true;
}

bool has_kind(const Session& session, GroupKind kind) {
  return kind == GroupKind::kSecurity || session::is_active_directory(session);
}

GroupOutcome create_group(Session& session, const NewGroup& order) {
  return session::is_active_directory(session) ? add_ad_group(session, order) : add_nt_group(session, order);
}

}  // namespace twk::groups
