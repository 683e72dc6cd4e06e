#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "lab/shares/file_shares.hpp"
#include "lab/shares/folder_descriptors.hpp"
#include "local/folded_names.hpp"
#include "platform/sid.hpp"

namespace twk::lab {

/// A file server of a lab: a folder "servers/<NAME>", in it a folder of one letter for each drive, and
/// "server.ldif" with its journal: shares (file_shares.hpp), descriptors (folder_descriptors.hpp), the
/// accounts that only it knows,
///
///     dn: CN=Scanner,CN=Accounts
///     objectClass: serverAccount
///     objectSid: S-1-5-21-1-2-3-1001
///
/// and its other properties,
///
///     dn: CN=Server
///     objectClass: fileServer
///     domainMember: FALSE       it knows no account of the domain
///
/// Records of other classes are kept as they are. Paths of the server are "D:\Users\jo", every part folds
/// case.
class FileServer {
 public:
  FileServer(std::filesystem::path folder, std::shared_ptr<local::FoldedNames> names, local::TurnPtr turn,
             const std::function<void(const std::string&)>& warn);

  /// Reads what other programs wrote.
  void refresh() { store_->refresh(); }

  [[nodiscard]] const std::string& name() const { return name_; }
  /// The folder of the lab that a path of the server leads to; a part that does not exist yet stays as
  /// written. Raises 76 without such a drive and for a path that has "..".
  [[nodiscard]] std::string local_path(std::string_view path) const;
  /// The same with every part as written, without checking what exists.
  [[nodiscard]] std::string spelled_path(std::string_view path) const;
  /// The same for something that is about to be made; whether that exact spelling exists is left to the call
  /// that makes it.
  [[nodiscard]] std::string local_path_of_new(std::string_view path) const;

  FileShares& shares() { return shares_; }
  FolderDescriptors& descriptors() { return descriptors_; }

  [[nodiscard]] bool is_domain_member() const;
  [[nodiscard]] std::optional<platform::Sid> find_account(std::string_view name) const;
  /// The server's own account with that identifier.
  [[nodiscard]] std::optional<std::string> account_name(const platform::Sid& sid) const;

 private:
  /// The letter of the drive and what follows it.
  [[nodiscard]] std::vector<std::string> parts_of(std::string_view path) const;
  [[nodiscard]] std::string folded_path(const std::vector<std::string>& parts) const;
  [[nodiscard]] std::vector<std::string> drives() const;
  [[nodiscard]] bool has_folder(std::string_view path) const;

  std::filesystem::path folder_;
  std::string root_;  ///< the same as text
  std::string name_;
  std::shared_ptr<local::FoldedNames> names_;
  std::unique_ptr<EntryStore> store_;
  FileShares shares_;
  FolderDescriptors descriptors_;
};

/// The file servers of a lab, each opened on first use.
class FileServers {
 public:
  FileServers(std::filesystem::path folder, std::shared_ptr<local::FoldedNames> names, local::TurnPtr turn,
              std::function<void(const std::string&)> warn);
  FileServers(const FileServers&) = delete;
  FileServers& operator=(const FileServers&) = delete;

  /// The server of that name, which folds case and may have two backslashes in front; reads what others wrote
  /// to it. None when the lab has no such server. Raises what opening its records raises.
  FileServer* find(std::string_view name);

 private:
  std::filesystem::path folder_;
  std::shared_ptr<local::FoldedNames> names_;
  local::TurnPtr turn_;
  std::function<void(const std::string&)> warn_;
  std::map<std::string, std::unique_ptr<FileServer>, std::less<>> servers_;  ///< by the name of the folder
};

}  // namespace twk::lab
