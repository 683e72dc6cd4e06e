#include "lab/making/lab_create.hpp"

#include <fcntl.h>

#include <algorithm>
#include <functional>

#include "ads/object_rules.hpp"
#include "base/text.hpp"
#include "lab/domain/account_rules.hpp"
#include "lab/making/invented_domain.hpp"
#include "lab/store/errors.hpp"
#include "local/descriptor.hpp"
#include "local/system_environment.hpp"

namespace twk::lab {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kPiece = std::size_t{1} << 20U;

void make_private_folder(const fs::path& folder) {
  std::error_code failed;
  fs::create_directory(folder, failed);
  if (!failed)
    fs::permissions(folder, fs::perms::owner_all, failed);
  if (failed)
    raise(base::error::kPathFileAccess,
          "Cannot make the folder " + folder.string() + ": " + failed.message());
}

void require_empty(const fs::path& folder) {
  std::error_code failed;
  if (!fs::exists(folder, failed))
    return;
  if (!fs::is_directory(folder, failed) || !fs::is_empty(folder, failed) || failed) {
    raise(base::error::kPathFileAccess, "Not an empty folder: " + folder.string());
  }
}

bool is_drive_letter(const std::string& drive) {
  return drive.size() == 1 && ((drive[0] >= 'A' && drive[0] <= 'Z') || (drive[0] >= 'a' && drive[0] <= 'z'));
}

void check_server_name(const std::string& name) {
  static constexpr std::string_view kAllowed =
      "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_";
  const bool name_fits =
      !name.empty() && name.size() <= 15 && name.find_first_not_of(kAllowed) == std::string::npos;
  if (!name_fits)
    raise(ads_error::kConstraint, "Not a name for a server: " + name);
}

void check_server(const FileServerPlan& server) {
  check_server_name(server.name);
  if (server.drives.empty() || !std::all_of(server.drives.begin(), server.drives.end(), is_drive_letter)) {
    raise(ads_error::kConstraint, "A drive of a file server is one letter: " + server.name);
  }
}

void make_server(const fs::path& servers, const FileServerPlan& plan) {
  const fs::path server = servers / plan.name;
  make_private_folder(server);
  for (const std::string& drive : plan.drives)
    make_private_folder(server / base::upper(drive));
}

void make_usual_folders(const fs::path& servers, const FileServerPlan& plan) {
  for (const char* const folder : {"Users", "Profiles"})
    make_private_folder(servers / plan.name / base::upper(plan.drives.back()) / folder);
}

/// Writes a new file of the records that `produce` gives, and brings it to the disk.
void write_records(const fs::path& file,
                   const std::function<void(const std::function<void(const LdifRecord&)>&)>& produce) {
  const std::string path = file.string();
  const local::Descriptor output = local::open_descriptor(path, O_WRONLY | O_CREAT | O_EXCL, 0600);
  std::string piece;
  produce([&](const LdifRecord& record) {
    append_ldif(piece, record);
    if (piece.size() < kPiece)
      return;
    local::write_all(output, piece, path);
    piece.clear();
  });
  local::write_all(output, piece, path);
  local::sync(output, path);
}

void count(const LdifRecord& record, LabContents& contents) {
  const auto classes = std::ranges::find(record.attributes, "objectClass", &LdifAttribute::name);
  if (classes == record.attributes.end())
    return;
  const std::string& kind = classes->values.back();
  contents.users += kind == "user" ? 1 : 0;
  contents.groups += kind == "group" ? 1 : 0;
  contents.ous += kind == "organizationalUnit" ? 1 : 0;
}

LabContents write_directory(const fs::path& file, const LabConfig& config, const LabPlan& plan,
                            const std::string& administrator) {
  LabContents contents;
  write_records(file, [&](const std::function<void(const LdifRecord&)>& write) {
    invent_domain(config, {plan.users, plan.groups, plan.ous, plan.seed, administrator},
                  [&](const LdifRecord& record) {
                    count(record, contents);
                    write(record);
                  });
    if (plan.exchange) {
      for (const LdifRecord& record : exchange2000_entries(config, *plan.exchange))
        write(record);
    }
  });
  // An NT domain knows of none.
  if (config.kind == DomainKind::kNt)
    contents.ous = 0;
  return contents;
}

void make_exchange(const fs::path& folder, const ExchangePlan& plan) {
  make_private_folder(folder);
  write_records(folder / (plan.old_server + ".ldif"),
                [&](const std::function<void(const LdifRecord&)>& write) {
                  for (const LdifRecord& record : exchange55_entries(plan))
                    write(record);
                });
}

/// Who may use the lab; empty when that name cannot be an account name.
std::string administrator_name(const LabPlan& plan) {
  local::SystemEnvironment environment;
  std::string name = plan.administrator.empty() ? environment.variable("USERNAME") : plan.administrator;
  base::Trap unusable;
  return unusable([&] { ads::check_account_name(name, true); }) ? name : std::string();
}

LabConfig make_config(const LabPlan& plan) {
  LabConfig config;
  config.kind = plan.kind;
  if (plan.kind != DomainKind::kNt)
    config.domain = plan.domain;
  config.netbios = plan.netbios;
  if (config.netbios.empty()) {
    const std::string label = base::upper(plan.domain.substr(0, plan.domain.find('.')));
    config.netbios = label.substr(0, 15);
  }
  return config;
}

}  // namespace

void add_file_server(const fs::path& folder, const FileServerPlan& server) {
  check_server(server);
  const fs::path servers = folder / "servers";
  std::error_code failed;
  for (const fs::directory_entry& entry : fs::directory_iterator(servers, failed)) {
    if (base::equals_fold(entry.path().filename().string(), server.name))
      raise(base::error::kFileExists, "The lab has a file server " + server.name + " already.");
  }
  make_server(servers, server);
}

LabContents create_lab(const fs::path& folder, const LabPlan& plan) {
  require_empty(folder);
  const LabConfig config = make_config(plan);
  check_lab_config(config);
  std::for_each(plan.servers.begin(), plan.servers.end(), check_server);
  if (plan.exchange)
    check_server_name(plan.exchange->old_server);
  make_private_folder(folder);
  for (const char* const part : {"settings", "db", "servers"})
    make_private_folder(folder / part);
  for (const FileServerPlan& server : plan.servers) {
    make_server(folder / "servers", server);
    make_usual_folders(folder / "servers", server);
  }
  if (plan.exchange)
    make_exchange(folder / "exchange", *plan.exchange);
  const LabContents contents =
      write_directory(folder / "domain.ldif", config, plan, administrator_name(plan));
  write_lab_config(folder / "lab.conf", config);
  return contents;
}

}  // namespace twk::lab
