#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "base/errors.hpp"
#include "lab/store/content_loader.hpp"
#include "lab/store/entry_tree.hpp"
#include "lab/store/ldif.hpp"

namespace {

using twk::lab::LdifRecord;

bool same_record(const LdifRecord& a, const LdifRecord& b) {
  return a.type == b.type && a.dn == b.dn && a.attributes == b.attributes &&
         a.modifications == b.modifications && a.new_rdn == b.new_rdn &&
         a.delete_old_rdn == b.delete_old_rdn && a.new_superior == b.new_superior;
}

/// What was read is written and must be read again as the same record.
void check_round_trip(const LdifRecord& record) {
  std::string text;
  twk::lab::append_ldif(text, record);
  std::vector<LdifRecord> again;
  twk::lab::read_ldif(text, [&](LdifRecord&& one) { again.push_back(std::move(one)); });
  if (again.size() != 1 || !same_record(again.front(), record) || again.front().end != text.size())
    std::abort();
}

using twk::lab::EntryTree;

/// False when the text ends in an error.
bool read_as_usual(EntryTree& tree, std::string_view text, std::size_t first_line) {
  twk::base::Trap trap;
  return trap([&] {
    twk::lab::read_ldif(
        text, [&](LdifRecord&& one) { tree.apply(twk::lab::prepare(tree, one, twk::lab::Origin::kFile)); },
        first_line);
  });
}

/// The same by the loader, which gets the text in pieces.
bool read_quickly(EntryTree& tree, std::string_view text, std::size_t piece) {
  twk::lab::ContentLoader loader(tree);
  std::string held;
  for (std::size_t at = 0;; at += piece) {
    const std::string_view more = text.substr(std::min(at, text.size()), piece);
    held += more;
    held.erase(0, loader.take(held, more.empty()));
    if (loader.is_stuck())
      return read_as_usual(tree, held.append(text.substr(std::min(at + piece, text.size()))), loader.line());
    if (more.empty())
      return true;
  }
}

std::string exported(const EntryTree& tree) {
  std::string text;
  twk::lab::export_tree(tree, [&](std::string_view part) { text += part; });
  return text;
}

/// What the loader makes of a file is what the usual way makes of it, up to the same error.
void check_loader(std::string_view text) {
  EntryTree usual;
  const bool reads = read_as_usual(usual, text, 1);
  for (const std::size_t piece : {text.size() + 1, std::size_t{7}}) {
    EntryTree quick;
    if (read_quickly(quick, text, piece) != reads || exported(quick) != exported(usual))
      std::abort();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  std::vector<LdifRecord> records;
  try {
    twk::lab::read_ldif(text, [&](LdifRecord&& record) { records.push_back(std::move(record)); });
  } catch (const twk::base::RuntimeError& failure) {
    if (failure.number() != twk::lab::kInvalidLdif)
      std::abort();
  }
  for (const LdifRecord& record : records)
    check_round_trip(record);
  check_loader(text);
  return 0;
}
