#include "stores/site_store.hpp"

#include "records/layout.hpp"
#include "records/record_file.hpp"
#include "session/form1.hpp"
#include "session/multi_user.hpp"
#include "support/other_process.hpp"
#include "support/world.hpp"

namespace twk::stores {
namespace {

class SiteStoreTest : public test::TestWorld {
 protected:
  SiteStoreTest() { Clear_Site(session); }

  void make(std::string_view lines) { ASSERT_TRUE(test::make_records("site", path_, lines)); }
  std::string dump() { return test::dump_records("site", path_); }

  /// The buttons and fields in the order in which a person uses them.
  void type_new_site(std::string_view name, std::string_view server) {
    New_Site(session);
    site_name_edited(session, name);
    form1.NTSERVER.text = std::string(server);
  }
  void choose(std::size_t row) {
    form1.ListView2.select(&form1.ListView2.at(row));
    ListView2_Click(session);
  }

  session::Form1& form1 = session.form1;
  std::string path_ = database / "Site.dat";
};

TEST_F(SiteStoreTest, LoadedSitesAreInTheLists) {
  make("Name=Berlin|NTServer=FS1\nDeleted=-1|Name=Old\nName=Köln|NTServer=FS2\n");
  load_sites(session);
  EXPECT_EQ(test::texts(form1.ListView2), (std::vector<std::string>{"Berlin", "Köln"}));
  EXPECT_EQ(form1.ListView2.at(0).icon, "SITE");
  EXPECT_EQ(form1.NUsitename.items(), (std::vector<std::string>{"Berlin", "Köln"}));
  EXPECT_EQ(session.multi_user.Multi_Site.items(), form1.NUsitename.items());
  EXPECT_TRUE(form1.NUsitename.locked.get());
}

TEST_F(SiteStoreTest, AMissingFileLeavesTheListsEmptyAndAnUnreadableOneIsReported) {
  load_sites(session);
  EXPECT_TRUE(form1.ListView2.empty());
  EXPECT_TRUE(form1.ListView1.empty());
  make("Name=Berlin|NTServer=FS1\n");
  files.fail_from(2, base::error::kPermissionDenied);
  load_sites(session);
  ASSERT_EQ(form1.ListView1.size(), 1U);
  EXPECT_EQ(form1.ListView1.at(0).icon, "YELLOW");
}

TEST_F(SiteStoreTest, AClickOnASiteShowsIt) {
  make(
      "Exchange2000=-1|Name=Berlin|NTServer=FS1|ExchangeServer=EX|ExchangeOrg=Org|ExchangeSite=SG|MailStore="
      "MS\n"
      "Name=Bonn|NTServer=FS2|ExchangeServer=E5|ExchangeOrg=O5|ExchangeSite=S5\n");
  load_sites(session);
  choose(0);
  EXPECT_EQ(form1.EXH5.index.get(), 1);
  EXPECT_EQ(form1.Label42.caption.get(), "Mailbox Store");
  EXPECT_EQ(form1.Label13.caption.get(), "Storage Group");
  EXPECT_TRUE(form1.Mail_Store.visible.get());
  EXPECT_EQ(form1.Mail_Store.text.get(), "MS");
  EXPECT_TRUE(form1.Find_Store.enabled.get());
  choose(1);
  EXPECT_EQ(form1.EXH5.index.get(), 0);
  EXPECT_EQ(form1.Label13.caption.get(), "Exchange Site");
  EXPECT_EQ(form1.Label14.caption.get(), "Exchange Org");
  EXPECT_FALSE(form1.Mail_Store.visible.get());
  EXPECT_EQ(form1.NTSERVER.text.get(), "FS2");
  EXPECT_EQ(form1.EXSERVER.text.get(), "E5");
  EXPECT_EQ(form1.EXorg.text.get(), "O5");
  EXPECT_EQ(form1.EXSite.text.get(), "S5");
  EXPECT_TRUE(form1.Edit_Site.enabled.get());
  EXPECT_TRUE(form1.Delete_site.enabled.get());
  EXPECT_FALSE(form1.Save_Site.enabled.get());
  EXPECT_FALSE(form1.NTSERVER.enabled.get());
}

TEST_F(SiteStoreTest, LoadingTakesTheNameAsItStandsAndDeletedSitesToo) {
  make("Deleted=-1|Name=Berlin|NTServer=OLD\nName=Berlin|NTServer=NEW\nName=Bonn|NTServer=FS2\n");
  Loadsite(session, " Berlin ");
  EXPECT_EQ(session.ActiveSite.NTServer, "OLD");
  EXPECT_EQ(form1.NTSERVER.text.get(), "OLD");
  Loadsite(session, "BERLIN");
  EXPECT_EQ(session.ActiveSite.Name, "Bonn");
  EXPECT_EQ(form1.NTSERVER.text.get(), "OLD");
}

TEST_F(SiteStoreTest, ANewSiteIsWrittenAfterTheOthers) {
  make("Name=Bonn|NTServer=FS2\n");
  load_sites(session);
  type_new_site("Köln", "FS3");
  form1.EXH5.index = 1;
  EXH5_Click(session);
  form1.EXSERVER.text = "EX";
  form1.EXSite.text = "SG";
  form1.EXorg.text = "Org";
  form1.Mail_Store.text = "Store";
  Save_Site(session);
  EXPECT_EQ(dump(),
            "Name=Bonn|NTServer=FS2\n"
            "Exchange2000=-1|Name=Köln|NTServer=FS3|ExchangeServer=EX|ExchangeOrg=Org|ExchangeSite=SG|"
            "MailStore=Store\n");
  EXPECT_EQ(form1.NUsitename.items(), (std::vector<std::string>{"Bonn", "Köln"}));
  EXPECT_EQ(test::texts(form1.ListView2), (std::vector<std::string>{"Bonn", "Köln"}));
  EXPECT_TRUE(form1.New_Site.enabled.get());
  EXPECT_FALSE(form1.Save_Site.enabled.get());
  EXPECT_FALSE(form1.NTSERVER.enabled.get());
  EXPECT_FALSE(form1.NUsitename.locked.get());
  choose(0);
  choose(1);
  EXPECT_EQ(form1.NTSERVER.text.get(), "FS3");
}

TEST_F(SiteStoreTest, InvalidNamesAreRefusedAndTheRowRemoved) {
  struct Case {
    std::string_view typed;
    std::string_view status;
  };
  const Case cases[] = {{"  ", "Site Name cannot be Blank"},
                        {" BERLIN ", "Site name already used"},
                        {"123456789012345678901", "Site name too long (20 chrs max)"},
                        {"äöüäöüäöüäöüäöüäöüäöü", "Site name too long (20 chrs max)"},
                        {"a\tb", "Control character U+0009 not allowed"}};
  form1.ListView2.add({}, "Berlin", "SITE");
  int beeps = 0;
  for (const Case& one : cases) {
    New_Site(session);
    EXPECT_EQ(form1.ListView2.size(), 2U);
    EXPECT_FALSE(form1.New_Site.enabled.get());
    site_name_edited(session, one.typed);
    EXPECT_EQ(status(), one.status);
    EXPECT_EQ(form1.ListView2.size(), 1U);
    EXPECT_TRUE(form1.New_Site.enabled.get());
    EXPECT_EQ(dialogs.beeps, ++beeps);
  }
}

TEST_F(SiteStoreTest, ANameOfTwentyCharactersPasses) {
  type_new_site("äöü45678901234567890", "FS");
  Save_Site(session);
  EXPECT_EQ(dump(), "Name=äöü45678901234567890|NTServer=FS\n");
}

TEST_F(SiteStoreTest, IncompleteFieldsAreRefused) {
  type_new_site("Berlin", "");
  dialogs.expect("Must Enter a Site Name, And a Home Server Name");
  Save_Site(session);
  EXPECT_EQ(dialogs.last_title, "Incorect entry");
  form1.NTSERVER.text = "FS1";
  for (controls::Observable<std::string>* const only :
       {&form1.EXSERVER.text, &form1.EXSite.text, &form1.EXorg.text}) {
    *only = "x";
    dialogs.expect("Must enter all three vaules for exchange.");
    Save_Site(session);
    EXPECT_EQ(status(), "Ready.");
    *only = "";
  }
  form1.NTSERVER.text = "FS\n1";
  Save_Site(session);
  EXPECT_EQ(status(), "Control character U+000A not allowed");
  EXPECT_FALSE(files.exists(path_));
  form1.NTSERVER.text = "FS1";
  Save_Site(session);
  EXPECT_EQ(status(), "Site Saved.");
  EXPECT_EQ(dump(), "Name=Berlin|NTServer=FS1\n");
}

TEST_F(SiteStoreTest, ANameOfAnotherCaseIsAConflict) {
  form1.ListView2.add({}, "Berlin", "SITE");
  form1.New_Site_Name.text = "BERLIN";
  form1.NTSERVER.text = "FS1";
  dialogs.expect("Site Name BERLIN Already Exist \r\nChange Site Name.");
  Save_Site(session);
  EXPECT_EQ(dialogs.last_title, "Site Name Conflict...");
  EXPECT_FALSE(files.exists(path_));
}

TEST_F(SiteStoreTest, AnEditReplacesTheLiveRecordOfThatName) {
  make("Deleted=-1|Name=Berlin|NTServer=OLD\nName=Bonn|NTServer=FS2\nName=Berlin|NTServer=FS1\n");
  load_sites(session);
  choose(1);
  // The click loaded the deleted one, which is reported; the edit begins with the fields of the live one.
  EXPECT_EQ(form1.NTSERVER.text.get(), "OLD");
  ASSERT_EQ(form1.ListView1.size(), 1U);
  EXPECT_THAT(form1.ListView1.at(0).text, testing::HasSubstr("deleted site \"Berlin\" before"));
  session.ActiveSite.NTServer = "kept";
  Edit_Site(session);
  EXPECT_EQ(status(), "Edit Site...");
  EXPECT_TRUE(form1.NTSERVER.enabled.get());
  EXPECT_EQ(form1.NTSERVER.text.get(), "FS1");
  form1.NTSERVER.text = "FS9";
  Save_Site(session);
  EXPECT_EQ(dump(),
            "Deleted=-1|Name=Berlin|NTServer=OLD\nName=Bonn|NTServer=FS2\nName=Berlin|NTServer=FS9\n");
  EXPECT_FALSE(session.EditingSite);
  EXPECT_EQ(session.ActiveSite.NTServer, "kept");
  EXPECT_EQ(form1.NUsitename.items().size(), 2U);
}

TEST_F(SiteStoreTest, DeletingMarksTheRecordAndForgetsTheName) {
  make("Name=Berlin|NTServer=FS1\nName=berlin|NTServer=second\n");
  load_sites(session);
  choose(0);
  form1.Confirm_Deletes.value = 1;
  dialogs.expect("Sure to Delete Site Record", platform::Answer::kNo);
  Delete_site(session);
  EXPECT_EQ(dump(), "Name=Berlin|NTServer=FS1\nName=berlin|NTServer=second\n");
  dialogs.expect("Sure to Delete Site Record", platform::Answer::kYes);
  Delete_site(session);
  EXPECT_EQ(dump(), "Deleted=-1|Name=Berlin|NTServer=FS1\nName=berlin|NTServer=second\n");
  EXPECT_EQ(test::texts(form1.ListView2), (std::vector<std::string>{"berlin"}));
  EXPECT_EQ(status(), "Site Deleted.");
  EXPECT_EQ(form1.NTSERVER.text.get(), "");
}

TEST_F(SiteStoreTest, ADeletedNameCanBeUsedAgainAndTheOldContentsAreFoundFirst) {
  make("Name=Berlin|NTServer=FS1\n");
  load_sites(session);
  choose(0);
  Delete_site(session);
  type_new_site("Berlin", "FS2");
  Save_Site(session);
  EXPECT_EQ(dump(), "Deleted=-1|Name=Berlin|NTServer=FS1\nName=Berlin|NTServer=FS2\n");
  Loadsite(session, "Berlin");
  EXPECT_EQ(form1.NTSERVER.text.get(), "FS1");
}

TEST_F(SiteStoreTest, CancelAndAClickElsewhereDropASiteThatWasNotSaved) {
  make("Name=Berlin|NTServer=FS1\n");
  load_sites(session);
  type_new_site("Bonn", "FS2");
  Site_Cancel(session);
  EXPECT_EQ(form1.ListView2.size(), 1U);
  type_new_site("Bonn", "FS2");
  choose(0);
  EXPECT_EQ(test::texts(form1.ListView2), (std::vector<std::string>{"Berlin"}));
  EXPECT_EQ(form1.NTSERVER.text.get(), "FS1");
}

TEST_F(SiteStoreTest, AFailureAtAnyCallIsReportedWithItsReasonAndTheTabStays) {
  make("Name=Berlin|NTServer=FS1\n");
  load_sites(session);
  choose(0);
  const auto edit = [this](std::string_view server, int failing_call) {
    Edit_Site(session);
    form1.NTSERVER.text = std::string(server);
    files.fail_from(failing_call, base::error::kDiskFull);
    Save_Site(session);
  };
  edit("FS2", 0);
  const int calls = files.calls();
  ASSERT_GT(calls, 3);
  for (int call = 1; call <= calls; ++call) {
    dialogs.expect("Error Opening Site.dat\r\nthe disk refuses");
    edit("FS9", call);
    files.fail_from(0, 0);
    EXPECT_EQ(dialogs.last_icon, platform::Icon::kCritical);
    EXPECT_TRUE(session.EditingSite);
    EXPECT_TRUE(form1.Save_Site.enabled.get());
    EXPECT_EQ(form1.NTSERVER.text.get(), "FS9");
    EXPECT_EQ(dump(), "Name=Berlin|NTServer=FS2\n");
  }
}

TEST_F(SiteStoreTest, DeletingAndLoadingSayWhyTheyCannot) {
  make("Name=Berlin|NTServer=FS1\n");
  load_sites(session);
  choose(0);
  files.fail_from(1, base::error::kPathFileAccess);
  dialogs.expect("Error Opening Site.dat");
  Delete_site(session);
  dialogs.expect("Error Opening Site.dat");
  Loadsite(session, "Berlin");
  EXPECT_EQ(form1.ListView2.size(), 1U);
  EXPECT_EQ(form1.NTSERVER.text.get(), "FS1");
}

TEST_F(SiteStoreTest, TwoProcessesThatSaveAtTheSameTimeLoseNothing) {
  const int sites = 200;
  const auto save_all = [this](std::string_view prefix) {
    for (int i = 0; i < sites; ++i) {
      type_new_site(std::string(prefix) + base::to_text(i), "FS1");
      Save_Site(session);
    }
    return 0;
  };
  test::OtherProcess colleague([&] { return save_all("theirs"); });
  save_all("mine");
  EXPECT_EQ(colleague.exit_code(), 0);
  form1.ListView2.clear();
  load_sites(session);
  EXPECT_EQ(form1.ListView2.size(), 2U * sites);
  for (int i = 0; i < sites; ++i) {
    EXPECT_EQ(form1.ListView2.find_text("mine" + base::to_text(i)).size(), 1U);
    EXPECT_EQ(form1.ListView2.find_text("theirs" + base::to_text(i)).size(), 1U);
  }
}

}  // namespace
}  // namespace twk::stores
