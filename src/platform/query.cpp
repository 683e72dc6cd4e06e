#include "platform/query.hpp"

#include "base/errors.hpp"
#include "base/text.hpp"

namespace twk::platform {
namespace {

[[noreturn]] void malformed(std::string_view what) {
  throw base::RuntimeError(0x80040E14,
                           "The query text is malformed: " + std::string(what));  // DB_E_ERRORSINCOMMAND
}

Scope read_scope(std::string_view word) {
  if (base::equals_fold(word, "base"))
    return Scope::kBase;
  if (base::equals_fold(word, "onelevel"))
    return Scope::kOneLevel;
  if (base::equals_fold(word, "subtree"))
    return Scope::kSubtree;
  malformed("the scope is not one of base, onelevel, subtree");
}

}  // namespace

QueryText parse_query_text(std::string_view text) {
  const std::size_t base_end = text.find(">;");
  if (text.empty() || text.front() != '<' || base_end == base::npos)
    malformed("the base is not in angle brackets");
  // The last two parts contain no semicolon; a filter's value may.
  const std::size_t scope_at = text.rfind(';');
  const std::size_t list_at = scope_at <= base_end + 1 ? base::npos : text.rfind(';', scope_at - 1);
  if (list_at == base::npos || list_at <= base_end + 1)
    malformed("it does not have four parts");
  QueryText query;
  query.base = text.substr(1, base_end - 1);
  query.filter = text.substr(base_end + 2, list_at - base_end - 2);
  for (const std::string& name : base::split(text.substr(list_at + 1, scope_at - list_at - 1), ',')) {
    query.attributes.emplace_back(base::trim(name));
  }
  if (query.attributes.empty())
    malformed("it requests no attribute");
  query.scope = read_scope(base::trim(text.substr(scope_at + 1)));
  return query;
}

}  // namespace twk::platform
