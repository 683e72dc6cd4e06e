#pragma once

#include <fstream>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "batch/change_property.hpp"
#include "directory/operations.hpp"
#include "support/lab_session.hpp"
#include "windows/multi_user/properties_tab.hpp"
#include "windows/state/ad_properties.hpp"
#include "windows/state/multi_user.hpp"

namespace twk::batch {

/// A lab with jo, ann and kim, whose names are "jo Lee" and so on, and the tab "AD Properties" filled.
class PropertyWorld : public test::LabSession {
 public:
  explicit PropertyWorld(std::string_view command_line = "")
      : LabSession(lab::DomainKind::kNative, command_line) {
    for (const std::string name : {"jo", "ann", "kim"})
      make_user(name, name + " Lee");
    start();
    windows::fill_properties(session);
  }

  void choose(const std::string& property, const std::string& value = {}) {
    session.ad_properties.AD_Properties.text = property;
    windows::AD_Properties_Click(session);
    session.multi_user.AD_CHANGE.text = value;
  }
  void select_users(const std::vector<std::string>& names) {
    for (const std::string& name : names)
      session.multi_user.ListView1.add(path_of(name), name, "USER");
  }
  /// Sets a property of the users by the button.
  void change(const std::vector<std::string>& names, const std::string& property, const std::string& value) {
    session.multi_user.ListView1.clear();
    select_users(names);
    choose(property, value);
    press_change();
  }
  void press_change() { counts = windows::CHANGE_AD_Click(session, take_outcome()); }
  std::function<void(const PropertyOutcome&)> take_outcome() {
    return [this](const PropertyOutcome& outcome) {
      const std::string line = outcome.line == 0 ? "" : base::to_text(outcome.line) + " ";
      outcomes.push_back(line +
                         (outcome.changed   ? ""
                          : outcome.skipped ? "no "
                                            : "not ") +
                         short_name(outcome.user));
    };
  }
  /// All values of an attribute, in the order of the directory.
  std::vector<std::string> values(std::string_view name, std::string_view attribute) {
    std::vector<std::string> texts;
    base::Trap trap;
    trap([&] {
      for (const platform::Value& value : account(name)->Get(attribute).list())
        texts.push_back(value.text());
    });
    return texts;
  }
  /// "jo" of "jo Lee".
  static std::string short_name(const std::string& name) {
    return name.ends_with(" Lee") ? name.substr(0, name.size() - 4) : name;
  }
  [[nodiscard]] std::string status() const { return session.multi_user.Label3.caption; }

  PropertyCounts counts;              ///< of the last run
  std::vector<std::string> outcomes;  ///< "jo", "not ann", "3 no nobody"
};

}  // namespace twk::batch
