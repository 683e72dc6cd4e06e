#include "mail/mailbox_descriptor.hpp"

#include "support/world.hpp"

namespace twk::mail {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

const platform::Sid kUser(5, {21, 0x0A0B0C0D, 2, 3, 1103});
constexpr std::string_view kUserHex = "0105000000000005150000000D0C0B0A02000000030000004F040000";

/// Knows "TWK\jo" on one server, and notes who asked where.
class OneAccount final : public platform::Security {
 public:
  explicit OneAccount(std::string server) : server_(std::move(server)) {}

  platform::AccountSid LookupAccountName(std::string_view server, std::string_view account) override {
    asked.push_back(std::string(server) + ":" + std::string(account));
    if (server != server_ || account != "TWK\\jo")
      throw base::RuntimeError(platform::security_error::kNoneMapped, "nobody of that name");
    return {kUser, "TWK"};
  }
  std::string LookupAccountSid(std::string_view, const platform::Sid& sid) override { return sid.text(); }
  std::vector<platform::Sid> account_identifiers(std::string_view) override { return {}; }
  platform::SecurityDescriptor GetFileSecurity(std::string_view, std::uint32_t, std::size_t) override {
    return {};
  }
  void SetFileSecurity(std::string_view, std::uint32_t, const platform::SecurityDescriptor&) override {}
  std::unique_ptr<platform::ProcessToken> OpenProcessToken() override { return nullptr; }
  std::uint64_t LookupPrivilegeValue(std::string_view) override { return 0; }

  std::vector<std::string> asked;

 private:
  std::string server_;
};

/// A session whose accounts are on `known_on`, with "Log.txt" open.
class MailboxDescriptor : public test::TestWorld {
 protected:
  explicit MailboxDescriptor(const std::string& known_on = "DC1", std::string_view command_line = "")
      : accounts(known_on),
        mail_session({registry, directory, directory, files, network, accounts, mailboxes, process,
                      environment, clock, dialogs},
                     command_line, "/opt/twk") {
    mail_session.dbpath = database.path().string() + "\\";
    mail_session.DomainName = "TWK";
    mail_session.log.open();
  }
  std::string log() {
    mail_session.log.close();
    return test::get_file(database / "Log.txt");
  }
  base::Bytes build(std::string_view server, std::span<const AccountMask> pairs = {}) {
    base::Bytes descriptor;
    BuildMailboxDescriptor(mail_session, descriptor, server, "TWK", "jo", pairs);
    return descriptor;
  }

  OneAccount accounts;
  windows::Desktop mail_session;
};

std::string as_text(const base::Bytes& bytes) {
  return {bytes.begin(), bytes.end()};
}

TEST_F(MailboxDescriptor, IsTheSelfRelativeOneOfOwnerGroupAndList) {
  const std::array pairs = {AccountMask{"jo", kMailboxOwnerRights}};
  const base::Bytes descriptor = build("DC1", pairs);
  EXPECT_EQ(descriptor.size(), 120U);
  // Header, list, owner and group, put together byte by byte according to [MS-DTYP] 2.4.6.
  EXPECT_EQ(as_text(hex_text(descriptor)),
            "0100048040000000"
            "5C00000000000000"
            "14000000"
            "02002C0001000000"
            "000024001A000000" +
                std::string(kUserHex) + std::string(kUserHex) + std::string(kUserHex));
}

TEST_F(MailboxDescriptor, WithoutPairsItLetsNobodyIn) {
  const auto read = platform::SecurityDescriptor::decode(build("DC1"));
  EXPECT_EQ(read.owner, kUser);
  EXPECT_EQ(read.group, kUser);
  ASSERT_TRUE(read.dacl.has_value());
  EXPECT_TRUE(read.dacl->entries().empty());
}

TEST_F(MailboxDescriptor, HexadecimalTextIsTwoCapitalDigitsAByte) {
  const base::Bytes bytes = {0x00, 0x0A, 0xF5, 0xFF};
  EXPECT_EQ(as_text(hex_text(bytes)), "000AF5FF");
}

TEST_F(MailboxDescriptor, TheIdentifierIsLookedUpOnTheDomainsController) {
  base::Bytes hex;
  GetSidAsHex(mail_session, "jo", hex);
  EXPECT_EQ(as_text(hex), kUserHex);
  EXPECT_THAT(accounts.asked, ElementsAre("DC1:TWK\\jo"));
  EXPECT_THROW(GetSidAsHex(mail_session, "al", hex), base::RuntimeError);
}

TEST_F(MailboxDescriptor, AnUnknownUserIsTriedTwiceAndNamesTheCall) {
  const std::array strangers = {AccountMask{"al", 1}};
  try {
    build("DC2", strangers);
    ADD_FAILURE() << "nobody is on DC2";
  } catch (const base::RuntimeError& failure) {
    EXPECT_EQ(failure.description(), "GetSID");
  }
  EXPECT_THAT(accounts.asked, ElementsAre("DC2:TWK\\jo", "DC2:TWK\\jo"));
  EXPECT_THROW(build("DC1", strangers), base::RuntimeError);
  const std::string told = log();
  EXPECT_THAT(told, HasSubstr("SID error... goto error routine\r\nSID lookup error:nobody of that name\r\n"
                              "Error getting SID\r\n"));
  EXPECT_THAT(told, HasSubstr("Error getting User SID from:DC2\r\n"));
}

class InActiveDirectory : public MailboxDescriptor {
 protected:
  InActiveDirectory() : MailboxDescriptor("dc9.twk.test", "/DEBUG") {
    mail_session.DirectoryMode = session::kNativeMode;
    mail_session.NTDomainName = "TWK";
    mail_session.DnsServerName = "dc9.twk.test";
  }
};

TEST_F(InActiveDirectory, TheSecondAttemptAsksTheSessionsServerAndSoDoThePairs) {
  const std::array pairs = {AccountMask{"jo", 26}};
  EXPECT_EQ(build("DC1", pairs).size(), 120U);
  EXPECT_THAT(accounts.asked, ElementsAre("DC1:TWK\\jo", "dc9.twk.test:TWK\\jo", "dc9.twk.test:TWK\\jo"));
  const std::string told = log();
  EXPECT_THAT(told, HasSubstr("Init SD\r\nGet SID\r\n0 Number should be 1\r\n"));
  EXPECT_THAT(told, HasSubstr("Get SID 2nd attempt\r\n1 Number should be 1\r\nSetting SD Onwer\r\n"
                              "Setting SD Group\r\n1 Number should be 1\r\nSetting ACE\r\nSetting DACL\r\n"
                              "Setting Relative SD\r\n"));
}

}  // namespace
}  // namespace twk::mail
