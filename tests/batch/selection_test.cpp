#include "base/errors.hpp"
#include "batch/multi_user_world.hpp"
#include "batch/selection_walk.hpp"
#include "controls/tree_view.hpp"
#include "windows/main_window.hpp"
#include "windows/multi_user/multi_user_window.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/multi_user.hpp"

namespace twk::batch {
namespace {

using lab::DomainKind;
using test::InEveryKindOfDomain;
using test::MultiUserWorld;
using testing::ElementsAre;
using testing::UnorderedElementsAre;
using Names = std::set<std::string>;

class Selection : public InEveryKindOfDomain, public MultiUserWorld {
 protected:
  Selection() : MultiUserWorld(GetParam()) {}
};
INSTANTIATE_TEST_SUITE_P(Kinds, Selection, test::kKinds, test::kind_name);

std::vector<std::string> walked(MultiUserWorld& world, const WalkRules& rules = {}) {
  std::vector<std::string> names;
  walk_selection(world.session, rules, [&](SelectedUser& user) {
    names.push_back(user.name + (user.row == nullptr ? "" : " (row)"));
    EXPECT_EQ(user.object != nullptr, rules.binds);
    EXPECT_TRUE(base::equals_fold(user.path, world.path_of(user.name))) << user.path;
  });
  return names;
}

TEST_P(Selection, AGroupMeansItsUsersAndAUserHimself) {
  join_readers({"ann", "ben"});
  open();
  select_users({"cas", "ann"});
  select_readers();
  EXPECT_THAT(walked(*this), UnorderedElementsAre("cas (row)", "ann (row)", "ann (row)", "ben"));
  window.ListView1.set_ghosted(window.ListView1.at(0), true);
  EXPECT_THAT(walked(*this, {.binds = false, .goes_on = {}, .failed = {}}),
              UnorderedElementsAre("ann (row)", "ann (row)", "ben"));
}

TEST(SelectionOfADirectory, AUnitMeansTheUsersDirectlyInIt) {
  MultiUserWorld world;
  const platform::ObjectPtr below = world.place()->Create("organizationalUnit", "OU=Below");
  below->SetInfo();
  below->MoveHere(world.make_user("eve")->ADsPath(), std::nullopt);
  world.open();
  world.select_unit();
  world.select_users({"ben"});
  EXPECT_THAT(walked(world), UnorderedElementsAre("ann", "ben (row)", "cas", "dee", "ben (row)"));
}

TEST(SelectionOfADirectory, AMemberThatIsNotAUserIsSkippedAndLogged) {
  MultiUserWorld world;
  world.join_readers({"ann"});
  world.group("Readers")->Add("LDAP://twk.test/CN=Staff,DC=twk,DC=test");
  world.open();
  world.select_readers();
  world.session.log.open();
  EXPECT_THAT(walked(world), ElementsAre("ann"));
  EXPECT_THAT(world.log(), testing::HasSubstr("Not a user: LDAP://twk.test/CN=Staff,DC=twk,DC=test\n"));
}

TEST_P(Selection, AFailureEndsTheWalkUnlessTheRulesLetItContinue) {
  open();
  window.ListView1.add(key("nobody"), "nobody", "USER");
  select_users({"ann"});
  EXPECT_THROW(walked(*this), base::RuntimeError);
  WalkRules rules;
  std::vector<std::string> failed;
  rules.failed = [&](const std::string& what, const base::RuntimeError&) {
    failed.push_back(what);
    return true;
  };
  EXPECT_THAT(walked(*this, rules), ElementsAre("ann (row)"));
  EXPECT_THAT(failed, ElementsAre("nobody"));
}

TEST_P(Selection, AStopTakesEffectBeforeTheNextUserEvenWithinAGroup) {
  join_readers({"ann", "ben", "cas"});
  open();
  select_readers();
  WalkRules rules;
  std::size_t visited = 0;
  rules.goes_on = [&] { return visited < 2; };
  EXPECT_FALSE(walk_selection(session, rules, [&](SelectedUser&) { ++visited; }));
  EXPECT_EQ(visited, 2U);
}

TEST_P(Selection, RowsAreTakenAndReturnedToTheListTheyCameFrom) {
  open();
  window.ListView3.clear();
  window.ListView3.add(key("Readers"), "Readers", is_nt() ? "Global" : "W2KGRP");
  window.ListView4.clear();
  window.ListView4.add("OU=X", "X", "OU");
  for (controls::ListView* const list : {&window.ListView2, &window.ListView3, &window.ListView4})
    list->set_selected(list->at(0), true);
  window.ListView2.set_selected(window.ListView2.at(2), true);
  windows::Command1_Click(session);
  EXPECT_EQ(texts(window.ListView1), (Names{"ann", "cas", "Readers", "X"}));
  EXPECT_EQ(texts(window.ListView2), (Names{"ben", "dee"}));
  window.ListView1.set_ghosted(window.ListView1.at(0), true);
  for (std::size_t i = 0; i < window.ListView1.size(); ++i)
    window.ListView1.set_selected(window.ListView1.at(i), true);
  windows::Command2_Click(session);
  EXPECT_TRUE(window.ListView1.empty());
  EXPECT_EQ(texts(window.ListView2), (Names{"ben", "cas", "dee"}));
  EXPECT_EQ(texts(window.ListView3), Names{"Readers"});
  EXPECT_EQ(texts(window.ListView4), Names{"X"});
}

TEST(SelectionWindow, RefusesChangesWhileAFunctionRuns) {
  MultiUserWorld world;
  world.open();
  world.window.working = true;
  world.window.ListView2.set_selected(world.window.ListView2.at(0), true);
  windows::Command1_Click(world.session);
  windows::select_from(world.session, world.window.ListView2);
  windows::btn_Showusers_Click(world.session);
  EXPECT_TRUE(world.window.ListView1.empty());
  EXPECT_FALSE(windows::Command7_Click(world.session));
  world.window.working = false;
  EXPECT_TRUE(windows::Command7_Click(world.session));
  EXPECT_EQ(world.window.ListView2.size(), 4U);
}

TEST_P(Selection, ShowUsersReadsThemWhenThePersonAgreesAndClosingForgetsThemWhereTheyAreSkipped) {
  set("ADO", "SkipUsers", "TRUE");
  open();
  EXPECT_TRUE(window.btn_Showusers.visible);
  EXPECT_TRUE(windows::Command7_Click(session));
  EXPECT_TRUE(window.ListView2.empty());
  if (!is_nt()) {
    dialogs.expect("This could take some time if there are 000's of users\r\n\r\n", platform::Answer::kNo);
    windows::btn_Showusers_Click(session);
    EXPECT_TRUE(window.ListView2.empty());
    dialogs.expect("Continue ?", platform::Answer::kYes);
  }
  windows::btn_Showusers_Click(session);
  EXPECT_THAT(texts(window.ListView2), testing::IsSupersetOf({"ann", "ben", "cas", "dee"}));
}

TEST(SelectionWindow, ListsSitesTemplatesAndExchangeServersOnce) {
  MultiUserWorld world;
  world.site.ExchangeServer = "EX55";
  world.open();
  EXPECT_THAT(world.window.Multi_Site.items(), ElementsAre("Head Office"));
  EXPECT_THAT(world.window.Multi_Template.items(), ElementsAre(records::padded_template_name("Staff")));
  EXPECT_THAT(world.window.EX_Server.items(), ElementsAre("Exchange 2000", "EX55"));
  world.files.fail_from(1, base::error::kPermissionDenied);
  world.dialogs.expect("Error Opening site file, In multiuser form\r\nCheck 'Path to Database' in setup tab");
  windows::MultiUser_Load(world.session);
  EXPECT_THAT(world.window.EX_Server.items(), ElementsAre("Exchange 2000"));
}

TEST_P(Selection, ThePopupTakesTheUserOfTheTreeIntoTheWindow) {
  open();
  controls::TreeNode* const node = session.form1.TreeView1.find(key("ben"));
  ASSERT_NE(node, nullptr);
  session.form1.TreeView1.select(node);
  std::vector<std::string> shown;
  dialogs.on_modal = [&](std::string_view name) {
    shown.push_back(std::string(name) + " " + std::to_string(window.SSTab1) + " " +
                    (window.ListView1.empty() ? "nobody" : window.ListView1.at(0).text));
  };
  windows::mnupopup_Click(session, 4);
  windows::mnupopup_Click(session, 5);
  windows::Toolbar1_ButtonClick(session, "MultiUser");
  EXPECT_THAT(shown, ElementsAre("MultiUser 0 ben", "MultiUser 1 ben", "MultiUser 1 nobody"));
  EXPECT_EQ(texts(window.ListView2), (Names{"ann", "cas", "dee", "ben"}));
}

}  // namespace
}  // namespace twk::batch
