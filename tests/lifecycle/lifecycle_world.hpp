#pragma once

#include <filesystem>
#include <set>

#include "base/text.hpp"
#include "controls/tree_view.hpp"
#include "directory/tree/tree.hpp"
#include "lifecycle/deletion/delete_user.hpp"
#include "platform/network.hpp"
#include "support/kept_view.hpp"
#include "support/lab_session.hpp"
#include "windows/multi_user/delete_tab.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/multi_user.hpp"

namespace twk::test {

/// A lab session with the file servers FS1 and FS2 and the account "jo", whose home and profile a test
/// chooses. What is on the servers is read directly from the disk.
class LifecycleWorld : public LabSession {
 public:
  explicit LifecycleWorld(lab::DomainKind kind = lab::DomainKind::kNative, std::string_view command_line = "")
      : LabSession(kind, command_line) {
    for (const char* const name : {"FS1/D/Users", "FS1/D/Profiles", "FS2/D/Users", "FS2/D/Profiles"})
      std::filesystem::create_directories(server_folder(name));
    environment.variables["USERNAME"] = "admin";
  }

  platform::ObjectPtr add_user(const std::string& name, const std::string& home,
                               const std::string& display_name = {}, const std::string& profile = {}) {
    platform::ObjectPtr user = make_user(name, display_name);
    if (!is_nt())
      user->Put("userPrincipalName", name + "@twk.test");
    user->Put("FullName", display_name.empty() ? name : display_name);
    if (!home.empty())
      user->Put("HomeDirectory", home);
    if (!profile.empty())
      user->Put("Profile", profile);
    user->SetInfo();
    return user;
  }
  void set_home(const std::string& name, const std::string& home) {
    const platform::ObjectPtr user = account(name);
    if (home.empty())
      user->PutEx(1, "HomeDirectory", {});
    else
      user->Put("HomeDirectory", home);
    user->SetInfo();
  }

  /// Starts the session with "jo" in it.
  void start_with(const std::string& home, const std::string& profile) {
    add_user("jo", home, "Jo Smith", profile);
    start();
    session.form1.Confirm_Deletes.value = 0;
    session.form1.Confirm_Resets.value = 0;
    session.multi_user.No_Prompting.value = 1;
    session.multi_user.No_Prompt.value = 1;
    std::filesystem::remove(folder.path() / "db/Log.txt");
  }

  [[nodiscard]] std::filesystem::path server_folder(const std::string& path) const {
    return folder.path() / "servers" / path;
  }
  /// A file of a server with its folders, "FS1/D/Users/jo/a.txt".
  void put(const std::string& path, std::string_view bytes = "text") const {
    std::filesystem::create_directories(server_folder(path).parent_path());
    put_file(server_folder(path).string(), bytes);
  }
  /// All that a server's drive holds, "Users/jo/a.txt", folders with a slash at the end.
  [[nodiscard]] std::set<std::string> tree(const std::string& drive) const {
    std::set<std::string> names;
    const std::filesystem::path top = server_folder(drive);
    for (const auto& entry : std::filesystem::recursive_directory_iterator(top)) {
      const bool folder_entry = entry.is_directory() && !entry.is_symlink();
      names.insert(entry.path().lexically_relative(top).string() + (folder_entry ? "/" : ""));
    }
    return names;
  }
  [[nodiscard]] bool there(const std::string& path) const {
    return std::filesystem::exists(std::filesystem::symlink_status(server_folder(path)));
  }

  void share(const std::string& server, const std::string& name, const std::string& path) {
    platform::ShareInfo502 info;
    info.shi502_netname = name;
    info.shi502_path = path;
    services.network.NetShareAdd(server, info);
  }
  [[nodiscard]] std::set<std::string> shares(const std::string& server) {
    std::set<std::string> names;
    for (const platform::ShareInfo502& info : services.network.NetShareEnum(server)) {
      if (info.shi502_netname.size() != 2)
        names.insert(info.shi502_netname);
    }
    return names;
  }

  /// Deletes "jo" as the boxes and `terms` say. True when it was done.
  bool delete_jo() {
    lifecycle::DeleteOrder order = windows::delete_order(session);
    order.terms = with_silence(order.terms.silent);
    return lifecycle::Delete_One_User(session, key(), order, view).done;
  }
  [[nodiscard]] session::RunTerms with_silence(bool silent) const {
    session::RunTerms all = terms;
    all.silent = silent;
    return all;
  }

  [[nodiscard]] std::string key() {
    return is_nt() ? "jo" : "LDAP://twk.test/CN=Jo Smith," + std::string(kNewStarters);
  }
  [[nodiscard]] bool has_jo() {
    base::Trap trap;
    return trap([&] { static_cast<void>(account("jo")); });
  }
  /// Recorded renamings.
  [[nodiscard]] int records() const {
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path() / "db"))
      count += entry.path().filename().string().starts_with("Rename-") ? 1 : 0;
    return count;
  }
  /// The first of the two that a flat domain's tree shows.
  controls::TreeNode& node_of(const std::string& name, const std::string& other) {
    controls::TreeNode* const found = session.form1.TreeView1.find(name);
    return found != nullptr ? *found : *session.form1.TreeView1.find(other);
  }
  controls::TreeNode& node() {
    controls::TreeView& tree = session.form1.TreeView1;
    if (!is_nt())
      directory::TreeView1_Expand(session, *tree.find(kNewStarters));
    return *tree.find(key());
  }

  session::RunTerms terms;
  KeptView view{session};
};

}  // namespace twk::test
