#pragma once

#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "controls/shared_text.hpp"
#include "platform/adsi.hpp"
#include "platform/directory.hpp"

namespace twk::lifecycle {

/// "CN=Jo,OU=Staff,DC=twk,DC=test" of a path of the LDAP provider, whatever server is named in front.
std::string_view name_of_path(std::string_view path);

/// A value that was put on an object, by the control codes of `PutEx`.
struct Staging {
  int control = 2;
  std::string attribute;
  platform::Value value;
};

/// What is known of a new object only while somebody holds it: later users ask for its names alone.
struct MadeState {
  std::vector<Staging> written;
  std::set<std::string> groups;  ///< the paths of those that it joined, in upper case
  std::int32_t flags = platform::kFlagNormalAccount;
};

/// The objects that a rehearsal would have made in a directory: their names for as long as it lasts, so that
/// a file of 100,000 users needs little memory.
class MadeObjects {
 public:
  struct Names {
    controls::SharedText object_class;
    std::string account;  ///< empty for an object that is no account
  };
  /// A unit or a group, of which a run makes few: they are found by searches, too.
  struct Place {
    std::string object_class;
    std::string dn;
    std::string account;
  };

  /// By the path of either provider; null for one that was not made.
  [[nodiscard]] const Names* find(std::string_view path) const;
  /// By its account name.
  [[nodiscard]] bool has_account(std::string_view account) const;
  /// By its principal name.
  [[nodiscard]] bool has_principal(std::string_view name) const;

  /// Units and groups in the order of their making.
  [[nodiscard]] const std::vector<Place>& places() const { return places_; }

  void add(std::string_view path, Names names);
  void rename_account(std::string_view path, const std::string& account);
  void add_principal(std::string_view name);

  /// Of an object that was made; one that nobody holds has forgotten its values.
  [[nodiscard]] std::shared_ptr<MadeState> state_of(std::string_view path);
  /// Of an account; null when nobody holds it.
  [[nodiscard]] std::shared_ptr<MadeState> held_account(std::string_view account) const;

 private:
  /// Texts by their 64-bit hashes, which two of a million share once in forty million rehearsals.
  using Hash = std::size_t;
  using Objects = std::unordered_map<Hash, Names>;

  [[nodiscard]] Objects::const_iterator position(std::string_view path) const;

  Objects objects_;                          ///< by their folded paths
  std::unordered_map<Hash, Hash> accounts_;  ///< the paths by the folded names
  std::unordered_set<Hash> principals_;
  std::vector<Place> places_;
  std::vector<std::pair<const Names*, std::weak_ptr<MadeState>>> held_;
};

/// A directory that reports changes and remembers what would have been made.
class ReportingDirectory : public platform::DirectoryService {
 public:
  virtual void tell(const std::string& step) const = 0;
  [[nodiscard]] virtual MadeObjects& made() = 0;
  /// True for an object that exists or would have been made.
  [[nodiscard]] virtual bool has(std::string_view path) = 0;
};

}  // namespace twk::lifecycle
