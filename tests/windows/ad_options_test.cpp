#include "windows/tree/ad_options.hpp"

#include "directory/load_options.hpp"
#include "session/settings.hpp"
#include "support/world.hpp"
#include "windows/state/directory_windows.hpp"

namespace twk::windows {
namespace {

class AdOptions : public test::TestWorld {
 protected:
  windows::frmADOptions& window = session.ad_options;
  std::string stored(std::string_view name) { return session::read_setting(session, session::kADO, name); }
};

TEST_F(AdOptions, ShowTheDefaultsOfTheLoad) {
  frmADOptions_Load(session);
  EXPECT_EQ(window.PageSize.text.get(), "1000");
  EXPECT_EQ(window.UserLimit.text.get(), "99999");
  EXPECT_FALSE(window.SkipUsers.on());
  EXPECT_FALSE(window.SkipGroups.on());
  EXPECT_FALSE(window.TemplateGroups.on());
  EXPECT_TRUE(window.DontLoadAllUsers.value);
  EXPECT_TRUE(window.UseGC.value);
  EXPECT_TRUE(window.Sorton.value);
  EXPECT_THAT(window.txtDescription.caption.get(), testing::HasSubstr("These options can be configured"));
}

TEST_F(AdOptions, WhatIsAppliedIsWhatTheNextLoadReads) {
  frmADOptions_Load(session);
  window.PageSize.text = std::string("500");
  window.UserLimit.text = std::string("10");
  window.SkipUsers.value = 1;
  window.SkipGroups.value = 1;
  window.TemplateGroups.value = 1;
  window.LoadAllUsersoption.value = true;
  window.UseLDAP.value = true;
  window.Sorton.value = false;
  ASSERT_TRUE(btnApply_Click(session));
  const directory::LoadOptions options = directory::read_load_options(session);
  EXPECT_EQ(options.PageSize, 500);
  EXPECT_EQ(options.UserLimit, 10);
  EXPECT_TRUE(options.SkipUsers && options.SkipGroups && options.TemplateGroupsOnly && options.LoadAllUsers);
  EXPECT_EQ(options.Search, "LDAP://");
  EXPECT_FALSE(options.Sort);
  frmADOptions_Load(session);
  EXPECT_TRUE(window.UseLDAP.value);
  EXPECT_FALSE(window.UseGC.value);
  EXPECT_TRUE(window.Sortoff.value);
  session::write_setting(session, session::kADO, "Search", "ldap://");
  frmADOptions_Load(session);
  EXPECT_TRUE(window.UseLDAP.value) << "small letters are understood";
}

TEST_F(AdOptions, InvalidNumbersAreReportedAndReplaced) {
  window.PageSize.text = std::string("10x");
  dialogs.expect("PageSize must be a number.");
  PageSize_Change(session);
  EXPECT_EQ(window.PageSize.text.get(), "1000");
  EXPECT_EQ(dialogs.last_title, "Input Error");
  window.UserLimit.text = std::string("many");
  dialogs.expect("User Limit must be a number.");
  UserLimit_Change(session);
  EXPECT_EQ(window.UserLimit.text.get(), "2000");
  window.PageSize.text = std::string();
  window.UserLimit.text = std::string();
  PageSize_Change(session);
  UserLimit_Change(session);
  EXPECT_THAT(window.txtDescription.caption.get(), testing::HasSubstr("The ADO page size used when doing"));
}

TEST_F(AdOptions, AnEmptyNumberMeansTheDefaultAndZeroIsRefused) {
  frmADOptions_Load(session);
  window.UserLimit.text = std::string();
  EXPECT_TRUE(btnApply_Click(session));
  EXPECT_EQ(directory::read_load_options(session).UserLimit, 99999);
  window.PageSize.text = std::string("0");
  window.SkipUsers.value = 1;
  dialogs.expect("PageSize must be a number.");
  EXPECT_FALSE(btnApply_Click(session));
  EXPECT_EQ(stored("SkipUsers"), "False") << "nothing of a refused change is stored";
}

TEST_F(AdOptions, EachControlIsDescribed) {
  for (const char* const control : {"LoadAllUsersoption", "DontLoadAllUsers", "Sorton", "UseLDAP",
                                    "UserLimit", "PageSize", "TemplateGroups", "SkipGroups", "SkipUsers"}) {
    const std::string before = window.txtDescription.caption;
    show_option_help(session, control);
    EXPECT_NE(window.txtDescription.caption.get(), before) << control;
  }
  const std::string last = window.txtDescription.caption;
  show_option_help(session, "btnApply");
  EXPECT_EQ(window.txtDescription.caption.get(), last);
}

}  // namespace
}  // namespace twk::windows
