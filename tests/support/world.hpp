#pragma once

#include <optional>

#include "local/posix_files.hpp"
#include "session/settings.hpp"
#include "stores/side_tables.hpp"
#include "support/fakes.hpp"
#include "support/memory_security.hpp"
#include "support/scripted_dialogs.hpp"
#include "support/temporary_directory.hpp"
#include "windows/controls_defaults.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/form1.hpp"

namespace twk::test {

/// A separate session on a separate database directory, with the windows as start-up leaves them and
/// nobody to answer a question that the test does not expect.
class TestWorld : public testing::Test {
 protected:
  TestWorld() {
    stores::fill_wts_rows(session);
    windows::prepare_controls(session);
    session.dbpath = database.path().string() + "\\";
  }

  std::string setting(std::string_view sub_key, std::string_view name,
                      std::uint32_t hive = platform::kHiveLocalMachine) {
    std::string value = "(none)";
    registry.Reg_Read(hive, std::string(session::kTree) + "\\" + std::string(sub_key), name, value);
    return value;
  }
  void set(std::string_view sub_key, std::string_view name, std::string_view value,
           std::uint32_t hive = platform::kHiveLocalMachine) {
    registry.Reg_Write(hive, std::string(session::kTree) + "\\" + std::string(sub_key), name, value);
  }
  [[nodiscard]] std::string status() const { return session.form1.StatusBar1.panel1; }
  /// A file of the database directory.
  void put(std::string_view file, std::string_view bytes) const { put_file(database / file, bytes); }
  [[nodiscard]] std::string get(std::string_view file) const { return get_file(database / file); }

  TemporaryDirectory database;
  FakeRegistry registry;
  ScriptedDialogs dialogs;
  FixedClock clock;
  FakeEnvironment environment;
  FakeProcess process;
  FakeNetwork network;
  MemorySecurity security;
  FakeMailboxes mailboxes;
  UnreachableDirectory directory;
  local::PosixFiles posix_files;
  FailingFiles files{posix_files};
  windows::Desktop session{{registry, directory, directory, files, network, security, mailboxes, process,
                            environment, clock, dialogs},
                           "",
                           "/opt/twk"};
};

/// The texts of a list's rows.
inline std::vector<std::string> texts(const controls::ListView& list) {
  std::vector<std::string> out;
  for (std::size_t i = 0; i < list.size(); ++i)
    out.push_back(list.at(i).text);
  return out;
}

}  // namespace twk::test
