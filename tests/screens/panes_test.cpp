#include <QAbstractItemModelTester>
#include <QTest>
#include <QtWidgets>

#include "controls/drawing_off.hpp"
#include "screens/widgets/list_pane.hpp"
#include "screens/widgets/text.hpp"
#include "screens/widgets/tree_pane.hpp"

namespace twk::screens {
namespace {

using controls::ListRow;
using controls::ListView;
using controls::TreeNode;
using controls::TreeView;

constexpr auto kStrict = QAbstractItemModelTester::FailureReportingMode::Fatal;

QStringList shown(const QTreeView& view) {
  QStringList texts;
  for (int row = 0; row < view.model()->rowCount(); ++row)
    texts << view.model()->index(row, 0).data().toString();
  return texts;
}

QModelIndex shown_at(const QTreeView& view, int row) {
  return view.model()->index(row, 0);
}

void click(QTreeView& view, const QModelIndex& index, Qt::KeyboardModifiers keys = {}) {
  QTest::mouseClick(view.viewport(), Qt::LeftButton, keys, view.visualRect(index).center());
}

TEST(ListPane, FollowsRowsThatComeAndGoInItsOwnOrder) {
  ListView list;
  list.add("b", "bravo");
  ListPane pane(list, {.headings = {"Group"}, .sorted = true}, nullptr);
  const QAbstractItemModelTester model(pane.model(), kStrict);
  list.add("e", "Élan");
  list.add("a", "Alpha", "W2KGRP");
  EXPECT_EQ(shown(pane), QStringList({"Alpha", "bravo", "Élan"}));
  list.remove(*list.find_key("b"));
  EXPECT_EQ(shown(pane), QStringList({"Alpha", "Élan"}));
  {
    const controls::DrawingOff off(list);
    list.clear();
    list.add("z", "Zulu");
    for (const QString& text : shown(pane))
      EXPECT_TRUE(text.isEmpty()) << "a row that may be gone was asked for";
  }
  EXPECT_EQ(shown(pane), QStringList({"Zulu"}));
}

TEST(ListPane, WritesWhatIsSelectedIntoTheRowsAndBackAndTakesNoNeighbourForAChoice) {
  ListView list;
  for (const char* name : {"one", "two", "three"})
    list.add(name, name);
  ListPane pane(list, {.headings = {"Name"}, .many_selected = true}, nullptr);
  int clicks = 0;
  pane.on_click = [&clicks] { ++clicks; };
  pane.show();
  click(pane, shown_at(pane, 0));
  click(pane, shown_at(pane, 2), Qt::ControlModifier);
  EXPECT_TRUE(list.at(0).selected);
  EXPECT_FALSE(list.at(1).selected);
  EXPECT_TRUE(list.at(2).selected);
  EXPECT_EQ(clicks, 2);
  list.select(&list.at(1));
  EXPECT_EQ(pane.selectionModel()->selectedRows(), QModelIndexList({shown_at(pane, 1)}));
  list.remove(list.at(1));
  EXPECT_EQ(list.selected(), nullptr);
  EXPECT_TRUE(pane.selectionModel()->selectedRows().isEmpty());
  EXPECT_EQ(clicks, 2) << "what the program selects or removes is no click";
}

TEST(ListPane, FiltersByAnyColumnInAnyCase) {
  ListView list;
  list.add("1", "Amélie", {}, {"Paris"});
  list.add("2", "Bo", {}, {"Émeville"});
  list.add("3", "Cy", {}, {"Rome"});
  ListPane pane(list, {.headings = {"Name", "Place"}}, nullptr);
  QLineEdit* const field = add_filter(pane, "Find", &pane);
  field->setText(" éM ");
  EXPECT_EQ(shown(pane), QStringList({"Bo"}));
  field->setText("É");
  EXPECT_EQ(shown(pane), QStringList({"Amélie", "Bo"}));
  field->clear();
  EXPECT_EQ(pane.model()->rowCount(), 3);
}

TEST(ListPane, FilterOfALongListWaitsForTheWordAndIsThereWhenTheFieldIsLeft) {
  ListView list;
  for (int i = 0; i < 5000; ++i)
    list.add({}, std::to_string(i));
  ListPane pane(list, {.headings = {"Name"}, .many_selected = true}, nullptr);
  QLineEdit* const field = add_filter(pane, "Find", &pane);
  field->setText("4321");
  EXPECT_EQ(pane.model()->rowCount(), 5000);
  QTest::keyClick(field, Qt::Key_Return);
  EXPECT_EQ(shown(pane), QStringList({"4321"}));
  field->setText("4322");
  EXPECT_TRUE(QTest::qWaitFor([&] { return shown(pane) == QStringList({"4322"}); }, 3000));
}

TEST(ListPane, KeepsTheSelectedRowsThatAFilterShowsAndDeselectsTheOthers) {
  ListView list;
  for (const char* const text : {"ann", "ben", "anna", "cas"})
    list.set_selected(list.add({}, text), true);
  ListPane pane(list, {.headings = {"Name"}, .many_selected = true}, nullptr);
  pane.set_filter("an");
  EXPECT_EQ(pane.selectionModel()->selectedRows().size(), 2);
  pane.set_filter({});
  QStringList selected;
  for (const ListRow* const row : list.selected_rows())
    selected << to_qt(row->text);
  EXPECT_EQ(selected, QStringList({"ann", "anna"}));
  EXPECT_EQ(pane.selectionModel()->selectedRows().size(), 2);
}

TEST(ListPane, CopiesTheSelectionAsCsvWithTheColumnsThatAreShown) {
  ListView list;
  list.add("a", "Doe, Jo", {}, {"jo", "the \"boss\""});
  list.add("b", "Ann", {}, {"ann", "clerk"});
  ListPane pane(list, {.headings = {"Name", "Logon", "Role"}, .many_selected = true, .sorted = true},
                nullptr);
  pane.selectAll();
  QTest::keySequence(&pane, QKeySequence::Copy);
  EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(),
            "Name,Logon,Role\nAnn,ann,clerk\n\"Doe, Jo\",jo,\"the \"\"boss\"\"\"\n");
  pane.setColumnHidden(1, true);
  click(pane, shown_at(pane, 0));
  QTest::keySequence(&pane, QKeySequence::Copy);
  EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(), "Name,Role\nAnn,clerk\n");
}

