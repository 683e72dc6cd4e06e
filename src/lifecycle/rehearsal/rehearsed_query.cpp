#include "lifecycle/rehearsal/rehearsed_query.hpp"

#include <algorithm>
#include <array>
#include <span>
#include <utility>
#include <vector>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "directory/names.hpp"
#include "platform/ldap_text.hpp"

namespace twk::lifecycle {
namespace {

using platform::QueryText;
using platform::Recordset;
using platform::Value;

/// The rows of a real answer, if there is one, and further ones after them.
class LongerAnswer final : public Recordset {
 public:
  using Row = std::vector<Value>;

  LongerAnswer(std::unique_ptr<Recordset> real, std::vector<Row> added)
      : real_(std::move(real)), added_(std::move(added)) {}

  [[nodiscard]] bool at_eof() const override { return real_ended() && next_ == added_.size(); }
  [[nodiscard]] bool at_bof() const override {
    return (real_ == nullptr || real_->at_bof()) && added_.empty();
  }
  [[nodiscard]] Value field(std::size_t index) const override {
    if (!real_ended())
      return real_->field(index);
    if (at_eof() || index >= added_[next_].size())
      base::raise(base::error::kOutOfBounds, "There is no such row or field");
    return added_[next_][index];
  }
  void MoveNext() override {
    if (!real_ended())
      real_->MoveNext();
    else if (!at_eof())
      ++next_;
  }
  void MoveFirst() override {
    if (real_ != nullptr)
      real_->MoveFirst();
    next_ = 0;
  }
  void MoveLast() override {
    if (real_ != nullptr && added_.empty())
      return real_->MoveLast();
    while (!real_ended())
      real_->MoveNext();
    next_ = added_.empty() ? 0 : added_.size() - 1;
  }
  void Close() override {
    if (real_ != nullptr)
      real_->Close();
  }

 private:
  [[nodiscard]] bool real_ended() const { return real_ == nullptr || real_->at_eof(); }

