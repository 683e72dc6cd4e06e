#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace twk::platform {

inline constexpr std::uint32_t kHiveCurrentUser = 0x80000001;   ///< HKEY_CURRENT_USER
inline constexpr std::uint32_t kHiveLocalMachine = 0x80000002;  ///< HKEY_LOCAL_MACHINE

/// A tree of text values, as the Windows registry holds it: hive, key path with backslashes, value name. Keys
/// and names fold case. A write is on disk when the call returns. Neither call raises: a store that cannot be
/// read seems empty, one that cannot be written returns False.
class RegistryAccess {
 public:
  virtual ~RegistryAccess() = default;

  /// True when the value exists; `value` is left unchanged when it does not.
  virtual bool Reg_Read(std::uint32_t hive, std::string_view key, std::string_view name,
                        std::string& value) = 0;
  /// Creates the key when needed.
  virtual bool Reg_Write(std::uint32_t hive, std::string_view key, std::string_view name,
                         std::string_view value) = 0;
};

struct RegistryEntry {
  std::string key;  ///< full path below the hive
  std::string name;
  std::string value;
};

/// Operations for listing, saving and restoring the whole store, beyond the two that the program itself uses.
class RegistryListing {
 public:
  virtual ~RegistryListing() = default;

  /// Raises when what is stored cannot be read or understood; the text names file and line. Without this
  /// check, every value would seem not to be set.
  virtual void require_readable() = 0;
  /// Removes a value. False when there is none. Raises when the store cannot be written.
  virtual bool remove(std::uint32_t hive, std::string_view key, std::string_view name) = 0;
  /// Every value at or below `key`, sorted by key and name.
  virtual std::vector<RegistryEntry> entries(std::uint32_t hive, std::string_view key) = 0;
};

}  // namespace twk::platform
