#pragma once

#include "support/details_world.hpp"
#include "support/world.hpp"
#include "windows/groups/groups_window.hpp"
#include "windows/state/group_windows.hpp"

namespace twk::test {

/// A session with the groups "Staff" and "Readers" and the users "jo", who is in "Staff", "ann" and "bob".
class GroupsWorld : public LabSession {
 public:
  explicit GroupsWorld(lab::DomainKind kind = lab::DomainKind::kNative,
                       const std::function<void(LabSession&)>& before = {})
      : LabSession(kind) {
    add_jo(*this);
    make_user("ann");
    make_user("bob");
    if (before)
      before(*this);
    start();
  }

  /// Names of the members in the directory, bare and sorted.
  [[nodiscard]] std::vector<std::string> stored(const std::string& name) {
    std::vector<std::string> names;
    for (const platform::ObjectPtr& member : group(name)->Members())
      names.push_back(is_nt() ? member->Name() : member->Name().substr(3));
    std::sort(names.begin(), names.end());
    return names;
  }
  /// The text of the row of "jo".
  [[nodiscard]] std::string jo() const { return is_nt() ? "jo" : "Jo Smith"; }

  void choose(const std::string& name) {
    controls::ListView& list = window.ListView1;
    ASSERT_EQ(list.find_text(name).size(), 1U) << name;
    list.select(&list.at(list.place_of(*list.find_text(name).front())));
  }
  void show(const std::string& name) {
    choose(name);
    windows::Groupsfrm_Group_Details_Click(session);
  }
  /// Selects a user's row besides those that are selected.
  void select(controls::ListView& list, const std::string& name) {
    ASSERT_EQ(list.find_text(name).size(), 1U) << name;
    list.set_selected(list.at(list.place_of(*list.find_text(name).front())), true);
  }
  [[nodiscard]] std::string panel() const { return window.StatusBar1.panel1; }

  windows::Groupsfrm& window = session.groups;
};

/// For what applies to both kinds of domain.
class InBothDomains : public testing::TestWithParam<lab::DomainKind> {};

}  // namespace twk::test
