#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "lab/ldif.hpp"

namespace twk::lab {

/// One stored entry. A reference stays good until the store is written or refreshed.
class Entry {
 public:
  virtual ~Entry() = default;
  [[nodiscard]] virtual const std::string& dn() const = 0;
  /// The values, raw bytes, in the order they were added; none when the attribute is absent. Names fold case.
  /// "member" and "memberOf" are links: they follow renames and vanish with the entry they name.
  [[nodiscard]] virtual std::vector<std::string> values(std::string_view attribute) const = 0;
  /// The first value; empty when absent.
  [[nodiscard]] virtual std::optional<std::string> value(std::string_view attribute) const = 0;
  [[nodiscard]] virtual bool has(std::string_view attribute) const = 0;
  [[nodiscard]] virtual std::vector<std::string> attribute_names() const = 0;
};

/// The directory of a lab: "domain.ldif" and the journal of changes since, held in memory with indexes by DN,
/// "samAccountName", "userPrincipalName", "objectSid", "primaryGroupID" and parent. Structure is checked here
/// (a parent must exist, a DN is used once, a parent with children is not removed, links name entries); the
/// rules of a domain are the callers'.
///
/// Several processes may have one lab open. A write takes a lock on the journal, reads what others wrote,
/// applies the change, appends it as one LDIF change record and syncs it, unless a batch is open. `refresh`
/// reads what others wrote and costs one look at the file's size when there is nothing.
class EntryStore {
 public:
  virtual ~EntryStore() = default;

  virtual void refresh() = 0;

  // Look-up, without a search through all entries.

  [[nodiscard]] virtual const Entry* find(std::string_view dn) const = 0;
  [[nodiscard]] virtual const Entry* find_account(std::string_view sam_account_name) const = 0;
  [[nodiscard]] virtual const Entry* find_principal(std::string_view user_principal_name) const = 0;
  [[nodiscard]] virtual const Entry* find_sid(std::string_view sid_bytes) const = 0;
  [[nodiscard]] virtual std::vector<const Entry*> with_primary_group(std::string_view rid) const = 0;
  /// True when `user` is a direct member of `group`, by link.
  [[nodiscard]] virtual bool is_member(const Entry& group, const Entry& user) const = 0;
  /// The direct children, in the order they were added. Gives False from `visit` to stop.
  virtual void children(const Entry& parent, const std::function<bool(const Entry&)>& visit) const = 0;
  /// The entry and all below it, parents first.
  virtual void subtree(const Entry& top, const std::function<bool(const Entry&)>& visit) const = 0;
  /// The entries without a stored parent: the domain, the configuration.
  [[nodiscard]] virtual std::vector<const Entry*> roots() const = 0;
  /// Number of entries.
  [[nodiscard]] virtual std::size_t size() const = 0;

  // Change. `guard` runs under the lock, after what others wrote is read and before the change is made: a
  // rule that must hold at that moment (a name not in use) is checked there, and what it raises leaves all as
  // it was. Each raises the directory's error numbers, and the runtime's disk numbers when the journal cannot
  // be written; the entries in memory then are as they were.

  using Guard = std::function<void()>;
  virtual void add(const std::string& dn, std::vector<LdifAttribute> attributes, const Guard& guard) = 0;
  virtual void modify(const std::string& dn, const std::vector<Modification>& changes,
                      const Guard& guard) = 0;
  virtual void remove(const std::string& dn, const Guard& guard) = 0;
  virtual void rename(const std::string& dn, const std::string& new_rdn, const std::string& new_parent,
                      const Guard& guard) = 0;

  /// Between the two, changes are written at once but synced only at the end; batches nest. `end_batch`
  /// raises when the sync fails.
  virtual void begin_batch() = 0;
  virtual void end_batch() = 0;

  /// Writes all entries as content records, parents first.
  virtual void export_to(const std::function<void(std::string_view)>& write) const = 0;
};

/// Opens the folder's "domain.ldif" and "domain.journal.ldif" (which may be missing). A journal whose last
/// record is torn is cut behind the last whole one and `warn` is told. A journal larger than 16 MiB is folded
/// in: a new "domain.ldif" is written, synced and renamed, then the journal emptied; processes that have the
/// lab open notice it. Raises runtime errors that name the file and line.
std::unique_ptr<EntryStore> open_entry_store(const std::filesystem::path& folder,
                                             const std::function<void(const std::string&)>& warn);

}  // namespace twk::lab
