#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/terminal/output.hpp"
#include "session/session.hpp"

/// The side tables as rows of text:
///
///     mail                              NAME,VALUE
///     w2k                               p,ATTRIBUTE,VALUE   or   m,ATTRIBUTE,VALUE
///     wts                               VALUE               thirteen, in the order of the settings
///     permissions, share-permissions    ACCOUNT,ACCESS[,OWNER[,NEW]]   with tabs between as well
namespace twk::cli {

struct TableRow {
  std::string text;
  Json json;
};

struct SideTable {
  std::string name;
  std::function<std::vector<TableRow>(session::Session&)> read;
  /// Replaces all rows and returns their number. Raises `BadInput` with the line, before anything is
  /// written.
  std::function<std::size_t(session::Session&, const std::vector<std::string>& lines)> write;
};

std::vector<std::string> side_table_names();
/// The table of that name, which must be one of `side_table_names`, in any case.
SideTable side_table(std::string_view name);

}  // namespace twk::cli
