#include "lab/store/entry_tree.hpp"

namespace twk::lab {
namespace {

constexpr std::size_t kWriteSize = 1U << 20U;

LdifRecord content_record(const Node& node) {
  LdifRecord record;
  record.dn = node.dn;
  node.pool->each(node.block, [&](AttributeId id, std::string_view value) {
    const std::string_view name = node.pool->name(id);
    if (record.attributes.empty() || record.attributes.back().name != name) {
      record.attributes.push_back({std::string(name), {}});
    }
    record.attributes.back().values.emplace_back(value);
    return true;
  });
  for (const Side side : {Side::kGroup, Side::kMember}) {
    LdifAttribute names{std::string(link_attribute(side)), {}};
    for (const Link* link = node.first_link[at(side)]; link != nullptr; link = link->next[at(side)]) {
      // A membership is written once, at its group.
      if (side == Side::kGroup || !link->is_whole())
        names.values.push_back(link->dn(other(side)));
    }
    if (!names.values.empty())
      record.attributes.push_back(std::move(names));
  }
  return record;
}

}  // namespace

void export_tree(const EntryTree& tree, const std::function<void(std::string_view)>& write) {
  std::string text;
  for (const Node* node = next_below(tree.top(), tree.top()); node != nullptr;
       node = next_below(*node, tree.top())) {
    append_ldif(text, content_record(*node));
    if (text.size() < kWriteSize)
      continue;
    write(text);
    text.clear();
  }
  if (!text.empty())
    write(text);
}

}  // namespace twk::lab
