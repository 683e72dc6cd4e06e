#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ads/staged_values.hpp"

/// LDIF, RFC 2849: content records and change records. Lines end with LF or CRLF.
///
///     ldif-file     ["version: 1"] record*
///     record        "dn:" value, attribute lines, an empty line
///     value         ": " SAFE text | ":: " base64 | ":< " file URL (refused)
///     continuation  a line that begins with one blank goes on with the line before
///     comment       a line that begins with "#", with its continuations
namespace twk::lab {

struct LdifAttribute {
  std::string name;                 ///< as spelled, options included
  std::vector<std::string> values;  ///< raw bytes

  friend bool operator==(const LdifAttribute&, const LdifAttribute&) = default;
};

enum class ChangeType { kContent, kAdd, kDelete, kModify, kModRdn };
using ModifyKind = ads::ChangeKind;

struct Modification {
  ModifyKind kind = ModifyKind::kReplace;
  std::string attribute;
  std::vector<std::string> values;

  friend bool operator==(const Modification&, const Modification&) = default;
};

/// One record. `attributes` of content and add, `modifications` of modify, the rest of modrdn.
struct LdifRecord {
  ChangeType type = ChangeType::kContent;
  std::string dn = {};
  std::vector<LdifAttribute> attributes = {};
  std::vector<Modification> modifications = {};
  std::string new_rdn = {};
  bool delete_old_rdn = true;
  std::optional<std::string> new_superior = {};
  std::size_t line = 0;  ///< 1-based line of its "dn:"
  std::size_t end = 0;   ///< byte position after the record, its closing empty line included
};

/// The error number for text that is not LDIF: the runtime's "invalid file format".
inline constexpr std::uint32_t kInvalidLdif = 321;

/// True when two names of attributes differ at most in the case of their letters.
bool is_same_attribute(std::string_view a, std::string_view b);
/// True for letters, digits and "-", ".", ";", "=", "_", except the words that begin a record.
bool is_attribute_name(std::string_view name);

/// Calls `visit` for each record in order. Raises kInvalidLdif, naming the line, for text that is not LDIF;
/// the first line of the text has the number `first_line`; a byte order mark and a version are accepted in
/// front of line 1 only. The "search:", "result:" and "ref:" records and the comments of `ldapsearch` are
/// skipped, and so are controls that are not critical.
void read_ldif(std::string_view text, const std::function<void(LdifRecord&&)>& visit,
               std::size_t first_line = 1);

/// Appends one record with its closing empty line; lines are folded at 76 characters, values that are not
/// SAFE-STRING are base64.
void append_ldif(std::string& out, const LdifRecord& record);

}  // namespace twk::lab
