#include "lab/exchange/exchange_servers.hpp"

#include <optional>

#include "base/errors.hpp"
#include "base/text.hpp"

namespace twk::lab {
namespace {

constexpr std::int32_t kLdapPort = 389;
constexpr std::string_view kExtension = ".ldif";
constexpr std::string_view kJournalExtension = ".journal.ldif";

/// Name and port of "EX55:390"; no port when it is not a number.
struct Endpoint {
  std::string name;
  std::optional<std::int32_t> port;
};

Endpoint take_apart(std::string_view server) {
  const std::size_t colon = server.find(':');
  Endpoint endpoint{base::upper(server.substr(0, colon)), kLdapPort};
  if (colon != base::npos)
    endpoint.port = base::to_number(server.substr(colon + 1));
  return endpoint;
}

std::int32_t port_of(const EntryStore& store) {
  for (const Entry* const root : store.roots()) {
    if (const auto port = root->value("ldapPort"))
      return base::val(*port);
  }
  return kLdapPort;
}

}  // namespace

EntryStore* ExchangeServers::open(const std::string& name) {
  if (const auto found = open_.find(name); found != open_.end())
    return found->second.get();
  std::error_code failed;
  for (const auto& file : std::filesystem::directory_iterator(folder_, failed)) {
    const std::string file_name = file.path().filename().string();
    if (!file_name.ends_with(kExtension) || file_name.ends_with(kJournalExtension))
      continue;
    const std::string stem = file_name.substr(0, file_name.size() - kExtension.size());
    if (base::upper(stem) != name)
      continue;
    auto store = open_entry_store(folder_, stem, warn_, {turn_, false});
    if (is_trial_)
      store->begin_trial();
    return open_.emplace(name, std::move(store)).first->second.get();
  }
  return nullptr;
}

EntryStore* ExchangeServers::find(std::string_view server) {
  const Endpoint endpoint = take_apart(server);
  EntryStore* store = open(endpoint.name);
  if (store == nullptr)
    store = open(endpoint.name.substr(0, endpoint.name.find('.')));
  if (store == nullptr)
    return nullptr;
  store->refresh();
  return endpoint.port == port_of(*store) ? store : nullptr;
}

void ExchangeServers::begin_trial() {
  is_trial_ = true;
  for (const auto& [name, store] : open_)
    store->begin_trial();
}

}  // namespace twk::lab
