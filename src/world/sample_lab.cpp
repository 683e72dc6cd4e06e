#include "world/sample_lab.hpp"

#include <array>
#include <utility>

#include "ads/dn.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "directory/loading/select_domain.hpp"
#include "platform/adsi.hpp"
#include "platform/group_type.hpp"
#include "session/loaded_database.hpp"
#include "session/loaded_domain.hpp"
#include "session/session_settings.hpp"
#include "session/settings.hpp"
#include "stores/open_database.hpp"
#include "stores/side_tables.hpp"
#include "stores/site_store.hpp"
#include "stores/template_changes.hpp"

namespace twk::world {
namespace {

using session::Session;

constexpr const char* kOu = "New Starters";
constexpr const char* kGroup = "Staff";
constexpr const char* kServer = "FS1";
constexpr std::uint32_t kInvalidLab = 5;

constexpr std::array<std::pair<const char*, lab::DomainKind>, 3> kKinds = {
    {{"native", lab::DomainKind::kNative}, {"mixed", lab::DomainKind::kMixed}, {"nt", lab::DomainKind::kNt}}};

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
                                  Setting{session::kUM, "MailAccount", "Yes"},
                                  Setting{session::kUM, "RunCmd", "No"}};

void write_setting(World& world, const Setting& setting) {
  const std::string key = std::string(session::kTree) + "\\" + std::string(setting.sub_key);
  if (!world.stored_registry().Reg_Write(platform::kHiveLocalMachine, key, setting.name, setting.value))
    throw base::RuntimeError(base::error::kPathFileAccess,
                             "Cannot write the setting " + std::string(setting.name));
}

bool has_units(World& world) {
  return world.lab().config().kind != lab::DomainKind::kNt;
}

void create_group(platform::DirectoryObject& container, bool active_directory) {
  const auto group =
      container.Create("group", active_directory ? std::string("CN=") + kGroup : std::string(kGroup));
  if (active_directory)
    group->Put("samAccountName", kGroup);
  group->Put("groupType",
             active_directory ? platform::group_type::kGlobalSecurity : platform::group_type::kGlobal);
  group->Put("description", "Everyone who works here");
  group->SetInfo();
}

void create_directory_entries(World& world) {
  platform::DirectoryService& directory = world.services().directory;
  const std::string& domain = lab::domain_name(world.lab().config());
  if (!has_units(world))
    return create_group(*directory.GetObject(platform::winnt_path(world.lab().config().netbios)), false);
  const auto root = directory.GetObject("LDAP://" + domain + "/" + ads::domain_dn(domain));
  const auto ou = root->Create("organizationalUnit", std::string("OU=") + kOu);
  ou->SetInfo();
  create_group(*ou, true);
}

void create_share(World& world, const std::string& name, const std::string& path) {
  const auto server = world.services().directory.GetObject(platform::shares_path(kServer));
  const auto share = server->Create("fileshare", name);
  share->Put("Path", path);
  share->SetInfo();
}

[[noreturn]] void refuse_lab(const std::string& what) {
  throw base::RuntimeError(base::error::kPathFileAccess, what);
}

void add_site(Session& session) {
  const lab::ExchangePlan mail;
  records::SiteRecord site;
  site.Name = "Head Office";
  site.NTServer = kServer;
  site.ExchangeServer = mail.old_server;
  site.ExchangeOrg = mail.organisation;
  site.ExchangeSite = mail.site;
  if (!stores::save_site(session, site, stores::SaveAs::kNew).done)
    refuse_lab("The site \"Head Office\" was not saved.");
}

/// Moves a group of the domain into the template's list.
void add_group(Session& session, const char* name) {
  controls::ListView& groups = session.domain.template_choice;
  const auto rows = groups.find_text(name);
  if (rows.empty())
    refuse_lab(std::string("The domain has no group \"") + name + "\".");
  groups.select(&groups.at(groups.place_of(*rows.front())));
  stores::add_selected_groups(session);
}

void add_template(Session& session) {
  constexpr const char* kPrimary = "Domain Users";
  add_group(session, kGroup);
  add_group(session, kPrimary);
  const stores::TemplateEdit staff{.Name = "Staff",
                                   .ProfilePath = "\\\\%Server%\\Profiles\\%UserName%",
                                   .HomeDir = "\\\\%Server%\\Users\\%UserName%",
                                   .ProfileDirPath = "D:\\Profiles\\%UserName%",
                                   .HomeDirPath = "D:\\Users\\%UserName%",
                                   .LogonScript = "logon.cmd",
                                   .HomeDrive = "H:",
                                   .PrimaryGroup = kPrimary};
  if (!stores::save_template(session, staff, stores::SaveAs::kNew).done)
    refuse_lab("The template \"Staff\" was not saved.");
}

void fill_tables(Session& session) {
  if (session::is_active_directory(session)) {
    session.database.directory_rows.clear();
    session.database.directory_rows.add({}, "userPrincipalName", "USER", {"9%first%.9%last%@%Domain%"});
    stores::save_w2k_table(session);
  }
  stores::save_wts_table(session);
  const std::array permissions = {
      records::PermissionRecord{true, "%Domain%\\Domain Admins", "Full Control", {}},
      records::PermissionRecord{false, "%Domain%\\%UserName%", "Change", {}}};
  stores::write_permissions(session, stores::kPermissionFile, permissions);
  stores::write_permissions(session, stores::kSharePermissionFile, {});
}

}  // namespace

lab::DomainKind kind_named(const std::string& word) {
  for (const auto& [name, kind] : kKinds) {
    if (base::equals_fold(name, word))
      return kind;
  }
  throw base::RuntimeError(kInvalidLab, "the kind of a domain is native, mixed or nt");
}

std::string kind_text(lab::DomainKind kind) {
  for (const auto& [name, known] : kKinds) {
    if (known == kind)
      return name;
  }
  return {};
}

void name_domain(lab::LabPlan& plan, const std::string& domain) {
  const bool dotted = domain.find('.') != base::npos;
  if (plan.kind == lab::DomainKind::kNt) {
    if (dotted)
      throw base::RuntimeError(kInvalidLab, "the name of a domain of kind nt has no dot");
    plan.netbios = domain.empty() ? "OLDNT" : base::upper(domain);
    plan.ous = 0;
  } else if (!domain.empty()) {
    if (!dotted)
      throw base::RuntimeError(kInvalidLab,
                               "the name of a native or mixed domain has a dot, such as twk.test");
    plan.domain = base::lower(domain);
  }
}

void record_domain(World& world) {
  write_setting(world, {session::kSetup, "Domain", lab::domain_name(world.lab().config())});
}

void prepare_sample(World& world) {
  for (const Setting& setting : kSettings)
    write_setting(world, setting);
  create_directory_entries(world);
  create_share(world, "Users", "D:\\Users");
  create_share(world, "Profiles", "D:\\Profiles");
}

void fill_sample_stores(Session& session) {
  add_site(session);
  add_template(session);
  fill_tables(session);
}

void make_sample_lab(const std::filesystem::path& folder, const lab::LabPlan& plan,
                     platform::Dialogs& dialogs) {
  lab::create_lab(folder, plan);
  // A new lab needs no repair.
  World world(folder, dialogs, [](const std::string&) {});
  record_domain(world);
  prepare_sample(world);
  Session session(world.services(), "", world.program_directory());
  session::read_session_settings(session);
  if (!directory::Select_Domain(session, session.DomainName))
    refuse_lab("The domain of the new lab did not load.");
  stores::open_database(session);
  fill_sample_stores(session);
}

}  // namespace twk::world
