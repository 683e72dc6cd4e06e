#pragma once

#include <gtest/gtest.h>

#include <algorithm>

#include "live/live_world.hpp"

namespace twk::test {

/// The domain without a directory; what a test made there is deleted with its fixture.
class NtDomainTest : public testing::Test, protected LiveServices {
 protected:
  NtDomainTest() : LiveServices(password_settings()) { empty_drive(); }
  ~NtDomainTest() override {
    static const std::vector<std::string> kept = {"root", "Domain Admins", "Domain Users", "Helpers",
                                                  "Administrators"};
    std::vector<live::SamAccount> made;
    accounts().enumerate(true, true, [&](const live::SamAccount& account) {
      if (std::find(kept.begin(), kept.end(), account.name) == kept.end())
        made.push_back(account);
      return true;
    });
    for (const live::SamAccount& account : made)
      accounts().remove(account);
    remove_shares();
  }

  platform::ObjectPtr get(const std::string& path) { return directory_.GetObject(path); }
  platform::ObjectPtr account(const std::string& name) { return get("WinNT://OLDNT/" + name); }
  platform::ObjectPtr domain_object() { return get("WinNT://OLDNT"); }
  platform::User make_user(const std::string& name) {
    platform::User user(domain_object()->Create("User", name));
    user.SetInfo();
    return user;
  }
  live::AccountService& accounts() { return domain_.rpc().accounts(server_); }

  std::string server_ = variable("TWK_LIVE_SERVER");
};

}  // namespace twk::test
