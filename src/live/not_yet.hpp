#pragma once

#include <string>

#include "base/errors.hpp"
#include "platform/directory.hpp"
#include "platform/mailbox.hpp"
#include "platform/network.hpp"
#include "platform/security.hpp"

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

class NotYetSecurity final : public platform::Security {
 public:
  platform::AccountSid LookupAccountName(std::string_view, std::string_view) override {
    raise_not_yet("Account look-ups");
  }
  std::string LookupAccountSid(std::string_view, const platform::Sid&) override {
    raise_not_yet("Account look-ups");
  }
  std::vector<platform::Sid> account_identifiers(std::string_view) override {
    raise_not_yet("Account look-ups");
  }
  platform::SecurityDescriptor GetFileSecurity(std::string_view, std::uint32_t, std::size_t) override {
    raise_not_yet("Permissions");
  }
  void SetFileSecurity(std::string_view, std::uint32_t, const platform::SecurityDescriptor&) override {
    raise_not_yet("Permissions");
  }
  std::unique_ptr<platform::ProcessToken> OpenProcessToken() override { raise_not_yet("Privileges"); }
  std::uint64_t LookupPrivilegeValue(std::string_view) override { raise_not_yet("Privileges"); }
};

class NotYetMailboxes final : public platform::MailboxService {
 public:
  std::unique_ptr<platform::IMailboxStore> mailbox_store(const platform::ObjectPtr&) override {
    raise_not_yet("Mailboxes");
  }
};

}  // namespace twk::live
