#include "ads/query_columns.hpp"

#include "base/text.hpp"
#include "platform/adsi.hpp"

namespace twk::ads {

std::vector<QueryColumn> make_query_columns(
    const std::vector<std::string>& names,
    const std::function<const AttributeSchema*(std::string_view)>& find) {
  std::vector<QueryColumn> columns;
  for (const std::string& name : names) {
    const std::string_view attribute = platform::ldap_attribute(name);
    const bool is_path = base::equals_fold(name, "ADsPath");
    columns.push_back({std::string(attribute), is_path ? nullptr : find(attribute), is_path});
  }
  return columns;
}

}  // namespace twk::ads
