#include "lab/store/entry_store.hpp"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <utility>

#include "ads/dn.hpp"
#include "base/errors.hpp"
#include "lab/store/content_loader.hpp"
#include "lab/store/entry_tree.hpp"
#include "lab/store/journal.hpp"
#include "lab/store/large_memory.hpp"
#include "lab/store/posix_file.hpp"
#include "platform/directory.hpp"

namespace twk::lab {
namespace {

constexpr std::uint64_t kFoldSize = 16U << 20U;
constexpr std::size_t kReadSize = 1U << 20U;

bool same_file(const std::optional<struct stat>& a, const std::optional<struct stat>& b) {
  if (!a || !b)
    return !a && !b;
  return a->st_dev == b->st_dev && a->st_ino == b->st_ino && a->st_size == b->st_size &&
         a->st_mtim.tv_sec == b->st_mtim.tv_sec && a->st_mtim.tv_nsec == b->st_mtim.tv_nsec;
}

/// A name that could not be read back is not written.
void check_name(const std::string& attribute) {
  if (is_attribute_name(attribute))
    return;
  throw base::RuntimeError(platform::ads_error::kNoSuchAttribute, "Not an attribute's name: " + attribute);
}

void check_names(const LdifRecord& record) {
  for (const LdifAttribute& attribute : record.attributes)
    check_name(attribute.name);
  for (const Modification& change : record.modifications)
    check_name(change.attribute);
}

const Entry* entry_of(const Node* node) {
  return node == nullptr ? nullptr : &node->entry;
}

std::vector<const Entry*> entries_of(const std::vector<const Node*>& nodes) {
  std::vector<const Entry*> entries;
  entries.reserve(nodes.size());
  for (const Node* const node : nodes)
    entries.push_back(&node->entry);
  return entries;
}

}  // namespace

class EntryStore::Implementation {
 public:
  Implementation(const std::filesystem::path& folder, const std::string& name,
                 const std::function<void(const std::string&)>& warn, StoreTerms terms)
      : terms_(std::move(terms)),
        ldif_path_(folder / (name + ".ldif")),
        journal_(folder / (name + ".journal.ldif"), warn),
        warn_(warn),
        tree_(std::make_unique<EntryTree>()) {}

  void open();
  void refresh();
  void write(const LdifRecord& record, const Guard& guard);
  void begin_trial() { is_trial_ = true; }
  void begin_batch() { ++batches_; }
  void begin_sync();
  void end_batch();

  [[nodiscard]] const EntryTree& tree() const { return *tree_; }
  [[nodiscard]] std::uint64_t readings() const { return readings_; }
  [[nodiscard]] std::uint64_t version() const { return readings_ + writings_; }

 private:
  class Lock;
  class Scope;

  void catch_up();
  /// After the guard.
  Change prepared(const LdifRecord& record, const Guard& guard);
  void start_journal();
  void reload(bool has_journal);
  void read_ldif_file();
  void read_new_journal();
  void read_journal();
  void replay(std::string_view text, std::size_t first_line, const std::filesystem::path& path);
  void fold();

  StoreTerms terms_;
  std::filesystem::path ldif_path_;
  Journal journal_;
  std::function<void(const std::string&)> warn_;
  std::unique_ptr<EntryTree> tree_;
  std::optional<struct stat> ldif_status_;
  std::uint64_t generation_ = 0;
  bool must_reload_ = false;   ///< reading failed midway
  bool has_changes_ = false;   ///< the entries include changes from a journal
  bool is_folded_in_ = false;  ///< the journal's changes are in the file already
  bool is_writing_ = false;
  bool is_trial_ = false;
  int batches_ = 0;
  std::uint64_t looked_at_journal_ = 0;  ///< the turn
  std::uint64_t looked_at_ldif_ = 0;
  std::uint64_t readings_ = 0;
  std::uint64_t writings_ = 0;
};

/// Sets a flag for a scope.
class EntryStore::Implementation::Scope {
 public:
  explicit Scope(bool& flag) : flag_(flag) { flag_ = true; }
  Scope(const Scope&) = delete;
  Scope& operator=(const Scope&) = delete;
  ~Scope() { flag_ = false; }

