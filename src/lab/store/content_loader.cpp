#include "lab/store/content_loader.hpp"

#include <algorithm>
#include <functional>
#include <utility>

#include "ads/dn.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "lab/store/base64.hpp"
#include "lab/store/dn_hash.hpp"

namespace twk::lab {
namespace {

constexpr std::string_view kVersion = "version: 1";
constexpr std::string_view kMemberLine = "member:";
/// More values of one attribute are compared in the usual way.
constexpr std::size_t kFewValues = 16;

std::string_view without_end(std::string_view line) {
  if (line.ends_with('\n'))
    line.remove_suffix(1);
  if (line.ends_with('\r'))
    line.remove_suffix(1);
  return line;
}

}  // namespace

ContentLoader::ContentLoader(EntryTree& tree)
    : tree_(tree),
      member_(tree.pool().intern(link_attribute(Side::kGroup))),
      member_of_(tree.pool().intern(link_attribute(Side::kMember))),
      own_name_(tree.pool().intern(kDistinguishedName)) {}

std::size_t ContentLoader::take(std::string_view text, bool is_last) {
  forget_lines();  // What they point to is gone.
  Text rest{text, is_last};
  std::size_t taken = 0;
  if (records_ == 0 && text.starts_with(base::kByteOrderMark))
    rest.at = base::kByteOrderMark.size();
  for (;;) {
    const Found found = read_record(rest);
    if (found == Found::kOther ||
        (found == Found::kRecord && !add(text.substr(record_at_, rest.at - record_at_)))) {
      stuck_ = true;
      return taken;
    }
    if (found == Found::kNothing)
      return taken;
    taken = rest.at;
    line_ += std::exchange(rest.lines, 0);
  }
}

/// The next line, its continuations joined. Nothing when its end is not there yet.
ContentLoader::Found ContentLoader::read_line(Text& text, std::string_view& raw, std::string_view& line) {
  std::size_t end = text.all.find('\n', text.at);
  if (end == base::npos && (!text.is_last || text.at == text.all.size()))
    return Found::kNothing;
  end = std::min(end, text.all.size() - 1) + 1;
  if (end == text.all.size() && !text.is_last)
    return Found::kNothing;
  ++text.lines;
  line = without_end(text.all.substr(text.at, end - text.at));
  if (line.starts_with(' '))
    return Found::kOther;
  if (!line.empty() && end < text.all.size() && text.all[end] == ' ') {
    joined_.assign(line);
    while (end < text.all.size() && text.all[end] == ' ') {
      const std::size_t from = end + 1;
      end = text.all.find('\n', from);
      if (end == base::npos && !text.is_last)
        return Found::kNothing;
      end = std::min(end, text.all.size() - 1) + 1;
      ++text.lines;
      joined_ += without_end(text.all.substr(from, end - from));
    }
    if (end == text.all.size() && !text.is_last)
      return Found::kNothing;
    line = joined_;
  }
  raw = text.all.substr(text.at, end - text.at);
  text.at = end;
  return Found::kRecord;
}

/// Leaves the record in `dn_` and `lines_`.
ContentLoader::Found ContentLoader::read_record(Text& text) {
  count_ = 0;
  std::swap(block_, previous_block_);
  block_.clear();
  member_names_.clear();
  member_ends_.clear();
  std::string_view raw;
  std::string_view line;
  bool may_be_version = records_ == 0;
  for (;;) {
    record_at_ = text.at;
    if (const Found found = read_line(text, raw, line); found != Found::kRecord)
      return found;
    if (line.empty() || line.starts_with('#'))
      continue;
    if (!may_be_version || line != kVersion)
      break;
    may_be_version = false;
  }
  std::string_view dn;
  if (!line.starts_with("dn:") || !decode(line.substr(3), dn))
    return Found::kOther;
  dn_.assign(dn);
  for (;;) {
    if (take_repeated(text))
      continue;
    const std::size_t lines = text.lines;
    const Found found = read_line(text, raw, line);
    if (found == Found::kOther || (found == Found::kNothing && !text.is_last))
      return found;
    if (found == Found::kNothing || line.empty()) {
      lines_.resize(count_);
      return Found::kRecord;
    }
    if (!read_value(raw, line, text.lines - lines))
      return Found::kOther;
  }
}

/// Takes the next line when the one at this place was the same in the record before.
bool ContentLoader::take_repeated(Text& text) {
  if (count_ >= lines_.size())
    return false;
  Line& line = lines_[count_];
  const std::size_t size = line.raw.size();
  std::string_view rest = text.all;
  rest.remove_prefix(text.at);
  if (size == 0 || rest.size() <= size || rest[size] == ' ' || !rest.starts_with(line.raw))
    return false;
  line.raw = {rest.data(), size};
  line.is_repeated = true;
  const std::size_t packed_at = block_.size();
  block_.append(previous_block_, line.packed_at, line.packed_size);
  line.packed_at = static_cast<std::uint32_t>(packed_at);
  text.at += size;
  text.lines += line.rows;
  ++count_;
  return true;
}

bool ContentLoader::repeats_name(std::string_view line) const {
  if (count_ >= lines_.size())
    return false;
  const std::string_view name = tree_.pool().name(lines_[count_].id);
  return line.size() > name.size() && line[name.size()] == ':' && line.starts_with(name);
}

bool ContentLoader::read_value(std::string_view raw, std::string_view line, std::size_t rows) {
  Line next;
  next.raw = raw;
  next.rows = static_cast<std::uint32_t>(rows);
  std::size_t colon = 0;
  if (line.starts_with(kMemberLine)) {
    next.id = member_;
    colon = kMemberLine.size() - 1;
  } else if (repeats_name(line)) {
    next.id = lines_[count_].id;
    colon = tree_.pool().name(next.id).size();
  } else {
    colon = line.find(':');
    if (colon == base::npos || !is_attribute_name(line.substr(0, colon)))
      return false;
    next.id = tree_.pool().intern(line.substr(0, colon));
  }
  std::string_view value;
  if (!decode(line.substr(colon + 1), value))
    return false;
  if (next.id == member_) {
    take_member(value);
    return true;
  }
  next.is_plain =
      line.data() == raw.data() && value.data() >= raw.data() && value.data() <= raw.data() + raw.size();
  if (next.is_plain) {
    next.value_at = static_cast<std::uint32_t>(value.data() - raw.data());
    next.value_size = static_cast<std::uint32_t>(value.size());
  }
  next.packed_at = static_cast<std::uint32_t>(block_.size());
  if (next.id != member_of_)
    tree_.pool().append(block_, next.id, value);
  next.packed_size = static_cast<std::uint32_t>(block_.size()) - next.packed_at;
  if (count_ == lines_.size())
    lines_.emplace_back();
  lines_[count_++] = next;
  return true;
}

void ContentLoader::take_member(std::string_view name) {
  member_names_ += name;
  member_ends_.push_back(member_names_.size());
}

std::vector<std::string_view> ContentLoader::members() const {
  std::vector<std::string_view> names;
  names.reserve(member_ends_.size());
  std::size_t begin = 0;
  for (const std::size_t end : member_ends_) {
    names.push_back(std::string_view(member_names_).substr(begin, end - begin));
    begin = end;
  }
  return names;
}

/// What follows "name:".
bool ContentLoader::decode(std::string_view rest, std::string_view& value) {
  const bool encoded = rest.starts_with(':');
  if (rest.starts_with('<'))
    return false;
  if (encoded)
    rest.remove_prefix(1);
  rest.remove_prefix(std::min(rest.find_first_not_of(' '), rest.size()));
  value = rest;
  if (!encoded)
    return true;
  bytes_.clear();
  value = bytes_;
  const bool reads = append_decoded(bytes_, rest);
  value = bytes_;
  return reads;
}

/// Puts the record in; false when the usual way is to say why not.
bool ContentLoader::add(std::string_view record) {
  ++records_;
  if (has_plain_attributes() && add_plain())
    return true;
  forget_lines();
  return add_as_usual(record);
}

/// Lets no line repeat one that was read.
void ContentLoader::forget_lines() {
  for (Line& line : lines_)
    line.raw = {};
}

bool ContentLoader::is_comparable(const Line& line) {
  return line.is_plain && base::is_ascii(line.value());
}

/// True when the lines of an attribute follow each other with different values, and none is a link of a
/// member or has options.
bool ContentLoader::has_plain_attributes() {
  std::size_t run = 0;
  bool are_repeated = false;  // the lines of the run so far
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    const Line& line = lines_[i];
    if (!line.is_repeated &&
        (line.id == member_of_ || line.id == own_name_ || tree_.pool().has_options(line.id)))
      return false;
    if (line.id >= seen_.size())
      seen_.resize(line.id + 1);
    if (i > 0 && line.id == lines_[i - 1].id) {
      // Those of the record before were compared when it was added.
      if (are_repeated && line.is_repeated)
        continue;
      are_repeated = false;
      if (i - run > kFewValues || !is_comparable(line) || !is_comparable(lines_[run]))
        return false;
      for (std::size_t k = run; k < i; ++k) {
        if (is_same_attribute(lines_[k].value(), line.value()))
          return false;
      }
      continue;
    }
    run = i;
    are_repeated = line.is_repeated;
    if (std::exchange(seen_[line.id], records_) == records_)
      return false;
  }
  return true;
}

