#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "ads/schema.hpp"

/// What the results of every query have in common.
namespace twk::ads {

/// Numbers of the OLE DB provider.
namespace recordset_error {
inline constexpr std::uint32_t kNoCurrentRow = 3021;
inline constexpr std::uint32_t kNoSuchField = 3265;
inline constexpr std::uint32_t kClosed = 3704;
}  // namespace recordset_error

/// One attribute of a query's list.
struct QueryColumn {
  std::string attribute;                    ///< as the directory names it
  const AttributeSchema* schema = nullptr;  ///< none for the path and for what the schema does not know
  bool is_path = false;                     ///< "ADsPath", which is made of the row's name
};

/// `find` looks up an attribute; what it returns must stay valid.
std::vector<QueryColumn> make_query_columns(
    const std::vector<std::string>& names,
    const std::function<const AttributeSchema*(std::string_view)>& find);

}  // namespace twk::ads
