#include "controls/list_view.hpp"

#include "base/errors.hpp"
#include "controls/basic.hpp"
#include "controls/drawing_off.hpp"

namespace twk::controls {
namespace {

std::vector<std::string> texts(const ListView& list) {
  std::vector<std::string> all;
  for (std::size_t i = 0; i < list.size(); ++i)
    all.push_back(list.at(i).text);
  return all;
}

TEST(ListView, RefusesASecondRowOfOneKeyInAnyCase) {
  ListView list;
  list.add("LDAP://twk.test/CN=Jörg", "Jörg");
  EXPECT_THROW(list.add("ldap://TWK.test/cn=JÖRG", "again"), base::RuntimeError);
  list.add("", "no key");
  list.add("", "no key either");
  EXPECT_EQ(list.size(), 3U);
}

TEST(ListView, FindsRowsByTrimmedTextInListOrder) {
  ListView list;
  const ListRow& first = list.add("a", "Staff ");
  list.add("b", "Managers");
  const ListRow& second = list.add("c", "STAFF");
  EXPECT_THAT(list.find_text(" staff"), testing::ElementsAre(&first, &second));
  list.remove(first);
  EXPECT_THAT(list.find_text("staff"), testing::ElementsAre(&second));
  EXPECT_TRUE(list.find_text("nobody").empty());
}

TEST(ListView, AReleasedKeyCanBeUsedAgain) {
  ListView list;
  ListRow& row = list.add("old", "Jo");
  list.set_key(row, "new");
  EXPECT_EQ(list.find_key("OLD"), nullptr);
  EXPECT_EQ(list.find_key("New"), &row);
  list.add("old", "Ann");
  EXPECT_THROW(list.set_key(row, "OLD"), base::RuntimeError);
  list.remove(row);
  list.add("new", "Kim");
  EXPECT_THAT(texts(list), testing::ElementsAre("Ann", "Kim"));
}

TEST(ListView, MovesARowWithKeyTextAndIconToTheEndOfAnother) {
  ListView from;
  ListView to;
  to.add("x", "There");
  const ListRow& row = from.add("k", "Sales", "W2KGRP");
  move_row(from, row, to);
  EXPECT_TRUE(from.empty());
  EXPECT_EQ(to.at(1).key, "k");
  EXPECT_EQ(to.at(1).text, "Sales");
  EXPECT_EQ(to.at(1).icon, "W2KGRP");
}

TEST(ListView, MovesManyRowsInTheOrderGivenAndKeepsTheOthers) {
  ListView from;
  ListView to;
  std::vector<const ListRow*> even;
  for (int i = 0; i < 100; ++i) {
    const ListRow& row = from.add("key " + std::to_string(i), std::to_string(i), "USER");
    if (i % 2 == 0)
      even.insert(even.begin(), &row);
  }
  even.push_back(even.front());
  to.add("KEY 4", "four");
  even.push_back(&to.at(0));
  move_rows(from, even, to);
  ASSERT_EQ(from.size(), 50U);
  EXPECT_EQ(from.at(1).text, "3");
  EXPECT_EQ(from.place_of(from.at(49)), 49U);
  EXPECT_EQ(from.find_key("key 98"), nullptr);
  ASSERT_EQ(to.size(), 50U) << "a row whose key is there is not added again";
  EXPECT_EQ(to.at(1).text, "98");
  EXPECT_EQ(to.at(49).text, "0");
  EXPECT_EQ(to.find_key("Key 98"), &to.at(1));
  from.remove(from.at(0));
  EXPECT_EQ(from.place_of(*from.find_key("key 99")), 48U);
}

TEST(ListView, MovesFewRowsOneByOneForTheWatchers) {
  ListView from;
  ListView to;
  for (const char* const name : {"Ann", "Bob", "Cay"})
    from.set_selected(from.add(name, name), true);
  from.set_selected(from.at(1), false);
  std::vector<ListChange::Kind> told;
  const Watch watch = from.watch([&](const ListChange& change) { told.push_back(change.kind); });
  move_rows(from, from.selected_rows(), to);
  EXPECT_THAT(texts(from), testing::ElementsAre("Bob"));
  EXPECT_THAT(texts(to), testing::ElementsAre("Ann", "Cay"));
  EXPECT_FALSE(to.at(0).selected);
  using Kind = ListChange::Kind;
  EXPECT_THAT(told, testing::ElementsAre(Kind::kRemoving, Kind::kRemoved, Kind::kRemoving, Kind::kRemoved));
}

/// What was reported, as "inserting 0, inserted 0".
template <typename Control>
class Told {
 public:
  explicit Told(const Control& control)
      : watch_(control.watch([this](const auto& change) {
          kinds.push_back(static_cast<int>(change.kind));
          places.push_back(change.place);
        })) {}

