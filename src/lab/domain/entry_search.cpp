#include "lab/domain/entry_search.hpp"

#include <algorithm>
#include <map>
#include <optional>
#include <utility>

#include "ads/dn.hpp"
#include "ads/schema.hpp"
#include "base/text.hpp"
#include "lab/domain/entry_view.hpp"

namespace twk::lab {
namespace {

using platform::Scope;

void resolve_categories(const LabDomain& domain, Filter& filter) {
  for (Filter& child : filter.children)
    resolve_categories(domain, child);
  if (filter.kind != Filter::Kind::kEqual || !base::equals_fold(filter.attribute, "objectCategory"))
    return;
  const ads::ClassSchema* const schema = ads::find_class(filter.value);
  if (schema == nullptr)
    return;
  filter.value = "CN=" + std::string(schema->category) + ",CN=Schema," + domain.configuration_dn;
}

bool holds(const LabDomain& domain, const Filter& filter, const Entry& entry) {
  AttributeViews views(domain, entry);
  return matches(filter, [&](std::string_view attribute) { return views(attribute); });
}

/// The conditions of a filter on what kind of object it wants. Few values of theirs are stored, each once, so
/// the verdict on one is remembered by where it is.
class KindTest {
 public:
  /// Takes its conditions out of the filter.
  explicit KindTest(Filter& filter) {
    if (filter.kind != Filter::Kind::kAnd)
      filter = {.kind = Filter::Kind::kAnd, .children = {std::move(filter)}};
    std::erase_if(filter.children, [&](Filter& child) {
      const bool is_kind =
          child.kind == Filter::Kind::kEqual && (base::equals_fold(child.attribute, "objectCategory") ||
                                                 base::equals_fold(child.attribute, "objectClass"));
      if (is_kind)
        conditions_.push_back({std::move(child), {}});
      return is_kind;
    });
    // Classes come first in an entry, and turn most away without a look at the rest of it.
    std::stable_partition(conditions_.begin(), conditions_.end(), [](const Condition& condition) {
      return base::equals_fold(condition.filter.attribute, "objectClass");
    });
  }

  bool passes(const Entry& entry) {
    return std::all_of(conditions_.begin(), conditions_.end(), [&](Condition& condition) {
      return entry.any(condition.filter.attribute,
                       [&](std::string_view value) { return condition.holds(value); });
    });
  }

 private:
  struct Condition {
    bool holds(std::string_view value) {
      const auto [known, fresh] = verdicts.try_emplace({value.data(), value.size()}, false);
      if (fresh)
        known->second = matches(filter, [&](std::string_view) { return std::vector{value}; });
      return known->second;
    }

    Filter filter;
    std::map<std::pair<const char*, std::size_t>, bool> verdicts;
  };

  std::vector<Condition> conditions_;
};

/// Checks whether entries are in a scope.
class ScopeTest {
 public:
  ScopeTest(const LabDomain& domain, const std::string& base_dn, Scope scope)
      : domain_(domain),
        base_(ads::normalize_dn(base_dn)),
        scope_(scope),
        skip_configuration_(!in_configuration(domain, base_dn)) {}

  [[nodiscard]] bool is_outside_context(const Entry& entry) const {
    return skip_configuration_ && in_configuration(domain_, entry.dn());
  }

  [[nodiscard]] bool contains(const Entry& entry) const {
    if (is_outside_context(entry))
      return false;
    const std::string name = ads::normalize_dn(entry.dn());
    switch (scope_) {
      case Scope::kBase:
        return name == base_;
      case Scope::kOneLevel:
        return ads::parent_dn(name) == base_;
      case Scope::kSubtree:
        return name == base_ || name.ends_with("," + base_);
    }
    return false;
  }

