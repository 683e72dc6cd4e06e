#include "windows/site_tab.hpp"

#include "records/layout.hpp"
#include "stores/site_store.hpp"
#include "support/world.hpp"
#include "windows/state/details_changes.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/multi_user.hpp"

namespace twk::windows {
namespace {

class SiteTab : public test::TestWorld {
 protected:
  SiteTab() { Clear_Site(session); }

  void make(std::string_view lines) {
    ASSERT_TRUE(test::make_records("site", path_, lines));
    stores::load_site_names(session);
    list_sites(session);
  }
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

  windows::Form1& form1 = session.form1;
  std::string path_ = database / "Site.dat";
};

TEST_F(SiteTab, AClickOnASiteShowsIt) {
  make(
      "Exchange2000=-1|Name=Berlin|NTServer=FS1|ExchangeServer=EX|ExchangeOrg=Org|ExchangeSite=SG|MailStore="
      "MS\n"
      "Name=Bonn|NTServer=FS2|ExchangeServer=E5|ExchangeOrg=O5|ExchangeSite=S5\n");
  EXPECT_EQ(form1.ListView2.at(0).icon, "SITE");
  EXPECT_TRUE(form1.NUsitename.locked.get());
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

TEST_F(SiteTab, ANewSiteIsSavedFromTheFieldsAndListed) {
  make("Name=Bonn|NTServer=FS2\n");
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
  const std::vector<std::string> both = {"Bonn", "Köln"};
  EXPECT_EQ(form1.NUsitename.items(), both);
  EXPECT_EQ(session.multi_user.Multi_Site.items(), both);
  EXPECT_EQ(test::texts(form1.ListView2), both);
  EXPECT_TRUE(form1.New_Site.enabled.get());
  EXPECT_FALSE(form1.Save_Site.enabled.get());
  EXPECT_FALSE(form1.NTSERVER.enabled.get());
  EXPECT_FALSE(form1.NUsitename.locked.get());
}

TEST_F(SiteTab, ARefusedNameDropsTheRowAndRefusedFieldsStay) {
  New_Site(session);
  EXPECT_EQ(form1.ListView2.size(), 1U);
  EXPECT_FALSE(form1.New_Site.enabled.get());
  site_name_edited(session, " ");
  EXPECT_EQ(status(), "Site Name cannot be Blank");
  EXPECT_EQ(dialogs.beeps, 1);
  EXPECT_TRUE(form1.ListView2.empty());
  EXPECT_TRUE(form1.New_Site.enabled.get());
  type_new_site("Berlin", "");
  dialogs.expect("Must Enter a Site Name, And a Home Server Name");
  Save_Site(session);
  EXPECT_EQ(status(), "Ready.");
  EXPECT_TRUE(form1.Save_Site.enabled.get());
}

TEST_F(SiteTab, AnEditBeginsWithTheFieldsOfTheLiveSite) {
  make("Deleted=-1|Name=Berlin|NTServer=OLD\nName=Berlin|NTServer=FS1\n");
  choose(0);
  EXPECT_EQ(form1.NTSERVER.text.get(), "OLD");
  Edit_Site(session);
  EXPECT_EQ(status(), "Edit Site...");
  EXPECT_TRUE(form1.NTSERVER.enabled.get());
  EXPECT_EQ(form1.NTSERVER.text.get(), "FS1");
  form1.NTSERVER.text = "FS9";
  files.fail_from(1, base::error::kDiskFull);
  dialogs.expect("Error Opening Site.dat\r\nthe disk refuses");
  Save_Site(session);
  files.fail_from(0, 0);
  EXPECT_TRUE(session.EditingSite);
  EXPECT_TRUE(form1.Save_Site.enabled.get());
  EXPECT_EQ(form1.NTSERVER.text.get(), "FS9");
  Save_Site(session);
  EXPECT_EQ(dump(), "Deleted=-1|Name=Berlin|NTServer=OLD\nName=Berlin|NTServer=FS9\n");
  EXPECT_FALSE(session.EditingSite);
  EXPECT_EQ(form1.NUsitename.items().size(), 1U);
}

TEST_F(SiteTab, DeletingAsksAndForgetsTheName) {
  make("Name=Berlin|NTServer=FS1\nName=berlin|NTServer=second\n");
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

TEST_F(SiteTab, CancelAndAClickElsewhereDropASiteThatWasNotSaved) {
  make("Name=Berlin|NTServer=FS1\n");
  type_new_site("Bonn", "FS2");
  Site_Cancel(session);
  EXPECT_EQ(form1.ListView2.size(), 1U);
  type_new_site("Bonn", "FS2");
  dialogs.on_modal = [this](std::string_view window) {
    EXPECT_EQ(window, "Leaving");
    session.details.leaving.answer = Leaving::Answer::kDiscard;
  };
  choose(0);
  EXPECT_EQ(test::texts(form1.ListView2), (std::vector<std::string>{"Berlin"}));
  EXPECT_EQ(form1.NTSERVER.text.get(), "FS1");
}

}  // namespace
}  // namespace twk::windows
