#include "cli/sample_lab.hpp"

#include <array>

#include "base/errors.hpp"
#include "cli/failures.hpp"
#include "cli/template_fields.hpp"
#include "session/settings.hpp"
#include "stores/side_tables.hpp"
#include "stores/site_store.hpp"
#include "stores/template_tab.hpp"

namespace twk::cli {
namespace {

using session::Session;

constexpr const char* kOu = "New Starters";
constexpr const char* kGroup = "Staff";
constexpr const char* kServer = "FS1";
constexpr std::int32_t kGlobalSecurity = static_cast<std::int32_t>(0x80000002U);
constexpr std::int32_t kGlobalInWinNt = 2;

struct Setting {
  std::string_view sub_key;
  std::string_view name;
  std::string_view value;
};

// The longest account name has 20 characters, and these formats leave room for three digits.
constexpr std::array kSettings = {Setting{session::kSetup, "UserFormat", "5"},
                                  Setting{session::kSetup, "SetupID", "9%first%.9%last%"},
                                  Setting{session::kSetup, "AltSetupID", "8%first%.8%last%%n%"},
                                  Setting{session::kSetup, "IncNumber", "1"},
                                  Setting{session::kSetup, "Password", "Welcome-2-Work"},
                                  Setting{session::kPreferences, "FullName", "2"},
                                  Setting{session::kPreferences, "Custom_FN", "%First% %Last%"},
                                  Setting{session::kPreferences, "ForcePasswdChange", "Yes"},
                                  Setting{session::kUM, "CreateShares", "No"},
                                  Setting{session::kUM, "SetPermissions", "No"},
                                  Setting{session::kUM, "MailAccount", "No"},
                                  Setting{session::kUM, "RunCmd", "No"}};

void write_settings(Context& context) {
  for (const Setting& setting : kSettings) {
    const std::string key = std::string(session::kTree) + "\\" + std::string(setting.sub_key);
    if (!context.registry().Reg_Write(platform::kHiveLocalMachine, key, setting.name, setting.value))
      throw base::RuntimeError(base::error::kPathFileAccess,
                               "Cannot write the setting " + std::string(setting.name));
  }
}

void create_group(platform::DirectoryObject& container, const Domain& domain) {
  const auto group =
      container.Create("group", domain.active_directory ? std::string("CN=") + kGroup : std::string(kGroup));
  if (domain.active_directory)
    group->Put("samAccountName", kGroup);
  group->Put("groupType", domain.active_directory ? kGlobalSecurity : kGlobalInWinNt);
  group->Put("description", "Everybody who works here");
  group->SetInfo();
}

void create_directory_entries(const Domain& domain) {
  platform::DirectoryService& directory = domain.services.directory;
  if (!domain.active_directory)
    return create_group(*directory.GetObject("WinNT://" + domain.nt_name), domain);
  const auto root = directory.GetObject("LDAP://" + domain.name + "/" + domain_dn(domain));
  const auto ou = root->Create("organizationalUnit", std::string("OU=") + kOu);
  ou->SetInfo();
  create_group(*ou, domain);
}

void create_share(const Domain& domain, const std::string& name, const std::string& path) {
  const auto server =
      domain.services.directory.GetObject("WinNT://" + std::string(kServer) + "/lanmanserver");
  const auto share = server->Create("fileshare", name);
  share->Put("Path", path);
  share->SetInfo();
}

void add_site(Session& session) {
  stores::New_Site(session);
  stores::site_name_edited(session, "Head Office");
  session.form1.NTSERVER.text = kServer;
  stores::Save_Site(session);
  if (session.form1.Save_Site.enabled)
    throw Refused("The site \"Head Office\" was not saved.");
}

void add_template(Session& session) {
  TemplateFields fields;
  fields.home_dir = "\\\\%Server%\\Users\\%UserName%";
  fields.home_dir_path = "D:\\Users\\%UserName%";
  fields.home_drive = "H:";
  fields.profile_path = "\\\\%Server%\\Profiles\\%UserName%";
  fields.profile_dir_path = "D:\\Profiles\\%UserName%";
  fields.logon_script = "logon.cmd";
  fields.groups = {kGroup, "Domain Users"};
  fields.primary_group = "Domain Users";
  stores::NewTemplate(session);
  session.form1.New_Template_Name.text = "Staff";
  fill_template_tab(session, fields);
  stores::savetemplate(session);
  if (session.form1.savetemplate.enabled)
    throw Refused("The template \"Staff\" was not saved.");
}

void fill_tables(Session& session) {
  if (session::is_active_directory(session)) {
    session.form1.ListView7.clear();
    session.form1.ListView7.add({}, "userPrincipalName", "USER", {"9%first%.9%last%@%Domain%"});
    stores::save_w2k_table(session);
  }
  stores::save_wts_table(session);
  const std::array permissions = {
      stores::PermissionRecord{true, "%Domain%\\Domain Admins", "Full Control", {}},
      stores::PermissionRecord{false, "%Domain%\\%UserName%", "Change", {}}};
  stores::write_permissions(session, stores::kPermissionFile, permissions);
  stores::write_permissions(session, stores::kSharePermissionFile, {});
}

}  // namespace

void fill_sample_lab(Context& context) {
  write_settings(context);
  const Domain domain = context.domain();
  create_directory_entries(domain);
  create_share(domain, "Users", "D:\\Users");
  create_share(domain, "Profiles", "D:\\Profiles");
  Session& session = context.session(Depth::kDomain);
  add_site(session);
  add_template(session);
  fill_tables(session);
}

}  // namespace twk::cli
