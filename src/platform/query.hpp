#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/value.hpp"

namespace twk::platform {

enum class Scope { kBase, kOneLevel, kSubtree };

/// A query taken apart: "<base>;filter;attribute,attribute;scope".
struct QueryText {
  std::string base;    ///< an ADsPath
  std::string filter;  ///< RFC 4515; may itself hold semicolons inside a value
  std::vector<std::string> attributes;
  Scope scope = Scope::kSubtree;
};

/// Raises a runtime error when the text is not of that form. The scope word folds case.
QueryText parse_query_text(std::string_view text);

/// The command properties that a query may be given.
struct QueryOptions {
  std::optional<bool> cache_results;      ///< "Cache Results"
  std::optional<bool> asynchronous;       ///< "Asynchronous"
  std::optional<std::int32_t> page_size;  ///< "Page Size"; rows per request
  std::string sort_on;                    ///< "Sort On": an attribute, folded; rows without it come first
  std::int32_t timeout_seconds = 30;
};

/// Rows, read forward. An empty result is at both ends.
class Recordset {
 public:
  virtual ~Recordset() = default;

  [[nodiscard]] virtual bool at_eof() const = 0;
  [[nodiscard]] virtual bool at_bof() const = 0;
  /// Field of the current row, by its place in the attribute list; empty (Null) when the row has no such
  /// value. Raises when there is no current row or no such field.
  [[nodiscard]] virtual Value field(std::size_t index) const = 0;
  virtual void MoveNext() = 0;
  virtual void MoveFirst() = 0;
  /// To the last row, without fetching the values of the rows between. The way to stop a walk early.
  virtual void MoveLast() = 0;
  virtual void Close() = 0;
};

/// The OLE DB provider of the directory.
class QueryService {
 public:
  virtual ~QueryService() = default;

  /// Raises when the base does not exist, the filter is malformed or no server answers. "ADsPath" in the
  /// attribute list returns the path under the base's provider and server part ("GC://twk.test/CN=…").
  virtual std::unique_ptr<Recordset> execute(const QueryText& query, const QueryOptions& options) = 0;
};

}  // namespace twk::platform
