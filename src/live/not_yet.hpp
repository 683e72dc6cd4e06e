#pragma once

#include <string>

#include "base/errors.hpp"
#include "platform/directory.hpp"
#include "platform/network.hpp"

/// Stand-ins for the services of a real domain that are not built: every call says so.
namespace twk::live {

[[noreturn]] inline void raise_not_yet(const std::string& what) {
  base::raise(platform::ads_error::kNotImplementedByProvider,
              what + " of a real domain are not part of this version");
}

class NotYetNetwork final : public platform::Network {
 public:
  std::string NetGetDCName(std::string_view, std::string_view) override {
    raise_not_yet("Controller look-ups");
  }
  void NetShareAdd(std::string_view, const platform::ShareInfo502&) override { raise_not_yet("Shares"); }
  platform::ShareInfo502 NetShareGetInfo(std::string_view, std::string_view) override {
    raise_not_yet("Shares");
  }
  std::vector<platform::ShareInfo502> NetShareEnum(std::string_view) override { raise_not_yet("Shares"); }
  void NetShareDel(std::string_view, std::string_view) override { raise_not_yet("Shares"); }
  void WTSSetUserConfig(std::string_view, std::string_view, platform::WtsConfigClass,
                        const platform::WtsConfigValue&) override {
    raise_not_yet("Terminal-server settings");
  }
  platform::WtsConfigValue WTSQueryUserConfig(std::string_view, std::string_view,
                                              platform::WtsConfigClass) override {
    raise_not_yet("Terminal-server settings");
  }
};

}  // namespace twk::live
