#include "support/lab_session.hpp"
#include "platform/group_type.hpp"

#include <fstream>
#include <sstream>

#include "controls/tree_view.hpp"
#include "directory/tree/tree.hpp"
#include "platform/adsi.hpp"
#include "session/settings.hpp"
#include "windows/start_up.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/run_preview.hpp"

namespace twk::test {
namespace {

std::unique_ptr<lab::Lab> make_lab(const std::filesystem::path& folder, lab::DomainKind kind) {
  lab::LabPlan plan;
  plan.netbios = "TWK";
  plan.kind = kind;
  plan.users = 4;
  plan.groups = 2;
  plan.ous = 2;
  plan.administrator = "admin";
  lab::create_lab(folder, plan);
  return std::make_unique<lab::Lab>(folder, [](const std::string& text) { ADD_FAILURE() << text; });
}

records::SiteRecord head_office() {
  records::SiteRecord site;
  site.Name = "Head Office";
  site.NTServer = "FS1";
  return site;
}

records::TemplateRecord staff_template() {
  records::TemplateRecord staff;
  staff.Name = "Staff";
  staff.HomeDir = "\\\\%Server%\\Users\\%UserName%";
  staff.HomeDirPath = "D:\\Users\\%UserName%";
  staff.ProfilePath = "\\\\%Server%\\Profiles\\%UserName%";
  staff.ProfileDirPath = "D:\\Profiles\\%UserName%";
  staff.LogonScript = "staff.cmd";
  staff.HomeDrive = "H:";
  staff.PrimaryGroup = "Domain Users";
  staff.GroupCount = 1;
  staff.Groups[0] = "Staff";
  return staff;
}

void write_file(const std::filesystem::path& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

}  // namespace

std::string kind_name(const testing::TestParamInfo<lab::DomainKind>& info) {
  if (info.param == lab::DomainKind::kNative)
    return "Native";
  return info.param == lab::DomainKind::kMixed ? "Mixed" : "Nt";
}

LabSession::LabSession(lab::DomainKind kind, std::string_view command_line, platform::Dialogs* boxes)
    : site(head_office()),
      staff(staff_template()),
      kind_(kind),
      lab_(make_lab(folder.path(), kind)),
      services(lab_->platform(boxes == nullptr ? dialogs : *boxes)),
      directory(services.directory),
      files(services.files),
      network(services.network),
      session({services.registry, directory, services.query, files, network, services.security,
               services.mailboxes, process, environment, clock, services.dialogs},
              command_line, lab_->database_path().substr(0, lab_->database_path().size() - 1)) {
  // Nobody is there to look at it.
  session.run_preview.asks = false;
  set("Setup", "Domain", is_nt() ? "TWK" : "twk.test");
  set("Setup", "SetupID", "%first%.%last%");
  set("Setup", "Password", "Welcome-2026");
  set("Setup", "UserFormat", "5");
  for (const std::string_view stage : {"RunCmd", "CreateShares", "SetPermissions"})
    set("UM", stage, "No");
  const platform::ObjectPtr domain = directory.GetObject(is_nt() ? "WinNT://TWK" : "LDAP://twk.test");
  if (!is_nt())
    domain->Create("organizationalUnit", "OU=New Starters")->SetInfo();
  for (const std::string name : {"Staff", "Readers"}) {
    const platform::ObjectPtr group = domain->Create("group", is_nt() ? name : "CN=" + name);
    if (!is_nt())
      group->Put("samAccountName", name);
    group->Put("groupType", is_nt() ? platform::group_type::kGlobal : platform::group_type::kGlobalSecurity);
    group->SetInfo();
  }
}

void LabSession::start() {
  write_file(lab_->database_path() + "Site.dat", records::encode_site(site));
  write_file(lab_->database_path() + "Template.dat", records::encode_template(staff));
  ASSERT_EQ(windows::start_session(session), windows::StartUp::kReady);
  ASSERT_EQ(session.DirectoryMode, kind_ == lab::DomainKind::kNative  ? session::kNativeMode
                                   : kind_ == lab::DomainKind::kMixed ? session::kMixedMode
                                                                      : session::kWinNtMode);
  session.form1.nutemplate.text = records::padded_template_name("Staff");
  session.form1.NUsitename.text = std::string("Head Office");
  if (!is_nt())
    select(kNewStarters);
}

void LabSession::set(std::string_view sub_key, std::string_view name, std::string_view value) {
  services.registry.Reg_Write(platform::kHiveLocalMachine,
                              std::string(session::kTree) + "\\" + std::string(sub_key), name, value);
}

void LabSession::type_names(std::string_view first, std::string_view middle, std::string_view last) {
  session.form1.strFirst.text = std::string(first);
  session.form1.StrMiddle.text = std::string(middle);
  session.form1.strLast.text = std::string(last);
}

void LabSession::select(std::string_view key) {
  controls::TreeNode* const node = session.form1.TreeView1.find(key);
  ASSERT_NE(node, nullptr) << key;
  session.form1.TreeView1.select(node);
  if (node->image == "OU")
    directory::TreeView1_Expand(session, *node);
}

platform::ObjectPtr LabSession::place() {
  return services.directory.GetObject(is_nt() ? "WinNT://TWK"
                                              : "LDAP://twk.test/" + std::string(kNewStarters));
}

platform::ObjectPtr LabSession::make_user(const std::string& name, const std::string& cn) {
  platform::ObjectPtr user = place()->Create("user", is_nt() ? name : "CN=" + (cn.empty() ? name : cn));
  if (!is_nt())
    user->Put("samAccountName", name);
  user->SetInfo();
  return user;
}

platform::ObjectPtr LabSession::group(const std::string& name) {
  return services.directory.GetObject(is_nt() ? "WinNT://TWK/" + name + ",group"
                                              : "LDAP://twk.test/CN=" + name + ",DC=twk,DC=test");
}

std::string LabSession::path_of(std::string_view name) {
  if (is_nt())
    return "WinNT://TWK/" + std::string(name);
  const auto rows = services.query.execute(
      platform::parse_query_text("<LDAP://twk.test>;(samAccountName=" + std::string(name) +
                                 ");adsPath;subtree"),
      {});
  return rows->at_eof() ? std::string() : rows->field(0).text();
}

platform::ObjectPtr LabSession::account(std::string_view name) {
  return services.directory.GetObject(path_of(name));
}

std::string LabSession::property(std::string_view account_name, std::string_view name) {
  base::Trap trap;
  std::string text;
  trap([&] { text = account(account_name)->Get(name).text(); });
  return text;
}

std::vector<std::string> LabSession::groups_of(std::string_view account_name) {
  std::vector<std::string> names;
  for (const platform::ObjectPtr& group : account(account_name)->Groups())
    names.push_back(group->Name());
  return names;
}

std::string LabSession::database_file(std::string_view name) {
  std::ifstream file(lab_->database_path() + std::string(name), std::ios::binary);
  std::stringstream bytes;
  bytes << file.rdbuf();
  std::string text = base::from_ansi(bytes.str());
  std::erase(text, '\r');
  return text;
}

std::vector<std::string> LabSession::log_tab() const {
  std::vector<std::string> rows;
  const controls::ListView& list = session.form1.ListView1;
  for (std::size_t i = 0; i < list.size(); ++i)
    rows.push_back(list.at(i).icon + " " + list.at(i).text);
  return rows;
}

}  // namespace twk::test
