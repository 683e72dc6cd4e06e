#include "local/regedit.hpp"

#include <algorithm>
#include <array>
#include <charconv>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "base/text_file.hpp"
#include "platform/utf16.hpp"

namespace twk::local {
namespace {

constexpr std::string_view kHeader = "REGEDIT4";
constexpr std::string_view kHeader5 = "Windows Registry Editor Version 5.00";
constexpr std::string_view kTextBytes = "hex(1):";
constexpr std::string_view kLineEnd = "\r\n";

std::string_view trim_blanks(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t");
  if (first == base::npos)
    return {};
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

/// Returns the lines of a text, without their ends, and the number of the last one.
class Lines {
 public:
  explicit Lines(std::string_view text) : rest_(text) {}

  [[nodiscard]] bool at_end() const { return rest_.empty(); }

  std::string_view next() {
    const std::size_t end = rest_.find('\n');
    std::string_view line = rest_.substr(0, end);
    rest_.remove_prefix(end == base::npos ? rest_.size() : end + 1);
    ++number_;
    if (line.ends_with('\r'))
      line.remove_suffix(1);
    if (!base::is_valid_utf8(line))
      fail("the text is not UTF-8");
    return line;
  }

  /// Whether texts that are written as bytes are UTF-16.
  bool wide = false;

  [[noreturn]] void fail(std::string_view problem) const {
    throw base::RuntimeError(kInvalidFileFormat,
                             "line " + std::to_string(number_) + ": " + std::string(problem));
  }

 private:
  std::string_view rest_;
  std::size_t number_ = 0;
};

/// Takes a quoted text from the front of `rest`.
std::string take_quoted(std::string_view& rest, const Lines& lines) {
  std::string text;
  for (std::size_t at = 1; at < rest.size(); ++at) {
    if (rest[at] == '"') {
      rest.remove_prefix(at + 1);
      return text;
    }
    if (rest[at] == '\\' && ++at == rest.size())
      break;
    text.push_back(rest[at]);
  }
  lines.fail("a quote is not closed");
}

std::optional<std::string> from_utf16(std::string_view bytes) {
  const base::Bytes values(bytes.begin(), bytes.end());
  return platform::from_utf16(values);
}

std::string utf8_of(std::string_view bytes, const Lines& lines) {
  std::optional<std::string> text = from_utf16(bytes);
  if (!text)
    lines.fail("the bytes of a text are not UTF-16");
  return *std::move(text);
}

std::string parse_text_bytes(std::string_view digits, const Lines& lines) {
  std::string text;
  std::string compact;
  std::copy_if(digits.begin(), digits.end(), std::back_inserter(compact),
               [](char c) { return c != '\\' && c != '\r' && c != '\n' && c != ' ' && c != '\t'; });
  for (std::string_view rest = compact; !rest.empty();) {
    unsigned char byte = 0;
    const std::string_view pair = rest.substr(0, 2);
    const auto [end, error] = std::from_chars(pair.data(), pair.data() + pair.size(), byte, 16);
    if (error != std::errc{} || pair.size() != 2 || end != pair.data() + 2)
      lines.fail("a byte is not two digits");
    text.push_back(static_cast<char>(byte));
    rest.remove_prefix(2);
    if (rest.empty())
      break;
    if (rest.front() != ',' || rest.size() == 1)
      lines.fail("bytes are not separated by single commas");
    rest.remove_prefix(1);
  }
  if (lines.wide)
    text = utf8_of(text, lines);
  if (text.ends_with('\0'))
    text.pop_back();
  return text;
}

/// A value that is not a text, with the lines that continue it.
std::string take_other(std::string_view first, Lines& lines) {
  const std::array<std::string_view, 3> kinds = {"dword:", "hex:", "hex("};
  if (std::none_of(kinds.begin(), kinds.end(),
                   [&](auto kind) { return base::starts_with_fold(first, kind); })) {
    lines.fail("a value is neither quoted text nor dword or hex");
  }
  std::string other(first);
  while (other.ends_with('\\')) {
    if (lines.at_end())
      lines.fail("the continuation of the value is missing");
    other.append(kLineEnd).append(lines.next());
  }
  return other;
}

RegistryValue parse_value(std::string_view line, Lines& lines) {
  RegistryValue value;
  if (line.front() == '@') {
    line.remove_prefix(1);
  } else if (line.front() == '"') {
    value.name = take_quoted(line, lines);
  } else {
    lines.fail("neither a key nor a value");
  }
  line = trim_blanks(line);
  if (!line.starts_with('='))
    lines.fail("\"=\" is missing after the name");
  line = trim_blanks(line.substr(1));
  if (line.starts_with('"')) {
    value.text = take_quoted(line, lines);
    if (!line.empty())
      lines.fail("there is more after the closing quote");
    return value;
  }
  value.other = take_other(line, lines);
  if (base::starts_with_fold(value.other, kTextBytes)) {
    value.text = parse_text_bytes(std::string_view(value.other).substr(kTextBytes.size()), lines);
    value.other.clear();
  }
  return value;
}

std::string_view parse_key(std::string_view line, const Lines& lines) {
  if (!line.ends_with(']'))
    lines.fail("\"]\" is missing after the key");
  const std::string_view path = line.substr(1, line.size() - 2);
  if (path.empty())
    lines.fail("the key is empty");
  if (path.starts_with('-'))
    lines.fail("deleting a key is not supported");
  if (base::find_control_character(path))
    lines.fail("the key holds a control character");
  return path;
}

std::string in_quotes(std::string_view text) {
  std::string out = "\"";
  for (const char c : text) {
    if (c == '\\' || c == '"')
      out.push_back('\\');
    out.push_back(c);
  }
  out.push_back('"');
  return out;
}

std::string text_bytes(std::string_view text) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string out(kTextBytes);
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    out.push_back(kDigits[byte >> 4U]);
    out.push_back(kDigits[byte & 0xFU]);
    out.push_back(',');
  }
  return out + "00";
}

std::string right_side(const RegistryValue& value) {
  if (!value.other.empty())
    return value.other;
  const bool fits_a_line = base::is_valid_utf8(value.text) && !base::find_control_character(value.text);
  return fits_a_line ? in_quotes(value.text) : text_bytes(value.text);
}

}  // namespace

