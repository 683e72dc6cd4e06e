#pragma once

#include <optional>
#include <string>

#include "cli/context.hpp"

namespace twk::cli {

/// Columns of an import file, counted from 1; 0 stands for none.
struct ImportColumns {
  std::optional<int> first;
  std::optional<int> middle;
  std::optional<int> last;
  std::optional<int> id;
  std::optional<int> password;

  [[nodiscard]] bool any() const { return first || middle || last || id || password; }
};

/// Prints what each line of the file would give: the names and the account name, and whether that one is
/// free. Nothing is created and nothing is written. Gives the exit code of the worst line.
int preview_import(Context& context, session::Session& session, const std::string& path,
                   const ImportColumns& columns);

}  // namespace twk::cli
