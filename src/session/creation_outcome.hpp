#pragma once

#include <string>
#include <vector>

namespace twk::session {

/// How a creation ended. `light` is empty for one that was refused before anything was done.
struct CreationOutcome {
  std::string user;
  std::string light;
  std::string message;
  std::vector<std::string> warnings;  ///< why it is not GREEN, each reason for itself
  std::string first_name;             ///< the names as they were used
  std::string middle_name;
  std::string last_name;
  std::string summary_row;  ///< of an import's summary; empty for an account that was not made
  bool name_taken = false;  ///< refused because the account name is in use
  bool is_known = false;    ///< not made because the person has an account
  bool is_unsure = false;   ///< the server was lost when it was asked for the account, and may have made it
};

}  // namespace twk::session
