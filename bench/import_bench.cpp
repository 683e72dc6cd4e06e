// Importing users into the lab: 10,000 lines, and another 10,000 on top, with directories, their permissions,
// a share, two groups, a principal name and one sync a user.
#include "bench_world.hpp"
#include "controls/tree_view.hpp"
#include "directory/tree/tree.hpp"
#include "records/records.hpp"
#include "windows/import.hpp"
#include "windows/start_up.hpp"
#include "windows/state/form1.hpp"

namespace {

using namespace twk;

constexpr int kLines = 10000;

void write(const std::filesystem::path& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

void write_database(const std::string& folder) {
  records::SiteRecord site;
  site.Name = "Head Office";
  site.NTServer = "FS1";
  write(folder + "Site.dat", records::encode_site(site));
  records::TemplateRecord staff;
  staff.Name = "Staff";
  staff.HomeDir = "\\\\%Server%\\Users\\%UserName%";
  staff.HomeDirPath = "D:\\Users\\%UserName%";
  staff.ProfileDirPath = "D:\\Profiles\\%UserName%";
  staff.HomeDrive = "H:";
  staff.PrimaryGroup = "Domain Users";
  staff.HomeShare = "%UserName%$";
  staff.GroupCount = 2;
  staff.Groups[0] = "Staff";
  staff.Groups[1] = "Readers";
  write(folder + "Template.dat", records::encode_template(staff));
  write(folder + "Permissions.dat",
        records::encode_permission({true, "%Domain%\\Domain Admins", "Full Control", {}}) +
            records::encode_permission({false, "%Domain%\\%UserName%", "Change", {}}));
  write(folder + "SharePerm.dat", records::encode_permission({false, "%UserName%", "Full Control", {}}));
  write(folder + "W2K.dat", "p,userPrincipalName,%first%.%last%@%Domain%\r\np,department,%IMPORT4%\r\n");
}

std::filesystem::path write_lines(const std::filesystem::path& folder, int first) {
  std::string text;
  for (int i = first; i < first + kLines; ++i) {
    text += "U" + std::to_string(100000 + i) + ",,Name" + std::to_string(i) + ",Sales\n";
  }
  const std::filesystem::path path = folder / ("lines" + std::to_string(first) + ".csv");
  write(path, text);
  return path;
}

void add_group(const platform::Platform& services, const std::string& name) {
  const auto group = services.directory.GetObject("LDAP://twk.test")->Create("group", "CN=" + name);
  group->Put("samAccountName", name);
  group->SetInfo();
}

}  // namespace

int main() {
  bench::Folder folder;
  lab::LabPlan plan;
  plan.users = 1000;
  lab::create_lab(folder.path() / "lab", plan);
  lab::Lab lab(folder.path() / "lab", [](const std::string&) {});
  bench::NobodyThere dialogs;
  const platform::Platform services = lab.platform(dialogs);
  services.directory.GetObject("LDAP://twk.test")->Create("organizationalUnit", "OU=New Starters")->SetInfo();
  add_group(services, "Staff");
  add_group(services, "Readers");
  write_database(lab.database_path());
  bench::set(services, "Setup", "Domain", "twk.test");
  bench::set(services, "Setup", "SetupID", "%first%");
  bench::set(services, "Setup", "Password", "Welcome-2026");
  bench::set(services, "UM", "RunCmd", "No");
  std::string database = lab.database_path();
  database.pop_back();
  windows::Desktop session(services, "", database);
  windows::start_session(session);
  controls::TreeView& tree = session.form1.TreeView1;
  controls::TreeNode* const unit = tree.find("OU=New Starters,DC=twk,DC=test");
  directory::TreeView1_Expand(session, *unit);
  tree.select(unit);
  session.form1.nutemplate.text = records::padded_template_name("Staff");
  session.form1.NUsitename.text = std::string("Head Office");

  double taken[2] = {0, 0};
  for (int run = 0; run < 2; ++run) {
    const std::string path = write_lines(folder.path(), run * kLines).string();
    taken[run] = bench::seconds([&] { windows::Import_File(session, path); });
    if (session.import.ImportAddedCount != kLines) {
      std::fprintf(stderr, "only %d of %d users were created\n", session.import.ImportAddedCount, kLines);
      return 1;
    }
    std::printf("import of %d lines, run %d: %7.2f s, %7.0f users a second\n", kLines, run + 1, taken[run],
                kLines / taken[run]);
  }
  std::printf("second run against the first: %.2f\n", taken[1] / taken[0]);
  return 0;
}
