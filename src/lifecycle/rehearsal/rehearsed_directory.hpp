#pragma once

#include <functional>
#include <set>
#include <string>
#include <string_view>

#include "lifecycle/rehearsal/made_objects.hpp"
#include "platform/directory.hpp"

namespace twk::lifecycle {

/// A directory with real reads that reports each change instead of making it, and refuses what the real one
/// is known to refuse. Objects that would be gone are no longer found, those that would have been made are.
class RehearsedDirectory final : public ReportingDirectory {
 public:
  using Tell = std::function<void(const std::string&)>;

  RehearsedDirectory(platform::DirectoryService& real, const Tell& tell) : real_(real), tell_(tell) {}

  platform::ObjectPtr GetObject(std::string_view path) override;
  platform::ObjectPtr OpenDSObject(std::string_view path, std::string_view user,
                                   std::string_view password) override;
  void begin_batch() override { real_.begin_batch(); }
  void end_batch() override { real_.end_batch(); }

  platform::ObjectPtr wrap(platform::ObjectPtr object);
  void tell(const std::string& step) const override { tell_(step); }
  void forget(const std::string& path);
  [[nodiscard]] bool is_gone(std::string_view path) const;

  [[nodiscard]] MadeObjects& made() override { return made_; }
  /// The object of that path that would have been made in a real container; null for one that would not.
  platform::ObjectPtr find_made(const platform::ObjectPtr& container, std::string_view name,
                                std::string_view path);
  [[nodiscard]] bool has(std::string_view path) override;

 private:
  /// The real object of a path, or of one that would have been made a draft that is never written.
  platform::ObjectPtr draft_of(std::string_view path);

  platform::DirectoryService& real_;
  const Tell& tell_;
  std::set<std::string> gone_;
  MadeObjects made_;
};

}  // namespace twk::lifecycle
