#pragma once

#include <functional>
#include <set>
#include <string>
#include <string_view>

#include "lifecycle/rehearsal/made_objects.hpp"
#include "platform/directory.hpp"
#include "platform/query.hpp"

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
  platform::DirectoryService& real_;
  const Tell& tell_;
  std::set<std::string> gone_;
  MadeObjects made_;
};

/// Queries with real answers, to which a look-up of a name that must be unique adds the account that would
/// have been made with it.
class RehearsedQuery final : public platform::QueryService {
 public:
  RehearsedQuery(platform::QueryService& real, RehearsedDirectory& directory)
      : real_(real), directory_(directory) {}

  std::unique_ptr<platform::Recordset> execute(const platform::QueryText& query,
                                               const platform::QueryOptions& options) override;

 private:
  platform::QueryService& real_;
  RehearsedDirectory& directory_;
};

}  // namespace twk::lifecycle