  std::unique_ptr<Recordset> real_;
  std::vector<Row> added_;
  std::size_t next_ = 0;
};

/// A term of a filter, "(cn=Staff)".
struct Term {
  std::string_view attribute;
  std::string_view value;  ///< escaped
};

std::vector<Term> terms_of(std::string_view filter) {
  std::vector<Term> terms;
  for (std::size_t at = filter.find('='); at != base::npos; at = filter.find('=', at + 1)) {
    const std::size_t begin = filter.rfind('(', at) + 1;
    const std::size_t end = std::min(filter.find(')', at), filter.size());
    terms.push_back({filter.substr(begin, at - begin), filter.substr(at + 1, end - at - 1)});
    at = end;
  }
  return terms;
}

/// The value that a filter requires of an attribute: "jo" of "(&(objectClass=user)(sAMAccountName=jo))".
std::string required_value(const std::vector<Term>& terms, std::string_view attribute) {
  const auto term = std::ranges::find_if(
      terms, [&](const Term& one) { return base::equals_fold(one.attribute, attribute); });
  return term == terms.end() ? std::string() : platform::unescape_dn_value(term->value);
}

bool is_one_of(std::string_view word, std::span<const std::string_view> words) {
  return std::ranges::any_of(words, [&](std::string_view one) { return base::equals_fold(one, word); });
}

std::string plain_name_of(const MadeObjects::Place& place) {
  return platform::plain_name(directory::relative_name(place.dn));
}

/// The value of a term may be the beginning of a name, "jo*".
bool means(std::string_view value, std::string_view name) {
  if (value.ends_with('*'))
    return base::starts_with_fold(name, platform::unescape_dn_value(value.substr(0, value.size() - 1)));
  return base::equals_fold(platform::unescape_dn_value(value), name);
}

/// True when each term speaks of its class or, one of them at least if any does, of its names.
bool fits(const MadeObjects::Place& place, const std::vector<Term>& terms) {
  constexpr std::array<std::string_view, 2> kKinds = {"objectClass", "objectCategory"};
  constexpr std::array<std::string_view, 4> kNames = {"sAMAccountName", "cn", "name", "userPrincipalName"};
  bool of_kind = false;
  bool asks_for_name = false;
  bool of_name = false;
  for (const Term& term : terms) {
    if (is_one_of(term.attribute, kKinds)) {
      of_kind = of_kind || base::equals_fold(term.value, place.object_class);
      continue;
    }
    if (!is_one_of(term.attribute, kNames))
      return false;
    const std::string name =
        base::equals_fold(term.attribute, kNames.front()) ? place.account : plain_name_of(place);
    asks_for_name = true;
    of_name = of_name || (!base::equals_fold(term.attribute, kNames.back()) && means(term.value, name));
  }
  return of_kind && (of_name || !asks_for_name);
}

/// True for what lies where a query looks; a base without a name is the domain itself.
bool lies_there(const MadeObjects::Place& place, const QueryText& query) {
  const std::string_view base_name = name_of_path(query.base);
  const bool whole = base_name.find('=') == base::npos;
  const std::string_view above = directory::name_above(place.dn);
  if (query.scope == platform::Scope::kOneLevel)
    return whole ? base::starts_with_fold(above, "DC=") : base::equals_fold(above, base_name);
  return query.scope == platform::Scope::kSubtree &&
         (whole || base::upper(place.dn).ends_with("," + base::upper(base_name)));
}

/// "LDAP://twk.test/" of "LDAP://twk.test/DC=twk,DC=test".
std::string provider_of(const QueryText& query) {
  std::string provider(query.base, 0, query.base.size() - name_of_path(query.base).size());
  if (name_of_path(query.base).find('=') == base::npos)
    provider = query.base;
  return provider.ends_with('/') ? provider : provider + "/";
}

Value value_of(const MadeObjects::Place& place, std::string_view attribute, const QueryText& query) {
  if (base::equals_fold(attribute, "ADsPath"))
    return provider_of(query) + place.dn;
  if (base::equals_fold(attribute, "distinguishedName"))
    return place.dn;
  if (base::equals_fold(attribute, "sAMAccountName"))
    return place.account;
  if (base::equals_fold(attribute, "name") || base::equals_fold(attribute, "cn"))
    return plain_name_of(place);
  return {};
}

std::vector<LongerAnswer::Row> made_rows(const MadeObjects& made, const QueryText& query,
                                         const std::vector<Term>& terms) {
  std::vector<LongerAnswer::Row> rows;
  for (const MadeObjects::Place& place : made.places()) {
    if (!lies_there(place, query) || !fits(place, terms))
      continue;
    LongerAnswer::Row& row = rows.emplace_back();
    for (const std::string& attribute : query.attributes)
      row.push_back(value_of(place, attribute, query));
  }
  return rows;
}

/// One row, for an account that is not there to be read; none when nobody would have been made by that name.
std::vector<LongerAnswer::Row> account_rows(const MadeObjects& made, const QueryText& query,
                                            const std::vector<Term>& terms) {
  std::string account = required_value(terms, "sAMAccountName");
  std::string principal = required_value(terms, "userPrincipalName");
  if (made.has_account(account))
    return {LongerAnswer::Row(query.attributes.size(), Value(std::move(account)))};
  if (made.has_principal(principal))
    return {LongerAnswer::Row(query.attributes.size(), Value(std::move(principal)))};
  return {};
}

}  // namespace

std::unique_ptr<Recordset> RehearsedQuery::execute(const QueryText& query,
                                                   const platform::QueryOptions& options) {
  const std::vector<Term> terms = terms_of(query.filter);
  std::unique_ptr<Recordset> real;
  if (directory_.made().find(query.base) == nullptr)
    real = real_.execute(query, options);
  std::vector<LongerAnswer::Row> rows = made_rows(directory_.made(), query, terms);
  // Of accounts that would have been made only the names are known, not where they are.
  const bool asks_for_path = std::ranges::find(query.attributes, "ADsPath") != query.attributes.end();
  const bool empty = rows.empty() && real != nullptr && real->at_eof() && real->at_bof();
  if (empty && !asks_for_path)
    rows = account_rows(directory_.made(), query, terms);
  if (real != nullptr && rows.empty())
    return real;
  return std::make_unique<LongerAnswer>(std::move(real), std::move(rows));
}

}  // namespace twk::lifecycle
