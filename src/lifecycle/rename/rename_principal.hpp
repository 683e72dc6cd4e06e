#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace twk::session {
struct Session;
}

/// Principal names, "jo@twk.test": what precedes the suffix, and the suffixes of a forest.
namespace twk::lifecycle {

struct PrincipalName {
  std::string prefix;
  std::string suffix;  ///< with its "@"; empty when the name has none
};

PrincipalName split_principal(std::string_view name);

/// The suffixes of the forest with their "@": the session's domain, the other domains, then those that
/// administrators added. Only the domain when the forest's configuration cannot be read.
std::vector<std::string> principal_suffixes(session::Session& session);
/// The suffix in the list that equals this one in any case; empty when there is none.
std::string find_suffix(const std::vector<std::string>& suffixes, std::string_view suffix);

}  // namespace twk::lifecycle
