#include "windows/tree/ad_options.hpp"

#include <array>
#include <utility>

#include "base/text.hpp"
#include "directory/load_options.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/directory_windows.hpp"

namespace twk::windows {
namespace {

constexpr std::string_view kSortHelp = "ADO will return users sorted/unsorted";
constexpr std::string_view kSearchHelp =
    "Tells TWK to use a Global catalog server or a Domain controller(LDAP) Default is GC for better "
    "performance. In a Forest with multiple Domains use LDAP";

constexpr std::array<std::pair<std::string_view, std::string_view>, 11> kHelp = {{
    {"LoadAllUsersoption",
     "Suitable for small Domains with up to 4000 users and groups. Will cause a delay starting TWK while it "
     "loads all objects into memory"},
    {"DontLoadAllUsers",
     "TWK's default setting, The Treeview is not populated at startup time but as OU's are expanded a query "
     "is done and the Treeview is populated. makes for a quicker startup time, but slower when Navigating "
     "through Treeview."},
    {"Sorton", kSortHelp},
    {"Sortoff", kSortHelp},
    {"UseLDAP", kSearchHelp},
    {"UseGC", kSearchHelp},
    {"UserLimit", "Limits the number of users displayed in an OU"},
    {"PageSize",
     "Sets the page size for ADO searchs, Default is 1000. Max is 1000 for W2K. ADO will query server for "
     "objects and the server will return 1000 (page size) objects at a time. If the server is under heavy "
     "load reduce this number."},
    {"TemplateGroups", "Will only load groups in the template TAB"},
    {"SkipGroups", "No groups will get loaded at startup, TWK listboxes that have groups will be empty."},
    {"SkipUsers",
     "No users will be loaded at startup, The multi user form and the groups form will not get populated. "
     "Suitable if you have a large number of users, and TWK is taking a long time to start up."},
}};

void refuse(Desktop& session, controls::TextBox& field, std::string_view message, std::string_view instead) {
  session.platform.dialogs.MsgBox(message, platform::Buttons::kOk, platform::Icon::kExclamation,
                                  "Input Error");
  field.text = std::string(instead);
}

void refuse_page_size(Desktop& session) {
  refuse(session, session.ad_options.PageSize, "PageSize must be a number.", "1000");
}
void refuse_user_limit(Desktop& session) {
  refuse(session, session.ad_options.UserLimit, "User Limit must be a number.", "2000");
}

bool is_number(const controls::TextBox& field) {
  return base::to_number(field.text.get()).has_value();
}
bool can_be_stored(const controls::TextBox& field) {
  return base::trim(field.text.get()).empty() || base::to_number(field.text.get()).value_or(0) > 0;
}

directory::LoadOptionTexts chosen(const frmADOptions& window) {
  return {.PageSize = std::string(base::trim(window.PageSize.text.get())),
          .UserLimit = std::string(base::trim(window.UserLimit.text.get())),
          .SkipUsers = window.SkipUsers.on(),
          .SkipGroups = window.SkipGroups.on(),
          .LoadAllUsers = window.LoadAllUsersoption.value,
          .TemplateGroupsOnly = window.TemplateGroups.on(),
          .over_ldap = window.UseLDAP.value,
          .Sort = window.Sorton.value};
}

}  // namespace

void frmADOptions_Load(Desktop& session) {
  frmADOptions& window = session.ad_options;
  const directory::LoadOptions options = directory::read_load_options(session);
  window.PageSize.text = base::to_text(options.PageSize);
  window.UserLimit.text = base::to_text(options.UserLimit);
  window.SkipUsers.value = options.SkipUsers ? 1 : 0;
  window.SkipGroups.value = options.SkipGroups ? 1 : 0;
  window.TemplateGroups.value = options.TemplateGroupsOnly ? 1 : 0;
  choose(window.LoadAllUsersoption, window.DontLoadAllUsers, options.LoadAllUsers);
  choose(window.UseLDAP, window.UseGC, options.Search == "LDAP://");
  choose(window.Sorton, window.Sortoff, options.Sort);
  window.txtDescription.caption =
      "These options can be configured for loading AD objects into TWK. Depending on the size of your AD, it "
      "will pay to try different options that best suits your network.";
}

bool btnApply_Click(Desktop& session) {
  frmADOptions& window = session.ad_options;
  if (!can_be_stored(window.PageSize)) {
    refuse_page_size(session);
    return false;
  }
  if (!can_be_stored(window.UserLimit)) {
    refuse_user_limit(session);
    return false;
  }
  directory::store_load_options(session, chosen(window));
  window.txtDescription.caption = "Saved. The options take effect when the domain is loaded next (Refresh).";
  return true;
}

void PageSize_Change(Desktop& session) {
  frmADOptions& window = session.ad_options;
  if (window.PageSize.text.get().empty()) {
    window.txtDescription.caption =
        "The ADO page size used when doing quries, Default is 1000, AD servers max size by default is 1000";
  } else if (!is_number(window.PageSize)) {
    refuse_page_size(session);
  }
}

void UserLimit_Change(Desktop& session) {
  const controls::TextBox& limit = session.ad_options.UserLimit;
  if (!limit.text.get().empty() && !is_number(limit))
    refuse_user_limit(session);
}

void show_option_help(Desktop& session, std::string_view control) {
  for (const auto& [name, text] : kHelp) {
    if (name == control)
      session.ad_options.txtDescription.caption = std::string(text);
  }
}

}  // namespace twk::windows
