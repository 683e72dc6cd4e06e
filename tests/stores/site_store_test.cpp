#include "stores/site_store.hpp"

#include "records/layout.hpp"
#include "records/record_file.hpp"
#include "session/loaded_database.hpp"
#include "support/other_process.hpp"
#include "support/world.hpp"
#include "windows/state/form1.hpp"

namespace twk::stores {
namespace {

class SiteStoreTest : public test::TestWorld {
 protected:
  void make(std::string_view lines) {
    ASSERT_TRUE(test::make_records("site", path_, lines));
    load_site_names(session);
  }
  std::string dump() { return test::dump_records("site", path_); }
  static records::SiteRecord site(std::string name, std::string server) {
    records::SiteRecord record;
    record.Name = std::move(name);
    record.NTServer = std::move(server);
    return record;
  }

  std::vector<std::string>& names = session.database.sites;
  std::string path_ = database / "Site.dat";
};

TEST_F(SiteStoreTest, ReadingThatFailsIsReportedAndAMissingFileIsNot) {
  load_site_names(session);
  EXPECT_TRUE(session.form1.ListView1.empty());
  make("Name=Berlin|NTServer=FS1\nDeleted=-1|Name=Old\nName=Köln|NTServer=FS2\n");
  EXPECT_EQ(names, (std::vector<std::string>{"Berlin", "Köln"}));
  files.fail_from(2, base::error::kPermissionDenied);
  load_site_names(session);
  ASSERT_EQ(session.form1.ListView1.size(), 1U);
  EXPECT_EQ(session.form1.ListView1.at(0).icon, "YELLOW");
}

TEST_F(SiteStoreTest, LoadingTakesTheNameAsItStandsAndDeletedSitesToo) {
  make("Deleted=-1|Name=Berlin|NTServer=OLD\nName=Berlin|NTServer=NEW\nName=Bonn|NTServer=FS2\n");
  const StoreOutcome loaded = load_site(session, " Berlin ");
  EXPECT_TRUE(loaded.done);
  EXPECT_EQ(loaded.status, "These are the values of a deleted site of this name. Compact the database.");
  EXPECT_EQ(session.ActiveSite.NTServer, "OLD");
  ASSERT_EQ(session.form1.ListView1.size(), 1U);
  EXPECT_THAT(session.form1.ListView1.at(0).text, testing::HasSubstr("deleted site \"Berlin\" before"));
  EXPECT_EQ(live_site(session, "berlin")->NTServer, "NEW");
  EXPECT_FALSE(load_site(session, "BERLIN").done);
  EXPECT_EQ(session.ActiveSite.Name, "Bonn");
}

TEST_F(SiteStoreTest, ANewSiteIsWrittenAfterTheOthers) {
  make("Name=Bonn|NTServer=FS2\n");
  records::SiteRecord made = site(" Köln ", "FS3");
  made.ExchangeServer = "EX";
  made.ExchangeSite = "SG";
  made.ExchangeOrg = "Org";
  made.MailStore = "Store";
  EXPECT_EQ(save_site(session, made, SaveAs::kNew).status, "Site Saved.");
  made.Name = "äöü45678901234567890";
  made.Exchange2000 = true;
  EXPECT_TRUE(save_site(session, made, SaveAs::kNew).done);
  EXPECT_EQ(dump(),
            "Name=Bonn|NTServer=FS2\n"
            "Name=Köln|NTServer=FS3|ExchangeServer=EX|ExchangeOrg=Org|ExchangeSite=SG\n"
            "Exchange2000=-1|Name=äöü45678901234567890|NTServer=FS3|ExchangeServer=EX|ExchangeOrg=Org|"
            "ExchangeSite=SG|MailStore=Store\n");
  EXPECT_EQ(names, (std::vector<std::string>{"Bonn", "Köln", "äöü45678901234567890"}));
}

TEST_F(SiteStoreTest, NamesThatNoNewSiteCanHaveAreRefused) {
  const std::pair<std::string_view, std::string_view> cases[] = {
      {"  ", "Site Name cannot be Blank"},
      {" BERLIN ", "Site name already used"},
      {"123456789012345678901", "Site name too long (20 chrs max)"},
      {"äöüäöüäöüäöüäöüäöüäöü", "Site name too long (20 chrs max)"},
      {"a\tb", "Control character U+0009 not allowed"},
      {"äöü45678901234567890", ""}};
  names = {"Berlin"};
  for (const auto& [name, refusal] : cases)
    EXPECT_EQ(site_name_refusal(session, name), refusal);
}

TEST_F(SiteStoreTest, SitesThatCannotBeAreRefused) {
  struct Case {
    std::string name, server, exchange_server, exchange_site, exchange_org;
    std::string_view message, title, status;
  };
  constexpr std::string_view kThree = "Must enter all three vaules for exchange.";
  constexpr std::string_view kIncorrect = "Incorrect Exchange Settings";
  const Case cases[] = {
      {"Köln", "", "", "", "", "Must Enter a Site Name, And a Home Server Name", "Incorect entry", ""},
      {" ", "FS1", "", "", "", "Must Enter a Site Name, And a Home Server Name", "Incorect entry", ""},
      {"Köln", "FS1", "x", "", "", kThree, kIncorrect, ""},
      {"Köln", "FS1", "", "x", "", kThree, kIncorrect, ""},
      {"Köln", "FS1", "x", "", "x", kThree, kIncorrect, ""},
      {"Köln", "FS\n1", "", "", "", "", "", "Control character U+000A not allowed"},
      {"BERLIN", "FS1", "", "", "", "Site Name BERLIN Already Exist \r\nChange Site Name.",
       "Site Name Conflict...", ""}};
  names = {"Berlin"};
  for (const Case& one : cases) {
    records::SiteRecord record = site(one.name, one.server);
    record.ExchangeServer = one.exchange_server;
    record.ExchangeSite = one.exchange_site;
    record.ExchangeOrg = one.exchange_org;
    const StoreOutcome outcome = save_site(session, record, SaveAs::kNew);
    EXPECT_FALSE(outcome.done);
    EXPECT_EQ(outcome.message, one.message);
    EXPECT_EQ(outcome.title, one.title);
    EXPECT_EQ(outcome.status, one.status);
    EXPECT_EQ(outcome.beep, !one.status.empty());
  }
  EXPECT_FALSE(files.exists(path_));
}

TEST_F(SiteStoreTest, ASaveOfTheLiveSiteReplacesItsRecordAndADeletedNameCanBeUsedAgain) {
  make("Deleted=-1|Name=Berlin|NTServer=OLD\nName=Bonn|NTServer=FS2\nName=Berlin|NTServer=FS1\n");
  EXPECT_TRUE(save_site(session, site("Berlin", "FS9"), SaveAs::kLive).done);
  EXPECT_EQ(dump(),
            "Deleted=-1|Name=Berlin|NTServer=OLD\nName=Bonn|NTServer=FS2\nName=Berlin|NTServer=FS9\n");
  EXPECT_EQ(delete_site(session, "Bonn").status, "Site Deleted.");
  EXPECT_EQ(names, std::vector<std::string>{"Berlin"});
  EXPECT_TRUE(save_site(session, site("Bonn", "FS3"), SaveAs::kNew).done);
  EXPECT_EQ(dump(),
            "Deleted=-1|Name=Berlin|NTServer=OLD\nDeleted=-1|Name=Bonn|NTServer=FS2\n"
            "Name=Berlin|NTServer=FS9\nName=Bonn|NTServer=FS3\n");
}

TEST_F(SiteStoreTest, AFailureAtAnyCallIsReportedWithItsReasonAndNothingIsWritten) {
  make("Name=Berlin|NTServer=FS1\n");
  files.fail_from(0, 0);
  EXPECT_TRUE(save_site(session, site("Berlin", "FS2"), SaveAs::kLive).done);
  const int calls = files.calls();
  ASSERT_GT(calls, 3);
  for (int call = 1; call <= calls; ++call) {
    files.fail_from(call, base::error::kDiskFull);
    const StoreOutcome outcome = save_site(session, site("Berlin", "FS9"), SaveAs::kLive);
    files.fail_from(0, 0);
    EXPECT_FALSE(outcome.done);
    EXPECT_THAT(outcome.message, testing::StartsWith("Error Opening Site.dat\r\nthe disk refuses"));
    EXPECT_EQ(outcome.icon, platform::Icon::kCritical);
    EXPECT_EQ(dump(), "Name=Berlin|NTServer=FS2\n");
  }
  files.fail_from(1, base::error::kPathFileAccess);
  for (const StoreOutcome& outcome : {delete_site(session, "Berlin"), load_site(session, "Berlin")})
    EXPECT_THAT(outcome.message, testing::StartsWith("Error Opening Site.dat"));
  EXPECT_EQ(names, std::vector<std::string>{"Berlin"});
}

TEST_F(SiteStoreTest, TwoProcessesThatSaveAtTheSameTimeLoseNothing) {
  const int sites = 200;
  const auto save_all = [this](std::string_view prefix) {
    for (int i = 0; i < sites; ++i)
      save_site(session, site(std::string(prefix) + base::to_text(i), "FS1"), SaveAs::kNew);
    return 0;
  };
  test::OtherProcess colleague([&] { return save_all("theirs"); });
  save_all("mine");
  EXPECT_EQ(colleague.exit_code(), 0);
  load_site_names(session);
  const std::set<std::string> all(names.begin(), names.end());
  EXPECT_EQ(names.size(), 2U * sites);
  for (int i = 0; i < sites; ++i) {
    EXPECT_EQ(all.count("mine" + base::to_text(i)), 1U);
    EXPECT_EQ(all.count("theirs" + base::to_text(i)), 1U);
  }
}

}  // namespace
}  // namespace twk::stores
