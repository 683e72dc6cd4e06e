#include "lab/store/ldif.hpp"

#include <algorithm>
#include <unordered_map>
#include <utility>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "lab/store/base64.hpp"

namespace twk::lab {
namespace {

constexpr std::size_t kLineWidth = 76;
constexpr std::size_t kFewAttributes = 32;

[[noreturn]] void fail(std::size_t line, const std::string& what) {
  throw base::RuntimeError(kInvalidLdif,
                           "Line " + base::to_text(static_cast<std::int64_t>(line)) + ": " + what);
}

/// Returns the lines with continuations joined and comments left out.
class LineReader {
 public:
  LineReader(std::string_view text, std::size_t first_line) : text_(text), next_number_(first_line) {
    if (first_line == 1 && text_.starts_with(base::kByteOrderMark))
      at_ = base::kByteOrderMark.size();
  }

  /// Goes on to the next line; false at the end of the text.
  bool next() {
    while (at_ < text_.size()) {
      number_ = next_number_;
      line_ = physical_line();
      if (line_.starts_with(' '))
        fail(number_, "A continuation without a line to continue.");
      const bool comment = line_.starts_with('#');
      if (!line_.empty())
        join_continuations(comment);
      if (!comment)
        return true;
    }
    line_ = {};
    return false;
  }

  /// Valid until `next`.
  [[nodiscard]] std::string_view line() const { return line_; }
  [[nodiscard]] std::size_t number() const { return number_; }
  /// Byte position after the line.
  [[nodiscard]] std::size_t position() const { return at_; }

 private:
  std::string_view physical_line() {
    const std::size_t end = std::min(text_.find('\n', at_), text_.size());
    std::string_view line = text_.substr(at_, end - at_);
    if (line.ends_with('\r'))
      line.remove_suffix(1);
    at_ = std::min(end + 1, text_.size());
    ++next_number_;
    return line;
  }

  void join_continuations(bool comment) {
    if (at_ >= text_.size() || text_[at_] != ' ')
      return;
    joined_.assign(line_);
    while (at_ < text_.size() && text_[at_] == ' ') {
      const std::string_view more = physical_line().substr(1);
      if (!comment)
        joined_ += more;
    }
    if (!comment)
      line_ = joined_;
  }

  std::string_view text_;
  std::size_t at_ = 0;
  std::size_t next_number_ = 1;
  std::size_t number_ = 0;
  std::string_view line_;
  std::string joined_;
};

bool is_name_character(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' || c == '.' ||
         c == ';' || c == '=' || c == '_';
}

bool has_name_characters(std::string_view name) {
  return !name.empty() && std::all_of(name.begin(), name.end(), is_name_character);
}

/// "name" of "name: value".
std::string_view name_of(const LineReader& reader) {
  const std::size_t colon = reader.line().find(':');
  if (colon == base::npos)
    fail(reader.number(), "A line without a colon.");
  const std::string_view name = reader.line().substr(0, colon);
  if (!has_name_characters(name))
    fail(reader.number(), "Not an attribute name before the colon.");
  return name;
}

/// What follows "name:", decoded.
std::string value_of(const LineReader& reader, std::size_t name_size) {
  std::string_view rest = reader.line().substr(name_size + 1);
  if (rest.starts_with('<'))
    fail(reader.number(), "Values taken from a URL are refused.");
  const bool encoded = rest.starts_with(':');
  if (encoded)
    rest.remove_prefix(1);
  rest.remove_prefix(std::min(rest.find_first_not_of(' '), rest.size()));
  if (!encoded)
    return std::string(rest);
  std::optional<std::string> bytes = decode_base64(rest);
  if (!bytes)
    fail(reader.number(), "Not Base64.");
  return *std::move(bytes);
}

/// The value of the line when its name is `wanted`; an error when it is another.
std::string expect(const LineReader& reader, std::string_view wanted) {
  if (reader.line().empty())
    fail(reader.number(), "\"" + std::string(wanted) + ":\" is missing.");
  const std::string_view name = name_of(reader);
  if (!is_same_attribute(name, wanted))
    fail(reader.number(), "\"" + std::string(wanted) + ":\" is missing.");
  return value_of(reader, name.size());
}

/// Collects values by attribute, in the order the attributes first appear.
class AttributeCollector {
 public:
  void add(std::string_view name, std::string value) { slot(name).values.push_back(std::move(value)); }
  std::vector<LdifAttribute> take() { return std::move(attributes_); }

