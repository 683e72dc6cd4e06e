#pragma once

#include <array>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "lab/store/dn_hash.hpp"
#include "lab/store/entry_node.hpp"
#include "lab/store/hash_table.hpp"
#include "lab/store/ldif.hpp"
#include "lab/store/packed_attributes.hpp"

namespace twk::lab {

/// One step on the memberships of an entry at `side`.
struct LinkStep {
  enum class Kind { kAdd, kRemove, kClear };
  Kind kind = Kind::kAdd;
  Side side = Side::kGroup;
  Node* end = nullptr;  ///< the other end, when it is stored
  std::string text;     ///< its name, when it is not
};

/// A change that was checked: `EntryTree::apply` will not refuse it.
struct Change {
  ChangeType type = ChangeType::kAdd;
  std::unique_ptr<Node> fresh;  ///< of add
  Node* node = nullptr;         ///< of the others
  Node* parent = nullptr;       ///< of add and rename, null for an entry without a stored parent
  std::string dn;               ///< of rename: the new name
  std::string block;            ///< of modify and rename: the attributes afterwards
  std::vector<LinkStep> links;  ///< of add and modify
};

/// The entries in memory with their indexes. Names that reach it may be spelled in any way; a name that
/// breaks the syntax raises kInvalidDn.
class EntryTree {
 public:
  EntryTree();
  EntryTree(const EntryTree&) = delete;
  EntryTree& operator=(const EntryTree&) = delete;

  [[nodiscard]] Node* find(std::string_view dn) const;
  /// Calls `visit(i, node)` for each of several names in their order, null for one that nothing has or that
  /// is no name. Quicker than one by one: the memory of the next ones is fetched meanwhile.
  void find_each(std::span<const std::string_view> names,
                 const std::function<void(std::size_t i, Node* node)>& visit) const;
  /// Of several with equal keys, any is found.
  [[nodiscard]] Node* find_account(std::string_view name) const;
  [[nodiscard]] Node* find_principal(std::string_view name) const;
  [[nodiscard]] Node* find_sid(std::string_view bytes) const;
  /// In no order; of the second, some of whose common name may begin so, RFC 4519, one may come twice.
  [[nodiscard]] std::vector<const Node*> with_primary_group(std::string_view rid) const;
  [[nodiscard]] std::vector<const Node*> with_name_beginning(std::string_view piece) const;
  /// The membership between two stored entries, or null; `end` is the one opposite `side`.
  [[nodiscard]] Link* find_link(Side side, const Node& node, const Node& end) const;
  /// The membership of `node` whose other end is not stored and has that name, or null.
  [[nodiscard]] Link* find_text_link(Side side, const Node& node, std::string_view text) const;
  /// The nodes without a stored parent are the children of `top`.
  [[nodiscard]] const Node& top() const { return top_; }
  [[nodiscard]] std::size_t size() const { return nodes_.size(); }
  [[nodiscard]] AttributePool& pool() { return pool_; }

  void apply(Change change);
  /// Adds an entry whose attributes are packed already, a group of `members`, which are as a file may give
  /// them. False when its name is in use.
  bool add_packed(Node& parent, std::string_view rdn, std::string_view block,
                  std::span<const std::string_view> members);

 private:
  void add(Change& change);
  void remove(Node& node);
  void rename(Node& node, Change& change);
  void apply_links(Node& node, std::vector<LinkStep>& steps);

  void hang_in(Node& node, Node& parent);
  void take_out(Node& node);
  void settle(Node& node);
  void adopt_orphans(Node& node);
  void resolve_links(Node& node);
  void put_in(std::unique_ptr<Node> node, Node& parent, std::uint64_t hash);
  void index_keys(Node& node);
  void forget_keys(Node& node);
  [[nodiscard]] std::string_view first_value(const Node& node, AttributeId id) const;

  void add_link(Side side, Node& node, LinkStep& step);
  void enlist(Link& link, Side side);
  void delist(Link& link, Side side);
  void destroy(Link& link);

  AttributePool pool_;
  /// The entries by the values of an attribute: by a number that a value has. The first question, often the
  /// only one of a command, looks through them; the next one builds the index, from when on changes are kept
  /// beside what was sorted then.
  struct ValueIndex {
    using Key = std::pair<std::uint64_t, std::uint64_t>;
    AttributeId id;
    std::uint64_t (*number)(std::string_view value);
    bool is_asked = false;
    bool is_built = false;
    std::vector<std::pair<Key, Node*>> sorted = {};  ///< without a node where it was removed
    std::map<Key, Node*> later = {};
  };
  [[nodiscard]] std::array<ValueIndex*, 5> indexes() {
    return {&by_account_, &by_principal_, &by_sid_, &by_primary_group_, &by_name_beginning_};
  }
  void build(ValueIndex& index) const;
  /// Calls `visit(key)` for each key that an entry has in an index.
  template <typename Visit>
  void each_key(const ValueIndex& index, const Node& node, Visit visit) const;
  /// Calls `visit(node)` for the entries with a key from one number to another, until it returns true; that
  /// entry, or null.
  template <typename Visit>
  Node* look_through(const ValueIndex& index, std::uint64_t from, std::uint64_t to, Visit visit) const;
  template <typename Visit>
  Node* find_keys(ValueIndex& index, std::uint64_t from, std::uint64_t to, Visit visit) const;
  /// The same for those with the number of a value; `visit` gets the first value, too.
  template <typename Visit>
  Node* find_value(ValueIndex& index, std::string_view value, Visit visit) const;

  std::vector<std::unique_ptr<Node>> nodes_;
  std::uint64_t last_sequence_ = 0;
  Node top_;
  std::map<std::pair<std::uint64_t, std::uint64_t>, Node*>
      orphans_;  ///< by hash of the missing parent and sequence

  std::deque<Link> link_store_;
  std::vector<Link*> free_links_;

  HashTable<Node, &Node::by_dn> by_dn_;
  mutable DnHasher hasher_;
  mutable ValueIndex by_account_;
  mutable ValueIndex by_principal_;
  mutable ValueIndex by_sid_;
  mutable ValueIndex by_primary_group_;
  mutable ValueIndex by_name_beginning_;
  HashTable<Link, &Link::hook> links_;       ///< both ends stored, by both
  HashTable<Link, &Link::hook> text_links_;  ///< one end stored, by the other's name
};

/// The node after `node` among `top` and all below it, parents first; null after the last.
const Node* next_below(const Node& node, const Node& top);

/// Writes all entries as LDIF content records, parents first and children in their order, in pieces of about
/// 1 MiB.
void export_tree(const EntryTree& tree, const std::function<void(std::string_view)>& write);

/// Who asks for a change. A caller's is checked in full: a parent must be stored, a link must name an
/// entry, a value is added once. A file may contain children before parents, links to entries that do not
/// exist, and repeated values.
enum class Origin { kCaller, kFile };

/// Checks a change against the entries as they are. Raises the directory's error numbers.
Change prepare(EntryTree& tree, const LdifRecord& record, Origin origin);

}  // namespace twk::lab
