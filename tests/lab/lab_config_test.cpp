#include "lab/shares/lab_config.hpp"

#include <gtest/gtest.h>

#include "contract/world.hpp"
#include "support/temporary_directory.hpp"

namespace twk::lab {
namespace {

class LabConfigFile : public testing::Test {
 protected:
  /// What reading this text raises; empty when it is read.
  std::string complaint(std::string_view text) {
    test::put_file(file_, text);
    return test::complaint_of([&] { static_cast<void>(read_lab_config(file_)); });
  }

  test::TemporaryDirectory folder_;
  std::string file_ = folder_ / "lab.conf";
};

TEST_F(LabConfigFile, WrittenConfigurationReadsBackAsItWas) {
  LabConfig config;
  config.domain = "corp.example";
  config.netbios = "CORP";
  config.kind = DomainKind::kMixed;
  config.controller = "PDC";
  config.passwords = {.minimum_length = 12,
                      .complexity = false,
                      .lockout_threshold = 5,
                      .lockout_duration = 30,
                      .lockout_window = 15,
                      .maximum_age = 42};
  config.default_answer = DefaultAnswer::kYes;
  write_lab_config(file_, config);
  EXPECT_EQ(read_lab_config(file_), config);
  const auto mode = std::filesystem::status(file_).permissions();
  EXPECT_EQ(mode, std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
}

TEST_F(LabConfigFile, CommentsBlankLinesAndCaseDoNotMatter) {
  test::put_file(file_, "# a lab\r\n\r\n  DOMAIN = twk.test  \r\nKind=Native\n");
  const LabConfig config = read_lab_config(file_);
  EXPECT_EQ(config.domain, "twk.test");
  EXPECT_EQ(config.netbios, "TWK");
}

TEST_F(LabConfigFile, FaultIsReportedWithFileLineAndSetting) {
  const struct {
    const char* text;
    const char* complaint;
  } cases[] = {
      {"domain = twk.test\nkind = old\n", ":2: \"kind\": not one of native, mixed, nt"},
      {"domain = nodot\n", ":1: \"domain\": a DNS name has a dot"},
      {"domain = a..b\n", ":1: \"domain\": a name is empty or too long"},
      {"domain = twk.test\ndomain = twk.test\n", ":2: \"domain\" is given twice"},
      {"domain = twk.test\nbogus = 1\n", ":2: \"bogus\": no such setting"},
      {"domain = twk.test\nnonsense\n", ":2: not of the form name = value"},
      {"domain = twk.test\npassword.minimum_length = many\n",
       ":2: \"password.minimum_length\": not a number from 0 to 127"},
      {"netbios = THIS-NAME-IS-TOO-LONG\n", ":1: \"netbios\": a name is empty or too long"},
      {"domain = twk.test\nprivileges = SeBackupPrivilege SeRestorPrivilege\n",
       ":2: \"privileges\": there is no privilege SeRestorPrivilege"},
      {"kind = nt\n", "a lab of kind nt needs \"netbios\""},
      {"", "\"domain\" is missing"},
  };
  for (const auto& one : cases) {
    const std::string told = complaint(one.text);
    EXPECT_TRUE(told.starts_with(file_ + ":")) << told;
    EXPECT_NE(told.find(one.complaint), std::string::npos) << told;
  }
}

TEST_F(LabConfigFile, UnusableConfigurationIsNotWritten) {
  test::put_file(file_, "domain = twk.test\n");
  LabConfig config = read_lab_config(file_);
  config.domain = "two\nlines.example";
  EXPECT_NE(contract::number_of([&] { write_lab_config(file_, config); }), 0U);
  EXPECT_EQ(test::get_file(file_), "domain = twk.test\n");
}

TEST_F(LabConfigFile, FolderWithoutOneIsNotALab) {
  EXPECT_EQ(contract::number_of([&] { static_cast<void>(read_lab_config(file_)); }),
            base::error::kFileNotFound);
}

}  // namespace
}  // namespace twk::lab