 private:
  LdifAttribute& slot(std::string_view name) {
    if (!attributes_.empty() && attributes_.back().name == name)
      return attributes_.back();
    if (attributes_.size() < kFewAttributes) {
      const auto same = [&](const LdifAttribute& one) { return is_same_attribute(one.name, name); };
      const auto found = std::find_if(attributes_.begin(), attributes_.end(), same);
      return found != attributes_.end() ? *found : append(name);
    }
    if (positions_.empty()) {
      for (std::size_t i = 0; i < attributes_.size(); ++i)
        positions_.emplace(base::lower(attributes_[i].name), i);
    }
    const auto [found, fresh] = positions_.emplace(base::lower(name), attributes_.size());
    return fresh ? append(name) : attributes_[found->second];
  }

  LdifAttribute& append(std::string_view name) {
    return attributes_.emplace_back(LdifAttribute{std::string(name), {}});
  }

  std::vector<LdifAttribute> attributes_;
  std::unordered_map<std::string, std::size_t> positions_;  ///< by lower-case name, once there are many
};

// Each of the following is called with the reader on the first line that is its own, and leaves it on the
// empty line after the record or at the end of the text.

std::vector<LdifAttribute> read_attributes(LineReader& reader) {
  AttributeCollector attributes;
  for (; !reader.line().empty(); reader.next()) {
    const std::string_view name = name_of(reader);
    if (is_same_attribute(name, "dn"))
      fail(reader.number(), "An empty line is missing before \"dn:\".");
    attributes.add(name, value_of(reader, name.size()));
  }
  return attributes.take();
}

ModifyKind modify_kind(const LineReader& reader, std::string_view word) {
  if (is_same_attribute(word, "add"))
    return ModifyKind::kAdd;
  if (is_same_attribute(word, "delete"))
    return ModifyKind::kDelete;
  if (is_same_attribute(word, "replace"))
    return ModifyKind::kReplace;
  fail(reader.number(), "\"add:\", \"delete:\" or \"replace:\" is missing.");
}

std::vector<Modification> read_modifications(LineReader& reader) {
  std::vector<Modification> changes;
  while (!reader.line().empty()) {
    const std::string_view word = name_of(reader);
    Modification change{modify_kind(reader, word), value_of(reader, word.size()), {}};
    if (!is_attribute_name(change.attribute))
      fail(reader.number(), "Not an attribute name.");
    while (reader.next() && !reader.line().empty() && reader.line() != "-") {
      const std::string_view name = name_of(reader);
      if (!is_same_attribute(name, change.attribute))
        fail(reader.number(), "A value of another attribute than the change's.");
      change.values.push_back(value_of(reader, name.size()));
    }
    if (reader.line() == "-")
      reader.next();
    changes.push_back(std::move(change));
  }
  return changes;
}

void read_rename(LineReader& reader, LdifRecord& record) {
  record.new_rdn = expect(reader, "newrdn");
  reader.next();
  const std::string flag = expect(reader, "deleteoldrdn");
  if (flag != "0" && flag != "1")
    fail(reader.number(), "\"deleteoldrdn:\" is neither 0 nor 1.");
  record.delete_old_rdn = flag == "1";
  reader.next();
  if (reader.line().empty())
    return;
  record.new_superior = expect(reader, "newsuperior");
  reader.next();
}

ChangeType change_type(const LineReader& reader, std::string_view word) {
  static constexpr std::pair<std::string_view, ChangeType> kWords[] = {{"add", ChangeType::kAdd},
                                                                       {"delete", ChangeType::kDelete},
                                                                       {"modify", ChangeType::kModify},
                                                                       {"modrdn", ChangeType::kModRdn},
                                                                       {"moddn", ChangeType::kModRdn}};
  for (const auto& [name, type] : kWords) {
    if (base::equals_fold(base::trim(word), name))
      return type;
  }
  fail(reader.number(), "An unknown change type.");
}

/// Skips "control:" lines; true when there was one.
bool skip_controls(LineReader& reader) {
  bool found = false;
  while (!reader.line().empty() && is_same_attribute(name_of(reader), "control")) {
    const std::string value = value_of(reader, name_of(reader).size());
    if (value.find(" true") != base::npos)
      fail(reader.number(), "A critical control is not supported.");
    found = true;
    reader.next();
  }
  return found;
}

LdifRecord read_record(LineReader& reader) {
  LdifRecord record;
  record.line = reader.number();
  record.dn = expect(reader, "dn");
  reader.next();
  const bool controls = skip_controls(reader);
  const bool is_change = !reader.line().empty() && is_same_attribute(name_of(reader), "changetype");
  if (controls && !is_change)
    fail(reader.number(), "\"changetype:\" is missing.");
  if (is_change) {
    record.type = change_type(reader, expect(reader, "changetype"));
    reader.next();
  }
  switch (record.type) {
    case ChangeType::kContent:
    case ChangeType::kAdd:
      record.attributes = read_attributes(reader);
      break;
    case ChangeType::kModify:
      record.modifications = read_modifications(reader);
      break;
    case ChangeType::kModRdn:
      read_rename(reader, record);
      break;
    case ChangeType::kDelete:
      break;
  }
  if (!reader.line().empty())
    fail(reader.number(), "Unexpected text after the record.");
  record.end = reader.position();
  return record;
}

/// The summary and the referrals of `ldapsearch`.
bool is_search_summary(std::string_view name) {
  return is_same_attribute(name, "search") || is_same_attribute(name, "result") ||
         is_same_attribute(name, "ref");
}

bool is_safe(std::string_view value) {
  if (value.empty())
    return true;
  if (value.front() == ' ' || value.front() == ':' || value.front() == '<' || value.back() == ' ')
    return false;
  return std::all_of(value.begin(), value.end(), [](char c) {
    return c != '\0' && c != '\n' && c != '\r' && static_cast<unsigned char>(c) < 0x80;
  });
}

void append_line(std::string& out, std::string_view name, std::string_view value) {
  const bool safe = is_safe(value);
  if (safe && !value.empty() && name.size() + 2 + value.size() <= kLineWidth) {
    out.append(name).append(": ").append(value).push_back('\n');
    return;
  }
  std::string line(name);
  if (safe) {
    line += value.empty() ? ":" : ": ";
    line += value;
  } else {
    line += ":: ";
    append_base64(line, value);
  }
  std::string_view rest = line;
  out += rest.substr(0, kLineWidth);
  for (rest.remove_prefix(std::min(kLineWidth, rest.size())); !rest.empty();
       rest.remove_prefix(std::min(kLineWidth - 1, rest.size()))) {
    out += "\n ";
    out += rest.substr(0, kLineWidth - 1);
  }
  out.push_back('\n');
}

void append_attributes(std::string& out, const std::vector<LdifAttribute>& attributes) {
  for (const LdifAttribute& attribute : attributes) {
    for (const std::string& value : attribute.values)
      append_line(out, attribute.name, value);
  }
}

void append_modifications(std::string& out, const std::vector<Modification>& changes) {
  for (const Modification& change : changes) {
    const std::string_view word = change.kind == ModifyKind::kAdd      ? "add"
                                  : change.kind == ModifyKind::kDelete ? "delete"
                                                                       : "replace";
    append_line(out, word, change.attribute);
    for (const std::string& value : change.values)
      append_line(out, change.attribute, value);
    out += "-\n";
  }
}

}  // namespace

bool is_same_attribute(std::string_view a, std::string_view b) {
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; };
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [&](char x, char y) { return lower(x) == lower(y); });
}

