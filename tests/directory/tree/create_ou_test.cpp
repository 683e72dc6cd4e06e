#include "directory/tree/create_ou.hpp"

#include "directory/tree/tree.hpp"
#include "platform/ldap_text.hpp"
#include "support/lab_session.hpp"
#include "windows/state/form1.hpp"

namespace twk::directory {
namespace {

using test::kNewStarters;
using test::LabSession;
using testing::ElementsAre;
using testing::HasSubstr;

struct OuName {
  const char* typed;
  const char* name;
};

class CreatedOus : public testing::TestWithParam<OuName> {};
INSTANTIATE_TEST_SUITE_P(Names, CreatedOus,
                         testing::Values(OuName{"Sales", "Sales"}, OuName{" Sales ", "Sales"},
                                         OuName{"Smith, John", "Smith, John"}, OuName{"R+D", "R+D"},
                                         OuName{"\"Best\"", "\"Best\""}, OuName{"A/B\\C", "A/B\\C"},
                                         OuName{"#1 <x>; y=z", "#1 <x>; y=z"}));

TEST_P(CreatedOus, AreInTheDirectoryAndUnderTheSelectedNode) {
  test::StartedLab lab;
  controls::TreeView& tree = lab.session.form1.TreeView1;
  lab.dialogs.expect_input("Enter New OU Name", GetParam().typed);
  Create_OU(lab.session);
  const std::string key =
      "OU=" + platform::escape_dn_value(GetParam().name) + "," + std::string(kNewStarters);
  controls::TreeNode* const node = tree.find(key);
  ASSERT_NE(node, nullptr) << key;
  EXPECT_EQ(node->text, GetParam().name);
  EXPECT_EQ(node->parent, tree.find(kNewStarters));
  EXPECT_EQ(tree.selected(), node);
  EXPECT_FALSE(is_read(tree, *node));
  EXPECT_EQ(lab.services.directory.GetObject("LDAP://" + key)->Get("name").text(), GetParam().name);
  EXPECT_THAT(lab.log_tab(), ElementsAre("GREEN " + std::string(GetParam().name) + " Created OU"));

  EXPECT_TRUE(Expand_OU(lab.session, *node)) << "the key leads back to the unit";
  ASSERT_TRUE(create_ou(lab.session, *node, "Below"));
  EXPECT_EQ(tree.selected()->parent, node);
}

TEST(CreateOu, UnderTheDomainOrAnOuThatWasNotReadComesOnce) {
  LabSession lab;
  lab.services.directory.GetObject("LDAP://twk.test")->Create("organizationalUnit", "OU=Sales")->SetInfo();
  lab.start();
  controls::TreeView& tree = lab.session.form1.TreeView1;
  EXPECT_TRUE(create_ou(lab.session, *tree.first(), "Top"));
  EXPECT_NE(tree.find("OU=Top,DC=twk,DC=test"), nullptr);
  controls::TreeNode* const sales = tree.find("OU=Sales,DC=twk,DC=test");
  ASSERT_NE(sales, nullptr);
  EXPECT_TRUE(create_ou(lab.session, *sales, "North"));
  EXPECT_EQ(sales->children.size(), 1U);
}

TEST(CreateOu, WithAllUsersLoadedHasNothingLeftToRead) {
  test::StartedLab lab(lab::DomainKind::kNative, {{"ADO", "LoadAllUsers", "True"}});
  controls::TreeView& tree = lab.session.form1.TreeView1;
  ASSERT_TRUE(create_ou(lab.session, *tree.first(), "Top"));
  EXPECT_TRUE(tree.selected()->children.empty());
}

struct BadOu {
  const char* what;
  std::string name;
  std::string_view above;
  const char* message;
};

class RefusedOus : public testing::TestWithParam<BadOu> {};
INSTANTIATE_TEST_SUITE_P(
    Ous, RefusedOus,
    testing::Values(BadOu{"Blank", "   ", kNewStarters, "cannot be blank"},
                    BadOu{"Long", std::string(65, 'x'), kNewStarters, "at most 64 characters"},
                    BadOu{"LineBreak", "a\nb", kNewStarters, "U+000A"},
                    BadOu{"Container", "Sales", "CN=Users,DC=twk,DC=test", "only under an OU or the domain"},
                    BadOu{"Taken", "new starters", "DC=twk,DC=test", "Cannot create the OU new starters"}),
    [](const auto& bad) { return bad.param.what; });

TEST_P(RefusedOus, SayWhyAndLeaveTheTree) {
  test::StartedLab lab;
  controls::TreeView& tree = lab.session.form1.TreeView1;
  controls::TreeNode* const above = tree.find(GetParam().above);
  ASSERT_NE(above, nullptr);
  TreeView1_Expand(lab.session, *above);
  const std::size_t nodes = tree.size();
  lab.dialogs.expect(GetParam().message);
  EXPECT_FALSE(create_ou(lab.session, *above, GetParam().name));
  EXPECT_EQ(tree.size(), nodes);
  EXPECT_THAT(lab.log_tab(), ElementsAre(HasSubstr("YELLOW ")));
}

TEST(CreateOu, ACancelledBoxOrAnUnwillingServerMakesNothing) {
  test::StartedLab lab;
  lab.dialogs.expect_input("Enter New OU Name", "");
  Create_OU(lab.session);
  EXPECT_TRUE(lab.log_tab().empty());
  lab.directory.before = test::fail_at("SetInfo", 1, platform::ads_error::kAccessDenied);
  lab.dialogs.expect("Cannot create the OU Sales");
  EXPECT_FALSE(create_ou(lab.session, *lab.session.form1.TreeView1.selected(), "Sales"));
  EXPECT_THAT(lab.log_tab(), ElementsAre(HasSubstr("RED Cannot create the OU Sales")));
}

}  // namespace
}  // namespace twk::directory
