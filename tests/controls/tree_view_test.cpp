#include "controls/tree_view.hpp"

#include "base/errors.hpp"

namespace twk::controls {
namespace {

struct Domain {
  Domain() {
    root = &tree.add(nullptr, "DC=twk,DC=test", "twk.test", "DOMAIN");
    sales = &tree.add_under("dc=TWK,dc=test", "OU=Sales,DC=twk,DC=test", "Sales", "OU");
    jo = &tree.add(sales, "LDAP://twk.test/CN=Jo,OU=Sales,DC=twk,DC=test", "Jo Smith", "USER");
  }

  TreeView tree;
  TreeNode* root;
  TreeNode* sales;
  TreeNode* jo;
};

TEST(TreeView, RefusesAnUnknownParentAndAKeyInUse) {
  Domain domain;
  try {
    domain.tree.add_under("OU=Nowhere", "x", "x", "OU");
    FAIL() << "an unknown parent was taken";
  } catch (const base::RuntimeError& failure) {
    EXPECT_EQ(failure.number(), base::error::kParentNotFound);
  }
  EXPECT_THROW(domain.tree.add(nullptr, "ou=sales,dc=twk,dc=test", "again", "OU"), base::RuntimeError);
  EXPECT_EQ(domain.tree.size(), 3U);
}

TEST(TreeView, FindsTheBeginningOfAKeyAndATextInAnyCase) {
  Domain domain;
  EXPECT_TRUE(domain.tree.has_key_with_prefix("ldap://TWK.TEST/cn=j"));
  EXPECT_FALSE(domain.tree.has_key_with_prefix("LDAP://twk.test/CN=Joe"));
  EXPECT_TRUE(domain.tree.has_text("JO SMITH"));
  domain.tree.remove(*domain.jo);
  EXPECT_FALSE(domain.tree.has_key_with_prefix("LDAP://twk.test/CN=J"));
  EXPECT_FALSE(domain.tree.has_text("Jo Smith"));
}

TEST(TreeView, RemovingANodeTakesAllBelowItAndTheSelection) {
  Domain domain;
  domain.tree.select(domain.jo);
  domain.tree.remove(*domain.sales);
  EXPECT_EQ(domain.tree.size(), 1U);
  EXPECT_EQ(domain.tree.selected(), nullptr);
  EXPECT_TRUE(domain.root->children.empty());
  EXPECT_EQ(domain.tree.next(*domain.root), nullptr);
}

TEST(TreeView, GoesThroughNodesInTheOrderTheyWereAdded) {
  Domain domain;
  TreeNode& late = domain.tree.add(domain.root, "OU=A,DC=twk,DC=test", "A", "OU");
  EXPECT_EQ(domain.tree.first(), domain.root);
  EXPECT_EQ(domain.tree.next(*domain.sales), domain.jo);
  EXPECT_EQ(domain.tree.next(*domain.jo), &late);
}

TEST(TreeView, KeepsChildrenOfASortedNodeInOrderOfTheirTexts) {
  Domain domain;
  domain.sales->sorted = true;
  for (const char* name : {"zoe", "Émile", "adam"})
    domain.tree.add(domain.sales, name, name, "USER");
  std::vector<std::string> texts;
  for (const TreeNode* child : domain.sales->children)
    texts.push_back(child->text);
  EXPECT_THAT(texts, testing::ElementsAre("adam", "Jo Smith", "zoe", "Émile"));
}

TEST(TreeView, ShowingANodeOpensAllAboveIt) {
  Domain domain;
  domain.tree.ensure_visible(*domain.jo);
  EXPECT_TRUE(domain.root->expanded);
  EXPECT_TRUE(domain.sales->expanded);
  EXPECT_FALSE(domain.jo->expanded);
}

TEST(TreeView, ARenamedKeyIsFoundUnderItsNewName) {
  Domain domain;
  domain.tree.set_key(*domain.jo, "LDAP://twk.test/CN=Jo,OU=Left,DC=twk,DC=test");
  EXPECT_EQ(domain.tree.find("ldap://twk.test/cn=jo,ou=left,dc=twk,dc=test"), domain.jo);
  EXPECT_THROW(domain.tree.set_key(*domain.jo, domain.sales->key), base::RuntimeError);
}

TEST(TreeView, ReportsWhereAmongItsSiblingsANodeIsAddedAndRemoved) {
  using Kind = TreeChange::Kind;
  Domain domain;
  domain.sales->sorted = true;
  std::vector<std::tuple<Kind, const TreeNode*, std::size_t>> told;
  const Watch watch = domain.tree.watch(
      [&told](const TreeChange& change) { told.emplace_back(change.kind, change.node, change.place); });
  TreeNode& ann = domain.tree.add(domain.sales, "ann", "Ann", "USER");
  EXPECT_EQ(ann.place, 0U);
  EXPECT_EQ(domain.jo->place, 1U);
  domain.tree.remove(ann);
  EXPECT_EQ(domain.jo->place, 0U);
  EXPECT_THAT(told, testing::ElementsAre(std::tuple(Kind::kInserting, domain.sales, 0),
                                         std::tuple(Kind::kInserted, domain.sales, 0),
                                         std::tuple(Kind::kRemoving, domain.sales, 0),
                                         std::tuple(Kind::kRemoved, domain.sales, 0)));
}

TEST(TreeView, ReportsThatNothingIsSelectedWhenTheSelectedNodeIsRemoved) {
  Domain domain;
  domain.tree.select(domain.jo);
  int told = 0;
  const Watch watch = domain.tree.watch(
      [&told](const TreeChange& change) { told += change.kind == TreeChange::Kind::kSelected ? 1 : 0; });
  domain.tree.remove(*domain.sales);
  EXPECT_EQ(domain.tree.selected(), nullptr);
  EXPECT_EQ(told, 1);
}

}  // namespace
}  // namespace twk::controls
