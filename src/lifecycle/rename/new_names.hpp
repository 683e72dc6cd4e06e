#pragma once

#include <optional>
#include <stdexcept>
#include <string>

#include "session/current_run.hpp"
#include "session/run_outcome.hpp"

namespace twk::controls {
struct TreeNode;
}
namespace twk::session {
struct Session;
}

namespace twk::lifecycle {

class RunRecord;

/// The names of a user that are to change: one without a value stays, an empty text clears it.
struct NewNames {
  std::optional<std::string> logon;
  std::optional<std::string> principal;  ///< without a suffix the account keeps its own, or gets the domain's
  std::optional<std::string> full_name;
  std::optional<std::string> first;
  std::optional<std::string> last;
  std::optional<std::string> display;

  [[nodiscard]] bool any() const { return logon || principal || full_name || first || last || display; }
};

/// A name that this kind of domain, or the forest, does not have.
struct UnfitName : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Renames the user of a node in either kind of domain, with `folders` also the shares and folders. The
/// outcome is that of `rename_user` or `rename_nt`; without a light and undone when a text is refused, which
/// the status line says. A run over many has one record for all. Raises `UnfitName`, and what the directory
/// raises.
session::RunOutcome rename_to(session::Session& session, controls::TreeNode& node, const NewNames& names,
                              bool folders, const session::RunTerms& terms, session::RunView& view,
                              RunRecord* run_record = nullptr);

}  // namespace twk::lifecycle
