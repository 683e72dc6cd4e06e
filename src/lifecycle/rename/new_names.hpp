#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "session/current_run.hpp"
#include "session/preferences.hpp"
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

/// What the renamings of a run have in common.
struct RenameTerms {
  bool folders = false;  ///< shares and folders too
  session::RunTerms run;
  RunRecord* record = nullptr;  ///< of a run over many; null for one renaming

  // Read when first needed, and then known to the whole run.
  std::optional<session::Preferences> preferences{};
  std::optional<std::vector<std::string>> suffixes{};  ///< of the forest
};

/// Renames the user of a node in either kind of domain. The outcome is that of `rename_user` or `rename_nt`;
/// without a light and undone when a text is refused, which the status line says. Raises `UnfitName`, and
/// what the directory raises.
session::RunOutcome rename_to(session::Session& session, controls::TreeNode& node, const NewNames& names,
                              RenameTerms& terms, session::RunView& view);

}  // namespace twk::lifecycle