 private:
  const LabDomain& domain_;
  std::string base_;
  Scope scope_;
  bool skip_configuration_;
};

const Entry* find_if_dn(const LabDomain& domain, std::string_view text) {
  const Entry* found = nullptr;
  base::Trap no_name;
  no_name([&] { found = domain.store.find(text); });
  return found;
}

/// The entries that an equality on an indexed attribute leaves, or the beginning of a common name; none when
/// the attribute has no index, or its index names one entry where a directory may hold several.
std::optional<std::vector<const Entry*>> indexed(const LabDomain& domain, const Filter& filter) {
  if (filter.kind == Filter::Kind::kSubstrings && base::equals_fold(filter.attribute, "cn") &&
      !filter.pieces.front().empty())
    return domain.store.with_name_beginning(filter.pieces.front());
  if (filter.kind != Filter::Kind::kEqual)
    return std::nullopt;
  const auto one = [](const Entry* entry) {
    return entry == nullptr ? std::vector<const Entry*>{} : std::vector{entry};
  };
  if (base::equals_fold(filter.attribute, "sAMAccountName"))
    return one(domain.store.find_account(filter.value));
  if (base::equals_fold(filter.attribute, "distinguishedName"))
    return one(find_if_dn(domain, filter.value));
  if (base::equals_fold(filter.attribute, "objectSid"))
    return one(domain.store.find_sid(filter.value));
  if (base::equals_fold(filter.attribute, "primaryGroupID"))
    return domain.store.with_primary_group(filter.value);
  if (base::equals_fold(filter.attribute, "userPrincipalName") &&
      domain.store.find_principal(filter.value) == nullptr) {
    return std::vector<const Entry*>{};
  }
  return std::nullopt;
}

std::optional<std::vector<const Entry*>> candidates(const LabDomain& domain, const Filter& filter);

/// Those of each alternative, once; none when one of these has no index.
std::optional<std::vector<const Entry*>> candidates_of_any(const LabDomain& domain, const Filter& filter) {
  std::vector<const Entry*> all;
  for (const Filter& child : filter.children) {
    const auto found = candidates(domain, child);
    if (!found)
      return std::nullopt;
    all.insert(all.end(), found->begin(), found->end());
  }
  return EntryStore::in_order(std::move(all));
}

std::optional<std::vector<const Entry*>> candidates(const LabDomain& domain, const Filter& filter) {
  if (auto found = indexed(domain, filter))
    return found;
  if (filter.kind == Filter::Kind::kOr)
    return candidates_of_any(domain, filter);
  if (filter.kind != Filter::Kind::kAnd)
    return std::nullopt;
  for (const Filter& child : filter.children) {
    if (auto found = candidates(domain, child))
      return found;
  }
  return std::nullopt;
}

}  // namespace

std::vector<FoundEntry> search_entries(const LabDomain& domain, const std::string& base_dn, Scope scope,
                                       Filter filter) {
  resolve_categories(domain, filter);
  const Entry& top = require_entry(domain, base_dn);
  const ScopeTest test(domain, top.dn(), scope);
  const auto few = candidates(domain, filter);
  KindTest kind(filter);
  std::vector<FoundEntry> found;
  // The name, the longest way into memory, is looked at last.
  const auto passes = [&](const Entry& entry) {
    return kind.passes(entry) && (filter.children.empty() || holds(domain, filter, entry));
  };
  if (few) {
    for (const Entry* const entry : *few) {
      if (passes(*entry) && test.contains(*entry))
        found.push_back({entry, entry->dn()});
    }
    return found;
  }
  const auto visit = [&](const Entry& entry) {
    if (passes(entry) && !test.is_outside_context(entry))
      found.push_back({&entry, entry.dn()});
    return true;
  };
  if (scope == Scope::kBase) {
    visit(top);
  } else if (scope == Scope::kOneLevel) {
    domain.store.children(top, visit);
  } else {
    domain.store.subtree(top, visit);
  }
  return found;
}

void sort_by_attribute(const LabDomain& domain, std::vector<FoundEntry>& found, std::string_view attribute) {
  std::vector<std::pair<std::string, FoundEntry>> keyed;
  keyed.reserve(found.size());
  for (FoundEntry& one : found) {
    AttributeViews views(domain, *one.entry);
    const std::vector<std::string_view> values = views(attribute);
    keyed.emplace_back(values.empty() ? std::string() : base::upper(values.front()), std::move(one));
  }
  std::stable_sort(keyed.begin(), keyed.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  std::transform(keyed.begin(), keyed.end(), found.begin(),
                 [](auto& pair) { return std::move(pair.second); });
}

}  // namespace twk::lab
