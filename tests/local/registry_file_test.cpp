#include "local/registry_file.hpp"

#include <sys/stat.h>

#include <thread>

#include "base/errors.hpp"
#include "support/number_of.hpp"
#include "support/other_process.hpp"
#include "support/temporary_directory.hpp"

namespace twk::local {
namespace {

using platform::kHiveCurrentUser;
using platform::kHiveLocalMachine;
using test::get_file;
using test::OtherProcess;
using test::put_file;

const std::string kSetup = "Software\\Oxbrook\\TWK\\Setup";

class RegistryFileTest : public testing::Test {
 protected:
  std::string read(std::string_view key, std::string_view name, std::uint32_t hive = kHiveLocalMachine) {
    std::string value = "(absent)";
    registry_.Reg_Read(hive, key, name, value);
    return value;
  }
  bool write(std::string_view name, std::string_view value) {
    return registry_.Reg_Write(kHiveLocalMachine, kSetup, name, value);
  }
  mode_t mode_of(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 ? status.st_mode & 0777U : 0;
  }

  test::TemporaryDirectory folder_;
  std::string settings_ = folder_ / "config/settings";
  std::string machine_ = settings_ + "/HKEY_LOCAL_MACHINE.reg";
  RegistryFile registry_{settings_};
};

TEST_F(RegistryFileTest, WrittenValueIsReadWithoutRegardToCase) {
  EXPECT_TRUE(registry_.Reg_Write(kHiveLocalMachine, kSetup, "CNName", "Yes"));
  EXPECT_TRUE(registry_.Reg_Write(kHiveLocalMachine, "software\\oxbrook\\twk\\SETUP\\", "CNNAME", "No"));
  EXPECT_EQ(read(kSetup, "cnname"), "No");
  EXPECT_EQ(get_file(machine_),
            "REGEDIT4\r\n\r\n[HKEY_LOCAL_MACHINE\\Software\\Oxbrook\\TWK\\Setup]\r\n\"CNName\"=\"No\"\r\n");
}

TEST_F(RegistryFileTest, AbsentValueLeavesTheBufferAsItWas) {
  EXPECT_EQ(read(kSetup, "Domain"), "(absent)");
  write("Domain", "TWK");
  EXPECT_EQ(read(kSetup, "Password"), "(absent)");
  EXPECT_EQ(read("Software\\Oxbrook\\TWK", "Domain"), "(absent)");
  EXPECT_EQ(read(kSetup, "Domain", kHiveCurrentUser), "(absent)");
  EXPECT_FALSE(std::filesystem::exists(settings_ + "/HKEY_CURRENT_USER.reg"));
}

TEST_F(RegistryFileTest, FilesAreOnlyForTheOwner) {
  const mode_t before = umask(0);
  write("Password", "secret");
  chmod(machine_.c_str(), 0644);
  write("Password", "another secret");
  umask(before);
  EXPECT_EQ(mode_of(machine_), 0600U);
  EXPECT_EQ(mode_of(settings_), 0700U);
  EXPECT_EQ(mode_of(folder_ / "config"), 0700U);
}

TEST_F(RegistryFileTest, ChangeOfAnotherSessionShowsAtTheNextRead) {
  RegistryFile other(settings_);
  for (int i = 0; i < 50; ++i) {
    const std::string text = std::to_string(i % 10);
    EXPECT_TRUE(other.Reg_Write(kHiveLocalMachine, kSetup, "Domain", text));
    EXPECT_EQ(read(kSetup, "Domain"), text);
  }
  std::filesystem::remove(machine_);
  EXPECT_EQ(read(kSetup, "Domain"), "(absent)");
  put_file(machine_, "REGEDIT4\n[HKEY_LOCAL_MACHINE\\" + kSetup + "]\n\"Domain\"=\"by hand\"\n");
  EXPECT_EQ(read(kSetup, "Domain"), "by hand");
}

TEST_F(RegistryFileTest, TwoProcessesDoNotLoseEachOthersValues) {
  constexpr int kValues = 60;
  const auto write_all = [&](const std::string& prefix) {
    RegistryFile registry(settings_);
    for (int i = 0; i < kValues; ++i) {
      if (!registry.Reg_Write(kHiveLocalMachine, kSetup, prefix + std::to_string(i), "x"))
        return 2;
    }
    return 0;
  };
  OtherProcess other([&] { return write_all("theirs"); });
  EXPECT_EQ(write_all("ours"), 0);
  EXPECT_EQ(other.exit_code(), 0);
  EXPECT_EQ(registry_.entries(kHiveLocalMachine, kSetup).size(), 2U * kValues);
}

TEST_F(RegistryFileTest, AValueIsRemoved) {
  EXPECT_FALSE(registry_.remove(kHiveLocalMachine, kSetup, "Domain"));
  write("Domain", "TWK");
  write("OU", "x");
  EXPECT_TRUE(registry_.remove(kHiveLocalMachine, kSetup, "DOMAIN"));
  EXPECT_EQ(read(kSetup, "Domain"), "(absent)");
  EXPECT_EQ(RegistryFile(settings_).entries(kHiveLocalMachine, "").size(), 1U);
}

TEST_F(RegistryFileTest, MalformedFileIsNotWrittenOverAndWhatWasUnderstoodCounts) {
  write("Domain", "TWK");
  const std::string broken = get_file(machine_) + "\"half a";
  put_file(machine_, broken);
  EXPECT_EQ(test::complaint_of([this] { RegistryFile(settings_).require_readable(); }),
            machine_ + ", line 5: a quote is not closed");
  EXPECT_FALSE(write("Domain", "other"));
  EXPECT_EQ(get_file(machine_), broken);
  EXPECT_EQ(registry_.problem(kHiveLocalMachine), machine_ + ", line 5: a quote is not closed");

  put_file(machine_, broken + "\"=\"b\"");
  EXPECT_EQ(read(kSetup, "Domain"), "TWK");
  EXPECT_EQ(read(kSetup, "half a"), "b");
  EXPECT_EQ(registry_.problem(kHiveLocalMachine), "");
}

TEST_F(RegistryFileTest, NumberByAnotherToolIsKeptButIsNotAText) {
  std::filesystem::create_directories(settings_);
  put_file(machine_, "REGEDIT4\n[HKEY_LOCAL_MACHINE\\" + kSetup + "]\n\"Count\"=dword:00000005\n");
  EXPECT_EQ(read(kSetup, "Count"), "(absent)");
  EXPECT_TRUE(write("Domain", "TWK"));
  EXPECT_NE(get_file(machine_).find("\"Count\"=dword:00000005\r\n"), std::string::npos);
  EXPECT_EQ(registry_.entries(kHiveLocalMachine, kSetup).size(), 1U);
  EXPECT_TRUE(write("Count", "6"));
  EXPECT_EQ(read(kSetup, "Count"), "6");
}

TEST_F(RegistryFileTest, EntriesAreThoseAtAndBelowTheKey) {
  for (const std::string key : {"Top\\Sub\\Deep", "Top", "Top Two", "Topmost", "Top\\Sub"}) {
    registry_.Reg_Write(kHiveLocalMachine, key, "b", key);
    registry_.Reg_Write(kHiveLocalMachine, key, "A", "1");
  }
  const auto keys_below = [&](std::string_view key) {
    std::string keys;
    for (const auto& entry : registry_.entries(kHiveLocalMachine, key))
      keys += entry.key + ":" + entry.name + " ";
    return keys;
  };
  EXPECT_EQ(keys_below("TOP\\"), "Top:A Top:b Top\\Sub:A Top\\Sub:b Top\\Sub\\Deep:A Top\\Sub\\Deep:b ");
  EXPECT_EQ(registry_.entries(kHiveLocalMachine, "").size(), 10U);
  EXPECT_TRUE(registry_.entries(kHiveCurrentUser, "").empty());
}

TEST_F(RegistryFileTest, WhatCannotBeStoredAnswersFalse) {
  const struct {
    std::uint32_t hive;
    std::string key;
    std::string name;
  } cases[] = {
      {0x80000003, kSetup, "Name"},        {kHiveLocalMachine, "", "Name"},
      {kHiveLocalMachine, "\\", "Name"},   {kHiveLocalMachine, "A]\r\n[B", "Name"},
      {kHiveLocalMachine, kSetup, "a\nb"}, {kHiveLocalMachine, kSetup, "\xFF"},
  };
  for (const auto& one : cases) {
    EXPECT_FALSE(registry_.Reg_Write(one.hive, one.key, one.name, "x")) << one.key << " " << one.name;
    EXPECT_NE(registry_.problem(one.hive), "");
  }
  EXPECT_FALSE(std::filesystem::exists(settings_));
}

TEST_F(RegistryFileTest, FolderThatCannotBeMadeAnswersFalse) {
  put_file(folder_ / "plain", "");
  RegistryFile below_a_file(folder_ / "plain/settings");
  std::string value;
  EXPECT_FALSE(below_a_file.Reg_Write(kHiveLocalMachine, kSetup, "Domain", "x"));
  EXPECT_FALSE(below_a_file.Reg_Read(kHiveLocalMachine, kSetup, "Domain", value));
  EXPECT_NE(below_a_file.problem(kHiveLocalMachine), "");
}

TEST_F(RegistryFileTest, FullDiskAnswersFalseAndKeepsWhatWasThere) {
  write("Domain", "TWK");
  OtherProcess limited([&] {
    test::limit_file_size(4096);
    const bool refused = !write("Domain", std::string(10000, 'x')) && read(kSetup, "Domain") == "TWK";
    return refused && write("Domain", "fits") ? 0 : 2;
  });
  EXPECT_EQ(limited.exit_code(), 0);
  EXPECT_EQ(read(kSetup, "Domain"), "fits");
}

TEST_F(RegistryFileTest, NamelessValueAndOddKeysComeBack) {
  EXPECT_TRUE(registry_.Reg_Write(kHiveCurrentUser, "a]b [c", "", "nameless"));
  EXPECT_EQ(read("A]B [C", "", kHiveCurrentUser), "nameless");
  std::string value;
  EXPECT_TRUE(RegistryFile(settings_).Reg_Read(kHiveCurrentUser, "a]b [c", "", value));
}

}  // namespace
}  // namespace twk::local
