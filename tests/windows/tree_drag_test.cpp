#include "windows/tree/tree_drag.hpp"

#include "directory/tree/tree.hpp"
#include "directory/tree/tree_path.hpp"
#include "platform/ldap_text.hpp"
#include "support/details_world.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/multi_user.hpp"

namespace twk::windows {
namespace {

using test::kNewStarters;
using test::LabSession;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

constexpr std::string_view kSales = "OU=Sales,DC=twk,DC=test";

class TreeDrag : public testing::Test {
 protected:
  TreeDrag() {
    test::add_unit(lab, "Sales");
    test::add_user(lab, "Ann", "ann");
  }
  static std::string path(const std::string& name, std::string_view above) {
    return "LDAP://twk.test/CN=" + platform::escape_dn_value(name) + "," + std::string(above);
  }
  bool drag(const std::string& key, std::string_view target) {
    const controls::TreeNode* const node = tree.find(key);
    const controls::TreeNode* const ou = tree.find(target);
    if (node == nullptr || ou == nullptr) {
      ADD_FAILURE() << "not in the tree: " << key << " or " << target;
      return false;
    }
    if (!begin_drag(lab.session, *node))
      return false;
    drag_over(lab.session, ou);
    return drop(lab.session);
  }

  LabSession lab;
  controls::TreeView& tree = lab.session.form1.TreeView1;
  const std::string ann = path("Ann", kNewStarters);
};

class DraggedNames : public TreeDrag, public testing::WithParamInterface<const char*> {};
INSTANTIATE_TEST_SUITE_P(Names, DraggedNames,
                         testing::Values("Ann Lee", "Smith, John", "C+C \"Moore\"", "Ann ", "a\\b/c;d<e>",
                                         "#1", "José", "x,OU=y"));

TEST_P(DraggedNames, MoveInTheDirectoryInTheTreeAndInTheLists) {
  const std::string name = GetParam();
  test::add_user(lab, name, "named");
  lab.start();
  const std::string old_key = path(name, kNewStarters);
  lab.session.multi_user.ListView2.clear();
  lab.session.multi_user.ListView2.add(old_key, name, "USER");
  lab.session.form1.USERID_W2K.text = old_key;
  ASSERT_TRUE(drag(old_key, kSales));
  const std::string key = path(name, kSales);
  EXPECT_EQ(lab.path_of("named"), key);
  EXPECT_EQ(tree.find(old_key), nullptr);
  ASSERT_NE(tree.find(key), nullptr);
  EXPECT_EQ(tree.selected(), tree.find(key));
  EXPECT_EQ(tree.selected()->parent, tree.find(kSales));
  EXPECT_EQ(tree.selected()->text, name);
  EXPECT_NE(lab.session.multi_user.ListView2.find_key(key), nullptr);
  EXPECT_EQ(lab.session.form1.USERID_W2K.text.get(), key) << "the details would be saved to nobody";
  EXPECT_THAT(lab.log_tab(), ElementsAre("GREEN " + name + " Has been moved in the AD"));
}

TEST_F(TreeDrag, OnlyUsersAreDraggedAndOnlyOusAreHighlighted) {
  lab.start();
  const std::string& highlight = lab.session.form1.DropHighlight.get();
  EXPECT_FALSE(begin_drag(lab.session, *tree.find(kSales)));
  drag_over(lab.session, tree.find(kSales));
  EXPECT_EQ(highlight, "") << "nothing is dragged";
  for (const char* const no_target : {"DC=twk,DC=test", ann.c_str(), "outside the tree"}) {
    ASSERT_TRUE(begin_drag(lab.session, *tree.find(ann)));
    drag_over(lab.session, tree.find(kSales));
    EXPECT_EQ(highlight, kSales);
    drag_over(lab.session, tree.find(no_target));
    EXPECT_EQ(highlight, "") << no_target;
    EXPECT_FALSE(drop(lab.session));
  }
  ASSERT_TRUE(begin_drag(lab.session, *tree.find(ann)));
  drag_over(lab.session, tree.find(kSales));
  cancel_drag(lab.session);
  EXPECT_EQ(highlight, "");
  EXPECT_FALSE(drop(lab.session));
  EXPECT_EQ(lab.path_of("ann"), ann);
}

TEST_F(TreeDrag, AUserDroppedWhereItIsStaysWithoutABox) {
  lab.start();
  EXPECT_FALSE(drag(ann, kNewStarters));
  EXPECT_EQ(lab.session.form1.StatusBar1.panel1.get(), "Ann was not moved.");
  EXPECT_THAT(lab.log_tab(), IsEmpty());
}

TEST_F(TreeDrag, ARefusedMoveIsReportedAndTheTreeStays) {
  test::add_user(lab, "Ann", "ann2", kSales);
  lab.start();
  for (const std::string light : {"YELLOW", "RED"}) {
    if (light == "RED")
      lab.directory.before = test::fail_at("MoveHere", 1, platform::ads_error::kAccessDenied);
    lab.dialogs.expect("Cannot move Ann to Sales");
    EXPECT_FALSE(drag(ann, kSales));
    EXPECT_NE(tree.find(ann), nullptr);
    EXPECT_EQ(lab.path_of("ann"), ann);
    EXPECT_THAT(lab.log_tab(), Contains(StartsWith(light + " Cannot move Ann to Sales")));
    EXPECT_EQ(lab.session.form1.mouse_pointer, 0);
  }
}

TEST_F(TreeDrag, AnOuThatIsGoneIsReported) {
  lab.start();
  lab.services.directory.GetObject("LDAP://twk.test")->Delete("organizationalUnit", "OU=Sales");
  lab.dialogs.expect("Error");
  lab.dialogs.expect("Cannot move Ann to Sales");
  EXPECT_FALSE(drag(ann, kSales));
  EXPECT_NE(tree.find(ann), nullptr);
}

TEST(TreeDragInNt, DoesNotExist) {
  test::StartedLab lab(lab::DomainKind::kNt);
  const controls::TreeNode* const user = lab.session.form1.TreeView1.first()->children.front();
  ASSERT_EQ(user->image, "USER");
  EXPECT_FALSE(begin_drag(lab.session, *user));
}

}  // namespace
}  // namespace twk::windows
