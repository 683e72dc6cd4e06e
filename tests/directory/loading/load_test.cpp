#include "controls/tree_view.hpp"
#include "directory/account_marks.hpp"
#include "directory/loading/ad_load.hpp"
#include "directory/loading/nt_load.hpp"
#include "directory/loading/orphans.hpp"
#include "directory/loading/select_domain.hpp"
#include "directory/names.hpp"
#include "directory/operations.hpp"
#include "directory/tree/listed_objects.hpp"
#include "directory/tree/tree.hpp"
#include "directory/tree/tree_path.hpp"
#include "session/loaded_domain.hpp"
#include "support/details_world.hpp"
#include "support/world.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/group_windows.hpp"
#include "windows/state/multi_user.hpp"

namespace twk::directory {
namespace {

using lab::DomainKind;
using test::LabSession;
using testing::HasSubstr;

/// The texts of a node's children.
std::vector<std::string> children(const controls::TreeNode& node) {
  std::vector<std::string> texts;
  for (const controls::TreeNode* child : node.children)
    texts.push_back(child->text);
  return texts;
}

std::string group_type(const LabSession& world, std::string_view name) {
  const auto rows = world.session.groups.ListView1.find_text(name);
  return rows.empty() ? "(no such group)" : rows.front()->sub_items.at(0);
}

/// A search of whose rows the second cannot be fetched.
class BrokenOff final : public platform::QueryService {
 public:
  explicit BrokenOff(platform::QueryService& real) : real_(real) {}
  std::unique_ptr<platform::Recordset> execute(const platform::QueryText& query,
                                               const platform::QueryOptions& options) override {
    return std::make_unique<Rows>(real_.execute(query, options));
  }

 private:
  class Rows final : public platform::Recordset {
   public:
    explicit Rows(std::unique_ptr<platform::Recordset> real) : real_(std::move(real)) {}
    [[nodiscard]] bool at_eof() const override { return real_->at_eof(); }
    [[nodiscard]] bool at_bof() const override { return real_->at_bof(); }
    [[nodiscard]] platform::Value field(std::size_t index) const override { return real_->field(index); }
    void MoveNext() override { base::raise(platform::ads_error::kServerDown, "gone"); }
    void MoveFirst() override { real_->MoveFirst(); }
    void MoveLast() override { real_->MoveLast(); }
    void Close() override { real_->Close(); }

   private:
    std::unique_ptr<platform::Recordset> real_;
  };

