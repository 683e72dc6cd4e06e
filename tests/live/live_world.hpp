#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

#include "contract/world.hpp"
#include "live/domain/live_directory.hpp"
#include "live/domain/live_domain.hpp"
#include "live/domain/live_network.hpp"
#include "live/domain/live_query.hpp"
#include "live/files/live_files.hpp"
#include "live/files/live_security.hpp"
#include "local/posix_files.hpp"
#include "support/variable.hpp"

namespace twk::test {

inline std::string variable(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? std::string() : value;
}

/// "stop", "start", "stall", "resume" of the controller.
inline void control(const std::string& what) {
  const int status = std::system((variable("TWK_LIVE_CONTROL") + " " + what).c_str());
  if (status != 0)
    throw std::runtime_error("the controller did not " + what);
}

/// How to reach the controller that `with-domain` started.
inline live::LiveSettings live_settings() {
  live::LiveSettings settings;
  settings.domain = variable("TWK_LIVE_DOMAIN");
  settings.server = variable("TWK_LIVE_SERVER");
  return settings;
}

/// The same with the administrator's password.
inline live::LiveSettings password_settings() {
  live::LiveSettings settings = live_settings();
  settings.logon = live::LiveSettings::Logon::kPassword;
  settings.user = variable("TWK_LIVE_ADMIN");
  settings.password = variable("TWK_LIVE_PASSWORD");
  return settings;
}

/// What an earlier test left on the file server is removed, whoever owns it.
inline void empty_drive() {
  namespace fs = std::filesystem;
  for (const auto& left : fs::directory_iterator(fs::path(variable("TWK_LIVE_STATE")) / "srv/d/Users"))
    fs::remove_all(left.path());
}

/// The services of a domain, and what the tests need of its file server.
class LiveServices {
 protected:
  explicit LiveServices(const live::LiveSettings& settings) : domain_(settings), smb_(settings) {}

  /// Those of the folders that a drive shows.
  void remove_shares() {
    const std::string server = variable("TWK_LIVE_SERVER");
    for (const platform::ShareInfo502& share : network_.NetShareEnum(server)) {
      if (share.shi502_path.starts_with("C:\\Users"))
        network_.NetShareDel(server, share.shi502_netname);
    }
  }

  live::LiveDomain domain_;
  live::LiveDirectory directory_{domain_};
  live::LiveQuery query_{domain_};
  live::SmbClient smb_;
  local::PosixFiles workstation_;
  live::LiveFiles files_{smb_, workstation_};
  live::LiveSecurity security_{domain_, smb_};
  live::LiveNetwork network_{domain_};
};

/// The real domain, with a separate unit that is deleted with it.
class LiveWorld : public contract::World, private LiveServices {
 public:
  LiveWorld() : LiveServices(live_settings()) {
    empty_drive();
    const auto top = directory_.GetObject("LDAP://" + domain() + "/" + root());
    top->Create("organizationalUnit", unit_name())->SetInfo();
  }
  ~LiveWorld() override {
    base::Trap trap;
    trap([&] {
      remove_shares();
      remove_below(unit());
    });
    if (trap.number() != 0 && trap.number() != platform::ads_error::kNoSuchObject)
      ADD_FAILURE() << trap.description();
  }

  platform::DirectoryService& directory() override { return directory_; }
  platform::QueryService& query() override { return query_; }
  platform::Files& files() override { return files_; }
  platform::Security& security() override { return security_; }
  platform::Network& network() override { return network_; }
  [[nodiscard]] std::string unit() const override { return unit_name() + "," + root(); }
  [[nodiscard]] std::string file_server() const override { return variable("TWK_LIVE_SERVER"); }

  [[nodiscard]] bool server_guards_shared_folders() const override { return false; }
  [[nodiscard]] bool server_holds_privileges() const override { return true; }
  [[nodiscard]] std::string told_path(std::string path) const override {
    // Samba has one drive.
    path[0] = 'C';
    return path;
  }

  live::LiveDomain& live() { return domain_; }

 private:
  [[nodiscard]] std::string unit_name() const { return "OU=Tests " + std::to_string(number_); }
  void remove_below(const std::string& dn) {
    // A group that is someone's primary one stays as long as that user.
    for (const char* const filter : {"(objectClass=user)", "(objectClass=*)"}) {
      std::vector<std::string> names;
      live::LdapSearch all;
      all.base = dn;
      all.filter = filter;
      all.attributes = {"1.1"};
      domain_.ldap().search(all, [&](live::LdapEntry&& entry) {
        names.push_back(std::move(entry.dn));
        return true;
      });
      std::sort(names.begin(), names.end(), [](const auto& a, const auto& b) { return a.size() > b.size(); });
      for (const std::string& name : names)
        domain_.ldap().remove(name);
    }
  }

  static int next_number() {
    static int last = 0;
    return ++last;
  }

  int number_ = next_number();
};

/// The real domain as seen by the account that its server treats as the superuser, with that one's ticket.
class SuperuserWorld final : private Variable, public LiveWorld {
 public:
  SuperuserWorld() : Variable("KRB5CCNAME", variable("TWK_LIVE_SUPERUSER_TICKET")) {}
};

inline std::unique_ptr<contract::World> make_superuser_world() {
  return std::make_unique<SuperuserWorld>();
}

inline std::unique_ptr<contract::World> make_live_world() {
  return std::make_unique<LiveWorld>();
}

}  // namespace twk::test