bool is_attribute_name(std::string_view name) {
  return has_name_characters(name) && !is_same_attribute(name, "dn") &&
         !is_same_attribute(name, "changetype") && !is_same_attribute(name, "control");
}

void read_ldif(std::string_view text, const std::function<void(LdifRecord&&)>& visit,
               std::size_t first_line) {
  LineReader reader(text, first_line);
  bool may_be_version = first_line == 1;
  while (reader.next()) {
    if (reader.line().empty())
      continue;
    const std::string_view name = name_of(reader);
    if (std::exchange(may_be_version, false) && is_same_attribute(name, "version")) {
      if (value_of(reader, name.size()) != "1")
        fail(reader.number(), "A version other than 1.");
    } else if (is_search_summary(name)) {
      while (reader.next() && !reader.line().empty()) {
      }
    } else {
      visit(read_record(reader));
    }
  }
}

void append_ldif(std::string& out, const LdifRecord& record) {
  append_line(out, "dn", record.dn);
  switch (record.type) {
    case ChangeType::kAdd:
      append_line(out, "changetype", "add");
      append_attributes(out, record.attributes);
      break;
    case ChangeType::kContent:
      append_attributes(out, record.attributes);
      break;
    case ChangeType::kDelete:
      append_line(out, "changetype", "delete");
      break;
    case ChangeType::kModify:
      append_line(out, "changetype", "modify");
      append_modifications(out, record.modifications);
      break;
    case ChangeType::kModRdn:
      append_line(out, "changetype", "modrdn");
      append_line(out, "newrdn", record.new_rdn);
      append_line(out, "deleteoldrdn", record.delete_old_rdn ? "1" : "0");
      if (record.new_superior)
        append_line(out, "newsuperior", *record.new_superior);
      break;
  }
  out.push_back('\n');
}

}  // namespace twk::lab