  platform::QueryService& real_;
};

TEST(DirectoryLoad, AListShowsWhatCameBeforeItsSearchFailed) {
  LabSession world;
  world.make_user("ann");
  BrokenOff query(world.services.query);
  platform::Platform services = world.session.platform;
  windows::Desktop session(
      {services.registry, services.directory, query, services.files, services.network, services.security,
       services.mailboxes, services.process, services.environment, services.clock, services.dialogs},
      "", world.session.program_directory);
  session.DomainName = "twk.test";
  std::vector<controls::ListChange::Kind> told;
  const auto watch =
      session.multi_user.ListView2.watch([&](const auto& change) { told.push_back(change.kind); });
  EXPECT_THROW(Load_AD_Users(session, "LDAP://twk.test", true, "subtree", "", UserList::kSelection),
               base::RuntimeError);
  using Kind = controls::ListChange::Kind;
  EXPECT_THAT(told, testing::ElementsAre(Kind::kResetting, Kind::kReset));
  EXPECT_EQ(session.multi_user.ListView2.size(), 1U);
}

TEST(DirectoryLoad, ShowsUnitsThatAreReadWhenTheyAreOpened) {
  LabSession world;
  test::add_unit(world, "Below", std::string(test::kNewStarters));
  world.start();
  controls::TreeView& tree = world.session.form1.TreeView1;
  EXPECT_EQ(tree.first()->key, "DC=twk,DC=test");
  EXPECT_EQ(tree.first()->text, "twk.test");
  EXPECT_EQ(tree.first()->image, "DOMAIN");
  EXPECT_EQ(tree.find("OU=Domain Controllers,DC=twk,DC=test"), nullptr);
  ASSERT_NE(tree.find("CN=Users,DC=twk,DC=test"), nullptr);
  EXPECT_THAT(children(*tree.find("CN=Users,DC=twk,DC=test")), testing::ElementsAre(std::string(kDummyNode)));
  EXPECT_THAT(children(*tree.find(test::kNewStarters)), testing::ElementsAre("Below"));
  EXPECT_EQ(world.session.form1.StatusBar1.panel2.get(), "2000-Native Mode");
  EXPECT_EQ(world.session.NTDomainName, "TWK");
  EXPECT_TRUE(world.session.form1.UM_PreW2K.visible);
  EXPECT_THAT(world.log(), HasSubstr("AD Name: twk.test\nWinNT Domain Name: TWK\n"));
}

TEST(DirectoryLoad, GroupsGoToTheListsWithTheirTypes) {
  test::StartedLab world(DomainKind::kMixed);
  EXPECT_EQ(world.session.form1.StatusBar1.panel2.get(), "2000-Mixed Mode");
  EXPECT_EQ(group_type(world, "Staff"), "Security Group - Global");
  EXPECT_EQ(group_type(world, "Administrators"), "Security Group - builtin Local");
  EXPECT_EQ(world.session.form1.ListView5.size(), world.session.groups.ListView1.size());
  EXPECT_TRUE(world.session.multi_user.ListView3.find_text("Administrators").empty());
  EXPECT_EQ(world.session.form1.ListView5.find_text("Staff").front()->key,
            "LDAP://twk.test/CN=Staff,DC=twk,DC=test");
}

TEST(WinNtLoad, ShowsAFlatTreeAndDistinguishesGlobalFromLocalGroups) {
  test::StartedLab world(DomainKind::kNt);
  controls::TreeView& tree = world.session.form1.TreeView1;
  EXPECT_EQ(tree.first()->key, "root");
  EXPECT_EQ(tree.first()->text, "TWK");
  EXPECT_TRUE(tree.has_text("Administrator"));
  EXPECT_FALSE(tree.has_text("DC1$")) << "computers are no users";
  EXPECT_EQ(group_type(world, "Staff"), "Global");
  EXPECT_EQ(group_type(world, "Administrators"), "Local");
  EXPECT_EQ(world.session.form1.StatusBar1.panel2.get(), "WinNT:");
  EXPECT_FALSE(world.session.form1.UM_PreW2K.visible);
  EXPECT_EQ(world.session.form1.Frame3.caption.get(), "User ID");
  const platform::ObjectPtr guest = world.services.directory.GetObject("WinNT://TWK/Guest");
  test::store(guest, {{"FullName", "A Guest"}, {"UserFlags", 0x202}});
  show_nt_users(world.session);
  const controls::ListRow& row = *world.session.domain.users.find_key("Guest");
  EXPECT_EQ(row.sub_items,
            (std::vector<std::string>{"A Guest", "Built-in account for guest access", "disabled"}));
  set_mark(world.session, "Guest", mark::kLocked, true);
  EXPECT_EQ(row.sub_items.back() + base::to_text(tree.find("Guest")->marks), "disabled, locked3");
}

TEST(DirectoryLoad, TheLoadOptionsDecideWhatIsRead) {
  struct Case {
    std::vector<std::pair<std::string, std::string>> options;
    bool groups;
    bool template_groups;
    bool users;
    bool user_nodes;
  };
  const std::vector<Case> cases = {
      {{}, true, true, true, false},
      {{{"SkipUsers", "TRUE"}}, true, true, false, false},
      {{{"SkipGroups", "True"}}, false, false, true, false},
      {{{"SkipGroups", "True"}, {"TemplateGroupsOnly", "true"}}, false, true, true, false},
      {{{"LoadAllUsers", "True"}, {"Search", "ldap://"}}, true, true, true, true},
      {{{"LoadAllUsers", "True"}}, true, true, true, true},
  };
  for (const Case& one : cases) {
    LabSession world;
    world.make_user("jo");
    for (const auto& [name, value] : one.options)
      world.set("ADO", name, value);
    world.start();
    world.session.form1.TreeView1.clear();
    ASSERT_TRUE(Select_Domain(world.session, "twk.test"));
    EXPECT_EQ(!world.session.groups.ListView1.empty(), one.groups);
    EXPECT_EQ(!world.session.form1.ListView5.empty(), one.template_groups);
    EXPECT_EQ(!world.session.groups.NotMembers.empty(), one.users);
    EXPECT_EQ(world.session.form1.TreeView1.has_key_with_prefix("LDAP://twk.test/CN=jo,"), one.user_nodes);
  }
}

TEST(DirectoryLoad, AManagedUnitBecomesTheRoot) {
  LabSession world;
  world.make_user("jo");
  world.start();
  world.session.ManagedOU = test::kNewStarters;
  ASSERT_TRUE(Select_Domain(world.session, "twk.test"));
  controls::TreeView& tree = world.session.form1.TreeView1;
  EXPECT_EQ(tree.first()->key, test::kNewStarters);
  EXPECT_EQ(tree.first()->text, "New Starters");
  EXPECT_TRUE(tree.has_key_with_prefix("LDAP://twk.test/CN=jo,")) << "its own users are shown at once";
  EXPECT_FALSE(world.session.form1.DomName.enabled);
  EXPECT_THAT(world.log(),
              HasSubstr("Managing OU: GC://twk.test/OU=New Starters,DC=twk,DC=test and sub OU's\n"));
}

TEST(SelectDomain, ADomainThatDoesNotAnswerIsReportedAndLeavesTheRest) {
  test::StartedLab world;
  EXPECT_FALSE(Select_Domain(world.session, ""));
  EXPECT_FALSE(Select_Domain(world.session, "nowhere.test"));
  EXPECT_EQ(world.session.form1.mouse_pointer.get(), 0);
  EXPECT_FALSE(Select_Domain(world.session, "NOWHERE"));
}

TEST(SelectDomain, AFailedSearchForUnitsShowsItsNumber) {
  test::StartedLab world;
  world.session.ManagedOU = "OU=Gone,DC=twk,DC=test";
  world.dialogs.expect("Error getting Domain Data: ");
  EXPECT_FALSE(Select_Domain(world.session, "twk.test"));
  EXPECT_FALSE(world.session.log.is_open());
}

TEST(Tree, AnOpenedUnitIsReadOnce) {
  LabSession world;
  const std::string_view place = "CN=Users,DC=twk,DC=test";
  test::add_user(world, "plain", "plain", place);
  test::add_user(world, "shown", "shown", place);
  test::store(world.account("shown"), {{"displayName", "A Display Name"}});
  world.set("Preferences", "DisplayName", "Yes");
  world.start();
  controls::TreeNode& users = *world.session.form1.TreeView1.find(place);
  TreeView1_Expand(world.session, users);
  EXPECT_THAT(children(users), testing::IsSupersetOf({"plain", "A Display Name"}));
  const std::size_t nodes = world.session.form1.TreeView1.size();
  test::add_user(world, "late", "late", place);
  EXPECT_FALSE(Expand_OU(world.session, users));
  EXPECT_EQ(world.session.form1.TreeView1.size(), nodes);
}

TEST(Tree, ShowsAsManyUsersOfAUnitAsTheLimitAllows) {
  LabSession world;
  for (const char* name : {"a", "b", "c"})
    world.make_user(name);
  world.set("ADO", "UserLimit", "2");
  world.dialogs.expect("TWK is not returning all users, The limit is set at 2\r\n");
  world.start();
  EXPECT_EQ(world.dialogs.last_title, "Limit Reached");
  EXPECT_EQ(children(*world.session.form1.TreeView1.find(test::kNewStarters)).size(), 2U);
}

TEST(Tree, AUnitThatIsGoneIsReportedInABox) {
  LabSession world;
  test::add_unit(world, "Doomed");
  world.start();
  controls::TreeNode& doomed = *world.session.form1.TreeView1.find("OU=Doomed,DC=twk,DC=test");
  world.services.directory.GetObject("LDAP://DC=twk,DC=test")->Delete("organizationalUnit", "OU=Doomed");
  world.dialogs.expect("Error getting Domain Data: ");
  TreeView1_Expand(world.session, doomed);
  EXPECT_EQ(world.session.form1.mouse_pointer.get(), 0);
}

TEST(LookedUpDomain, HoldsWhatWasNamedAndAnswersLikeAListedOne) {
  LabSession world;
  const std::string above(test::kNewStarters);
  const std::string sales = "OU=Sales\\, Europe," + above;
  test::add_unit(world, "Sales, Europe", above);
  test::add_user(world, "Jo Low", "jlow");
  test::add_user(world, "Anna Marsh", "amarsh", sales);
  session::LoadedDomain& loaded = world.session.domain;
  world.set("ADO", "SkipUsers", "True");
  world.start();
  loaded.looked_up = {.groups = true, .units = true, .asked_groups = {}};
  ASSERT_TRUE(Select_Domain(world.session, "twk.test"));
  EXPECT_TRUE(loaded.all_groups.empty());
  look_up_groups(world.session, {"STAFF", "Nonesuch"});
  look_up_groups(world.session, {"Staff"});
  EXPECT_EQ(loaded.template_choice.size(), 1U);

  EXPECT_EQ(reach_node(world.session, "OU=Domain Controllers,DC=twk,DC=test"), nullptr);
  EXPECT_EQ(reach_node(world.session, "OU=Nowhere," + above), nullptr);
  loaded.tree.select(reach_node(world.session, base::upper(sales)));
  ASSERT_NE(loaded.tree.selected(), nullptr);
  EXPECT_EQ(loaded.tree.selected()->text, "Sales, Europe");
  EXPECT_EQ(reach_user(world.session, "LDAP://twk.test/CN=Nobody," + sales), nullptr);
  EXPECT_NE(reach_user(world.session, "LDAP://twk.test/CN=Anna Marsh," + sales), nullptr);
  // Any group may be named from here on.
  EXPECT_EQ(find_groups(world.session, "domain guests").size(), 1U);
}

TEST(UserExist, ComparesTheBeginningOfCommonNamesInADirectoryAndWholeNamesElsewhere) {
  struct Case {
    std::string name;
    bool directory;
    bool winnt;
  };
  const std::vector<Case> cases = {
      {"jo", true, true}, {"JO", true, true}, {"j", true, false}, {"jo2", false, false}};
  LabSession active;
  active.make_user("jo");
  active.start();
  LabSession winnt(DomainKind::kNt);
  winnt.make_user("jo");
  winnt.start();
  for (const Case& one : cases) {
    EXPECT_EQ(User_Exist(active.session, one.name), one.directory) << one.name;
    EXPECT_EQ(User_Exist(winnt.session, one.name), one.winnt) << one.name;
  }
  EXPECT_EQ(winnt.log_tab().front(), "RED  User Name jo already exist");
}

using OrphanedUnits = test::TestWorld;

TEST_F(OrphanedUnits, FindTheirParentsInLaterPasses) {
  controls::TreeView& tree = session.form1.TreeView1;
  tree.add(nullptr, "DC=t", "t", "DOMAIN");
  OrphanTable orphans;
  orphans.store("OU=C,OU=B,OU=A,DC=t", "C");
  orphans.store("OU=B,OU=A,DC=t", "B");
  orphans.store("OU=A,DC=t", "A");
  orphans.store("OU=Lost,OU=Nowhere,DC=t", "Lost");
  orphans.attach(session);
  EXPECT_EQ(tree.find("OU=C,OU=B,OU=A,DC=t")->parent->text, "B");
  EXPECT_EQ(tree.find("OU=Lost,OU=Nowhere,DC=t"), nullptr);
}

TEST_F(OrphanedUnits, BeyondAHundredOnlyTheLastIsKept) {
  controls::TreeView& tree = session.form1.TreeView1;
  tree.add(nullptr, "DC=t", "t", "DOMAIN");
  OrphanTable orphans;
  for (int i = 1; i <= 105; ++i)
    orphans.store("OU=" + base::to_text(i) + ",DC=t", base::to_text(i));
  orphans.attach(session);
  EXPECT_NE(tree.find("OU=99,DC=t"), nullptr);
  EXPECT_EQ(tree.find("OU=100,DC=t"), nullptr);
  EXPECT_NE(tree.find("OU=105,DC=t"), nullptr);
}

}  // namespace
}  // namespace twk::directory