 private:
  bool& flag_;
};

/// Holds the journal's lock for a scope.
class EntryStore::Implementation::Lock {
 public:
  Lock(Journal& journal, Journal::Access access) : journal_(journal), held_(journal.lock(access)) {}
  Lock(const Lock&) = delete;
  Lock& operator=(const Lock&) = delete;
  ~Lock() { journal_.unlock(); }
  /// False when there is no journal.
  [[nodiscard]] bool is_held() const { return held_; }

 private:
  Journal& journal_;
  bool held_;
};

void EntryStore::Implementation::open() {
  const Lock lock(journal_, Journal::Access::kRead);
  reload(lock.is_held());
  if (!lock.is_held() || !journal_.is_writable() || is_folded_in_ || journal_.size() <= kFoldSize)
    return;
  base::Trap trap;
  if (trap([this] { fold(); }))
    return;
  must_reload_ = true;
  warn_(journal_.path().string() + ": the journal could not be folded in: " + trap.description());
}

void EntryStore::Implementation::refresh() {
  if (is_writing_ || is_trial_)
    return;
  if (!must_reload_ && (!terms_.turn->is_due(looked_at_journal_) || journal_.is_unchanged()))
    return;
  const Lock lock(journal_, Journal::Access::kRead);
  if (lock.is_held()) {
    catch_up();
  } else {
    reload(false);
  }
}

/// Reads what others wrote, with the lock held.
void EntryStore::Implementation::catch_up() {
  const bool has_new_ldif = (terms_.turn->is_due(looked_at_ldif_) || journal_.is_new()) &&
                            !same_file(status_of(ldif_path_), ldif_status_);
  if (must_reload_ || has_new_ldif || (journal_.is_new() && has_changes_)) {
    reload(true);
  } else if (journal_.is_new()) {
    read_new_journal();
  } else if (!is_folded_in_) {
    read_journal();
  }
}

/// Replaces a journal that is folded in by a new one, and reads what others wrote to it since.
void EntryStore::Implementation::start_journal() {
  journal_.replace(generation_);
  journal_.lock(Journal::Access::kWrite);
  catch_up();
}

void EntryStore::Implementation::reload(bool has_journal) {
  must_reload_ = true;
  ++readings_;
  is_folded_in_ = false;
  has_changes_ = false;
  tree_ = std::make_unique<EntryTree>();
  read_ldif_file();
  if (has_journal)
    read_new_journal();
  must_reload_ = false;
}

void EntryStore::Implementation::read_new_journal() {
  must_reload_ = true;
  const std::uint64_t generation = journal_.rewind(generation_);
  // A journal of the generation before was folded in, but a crash came before it could be replaced.
  is_folded_in_ = generation + 1 == generation_;
  if (is_folded_in_) {
    journal_.skip();
    must_reload_ = false;
  } else if (generation == generation_) {
    read_journal();
  } else {
    throw base::RuntimeError(base::error::kPathFileAccess,
                             journal_.path().string() + ": the journal belongs to another \"" +
                                 ldif_path_.filename().string() + "\" (generation " +
                                 std::to_string(generation) + ", not " + std::to_string(generation_) + ").");
  }
}

void EntryStore::Implementation::read_ldif_file() {
  generation_ = 0;
  ldif_status_ = status_of(ldif_path_);
  if (!ldif_status_)
    return;
  ++readings_;
  const PosixFile file(ldif_path_, O_RDONLY);
  ldif_status_ = file.status();
  // The entries take two thirds of their text, what the program makes of them up to twice as much.
  expect_memory(static_cast<std::size_t>(ldif_status_->st_size) * 5 / 2);
  ContentLoader loader(*tree_);
  std::vector<char> text(kReadSize);
  std::size_t size = 0;  // of what was read and not taken
  std::uint64_t offset = 0;
  bool is_last = false;
  while (!is_last) {
    if (size == text.size())  // a record is longer
      text.resize(2 * size);
    const std::size_t more = file.read(offset, std::span(text).subspan(size));
    is_last = more == 0;
    size += more;
    const std::string_view whole(text.data(), size);
    if (offset == 0)
      generation_ = generation_of(whole);
    offset += more;
    const std::size_t taken = loader.take(whole, is_last);
    if (loader.is_stuck())
      return replay(std::string(whole.substr(taken)) + file.read_from(offset), loader.line(), ldif_path_);
    size -= taken;
    std::copy_n(whole.data() + taken, size, text.data());
  }
}

void EntryStore::Implementation::read_journal() {
  must_reload_ = true;
  has_changes_ = true;
  const Journal::Part part = journal_.read();
  replay(part.text, part.first_line, journal_.path());
  must_reload_ = false;
}

void EntryStore::Implementation::replay(std::string_view text, std::size_t first_line,
                                        const std::filesystem::path& path) {
  if (text.empty())
    return;
  ++readings_;
  std::size_t line = 0;
  try {
    const auto apply = [&](LdifRecord&& record) {
      line = record.line;
      tree_->apply(prepare(*tree_, record, Origin::kFile));
      line = 0;
    };
    read_ldif(text, apply, first_line);
  } catch (const base::RuntimeError& failure) {
    const std::string where = line == 0 ? ": " : ": Line " + std::to_string(line) + ": ";
    throw base::RuntimeError(failure.number(), path.string() + where + failure.description());
  }
}

Change EntryStore::Implementation::prepared(const LdifRecord& record, const Guard& guard) {
  if (guard) {
    const Scope writing(is_writing_);
    guard();
  }
  return prepare(*tree_, record, Origin::kCaller);
}

void EntryStore::Implementation::write(const LdifRecord& record, const Guard& guard) {
  check_names(record);
  if (is_trial_) {
    Change change = prepared(record, guard);
    ++writings_;
    return tree_->apply(std::move(change));
  }
  const Lock lock(journal_, Journal::Access::kWrite);
  catch_up();
  while (is_folded_in_)
    start_journal();
  Change change = prepared(record, guard);
  std::string text;
  append_ldif(text, record);
  text.pop_back();
  journal_.append(text, terms_.synced && batches_ == 0);
  ++writings_;
  tree_->apply(std::move(change));
}

void EntryStore::Implementation::begin_sync() {
  if (batches_ > 0 && terms_.synced)
    journal_.begin_sync();
}

void EntryStore::Implementation::end_batch() {
  if (batches_ > 0 && --batches_ == 0 && terms_.synced)
    journal_.sync();
}

/// Writes all entries as the next generation and starts its journal. The lock on the old one is held to the
/// end.
void EntryStore::Implementation::fold() {
  std::filesystem::path temporary = ldif_path_;
  temporary += ".new";
  const PosixFile file(temporary, O_RDWR | O_CREAT | O_TRUNC);
  const std::string preamble = generation_line(generation_ + 1);
  file.write_at(0, preamble);
  std::uint64_t offset = preamble.size();
  export_tree(*tree_, [&](std::string_view text) {
    file.write_at(offset, text);
    offset += text.size();
  });
  file.sync();
  replace_file(temporary, ldif_path_);
  ++generation_;
  ldif_status_ = file.status();
  journal_.replace(generation_);
  journal_.lock(Journal::Access::kWrite);
  journal_.rewind(generation_);
}

EntryStore::EntryStore(std::unique_ptr<Implementation> implementation, std::function<void()> opened)
    : implementation_(std::move(implementation)), opened_(std::move(opened)) {}
EntryStore::~EntryStore() = default;

void EntryStore::open() {
  static_cast<void>(files());
}

EntryStore::Implementation& EntryStore::files() const {
  if (!is_open_) {
    if (fault_)
      throw base::RuntimeError(*fault_);
    is_open_ = true;  // for what is done at the opening
    try {
      implementation_->open();
      if (opened_)
        opened_();
    } catch (const base::RuntimeError& failure) {
      is_open_ = false;
      fault_ = failure;
      throw;
    }
  }
  return *implementation_;
}

void EntryStore::refresh() {
  // What opens it here is as fresh.
  if (!is_open_)
    open();
  else
    implementation_->refresh();
}

std::uint64_t EntryStore::readings() const {
  return files().readings();
}

std::uint64_t EntryStore::version() const {
  return files().version();
}

const Entry* EntryStore::find(std::string_view dn) const {
  return entry_of(files().tree().find(dn));
}

const Entry* EntryStore::find_account(std::string_view sam_account_name) const {
  return entry_of(files().tree().find_account(sam_account_name));
}

const Entry* EntryStore::find_principal(std::string_view user_principal_name) const {
  return entry_of(files().tree().find_principal(user_principal_name));
}

const Entry* EntryStore::find_sid(std::string_view sid_bytes) const {
  return entry_of(files().tree().find_sid(sid_bytes));
}

std::vector<const Entry*> EntryStore::with_primary_group(std::string_view rid) const {
  return in_order(entries_of(files().tree().with_primary_group(rid)));
}

std::vector<const Entry*> EntryStore::with_name_beginning(std::string_view piece) const {
  return in_order(entries_of(files().tree().with_name_beginning(piece)));
}

std::vector<const Entry*> EntryStore::in_order(std::vector<const Entry*> entries) {
  std::ranges::sort(entries, {}, [](const Entry* entry) { return entry->node_->sequence; });
  entries.erase(std::unique(entries.begin(), entries.end()), entries.end());
  return entries;
}

bool EntryStore::is_member(const Entry& group, const Entry& user) const {
  return files().tree().find_link(Side::kGroup, *group.node_, *user.node_) != nullptr;
}

void EntryStore::children(const Entry& parent, const std::function<bool(const Entry&)>& visit) const {
  const Node* child = parent.node_->first_child;
  while (child != nullptr && visit(child->entry))
    child = child->next;
}

void EntryStore::children(std::string_view parent_dn, const std::function<bool(const Entry&)>& visit) const {
  if (const Entry* const parent = find(parent_dn))
    return children(*parent, visit);
  const std::string wanted = ads::normalize_dn(parent_dn);
  for (const Entry* const orphan : roots()) {
    if (ads::normalize_dn(ads::parent_dn(orphan->dn())) == wanted && !visit(*orphan))
      return;
  }
}

void EntryStore::subtree(const Entry& top, const std::function<bool(const Entry&)>& visit) const {
  const Node* node = top.node_;
  while (node != nullptr && visit(node->entry))
    node = next_below(*node, *top.node_);
}

std::vector<const Entry*> EntryStore::roots() const {
  std::vector<const Entry*> entries;
  for (const Node* node = files().tree().top().first_child; node != nullptr; node = node->next) {
    entries.push_back(&node->entry);
  }
  return entries;
}

std::size_t EntryStore::size() const {
  return files().tree().size();
}

void EntryStore::add(const std::string& dn, std::vector<LdifAttribute> attributes, const Guard& guard) {
  LdifRecord record;
  record.type = ChangeType::kAdd;
  record.dn = dn;
  record.attributes = std::move(attributes);
  files().write(record, guard);
}

void EntryStore::modify(const std::string& dn, const std::vector<Modification>& changes, const Guard& guard) {
  LdifRecord record;
  record.type = ChangeType::kModify;
  record.dn = dn;
  record.modifications = changes;
  files().write(record, guard);
}

void EntryStore::remove(const std::string& dn, const Guard& guard) {
  LdifRecord record;
  record.type = ChangeType::kDelete;
  record.dn = dn;
  files().write(record, guard);
}

void EntryStore::rename(const std::string& dn, const std::string& new_rdn, const std::string& new_parent,
                        const Guard& guard) {
  LdifRecord record;
  record.type = ChangeType::kModRdn;
  record.dn = dn;
  record.new_rdn = new_rdn;
  if (!new_parent.empty())
    record.new_superior = new_parent;
  files().write(record, guard);
}

void EntryStore::begin_trial() {
  implementation_->begin_trial();
}
void EntryStore::begin_batch() {
  files().begin_batch();
}
void EntryStore::begin_sync() {
  files().begin_sync();
}
void EntryStore::end_batch() {
  files().end_batch();
}

void EntryStore::export_to(const std::function<void(std::string_view)>& write) const {
  export_tree(files().tree(), write);
}

std::unique_ptr<EntryStore> open_entry_store(const std::filesystem::path& folder, const std::string& name,
                                             const std::function<void(const std::string&)>& warn,
                                             const StoreTerms& terms) {
  auto store = entry_store_opened_at_use(folder, name, warn, terms, {});
  store->open();
  return store;
}

std::unique_ptr<EntryStore> entry_store_opened_at_use(const std::filesystem::path& folder,
                                                      const std::string& name,
                                                      const std::function<void(const std::string&)>& warn,
                                                      const StoreTerms& terms, std::function<void()> opened) {
  if (!status_of(folder))
    raise_file_error(ENOENT, folder);
  return std::make_unique<EntryStore>(std::make_unique<EntryStore::Implementation>(folder, name, warn, terms),
                                      std::move(opened));
}

}  // namespace twk::lab