TEST(ListPane, ReportsTheRowsOwnTextWhenAnEditIsCancelled) {
  ListView list;
  list.select(&list.add("", ""));
  ListPane pane(list, {.headings = {"Site"}}, nullptr);
  QStringList edited;
  pane.set_edited([&edited](ListRow&, const std::string& text) { edited << to_qt(text); });
  pane.show();
  pane.edit_selected();
  auto* editor = pane.findChild<QLineEdit*>();
  ASSERT_NE(editor, nullptr);
  QTest::keyClicks(editor, "Pa");
  QTest::keyClick(editor, Qt::Key_Escape);
  EXPECT_EQ(edited, QStringList({""}));
}

struct Domain {
  Domain() {
    root = &tree.add(nullptr, "DC=twk", "twk.test", "DOMAIN");
    sales = &tree.add(root, "OU=Sales", "Sales", "OU");
    tree.add(sales, "jo", "Jo", "USER");
    tree.add(sales, "ann", "Ann", "USER");
    tree.set_expanded(*root, true);
  }
  TreeView tree;
  TreeNode* root = nullptr;
  TreeNode* sales = nullptr;
};

TEST(TreePane, FollowsNodesThatComeAndGo) {
  Domain domain;
  TreePane pane(domain.tree, nullptr);
  const QAbstractItemModelTester model(pane.model(), kStrict);
  TreeNode& kim = domain.tree.add(domain.sales, "kim", "Kim", "USER");
  EXPECT_EQ(pane.index_of(kim).row(), 2);
  domain.tree.remove(*domain.tree.find("jo"));
  EXPECT_EQ(pane.index_of(kim).row(), 1);
  domain.tree.clear();
  EXPECT_EQ(pane.model()->rowCount(), 0);
}

TEST(TreePane, KeepsOpenNodesAndSelectionOverAReset) {
  Domain domain;
  TreePane pane(domain.tree, nullptr);
  domain.tree.select(domain.tree.find("ann"));
  domain.tree.ensure_visible(*domain.tree.find("ann"));
  {
    const controls::DrawingOff off(domain.tree);
    domain.tree.add(domain.sales, "kim", "Kim", "USER");
  }
  EXPECT_TRUE(pane.isExpanded(pane.index_of(*domain.sales)));
  EXPECT_EQ(pane.currentIndex(), pane.index_of(*domain.tree.find("ann")));
}

TEST(TreePane, FiltersWhatWasReadAndSelectsNothingThatIsHidden) {
  TreeView tree;
  TreeNode& domain = tree.add(nullptr, "d", "Smithy", "DOMAIN");
  TreeNode& sales = tree.add(&domain, "s", "Sales", "OU");
  TreeNode& smith = tree.add(&sales, "smith", "Jo Smith", "USER");
  TreeNode& ann = tree.add(&sales, "ann", "Ann", "USER");
  TreeNode& staff = tree.add(&domain, "t", "Staff", "OU");
  tree.add(&staff, "ben", "Ben", "USER");
  TreePane pane(tree, nullptr);
  const QAbstractItemModelTester model(pane.model(), kStrict);
  tree.select(&ann);
  const auto is_shown = [&](const TreeNode& node) { return pane.index_of(node).isValid(); };
  pane.set_filter(" smith");
  EXPECT_TRUE(is_shown(domain) && is_shown(sales) && is_shown(smith));
  EXPECT_FALSE(is_shown(ann) || is_shown(staff));
  EXPECT_TRUE(pane.isExpanded(pane.index_of(sales)));
  EXPECT_EQ(tree.selected(), nullptr);
  TreeNode& late = tree.add(&staff, "late", "Smithson", "USER");
  EXPECT_TRUE(is_shown(staff) && is_shown(late));
  click(pane, pane.index_of(smith));
  EXPECT_EQ(tree.selected(), &smith);
  tree.remove(smith);
  EXPECT_FALSE(is_shown(sales));
  pane.set_filter("SALES");
  EXPECT_TRUE(is_shown(ann)) << "what is in a unit that is found";
  pane.set_filter({});
  EXPECT_TRUE(is_shown(ann) && is_shown(late));
  EXPECT_EQ(pane.model()->rowCount(pane.index_of(domain)), 2);
}

TEST(TreePane, ReportsAPersonsChoiceButNotTheProgramsNorANeighbourOfARemovedNode) {
  Domain domain;
  domain.tree.set_expanded(*domain.sales, true);
  TreePane pane(domain.tree, nullptr);
  pane.resize(300, 300);
  pane.show();
  QStringList chosen;
  pane.on_select = [&chosen](TreeNode& node) { chosen << to_qt(node.text); };
  domain.tree.select(domain.sales);
  click(pane, pane.index_of(*domain.tree.find("jo")));
  EXPECT_EQ(chosen, QStringList({"Jo"}));
  domain.tree.remove(*domain.tree.find("jo"));
  EXPECT_EQ(chosen.size(), 1);
  EXPECT_EQ(domain.tree.selected(), nullptr);
}

}  // namespace
}  // namespace twk::screens
