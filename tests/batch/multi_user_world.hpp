#pragma once

#include <filesystem>
#include <initializer_list>
#include <set>

#include "base/text.hpp"
#include "platform/adsi.hpp"
#include "support/lab_session.hpp"
#include "windows/state/multi_user.hpp"

namespace twk::test {

/// A lab session with the users "ann", "ben", "cas" and "dee" in the unit for new accounts, and the
/// multi-user window over it, its list of users filled.
class MultiUserWorld : public LabSession {
 public:
  explicit MultiUserWorld(lab::DomainKind kind = lab::DomainKind::kNative, std::string_view command_line = "")
      : LabSession(kind, command_line), window(session.multi_user) {
    environment.variables["USERNAME"] = "admin";
    for (const char* const name : kNames)
      add_user(name);
  }

  static constexpr const char* kNames[] = {"ann", "ben", "cas", "dee"};

  void add_user(const std::string& name) { make_user(name)->SetPassword("Start-2026!"); }
  /// Puts users into the group "Readers".
  void join_readers(std::initializer_list<const char*> names) {
    for (const std::string name : names)
      group("Readers")->Add(path_of(name));
  }

  /// Locks accounts out as a person does: by a wrong password, in a lab that allows none.
  void lock(std::initializer_list<const char*> names) {
    const std::string conf = (folder.path() / "lab.conf").string();
    std::string text = get_file(conf);
    const std::string setting = "lockout.threshold = ";
    const std::size_t at = text.find(setting) + setting.size();
    text.replace(at, text.find('\n', at) - at, "1");
    put_file(conf, text);
    lab::Lab strict(folder.path(), [](const std::string&) {});
    const platform::Platform other = strict.platform(dialogs);
    for (const char* const name : names) {
      base::Trap refused;
      refused([&] {
        other.directory.OpenDSObject(is_nt() ? "WinNT://TWK" : "LDAP://twk.test", name, "no such password");
      });
    }
  }

  /// Starts the session and lists the four users, and nobody else, in the window.
  void open() {
    start();
    window.ListView2.clear();
    for (const char* const name : kNames)
      window.ListView2.add(key(name), name, "USER");
    std::filesystem::remove(folder.path() / "db/Log.txt");
  }

  /// Key of a row: a user's or the group's path, in a WinNT domain the name.
  [[nodiscard]] std::string key(const std::string& name) const {
    if (is_nt())
      return name;
    if (name == "Readers")
      return "LDAP://twk.test/CN=Readers,DC=twk,DC=test";
    return "LDAP://twk.test/CN=" + name + "," + std::string(kNewStarters);
  }
  void select_users(std::initializer_list<const char*> names) {
    for (const char* const name : names)
      window.ListView1.add(key(name), name, "USER");
  }
  void select_readers() { window.ListView1.add(key("Readers"), "Readers", is_nt() ? "Global" : "W2KGRP"); }
  void select_unit() { window.ListView1.add(std::string(kNewStarters), "New Starters", "OU"); }

  [[nodiscard]] bool has(const std::string& name) {
    base::Trap trap;
    return trap([&] { static_cast<void>(account(name)); });
  }
  /// The account through the WinNT provider, in every kind of domain.
  [[nodiscard]] platform::User winnt(const std::string& name) {
    return platform::User(services.directory.GetObject("WinNT://TWK/" + name + ",user"));
  }
  [[nodiscard]] std::set<std::string> disabled() {
    return those([this](const std::string& name) { return winnt(name).AccountDisabled(); });
  }
  [[nodiscard]] std::set<std::string> locked() {
    return those([this](const std::string& name) { return winnt(name).IsAccountLocked(); });
  }
  [[nodiscard]] std::set<std::string> with_lasting_password() {
    return those([this](const std::string& name) {
      return (winnt(name).Get("UserFlags").integer() & platform::kFlagPasswordNeverExpires) != 0;
    });
  }
  [[nodiscard]] bool must_change(const std::string& name) {
    return winnt(name).Get("PasswordExpired").integer() != 0;
  }
  /// True when the account takes the password at a logon, which it must not be asked to change.
  [[nodiscard]] bool takes(const std::string& name, const std::string& password) {
    const platform::ObjectPtr user = account(name);
    user->Put(is_nt() ? "PasswordExpired" : "pwdLastSet", is_nt() ? 0 : -1);
    user->SetInfo();
    base::Trap trap;
    return trap([&] {
      services.directory.OpenDSObject(is_nt() ? "WinNT://TWK" : "LDAP://twk.test", name, password);
    });
  }

  [[nodiscard]] static std::set<std::string> texts(const controls::ListView& list) {
    std::set<std::string> names;
    for (std::size_t i = 0; i < list.size(); ++i)
      names.insert(list.at(i).text + (list.at(i).ghosted ? " (gone)" : ""));
    return names;
  }

  windows::MultiUser& window;

 private:
  template <typename Test>
  std::set<std::string> those(Test test) {
    std::set<std::string> names;
    for (const char* const name : kNames) {
      if (has(name) && test(name))
        names.insert(name);
    }
    return names;
  }
};

using InEveryKindOfDomain = testing::TestWithParam<lab::DomainKind>;
inline const auto kKinds =
    testing::Values(lab::DomainKind::kNative, lab::DomainKind::kMixed, lab::DomainKind::kNt);

}  // namespace twk::test
