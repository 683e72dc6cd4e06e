#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "lab/store/entry_store.hpp"

namespace twk::lab {

/// The Exchange 5.5 servers of a lab: "exchange/<SERVER>.ldif", a directory each, opened at its first use.
/// As a file server, it does not wait for its disk after each change. It listens for LDAP on the port that
/// "ldapPort" of its "O=" entry names, 389 without one.
class ExchangeServers {
 public:
  ExchangeServers(std::filesystem::path folder, local::TurnPtr turn,
                  std::function<void(const std::string&)> warn)
      : folder_(std::move(folder)), turn_(std::move(turn)), warn_(std::move(warn)) {}

  /// The directory that listens at "EX55", "EX55:390" or "ex55.twk.test", the name in any case, with others'
  /// changes already read; none when there is none. Raises what `open_entry_store` raises.
  EntryStore* find(std::string_view server);
  /// See `EntryStore`; for all of them.
  void begin_trial();

 private:
  EntryStore* open(const std::string& name);

  std::filesystem::path folder_;
  local::TurnPtr turn_;
  std::function<void(const std::string&)> warn_;
  bool is_trial_ = false;
  std::map<std::string, std::unique_ptr<EntryStore>> open_;  ///< by the name in capitals
};

}  // namespace twk::lab
