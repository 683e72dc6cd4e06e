#pragma once

#include <functional>
#include <set>
#include <string>
#include <string_view>

#include "platform/directory.hpp"

namespace twk::lifecycle {

/// A directory with real reads that reports each change instead of making it. Objects that would be gone are
/// no longer found.
class RehearsedDirectory final : public platform::DirectoryService {
 public:
  using Tell = std::function<void(const std::string&)>;

  RehearsedDirectory(platform::DirectoryService& real, const Tell& tell) : real_(real), tell_(tell) {}

  platform::ObjectPtr GetObject(std::string_view path) override;
  platform::ObjectPtr OpenDSObject(std::string_view path, std::string_view user,
                                   std::string_view password) override;

  platform::ObjectPtr wrap(platform::ObjectPtr object);
  void tell(const std::string& step) const { tell_(step); }
  void forget(const std::string& path);
  [[nodiscard]] bool is_gone(std::string_view path) const;

 private:
  platform::DirectoryService& real_;
  const Tell& tell_;
  std::set<std::string> gone_;
};

}  // namespace twk::lifecycle
