#include "live/domain/delegated_rights.hpp"

#include <algorithm>
#include <array>
#include <span>
#include <utility>

#include "base/text.hpp"

namespace twk::live {
namespace {

constexpr const char* kClasses = "allowedChildClassesEffective";
constexpr const char* kAttributes = "allowedAttributesEffective";

/// A name of the schema, and what it means to an administrator.
using Meaning = std::pair<std::string_view, std::string_view>;

constexpr std::array<Meaning, 4> kCreated = {
    {{"user", "users"}, {"group", "groups"}, {"organizationalUnit", "units"}, {"contact", "contacts"}}};
constexpr std::array<Meaning, 6> kWritten = {{{"userAccountControl", "enable and disable"},
                                              {"lockoutTime", "unlock"},
                                              {"accountExpires", "let expire"},
                                              {"cn", "rename"},
                                              {"homeDirectory", "give homes to"},
                                              {"description", "describe"}}};

bool contains(const std::vector<std::string>& names, std::string_view name) {
  return std::ranges::any_of(names, [&](const std::string& one) { return base::equals_fold(one, name); });
}

std::vector<std::string> values_of(const LdapEntry& entry, const char* attribute) {
  const auto* const values = entry.find(attribute);
  return values == nullptr ? std::vector<std::string>() : *values;
}

/// Empty when the account has no right; none when the server computes neither the rights nor what the schema
/// allows.
std::optional<std::vector<std::string>> effective(LdapConnection& connection, const std::string& dn,
                                                  const char* rights, const char* schema) {
  std::vector<std::string> names = values_of(connection.read(dn, {rights}), rights);
  if (names.empty() && connection.read(dn, {schema}).find(schema) == nullptr)
    return std::nullopt;
  return names;
}

/// "users, groups and units": the meanings of the names that are there, or with "or" of those that are not.
std::string listed(const std::vector<std::string>& names, std::span<const Meaning> meanings, bool there) {
  std::vector<std::string_view> words;
  for (const auto& [name, word] : meanings) {
    if (contains(names, name) == there)
      words.push_back(word);
  }
  std::string text;
  const std::string_view last = there ? " and " : " or ";
  for (std::size_t i = 0; i < words.size(); ++i)
    text.append(i == 0 ? "" : i + 1 < words.size() ? ", " : last).append(words[i]);
  return text;
}

/// "may create users in OU=…, not groups"
std::string sentence(const std::vector<std::string>& names, std::span<const Meaning> meanings,
                     const std::string& before, const std::string& after) {
  const std::string may = listed(names, meanings, true);
  const std::string may_not = listed(names, meanings, false);
  if (may.empty())
    return "may not " + before + may_not + after;
  return "may " + before + may + after + (may_not.empty() ? "" : ", but not " + may_not);
}

}  // namespace

bool Rights::creates(std::string_view object_class) const {
  return contains(classes, object_class);
}

std::optional<std::vector<std::string>> creatable_classes(LdapConnection& connection, const std::string& dn) {
  return effective(connection, dn, kClasses, "allowedChildClasses");
}

std::optional<std::vector<std::string>> writable_attributes(LdapConnection& connection,
                                                            const std::string& dn) {
  return effective(connection, dn, kAttributes, "allowedAttributes");
}

bool Rights::are_none() const {
  return classes.empty() && attributes.empty() && !deletes.value_or(false) && !sets_password.value_or(false);
}

Rights read_rights(LdapConnection& connection, const std::string& unit) {
  Rights rights;
  rights.classes = values_of(connection.read(unit, {kClasses}), kClasses);
  LdapSearch somebody;
  somebody.base = unit;
  somebody.filter = "(&(objectCategory=person)(objectClass=user))";
  somebody.attributes = {kAttributes};
  connection.search(somebody, [&](LdapEntry&& entry) {
    rights.attributes = values_of(entry, kAttributes);
    rights.user = entry.dn;
    return false;
  });
  return rights;
}

std::string in_words(const Rights& rights, const std::string& unit) {
  std::vector<std::string> names = rights.attributes;
  std::vector<Meaning> meanings;
  if (!names.empty())
    meanings.assign(kWritten.begin(), kWritten.end());
  const auto add = [&](std::optional<bool> may, const Meaning& meaning) {
    if (may)
      meanings.push_back(meaning);
    if (may.value_or(false))
      names.emplace_back(meaning.first);
  };
  add(rights.sets_password, {"a new password", "give a new password to"});
  add(rights.deletes, {"a deletion", "delete"});
  const std::string text = sentence(rights.classes, kCreated, "create ", " in " + unit);
  return meanings.empty() ? text : text + "; " + sentence(names, meanings, "", " a user there");
}

}  // namespace twk::live
