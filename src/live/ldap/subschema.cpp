#include "live/ldap/subschema.hpp"

#include <array>

#include "base/text.hpp"

namespace twk::live {
namespace {

struct SyntaxOid {
  std::string_view oid;
  ads::Syntax syntax;
};

/// RFC 4517 3.3.
constexpr std::array<SyntaxOid, 5> kSyntaxes = {
    {{"1.3.6.1.4.1.1466.115.121.1.7", ads::Syntax::kBoolean},
     {"1.3.6.1.4.1.1466.115.121.1.12", ads::Syntax::kDn},
     {"1.3.6.1.4.1.1466.115.121.1.24", ads::Syntax::kTime},
     {"1.3.6.1.4.1.1466.115.121.1.27", ads::Syntax::kInteger},
     {"1.3.6.1.4.1.1466.115.121.1.40", ads::Syntax::kOctetString}}};

/// A description, word by word.
struct Description {
  std::vector<std::string> names;
  std::string superior;
  std::string syntax;
  bool single_valued = false;
};

/// Words, parentheses, and single-quoted text as one word.
std::vector<std::string> split_words(std::string_view text) {
  std::vector<std::string> words;
  for (std::size_t i = 0; i < text.size();) {
    if (text[i] == ' ') {
      ++i;
    } else if (text[i] == '(' || text[i] == ')') {
      words.emplace_back(1, text[i++]);
    } else if (text[i] == '\'') {
      const std::size_t end = std::min(text.find('\'', i + 1), text.size());
      words.emplace_back(text.substr(i + 1, end - i - 1));
      i = end + 1;
    } else {
      const std::size_t end = std::min(text.find_first_of(" ()", i), text.size());
      words.emplace_back(text.substr(i, end - i));
      i = end;
    }
  }
  return words;
}

Description parse(std::string_view text) {
  const std::vector<std::string> words = split_words(text);
  Description description;
  for (std::size_t i = 0; i < words.size(); ++i) {
    const bool more = i + 1 < words.size();
    if (words[i] == "NAME" && more) {
      if (words[i + 1] != "(") {
        description.names.push_back(words[++i]);
        continue;
      }
      for (i += 2; i < words.size() && words[i] != ")"; ++i)
        description.names.push_back(words[i]);
    } else if (words[i] == "DESC") {
      ++i;
    } else if (words[i] == "SUP" && more) {
      description.superior = words[++i];
    } else if (words[i] == "SYNTAX" && more) {
      description.syntax = words[i + 1].substr(0, words[i + 1].find('{'));
      ++i;
    } else if (words[i] == "SINGLE-VALUE") {
      description.single_valued = true;
    }
  }
  return description;
}

ads::Syntax syntax_of(std::string_view oid) {
  for (const SyntaxOid& one : kSyntaxes) {
    if (one.oid == oid)
      return one.syntax;
  }
  return ads::Syntax::kString;
}

/// The syntax of a description, or of what it is derived from, which may be anywhere.
ads::Syntax syntax_of(const Description& description, const std::map<std::string, const Description*>& all) {
  const Description* at = &description;
  for (std::size_t steps = 0; at->syntax.empty() && steps < all.size(); ++steps) {
    const auto superior = all.find(base::upper(at->superior));
    if (superior == all.end())
      break;
    at = superior->second;
  }
  return syntax_of(at->syntax);
}

}  // namespace

Subschema::Subschema(LdapConnection& connection) {
  const std::string entry = connection.read("", {"subschemaSubentry"}).first("subschemaSubentry");
  if (entry.empty())
    return;
  const LdapEntry schema = connection.read(entry, {"attributeTypes"});
  if (const auto* const descriptions = schema.find("attributeTypes"))
    read(*descriptions);
}

Subschema::Subschema(const std::vector<std::string>& descriptions) {
  read(descriptions);
}

void Subschema::read(const std::vector<std::string>& descriptions) {
  std::vector<Description> parsed;
  parsed.reserve(descriptions.size());
  for (const std::string& text : descriptions)
    parsed.push_back(parse(text));
  std::map<std::string, const Description*> by_name;
  for (const Description& description : parsed) {
    for (const std::string& name : description.names)
      by_name.emplace(base::upper(name), &description);
  }
  for (const Description& description : parsed) {
    if (description.names.empty())
      continue;
    const auto item = std::make_shared<Item>();
    item->name = description.names.front();
    item->schema.name = item->name;
    item->schema.syntax = syntax_of(description, by_name);
    item->schema.multi_valued = !description.single_valued;
    for (const std::string& name : description.names)
      items_.emplace(base::upper(name), item);
  }
}

const ads::AttributeSchema* Subschema::find(std::string_view name) const {
  const auto found = items_.find(base::upper(name));
  return found == items_.end() ? nullptr : &found->second->schema;
}

}  // namespace twk::live