RegistryKey& registry_key(RegistryTree& tree, std::string_view path) {
  RegistryKey& key = tree[base::upper(path)];
  if (key.path.empty())
    key.path = path;
  return key;
}

void set_registry_value(RegistryKey& key, RegistryValue value) {
  const auto [place, added] = key.values.try_emplace(base::upper(value.name));
  if (!added)
    value.name = std::move(place->second.name);
  place->second = std::move(value);
}

std::string regedit_text(std::string_view bytes) {
  const bool big_endian = bytes.starts_with("\xFE\xFF");
  if (!big_endian && !bytes.starts_with("\xFF\xFE"))
    return base::is_valid_utf8(bytes) ? std::string(bytes) : base::from_ansi(bytes);
  std::string little(bytes.substr(2));
  for (std::size_t i = 1; big_endian && i < little.size(); i += 2)
    std::swap(little[i - 1], little[i]);
  std::optional<std::string> text = from_utf16(little);
  if (!text)
    throw base::RuntimeError(kInvalidFileFormat, "the text begins like UTF-16 but is not valid");
  return *std::move(text);
}

RegistryTree parse_regedit(std::string_view text) {
  Lines lines(base::without_mark(text));
  const std::string_view header = trim_blanks(lines.next());
  lines.wide = header == kHeader5;
  if (header != kHeader && !lines.wide)
    lines.fail("the text begins with neither REGEDIT4 nor " + std::string(kHeader5));
  RegistryTree tree;
  RegistryKey* key = nullptr;
  while (!lines.at_end()) {
    const std::string_view line = trim_blanks(lines.next());
    if (line.empty() || line.front() == ';')
      continue;
    if (line.front() == '[') {
      key = &registry_key(tree, parse_key(line, lines));
      continue;
    }
    if (key == nullptr)
      lines.fail("a value comes before the first key");
    set_registry_value(*key, parse_value(line, lines));
  }
  return tree;
}

std::string format_regedit(const RegistryTree& tree) {
  std::string out(kHeader);
  out += kLineEnd;
  for (const auto& [folded_path, key] : tree) {
    out.append(kLineEnd).append("[").append(key.path).append("]").append(kLineEnd);
    for (const auto& [folded_name, value] : key.values) {
      out.append(value.name.empty() ? "@" : in_quotes(value.name)).append("=").append(right_side(value));
      out += kLineEnd;
    }
  }
  return out;
}

}  // namespace twk::local
