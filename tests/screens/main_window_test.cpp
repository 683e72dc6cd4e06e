#include "controls/tree_view.hpp"
#include "directory/tree/tree.hpp"
#include "screens/screen_test.hpp"
#include "session/form1.hpp"

namespace twk::test {
namespace {

using MainWindowTest = ScreenTest;

TEST_F(MainWindowTest, OpeningANodeWithTheKeyboardReadsItOnceAndShowsItsUsers) {
  open();
  screens::TreePane& tree = window->tree();
  controls::TreeNode* const users = lab.session.form1.TreeView1.find("CN=Users,DC=twk,DC=test");
  ASSERT_NE(users, nullptr);
  tree.setFocus();
  tree.setCurrentIndex(tree.index_of(*users));
  QTest::keyClick(&tree, Qt::Key_Right);
  settle();
  EXPECT_TRUE(tree.isExpanded(tree.index_of(*users)));
  EXPECT_EQ(tree.model()->rowCount(tree.index_of(*users)), static_cast<int>(users->children.size()));
  for (const controls::TreeNode* const child : users->children)
    EXPECT_NE(child->text, "removedummykey");
}

}  // namespace
}  // namespace twk::test
