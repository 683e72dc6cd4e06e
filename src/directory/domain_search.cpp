#include "directory/domain_search.hpp"

#include <charconv>

#include "platform/query.hpp"

namespace twk::directory {

void search_domain(const AccountDomain& domain, std::string_view base_dn, const std::string& filter,
                   std::vector<std::string> attributes, const std::function<bool(FoundRow&)>& visit) {
  platform::QueryOptions options;
  options.page_size = 1000;
  const std::size_t count = attributes.size();
  const auto records = domain.services.query.execute(
      {ldap_path(domain, base_dn), filter, std::move(attributes), platform::Scope::kSubtree}, options);
  FoundRow row;
  while (!records->at_eof()) {
    row.clear();
    for (std::size_t i = 0; i < count; ++i)
      row.push_back(records->field(i));
    if (!visit(row))
      break;
    records->MoveNext();
  }
  records->Close();
}

std::vector<FoundRow> search_domain(const AccountDomain& domain, std::string_view base_dn,
                                    const std::string& filter, std::vector<std::string> attributes) {
  std::vector<FoundRow> rows;
  search_domain(domain, base_dn, filter, std::move(attributes), [&](FoundRow& row) {
    rows.push_back(std::move(row));
    return true;
  });
  return rows;
}

// Some servers begin with the first condition for which they have an index, and the further ones find fewer.
std::string users_with(std::string_view conditions) {
  return "(&" + std::string(conditions) + std::string(kUserConditions) + ")";
}

std::string groups_with(std::string_view conditions) {
  return "(&" + std::string(conditions) + std::string(kGroupConditions) + ")";
}

std::string ldap_path(const AccountDomain& domain, std::string_view dn) {
  return "LDAP://" + domain.name + (dn.empty() ? "" : "/" + std::string(dn));
}

std::int64_t number_of(const platform::Value& value) {
  if (const auto* const number = std::get_if<std::int32_t>(&value.data))
    return *number;
  const std::string text = value.text();
  std::int64_t number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

}  // namespace twk::directory
