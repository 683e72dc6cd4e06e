#include "directory/units.hpp"

#include <algorithm>
#include <map>
#include <utility>

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "controls/drawing_off.hpp"
#include "directory/names.hpp"
#include "platform/ldap_text.hpp"
#include "platform/platform.hpp"
#include "platform/utf16.hpp"
#include "session/loaded_domain.hpp"
#include "session/session.hpp"

namespace twk::directory {
namespace {

using platform::ObjectPtr;
using platform::Scope;
using session::Session;

constexpr std::size_t kLongestName = 64;
constexpr std::string_view kUsers = "(&(objectCategory=person)(objectClass=user))";
constexpr std::string_view kUnits = "(objectClass=organizationalUnit)";

std::string path_of(const Session& session, std::string_view dn) {
  return "LDAP://" + session.DomainName + (dn.empty() ? "" : "/" + std::string(dn));
}

template <typename Visit>
void query(Session& session, std::string_view base_dn, std::string_view filter,
           std::vector<std::string> attributes, Scope scope, const Visit& visit) {
  platform::QueryOptions options;
  options.page_size = 1000;
  const auto rows = session.platform.query.execute(
      {path_of(session, base_dn), std::string(filter), std::move(attributes), scope}, options);
  for (; !rows->at_eof(); rows->MoveNext())
    visit(*rows);
}

/// A key by which each name follows the one above it: the parts from the top, in capitals.
std::string tree_key(std::string_view dn) {
  std::string key;
  for (std::string_view rest = dn; !rest.empty(); rest = name_above(rest))
    key.insert(0, base::upper(relative_name(rest)) + '\1');
  return key;
}

bool has_class(const platform::Value& classes, std::string_view wanted) {
  const platform::ValueList list = classes.list();
  return std::ranges::any_of(
      list, [&](const platform::Value& one) { return base::equals_fold(one.text(), wanted); });
}

UnitContents count(Session& session, const std::string& unit, Scope scope) {
  UnitContents contents;
  query(session, unit, "(objectClass=*)", {"objectClass", "distinguishedName"}, scope,
        [&](const platform::Recordset& row) {
          if (base::equals_fold(row.field(1).text(), unit))
            return;
          const platform::Value classes = row.field(0);
          ++(has_class(classes, "computer")             ? contents.computers
             : has_class(classes, "user")               ? contents.users
             : has_class(classes, "group")              ? contents.groups
             : has_class(classes, "organizationalUnit") ? contents.units
                                                        : contents.others);
        });
  return contents;
}

std::string counted(std::size_t number, std::string_view word) {
  return std::to_string(number) + " " + std::string(word) + (number == 1 ? "" : "s");
}

void log(Session& session, const std::string& text) {
  session.log.begin_block();
  session.log.line(text);
  session.log.close();
}

/// The unit below `above`, under a new name or its own.
std::string put_below(Session& session, const std::string& unit, std::string_view above,
                      const std::string& relative) {
  session.platform.directory.GetObject(path_of(session, above))->MoveHere(path_of(session, unit), relative);
  return relative + "," + std::string(above);
}

void delete_object(Session& session, const std::string& dn, const std::string& object_class) {
  session.platform.directory.GetObject(path_of(session, name_above(dn)))
      ->Delete(object_class, std::string(relative_name(dn)));
}

}  // namespace

std::string unit_in_words(std::string_view dn) {
  if (base::starts_with_fold(dn, "DC="))
    return domain_dns_name(dn);
  std::string words;
  for (std::string_view rest = dn; !rest.empty() && !base::starts_with_fold(rest, "DC=");
       rest = name_above(rest))
    words.insert(0, platform::plain_name(relative_name(rest)) + (words.empty() ? "" : " / "));
  return words;
}

std::vector<Unit> list_units(Session& session) {
  std::map<std::string, Unit> units;  // by the key of the tree
  query(session, {}, kUnits, {"distinguishedName"}, Scope::kSubtree, [&](const platform::Recordset& row) {
    Unit unit;
    unit.dn = row.field(0).text();
    unit.name = platform::plain_name(relative_name(unit.dn));
    units.emplace(tree_key(unit.dn), std::move(unit));
  });
  const auto above = [&](std::string_view dn) { return units.find(tree_key(name_above(dn))); };
  for (auto& [key, unit] : units) {
    if (const auto parent = above(unit.dn); parent != units.end()) {
      ++parent->second.units;
      unit.depth = parent->second.depth + 1;
    }
  }
  query(session, {}, kUsers, {"distinguishedName"}, Scope::kSubtree, [&](const platform::Recordset& row) {
    if (const auto parent = above(row.field(0).text()); parent != units.end())
      ++parent->second.users;
  });
  std::vector<Unit> list;
  list.reserve(units.size());
  for (auto& [key, unit] : units)
    list.push_back(std::move(unit));
  return list;
}

void list_deeper_units(Session& session) {
  if (!session.ManageSubOUs)
    return;
  controls::ListView& listed = session.domain.units;
  const controls::DrawingOff off(listed);
  query(session, session.ManagedOU, kUnits, {"distinguishedName", "name"}, Scope::kSubtree,
        [&](const platform::Recordset& row) {
          const std::string key = row.field(0).text();
          const std::string name = row.field(1).text();
          const bool is_known =
              listed.find_key(key) != nullptr || session.domain.selection.find_key(key) != nullptr;
          if (!is_known && name != "Domain Controllers")
            listed.add(key, name, "OU");
        });
}

std::string UnitContents::in_words() const {
  std::vector<std::string> parts;
  for (const auto& [number, word] : {std::pair{users, "user"},
                                     {groups, "group"},
                                     {computers, "computer"},
                                     {units, "unit"},
                                     {others, "other object"}}) {
    if (number != 0)
      parts.push_back(counted(number, word));
  }
  std::string text;
  for (std::size_t i = 0; i < parts.size(); ++i)
    text += (i == 0 ? "" : i + 1 == parts.size() ? " and " : ", ") + parts[i];
  return text.empty() ? "nothing" : text;
}

UnitContents count_in_unit(Session& session, const std::string& unit) {
  return count(session, unit, Scope::kOneLevel);
}

UnitContents count_below_unit(Session& session, const std::string& unit) {
  return count(session, unit, Scope::kSubtree);
}

std::string unit_name_fault(std::string_view name) {
  if (name.empty())
    return "The name of an OU cannot be blank.";
  if (platform::utf16_length(name) > kLongestName)
    return "The name of an OU has at most 64 characters.";
  if (const auto character = base::find_control_character(name))
    return "The name of an OU cannot hold the character " + *character + ".";
  return {};
}

std::string deletion_question(const std::string& unit, const UnitContents& contents) {
  return "Delete " + unit + (contents.all() == 0 ? "" : " with " + contents.in_words() + " below it") + "?";
}

std::string rename_unit(Session& session, const std::string& unit, std::string_view name) {
  std::string renamed = put_below(session, unit, name_above(unit), "OU=" + platform::escape_dn_value(name));
  log(session, "Renamed OU " + unit + " to " + renamed);
  return renamed;
}

std::string move_unit(Session& session, const std::string& unit, const std::string& target) {
  std::string moved = put_below(session, unit, target, std::string(relative_name(unit)));
  log(session, "Moved OU " + unit + " to " + target);
  return moved;
}

bool lies_in_unit(std::string_view dn, std::string_view unit) {
  return tree_key(dn).starts_with(tree_key(unit));
}

UnitDeletion delete_unit_tree(Session& session, const std::string& unit,
                              const std::function<bool(const std::string& dn)>& goes_on) {
  struct Found {
    std::string key;
    std::string dn;
    std::string object_class;
  };
  std::vector<Found> objects;
  query(session, unit, "(objectClass=*)", {"distinguishedName", "objectClass"}, Scope::kSubtree,
        [&](const platform::Recordset& row) {
          const platform::ValueList classes = row.field(1).list();
          objects.push_back({tree_key(row.field(0).text()), row.field(0).text(),
                             classes.empty() ? std::string() : classes.back().text()});
        });
  // What is in a unit follows it, so that the last one is never above another.
  std::ranges::sort(objects, std::greater(), &Found::key);
  session.log.begin_block();
  UnitDeletion deletion;
  for (const Found& object : objects) {
    base::Trap trap;
    if (!goes_on(object.dn))
      deletion.reason = "stopped";
    else if (!trap([&] { delete_object(session, object.dn, object.object_class); }))
      deletion.reason = object.dn + ": " + base::in_words(trap.number(), trap.description());
    if (!deletion.reason.empty())
      break;
    session.log.line("Deleted " + object.dn);
    ++deletion.deleted;
  }
  session.log.close();
  return deletion;
}

}  // namespace twk::directory
