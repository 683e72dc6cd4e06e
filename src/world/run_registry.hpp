#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "base/text.hpp"
#include "platform/registry.hpp"

namespace twk::world {

/// The registry of one run: command-line options override what is stored. Writes go to the store and do not
/// change that.
class RunRegistry final : public platform::RegistryAccess {
 public:
  explicit RunRegistry(platform::RegistryAccess& stored) : stored_(stored) {}

  /// A value of the machine's hive.
  void put(std::string_view key, std::string_view name, std::string value) {
    if (Override* const known = find(key, name))
      known->value = std::move(value);
    else
      overrides_.push_back({std::string(key), std::string(name), std::move(value)});
  }

  /// Only what is stored counts again.
  void clear() { overrides_.clear(); }

  bool Reg_Read(std::uint32_t hive, std::string_view key, std::string_view name,
                std::string& value) override {
    const Override* const found = hive == platform::kHiveLocalMachine ? find(key, name) : nullptr;
    if (found == nullptr)
      return stored_.Reg_Read(hive, key, name, value);
    value = found->value;
    return true;
  }

  bool Reg_Write(std::uint32_t hive, std::string_view key, std::string_view name,
                 std::string_view value) override {
    return stored_.Reg_Write(hive, key, name, value);
  }

 private:
  struct Override {
    std::string key;
    std::string name;
    std::string value;
  };

  /// There are as many as options of a command line.
  Override* find(std::string_view key, std::string_view name) {
    const auto found = std::find_if(overrides_.begin(), overrides_.end(), [&](const Override& one) {
      return base::equals_fold(one.name, name) && base::equals_fold(one.key, key);
    });
    return found == overrides_.end() ? nullptr : &*found;
  }

  platform::RegistryAccess& stored_;
  std::vector<Override> overrides_;
};

}  // namespace twk::world
