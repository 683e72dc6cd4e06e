#include "screens/program/windows.hpp"

#include <array>
#include <utility>

#include "screens/widgets/mnemonics.hpp"

namespace twk::screens {
namespace {

using Maker = std::unique_ptr<QDialog> (*)(windows::Desktop&, QWidget*);

constexpr std::array<std::pair<std::string_view, Maker>, 22> kMakers = {{
    {"frmADOptions", make_ad_options},  {"CSV_Import", make_csv_import},
    {"Choose_OU", make_choose_ou},      {"Custom", make_custom},
    {"frmCopy_Group", make_copy_group}, {"Edit_Properties", make_edit_properties},
    {"frmFindW2KUser", make_find_user}, {"GroupAdd", make_group_add},
    {"ImportGrps", make_import_groups}, {"Leaving", make_leaving},
    {"LogWindow", make_log_window},     {"Logon_Hours", make_logon_hours},
    {"MultiUser", make_multi_user},     {"Permissions", make_permissions},
    {"RenameUser", make_rename_user},   {"Rename_NT", make_rename_nt},
    {"RunPreview", make_run_preview},   {"Select_OU", make_select_ou},
    {"Serach_Mail", make_search_mail},  {"frmSharePoints", make_share_points},
    {"Varibles_Form", make_variables},  {"WKS_PROFILE", make_wks_profile},
}};

}  // namespace

std::unique_ptr<QDialog> make_window(std::string_view name, windows::Desktop& session, QWidget* parent) {
  for (const auto& [known, make] : kMakers) {
    if (known != name)
      continue;
    auto window = make(session, parent);
    settle_mnemonics(*window);
    return window;
  }
  return nullptr;
}

}  // namespace twk::screens
