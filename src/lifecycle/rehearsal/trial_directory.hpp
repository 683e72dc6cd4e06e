#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "platform/directory.hpp"

namespace twk::lifecycle {

/// A directory that makes each change and reports it, over one that forgets all of them in the end. So what
/// follows finds whatever was made, moved, renamed and joined. The shares of file servers, which no directory
/// keeps, are left to `shares`, which only reports.
class TrialDirectory final : public platform::DirectoryService {
 public:
  using Tell = std::function<void(const std::string&)>;

  TrialDirectory(platform::DirectoryService& forgetful, platform::DirectoryService& shares, const Tell& tell)
      : forgetful_(forgetful), shares_(shares), tell_(tell) {}

  platform::ObjectPtr GetObject(std::string_view path) override;
  platform::ObjectPtr OpenDSObject(std::string_view path, std::string_view user,
                                   std::string_view password) override;
  void begin_batch() override { forgetful_.begin_batch(); }
  void end_batch() override { forgetful_.end_batch(); }

 private:
  platform::DirectoryService& forgetful_;
  platform::DirectoryService& shares_;
  const Tell& tell_;
};

}  // namespace twk::lifecycle
