#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/errors.hpp"
#include "lab/store/entry.hpp"
#include "lab/store/ldif.hpp"
#include "local/turn.hpp"

namespace twk::lab {

struct Node;

/// How a store deals with its disk and with other processes.
struct StoreTerms {
  local::TurnPtr turn = std::make_shared<local::Turn>();  ///< in which `refresh` looks once
  bool synced = true;                                     ///< writes are safe against a power cut
};

/// A directory of a lab: "<name>.ldif" and "<name>.journal.ldif", the journal of changes since, held in
/// memory with indexes by DN, "samAccountName", "userPrincipalName", "objectSid", "primaryGroupID" and
/// parent. Structure is checked here (a parent must exist, a DN is used once, a parent with children is not
/// removed, links name entries); the rules of a domain are up to the callers. An entry needs no parent when
/// the store is empty, or when its name has one part or begins with "DC=".
///
/// Several processes may have one lab open. A write takes a lock on the journal, reads what others wrote,
/// applies the change, appends it as one LDIF change record and syncs it, unless a batch is open. `refresh`
/// reads what others wrote and costs one check of the file's size when there is nothing new.
class EntryStore {
 public:
  class Implementation;

  /// The files are read at the first use, after which `opened` is called. A failure of that is raised then,
  /// and by every use that follows.
  EntryStore(std::unique_ptr<Implementation> implementation, std::function<void()> opened);
  EntryStore(const EntryStore&) = delete;
  EntryStore& operator=(const EntryStore&) = delete;
  ~EntryStore();

  /// Reads the files unless that is done.
  void open();
  void refresh();
  /// How often changes were read from the files: an unchanged number means that no one else's came in
  /// between.
  [[nodiscard]] std::uint64_t readings() const;

  /// A number that is another one after each change of the entries, by this session or others.
  [[nodiscard]] std::uint64_t version() const;

  // Look-up, without a search through all entries. `find` raises kInvalidDn for text that is no name; of
  // several entries with the same key, any is found.

  [[nodiscard]] const Entry* find(std::string_view dn) const;
  [[nodiscard]] const Entry* find_account(std::string_view sam_account_name) const;
  [[nodiscard]] const Entry* find_principal(std::string_view user_principal_name) const;
  [[nodiscard]] const Entry* find_sid(std::string_view sid_bytes) const;
  [[nodiscard]] std::vector<const Entry*> with_primary_group(std::string_view rid) const;
  /// Those whose common name may begin so.
  [[nodiscard]] std::vector<const Entry*> with_name_beginning(std::string_view piece) const;
  /// Each of the entries once, in the order they were added.
  static std::vector<const Entry*> in_order(std::vector<const Entry*> entries);
  /// True when `user` is a direct member of `group`, by link.
  [[nodiscard]] bool is_member(const Entry& group, const Entry& user) const;
  /// The direct children, in the order they were added. `visit` returns False to stop.
  void children(const Entry& parent, const std::function<bool(const Entry&)>& visit) const;
  /// The same for a name, even one that is not stored itself while entries below it are.
  void children(std::string_view parent_dn, const std::function<bool(const Entry&)>& visit) const;
  /// The entry and all below it, parents first.
  void subtree(const Entry& top, const std::function<bool(const Entry&)>& visit) const;
  /// The entries without a stored parent: the domain, the configuration.
  [[nodiscard]] std::vector<const Entry*> roots() const;
  /// Number of entries.
  [[nodiscard]] std::size_t size() const;

  // Change. `guard` runs under the lock, after what others wrote is read and before the change is made: a
  // rule that must hold at that moment (a name not in use) is checked there, and when it raises, nothing is
  // changed. Each raises the directory's error numbers, and the runtime's disk numbers when the journal
  // cannot be written; the entries in memory then are as they were.

  using Guard = std::function<void()>;
  void add(const std::string& dn, std::vector<LdifAttribute> attributes, const Guard& guard);
  void modify(const std::string& dn, const std::vector<Modification>& changes, const Guard& guard);
  void remove(const std::string& dn, const Guard& guard);
  /// Moves the entry, and all below it. An empty `new_parent` leaves it where it is.
  void rename(const std::string& dn, const std::string& new_rdn, const std::string& new_parent,
              const Guard& guard);

  /// Between the two, changes are written at once but synced only at the end; batches nest. `begin_sync`
  /// starts the sync of what a batch has written so far, `end_batch` waits for it and raises when it fails.
  void begin_batch();
  void begin_sync();
  void end_batch();

  /// From here on changes stay in memory and end with this session, which sees no changes by others.
  void begin_trial();

  /// Writes all entries as content records, parents first.
  void export_to(const std::function<void(std::string_view)>& write) const;

 private:
  [[nodiscard]] Implementation& files() const;

  std::unique_ptr<Implementation> implementation_;
  std::function<void()> opened_;
  mutable bool is_open_ = false;
  mutable std::optional<base::RuntimeError> fault_;
};

/// Opens the folder's "<name>.ldif" and "<name>.journal.ldif" (which may be missing). A journal whose last
/// record is torn is cut off after the last whole one, and `warn` gets a message. A journal larger than 16
/// MiB is folded in: a new "<name>.ldif" is written, synced and renamed, then the journal emptied; processes
/// that have the lab open notice it. A read-only folder opens for reading, and a write raises permission
/// denied. Raises runtime errors that name the file and line, and path not found for a folder that does not
/// exist.
std::unique_ptr<EntryStore> open_entry_store(const std::filesystem::path& folder, const std::string& name,
                                             const std::function<void(const std::string&)>& warn,
                                             const StoreTerms& terms = {});
/// The same, but the files are opened and read at the first use, which raises what is wrong with them;
/// `opened`, which may be empty, is called after that.
std::unique_ptr<EntryStore> entry_store_opened_at_use(const std::filesystem::path& folder,
                                                      const std::string& name,
                                                      const std::function<void(const std::string&)>& warn,
                                                      const StoreTerms& terms, std::function<void()> opened);

}  // namespace twk::lab
