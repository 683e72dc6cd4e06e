#pragma once

#include <map>
#include <string>
#include <string_view>

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
    values_[folded(key, name)] = std::move(value);
  }

  /// Only what is stored counts again.
  void clear() { values_.clear(); }

  bool Reg_Read(std::uint32_t hive, std::string_view key, std::string_view name,
                std::string& value) override {
    const bool may_be_here = hive == platform::kHiveLocalMachine && !values_.empty();
    const auto found = may_be_here ? values_.find(folded(key, name)) : values_.end();
    if (found == values_.end())
      return stored_.Reg_Read(hive, key, name, value);
    value = found->second;
    return true;
  }

  bool Reg_Write(std::uint32_t hive, std::string_view key, std::string_view name,
                 std::string_view value) override {
    return stored_.Reg_Write(hive, key, name, value);
  }

 private:
  static std::string folded(std::string_view key, std::string_view name) {
    return base::upper(key) + "\n" + base::upper(name);
  }

  platform::RegistryAccess& stored_;
  std::map<std::string, std::string> values_;
};

}  // namespace twk::world
