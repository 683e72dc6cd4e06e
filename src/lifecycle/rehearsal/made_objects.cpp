#include "lifecycle/rehearsal/made_objects.hpp"

#include <algorithm>
#include <functional>
#include <optional>

#include "base/text.hpp"

namespace twk::lifecycle {
namespace {

constexpr std::string_view kWinnt = "WinNT://";

/// "jo" of "WinNT://TWK/jo" and "WinNT://TWK/jo,user"; none for the path of anything that is no user.
std::optional<std::string> account_of(std::string_view path) {
  path.remove_prefix(kWinnt.size());
  const std::size_t slash = path.find('/');
  if (slash == base::npos || path.find('/', slash + 1) != base::npos)
    return std::nullopt;
  const std::string_view name = path.substr(slash + 1);
  const std::size_t comma = name.find(',');
  if (comma != base::npos && !base::equals_fold(name.substr(comma + 1), "user"))
    return std::nullopt;
  return base::upper(name.substr(0, comma));
}

/// The same for each server that may be named in front: "CN=JO,OU=STAFF,DC=TWK,DC=TEST".
std::string folded(std::string_view path) {
  return base::upper(name_of_path(path));
}

std::size_t hash_of(std::string_view folded_text) {
  return std::hash<std::string_view>{}(folded_text);
}

}  // namespace

std::string_view name_of_path(std::string_view path) {
  const std::size_t scheme = path.find("://");
  if (scheme != base::npos)
    path.remove_prefix(scheme + 3);
  const std::size_t slash = path.find('/');
  if (slash < path.find('='))
    path.remove_prefix(slash + 1);
  return path;
}

MadeObjects::Objects::const_iterator MadeObjects::position(std::string_view path) const {
  if (!base::starts_with_fold(path, kWinnt))
    return objects_.find(hash_of(folded(path)));
  const auto account = account_of(path);
  const auto found = account ? accounts_.find(hash_of(*account)) : accounts_.end();
  return found == accounts_.end() ? objects_.end() : objects_.find(found->second);
}

const MadeObjects::Names* MadeObjects::find(std::string_view path) const {
  const auto found = position(path);
  return found == objects_.end() ? nullptr : &found->second;
}

bool MadeObjects::has_account(std::string_view account) const {
  return accounts_.contains(hash_of(base::upper(account)));
}

bool MadeObjects::has_principal(std::string_view name) const {
  return principals_.contains(hash_of(base::upper(name)));
}

void MadeObjects::add(std::string_view path, Names names) {
  const bool flat = base::starts_with_fold(path, kWinnt);
  const Hash hash = hash_of(flat ? base::upper(path) : folded(path));
  if (!names.account.empty())
    accounts_[hash_of(base::upper(names.account))] = hash;
  const std::string_view kind = names.object_class.text();
  if (!flat && (base::equals_fold(kind, "organizationalUnit") || base::equals_fold(kind, "group")))
    places_.push_back({std::string(kind), std::string(name_of_path(path)), names.account});
  objects_.insert_or_assign(hash, std::move(names));
}

void MadeObjects::rename_account(std::string_view path, const std::string& account) {
  const auto found = objects_.find(position(path)->first);
  accounts_.erase(hash_of(base::upper(found->second.account)));
  found->second.account = account;
  accounts_[hash_of(base::upper(account))] = found->first;
}

void MadeObjects::add_principal(std::string_view name) {
  principals_.insert(hash_of(base::upper(name)));
}

std::shared_ptr<MadeState> MadeObjects::state_of(std::string_view path) {
  std::erase_if(held_, [](const auto& one) { return one.second.expired(); });
  const Names* const names = find(path);
  for (const auto& [held, state] : held_) {
    if (held == names)
      return state.lock();
  }
  auto state = std::make_shared<MadeState>();
  held_.emplace_back(names, state);
  return state;
}

std::shared_ptr<MadeState> MadeObjects::held_account(std::string_view account) const {
  const auto found = accounts_.find(hash_of(base::upper(account)));
  const auto object = found == accounts_.end() ? objects_.end() : objects_.find(found->second);
  for (const auto& [held, state] : held_) {
    if (object != objects_.end() && held == &object->second)
      return state.lock();
  }
  return nullptr;
}

}  // namespace twk::lifecycle
