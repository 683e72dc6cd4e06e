#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace twk::session {
struct Session;
}

/// The organizational units of an Active Directory domain: what is in them, and their changes. Names are
/// distinguished names as the directory spells them. Everything raises what the directory raises.
namespace twk::directory {

/// "Sales / North" of "OU=North,OU=Sales,DC=twk,DC=test"; the domain's own name for the domain.
std::string unit_in_words(std::string_view dn);

struct Unit {
  std::string name;  ///< "Sales"
  std::string dn;
  std::size_t depth = 0;  ///< of units above it
  std::size_t users = 0;  ///< directly in it
  std::size_t units = 0;  ///< directly in it
};

/// All units, each after the one above it, with those next to each other by name.
std::vector<Unit> list_units(session::Session& session);

/// Adds the units that are managed to the list of units, which a load gives those of one level. Those of the
/// selection are left out.
void list_deeper_units(session::Session& session);

/// How much is directly in a unit, or all that is below it.
struct UnitContents {
  std::size_t users = 0;
  std::size_t groups = 0;
  std::size_t computers = 0;
  std::size_t units = 0;
  std::size_t others = 0;

  [[nodiscard]] std::size_t all() const { return users + groups + computers + units + others; }
  /// "3 users, 1 group and 2 units"; "nothing".
  [[nodiscard]] std::string in_words() const;
};

UnitContents count_in_unit(session::Session& session, const std::string& unit);
UnitContents count_below_unit(session::Session& session, const std::string& unit);

/// Why a name is none for a unit; empty when it is one.
std::string unit_name_fault(std::string_view name);

/// "Delete OU=… with 3 users and 1 group below it?"
std::string deletion_question(const std::string& unit, const UnitContents& contents);

/// Each returns the new name and writes a line of the log.
std::string rename_unit(session::Session& session, const std::string& unit, std::string_view name);
std::string move_unit(session::Session& session, const std::string& unit, const std::string& target);

/// True for the unit itself and all that is below it.
bool lies_in_unit(std::string_view dn, std::string_view unit);

/// How far a deletion came.
struct UnitDeletion {
  std::size_t deleted = 0;  ///< objects
  std::string reason;       ///< why not all: "CN=…: Access is denied", "stopped"; empty when all are gone
};
/// Deletes a unit with everything in it, what is lowest first, up to the first refusal. `goes_on` is called
/// before each object and ends the work by returning False.
UnitDeletion delete_unit_tree(session::Session& session, const std::string& unit,
                              const std::function<bool(const std::string& dn)>& goes_on);

}  // namespace twk::directory
