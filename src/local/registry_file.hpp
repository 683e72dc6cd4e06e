#pragma once

#include <sys/stat.h>

#include <functional>
#include <map>
#include <optional>
#include <string>

#include "local/descriptor.hpp"
#include "local/regedit.hpp"
#include "local/turn.hpp"
#include "platform/registry.hpp"

namespace twk::local {

/// The registry as a folder of REGEDIT4 files, which a person can read and edit:
///
///     HKEY_LOCAL_MACHINE.reg   one file a hive, mode 0600, replaced atomically
///     HKEY_CURRENT_USER.reg
///     registry.lock            locked while a file is read, changed and replaced
///
/// The folder is made at the first write, mode 0700. A read first checks whether another process replaced or
/// edited the file. Values that are not texts (dword, hex) are kept but invisible to `Reg_Read`. A file that
/// cannot be understood is never written over: `Reg_Write` answers False until it is repaired, and the last
/// contents that could be read count. Code that opens the store calls `require_readable` first. Also False: a
/// hive other than these two, a key that is empty or contains a control character, a name that contains a
/// control character or bytes that are not UTF-8, another process that keeps the lock for five seconds.
class RegistryFile final : public platform::RegistryAccess, public platform::RegistryListing {
 public:
  /// `folder` is a local path. Reads look whether a file was changed once in each turn.
  explicit RegistryFile(std::string folder, TurnPtr turn = std::make_shared<Turn>());

  bool Reg_Read(std::uint32_t hive, std::string_view key, std::string_view name, std::string& value) override;
  bool Reg_Write(std::uint32_t hive, std::string_view key, std::string_view name,
                 std::string_view value) override;
  void require_readable() override;
  bool remove(std::uint32_t hive, std::string_view key, std::string_view name) override;
  std::vector<platform::RegistryEntry> entries(std::uint32_t hive, std::string_view key) override;

  /// Why the last call for this hive could not read or write; the empty text when it could.
  [[nodiscard]] std::string problem(std::uint32_t hive) const;

 private:
  struct Hive {
    std::string name;
    std::string path;
    RegistryTree tree;
    Descriptor file;  ///< kept open so that the number of its inode is not reused for its successor
    std::optional<struct stat> loaded;
    std::uint64_t looked_at = 0;  ///< the turn
    std::string problem;
  };

  Hive* find_hive(std::uint32_t number);
  /// Brings the tree up to the file; raises when the file cannot be read or understood.
  static void refresh(Hive& hive);
  /// The same for a read, unless it was done in this turn.
  void look_at(Hive& hive) const;
  /// Runs `edit` on the tree under the lock, and writes the file when that returns True.
  void change(Hive& hive, const std::function<bool(RegistryTree&)>& edit);

  std::string folder_;
  TurnPtr turn_;
  std::map<std::uint32_t, Hive> hives_;
};

}  // namespace twk::local
