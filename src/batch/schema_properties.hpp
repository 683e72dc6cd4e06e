#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace twk::session {
struct Session;
}

/// The properties that users have, and what the directory's schema says about each.
namespace twk::batch {

/// A property of users; one that the schema does not know has no syntax.
struct PropertySchema {
  std::string name;
  std::string syntax;  ///< "OctetString"; for people a list of words where only those are values
  bool multi_valued = false;

  [[nodiscard]] bool takes_bytes() const;
};

/// Calls `add` with the thirteen terminal-server settings, then with the mandatory and the optional
/// properties of the schema's class "User". Raises what the directory raises.
void read_property_names(session::Session& session, const std::function<void(std::string name)>& add);

/// Raises what the directory raises, also for a property that it does not know.
PropertySchema look_up_property(session::Session& session, std::string_view name);

/// The number of a terminal-server setting, counted from 1, by its name among the properties or in the table
/// of settings; none for any other property. Folds case.
std::optional<std::int16_t> terminal_server_number(std::string_view property);

/// What is wrong with a value for a terminal-server setting: a time that is not one of the words,
/// or neither yes nor no. Empty when it is fine, and for any other property, whose values the directory
/// checks.
std::string value_fault(std::string_view property, std::string_view value);

}  // namespace twk::batch
