#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "platform/security.hpp"

namespace twk::test {

/// Accounts and descriptors that the test prescribes, and a hook before each call: `before` gets the
/// operation's name and the account, path or privilege; what it raises, the operation raises, and nothing is
/// done. Calls are recorded in `calls` as "LookupAccountName FS1 jo", "SetFileSecurity 4 \\FS1\D$\x",
/// "AdjustTokenPrivileges 1".
class MemorySecurity final : public platform::Security {
 public:
  using Before = std::function<void(std::string_view operation, std::string_view what)>;

  static constexpr std::uint64_t kRestoreNumber = 18;

  Before before;
  std::map<std::string, platform::Sid> accounts = {
      {"SYSTEM", platform::well_known::local_system()},
      {"ADMINISTRATORS", platform::well_known::administrators()}};
  std::map<std::string, platform::SecurityDescriptor> descriptors;  ///< by path
  std::vector<std::string> calls;

  platform::AccountSid LookupAccountName(std::string_view server, std::string_view account) override {
    step("LookupAccountName", account, std::string(server) + " " + std::string(account));
    const auto found = accounts.find(base::upper(account));
    if (found == accounts.end())
      throw base::RuntimeError(platform::security_error::kNoneMapped, "nobody is called so");
    return {found->second, "TWK"};
  }
  std::string LookupAccountSid(std::string_view /*server*/, const platform::Sid& sid) override {
    return sid.text();
  }
  std::vector<platform::Sid> account_identifiers(std::string_view account) override {
    return {LookupAccountName("", account).sid, platform::well_known::everyone()};
  }
  platform::SecurityDescriptor GetFileSecurity(std::string_view path, std::uint32_t parts,
                                               std::size_t buffer) override {
    step("GetFileSecurity", path,
         base::to_text(parts) + " " + std::to_string(buffer) + " " + std::string(path));
    return descriptors[std::string(path)];
  }
  void SetFileSecurity(std::string_view path, std::uint32_t parts,
                       const platform::SecurityDescriptor& descriptor) override {
    step("SetFileSecurity", path, base::to_text(parts) + " " + std::string(path));
    platform::SecurityDescriptor& kept = descriptors[std::string(path)];
    if ((parts & platform::security_information::kOwner) != 0)
      kept.owner = descriptor.owner;
    if ((parts & platform::security_information::kDacl) == 0)
      return;
    kept.dacl_present = descriptor.dacl_present;
    kept.dacl = descriptor.dacl;
  }
  std::unique_ptr<platform::ProcessToken> OpenProcessToken() override {
    step("OpenProcessToken", {}, {});
    return std::make_unique<Token>(*this);
  }
  std::uint64_t LookupPrivilegeValue(std::string_view name) override {
    step("LookupPrivilegeValue", name, std::string(name));
    return kRestoreNumber;
  }

 private:
  class Token final : public platform::ProcessToken {
   public:
    explicit Token(MemorySecurity& owner) : owner_(owner) {}
    void AdjustTokenPrivileges(std::uint64_t privilege, bool enable) override {
      if (privilege != kRestoreNumber)
        throw base::RuntimeError(platform::security_error::kNoSuchPrivilege, "no such privilege");
      owner_.step("AdjustTokenPrivileges", enable ? "on" : "off", enable ? "on" : "off");
    }

   private:
    MemorySecurity& owner_;
  };

  void step(const std::string& operation, std::string_view what, const std::string& told) {
    calls.push_back(told.empty() ? operation : operation + " " + told);
    if (before)
      before(operation, what);
  }
};

}  // namespace twk::test
