#pragma once

#include <array>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "lab/making/lab_create.hpp"
#include "lab/services/lab.hpp"
#include "records/records.hpp"
#include "support/failing_network.hpp"
#include "support/fakes.hpp"
#include "support/faulty_directory.hpp"
#include "support/scripted_dialogs.hpp"
#include "support/store.hpp"
#include "support/temporary_directory.hpp"
#include "windows/state/desktop.hpp"

namespace twk::test {

/// A session on a small lab domain of its own, with the site "Head Office" on FS1, the template "Staff" and
/// the groups "Staff" and "Readers". In Active Directory new accounts go to "OU=New Starters", which is
/// selected and read. Shares, permissions and the command are off. Nobody is there to answer a question that
/// the test does not expect.
class LabSession {
 public:
  /// `boxes` replaces the scripted dialogs.
  explicit LabSession(lab::DomainKind kind = lab::DomainKind::kNative, std::string_view command_line = "",
                      platform::Dialogs* boxes = nullptr);

  /// Starts the session. A test changes settings, site or template before that.
  void start();
  void set(std::string_view sub_key, std::string_view name, std::string_view value);
  /// Fills the names of the New User tab.
  void type_names(std::string_view first, std::string_view middle, std::string_view last);
  /// Selects a node by its key; the test fails when there is none.
  void select(std::string_view key);

  [[nodiscard]] bool is_nt() const { return kind_ == lab::DomainKind::kNt; }
  /// Where new accounts go: the unit, or a domain without a directory itself.
  [[nodiscard]] platform::ObjectPtr place();
  /// A new user there, called `cn` in a directory; stored.
  platform::ObjectPtr make_user(const std::string& name, const std::string& cn = {});
  [[nodiscard]] platform::ObjectPtr group(const std::string& name);
  [[nodiscard]] std::string path_of(std::string_view account);
  /// An account by its name, through the provider of the lab's kind.
  [[nodiscard]] platform::ObjectPtr account(std::string_view name);
  /// The text of a property; empty when it has no value.
  [[nodiscard]] std::string property(std::string_view account_name, std::string_view name);
  [[nodiscard]] std::vector<std::string> groups_of(std::string_view account_name);
  /// "Log.txt", and any other file of the database directory, as UTF-8 with line feeds.
  [[nodiscard]] std::string log() { return database_file("Log.txt"); }
  [[nodiscard]] std::string database_file(std::string_view name);
  /// Rows of the log tab, as "GREEN text".
  [[nodiscard]] std::vector<std::string> log_tab() const;

  TemporaryDirectory folder;
  records::SiteRecord site;
  records::TemplateRecord staff;
  ScriptedDialogs dialogs;
  FixedClock clock;
  FakeEnvironment environment;
  FakeProcess process;

 private:
  lab::DomainKind kind_;
  std::unique_ptr<lab::Lab> lab_;

 public:
  platform::Platform services;
  FaultyDirectory directory;
  FailingFiles files;
  FailingNetwork network;
  windows::Desktop session;
};

/// One whose session has started with the settings that are given.
class StartedLab : public LabSession {
 public:
  using Setting = std::array<std::string_view, 3>;
  explicit StartedLab(lab::DomainKind kind = lab::DomainKind::kNative,
                      std::initializer_list<Setting> settings = {})
      : LabSession(kind) {
    for (const auto& [sub_key, name, value] : settings)
      set(sub_key, name, value);
    start();
  }
};

/// Distinguished name of the unit for new accounts.
inline constexpr std::string_view kNewStarters = "OU=New Starters,DC=twk,DC=test";

/// The name of a kind of domain, for the names of tests.
std::string kind_name(const testing::TestParamInfo<lab::DomainKind>& info);

}  // namespace twk::test