  std::vector<int> kinds;
  std::vector<std::size_t> places;

 private:
  Watch watch_;
};

std::vector<int> numbers(std::initializer_list<ListChange::Kind> kinds) {
  std::vector<int> all;
  for (const ListChange::Kind kind : kinds)
    all.push_back(static_cast<int>(kind));
  return all;
}

TEST(ListView, ReportsInsertionsAndRemovalsBeforeAndAfterWithTheirPlace) {
  using Kind = ListChange::Kind;
  ListView list;
  list.add("a", "one");
  const Told told(list);
  list.add("b", "two");
  list.remove(list.at(0));
  EXPECT_EQ(told.kinds, numbers({Kind::kInserting, Kind::kInserted, Kind::kRemoving, Kind::kRemoved}));
  EXPECT_THAT(told.places, testing::ElementsAre(1, 1, 0, 0));
  EXPECT_EQ(list.place_of(list.at(0)), 0U) << "what moved up knows its new place";
}

TEST(ListView, ReportsOnlyAResetWhileDrawingIsOff) {
  using Kind = ListChange::Kind;
  ListView list;
  const Told told(list);
  base::Trap broken_off;
  broken_off([&] {
    const DrawingOff off(list);
    {
      const DrawingOff inner(list);
      list.add("b", "two");
    }
    list.clear();
    EXPECT_EQ(told.kinds, numbers({Kind::kResetting}));
    base::raise(base::error::kOverflow, "broken off");
  });
  EXPECT_EQ(told.kinds, numbers({Kind::kResetting, Kind::kReset}));
}

TEST(ListView, HasOneSelectedRowAtMost) {
  ListView list;
  ListRow& one = list.add("a", "one");
  ListRow& two = list.add("b", "two");
  list.select(&one);
  list.select(&two);
  EXPECT_EQ(list.selected(), &two);
  EXPECT_FALSE(one.selected);
  list.select(nullptr);
  EXPECT_EQ(list.selected(), nullptr);
}

TEST(Observable, ReportsOnlyARealChangeAndOnlyWhileWatched) {
  Observable<std::string> value;
  int told = 0;
  {
    const Watch watch = value.watch([&told] { ++told; });
    value = std::string("x");
    value = std::string("x");
    EXPECT_EQ(told, 1);
  }
  value = std::string("y");
  EXPECT_EQ(told, 1);
}

TEST(Observable, AWatchMayEndItselfWhileItIsCalled) {
  Observable<int> value;
  Watch watch;
  int told = 0;
  watch = value.watch([&] {
    ++told;
    watch = Watch();
  });
  value = 1;
  value = 2;
  EXPECT_EQ(told, 1);
}

TEST(ComboBox, SelectsByPlaceAndKnowsThePlaceOfItsText) {
  ComboBox box;
  box.add_item("");
  box.add_item("A:");
  box.select(1);
  EXPECT_EQ(box.text.get(), "A:");
  EXPECT_EQ(box.list_index(), 1);
  box.text = std::string("Q:");
  EXPECT_EQ(box.list_index(), -1);
  EXPECT_THROW(box.select(2), base::RuntimeError);
  box.remove_item("a:");
  EXPECT_EQ(box.items().size(), 1U);
}

}  // namespace
}  // namespace twk::controls
