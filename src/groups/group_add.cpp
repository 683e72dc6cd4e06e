#include "groups/group_add.hpp"

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "controls/tree_view.hpp"
#include "directory/operations.hpp"
#include "groups/group_object.hpp"
#include "platform/group_type.hpp"
#include "platform/ldap_text.hpp"
#include "session/form1.hpp"
#include "session/group_windows.hpp"
#include "session/hourglass.hpp"
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

struct Kind {
  std::int32_t type;
  std::string_view text;
};

/// By `Option2`, then by `Option1`.
constexpr std::array<std::array<Kind, 3>, 2> kKinds = {
    {{{{group_type::kSecurity | group_type::kLocal, "Security Group - Domain Local"},
       {group_type::kSecurity | group_type::kGlobal, "Security Group - Global"},
       {group_type::kSecurity | group_type::kUniversal, "Security Group - Universal"}}},
     {{{group_type::kLocal, "Distribution Group - Local Group"},
       {group_type::kGlobal, "Distribution Group - Global Group"},
       {group_type::kUniversal, "Distribution Group - Universal Group"}}}}};

template <std::size_t size>
std::size_t chosen(const std::array<controls::OptionButton, size>& options) {
  std::size_t place = 0;
  while (place + 1 < size && !options[place].value.get())
    ++place;
  return place;
}

void tell_error(Session& session, const std::string& description) {
  session.groups.StatusBar1.panel1 = "Error Adding Group:" + description;
  session.platform.dialogs.MsgBox("Error Adding Group:" + description, platform::Buttons::kOk,
                                  platform::Icon::kExclamation, "");
}

/// Runs what makes the group. False when it failed, which a box reported.
template <typename Make>
bool make(Session& session, std::string_view name, std::string_view description, Make make_it) {
  const auto refused = [&session](std::string_view text, const std::optional<std::string>& character) {
    if (character)
      tell_error(session, "The text \"" + std::string(text) + "\" cannot hold the character " + *character);
    return character.has_value();
  };
  if (refused(name, base::find_invisible_character(name)) ||
      refused(description, base::find_control_character(description)))
    return false;
  const session::Hourglass hourglass(session.form1);
  base::Trap trap;
  trap(make_it);
  session.CurrentGroup.reset();
  if (trap.number() != 0) {
    tell_error(session, base::in_words(trap.number(), trap.description()));
    return false;
  }
  session.groups.StatusBar1.panel1 = "Added group " + std::string(name);
  return true;
}

/// The distinguished name of the container for the group.
std::string container_name(Session& session) {
  const controls::TreeNode* const first = session.domain.tree.first();
  if (first == nullptr)
    throw base::RuntimeError(platform::ads_error::kServerDown, "No domain is loaded");
  return session.ManagedOU.empty() ? "cn=users," + first->key : first->key;
}

bool add_ad_group(Session& session) {
  const session::GroupAdd& window = session.group_add;
  const std::string name(base::trim(window.GRP_Name.text.get()));
  if (name.empty())
    return false;
  const std::string& description = window.GRP_DESCRIPTION.text;
  const std::size_t scope = chosen(window.Option1);
  const Kind& kind = kKinds.at(chosen(window.Option2)).at(scope);
  return make(session, name, description, [&] {
    const std::string container = container_name(session);
    const std::string escaped = platform::escape_dn_value(name);
    const ObjectPtr group =
        session.platform.directory.GetObject("LDAP://" + container)->Create("group", "CN=" + escaped);
    group->Put("samAccountName", name);
    if (!description.empty())
      group->Put("Description", description);
    group->Put("groupType", kind.type);
    group->SetInfo();
    add_group_rows(session, "LDAP://" + session.DomainName + "/cn=" + escaped + "," + container, name,
                   std::string(kind.text), (kind.type & group_type::kGlobal) != 0);
  });
}

bool add_nt_group(Session& session, std::string_view typed, const std::string& description) {
  if (base::length(typed) > kLongestNtName) {
    session.platform.dialogs.MsgBox("Name Length too long, max 20 Chrs", platform::Buttons::kOk,
                                    platform::Icon::kExclamation, "Name Too Long");
    return false;
  }
  const std::string name(base::trim(typed));
  if (name.empty())
    return false;
  return make(session, name, description, [&] {
    const ObjectPtr group =
        session.platform.directory.GetObject(directory::winnt_path(session))->Create("group", name);
    if (!description.empty())
      group->Put("Description", description);
    group->SetInfo();
    add_group_rows(session, name, name, kGlobalOfNt, true);
  });
}

}  // namespace

void GroupAdd_Form_Load(Session& session) {
  session::GroupAdd& window = session.group_add;
  window.GRP_Name.text = std::string();
  window.GRP_DESCRIPTION.text = std::string();
  const bool nt = !session::is_active_directory(session);
  window.Option1[0].enabled = !nt;
  window.Option1[1].enabled = true;
  window.Option1[2].enabled = session.DirectoryMode == session::kNativeMode;
  for (std::size_t i = 0; i < window.Option1.size(); ++i)
    window.Option1.at(i).value = i == 1;
  for (std::size_t i = 0; i < window.Option2.size(); ++i) {
    window.Option2.at(i).enabled = !nt;
    window.Option2.at(i).value = i == 0;
  }
}

bool GroupAdd_OKButton_Click(Session& session) {
  if (session::is_active_directory(session))
    return add_ad_group(session);
  return add_nt_group(session, session.group_add.GRP_Name.text.get(),
                      session.group_add.GRP_DESCRIPTION.text.get());
}

void ask_for_nt_group(Session& session) {
  const std::string typed = session.platform.dialogs.InputBox("Enter Name for New Global Group", "Add Group");
  add_nt_group(session, typed, {});
}

}  // namespace twk::groups