Node* ContentLoader::find_parent(std::string_view name) {
  Parent& known = parents_.at(std::hash<std::string_view>{}(name) % parents_.size());
  if (known.node == nullptr || known.name != name)
    known = {std::string(name), tree_.find(name)};
  return known.node;
}

bool ContentLoader::add_plain() {
  const std::string_view dn = dn_;
  const std::size_t comma = dn.find(',');
  const std::string_view rdn = dn.substr(0, comma);
  const bool is_plain = comma != base::npos && comma + 1 < dn.size() && is_simple_name(rdn) &&
                        rdn.find('=') != base::npos && !rdn.starts_with('=') && !rdn.starts_with(' ') &&
                        !rdn.ends_with(' ') && dn[comma + 1] != ' ';
  if (!is_plain)
    return false;
  try {
    Node* const parent = find_parent(dn.substr(comma + 1));
    return parent != nullptr && tree_.add_packed(*parent, rdn, block_, members());
  } catch (const base::RuntimeError&) {  // of a name: the usual way says it
    return false;
  }
}

bool ContentLoader::add_as_usual(std::string_view record) {
  try {
    read_ldif(record, [&](LdifRecord&& read) { tree_.apply(prepare(tree_, read, Origin::kFile)); });
    return true;
  } catch (const base::RuntimeError&) {
    return false;
  }
}

}  // namespace twk::lab
