#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "local/folded_names.hpp"
#include "platform/files.hpp"

namespace twk::lab {

/// Network paths of a lab's file servers, as folders of the lab: "\\FS1\D$\Users" is "servers/FS1/D/Users",
/// and
/// "\\FS1\Users\jo" what the share "Users" stands for. Every part folds case. Any other path is the
/// workstation's.
///
/// Raises 53 for a server or share that is not there, 76 for a path with "..", and 75 when a folder that a
/// share holds would be taken away.
class LabFiles final : public platform::Files {
 public:
  /// `names` is what the workstation's files go by as well.
  LabFiles(std::filesystem::path servers, platform::Files& workstation,
           std::shared_ptr<local::FoldedNames> names);

  bool exists(std::string_view path) override;
  bool is_directory(std::string_view path) override;
  void make_directory(std::string_view path) override;
  std::vector<platform::FileEntry> list(std::string_view path) override;
  std::string read(std::string_view path) override;
  void write(std::string_view path, std::string_view bytes) override;
  void remove(std::string_view path) override;
  void rename(std::string_view from, std::string_view to, bool replace) override;
  std::unique_ptr<platform::AppendFile> open_append(std::string_view path, bool truncate) override;
  std::unique_ptr<platform::RandomFile> open_random(std::string_view path) override;
  std::unique_ptr<platform::RandomFile> open_random_read(std::string_view path) override;

  /// The workstation's path behind `path`, which may be a server's.
  [[nodiscard]] std::string local_path(std::string_view path) const;
  /// Raises 75 when a share of the server holds the folder or one below it; no folder but a server's is held.
  void require_not_held(std::string_view path) const;

 private:
  std::filesystem::path servers_;
  platform::Files& workstation_;
  std::shared_ptr<local::FoldedNames> names_;
};

}  // namespace twk::lab
