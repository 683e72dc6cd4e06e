#include "ads/dn.hpp"

#include <algorithm>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "platform/directory.hpp"
#include "platform/ldap_text.hpp"

namespace twk::ads {
namespace {

[[noreturn]] void invalid(std::string_view name) {
  throw base::RuntimeError(platform::ads_error::kInvalidDn, "Not a distinguished name: " + std::string(name));
}

/// Position of the comma that ends the part at `from`, or the end of the text. An escape hides its character.
std::size_t part_end(std::string_view dn, std::size_t from) {
  bool quoted = false;
  for (std::size_t i = from; i < dn.size(); ++i) {
    if (dn[i] == '\\') {
      ++i;
    } else if (dn[i] == '"') {
      quoted = !quoted;
    } else if (dn[i] == ',' && !quoted) {
      return i;
    }
  }
  return dn.size();
}

/// Without the blanks around it; a blank after a backslash belongs to the value.
std::string_view trim_part(std::string_view part) {
  const std::size_t first = part.find_first_not_of(' ');
  if (first == base::npos)
    return {};
  part.remove_prefix(first);
  const std::size_t end = part.find_last_not_of(' ') + 1;
  const std::string_view text = part.substr(0, end);
  const std::size_t backslashes = text.size() - (text.find_last_not_of('\\') + 1);
  return part.substr(0, end + (backslashes % 2 == 1 && end < part.size() ? 1 : 0));
}

/// The parts between slashes; a slash after a backslash belongs to its part.
std::vector<std::string_view> split_at_slashes(std::string_view name) {
  std::vector<std::string_view> parts;
  std::size_t from = 0;
  for (std::size_t i = 0; i < name.size(); ++i) {
    if (name[i] == '\\') {
      ++i;
    } else if (name[i] == '/') {
      parts.push_back(name.substr(from, i - from));
      from = i + 1;
    }
  }
  parts.push_back(name.substr(from));
  return parts;
}

}  // namespace

std::vector<std::string_view> split_dn(std::string_view dn) {
  std::vector<std::string_view> parts;
  if (dn.empty())
    return parts;
  for (std::size_t from = 0;;) {
    const std::size_t end = part_end(dn, from);
    const std::string_view part = trim_part(dn.substr(from, end - from));
    if (part.find('=') == base::npos || part.front() == '=')
      invalid(dn);
    parts.push_back(part);
    if (end == dn.size())
      return parts;
    from = end + 1;
  }
}

std::string_view parent_dn(std::string_view dn) {
  const std::size_t end = part_end(dn, 0);
  return end == dn.size() ? std::string_view{} : trim_part(dn.substr(end + 1));
}

std::string_view first_rdn(std::string_view dn) {
  return trim_part(dn.substr(0, part_end(dn, 0)));
}

std::string object_name(std::string_view dn) {
  const std::string_view rdn = first_rdn(dn);
  const std::size_t equals = rdn.find('=');
  if (equals == base::npos)
    return std::string(rdn);
  return base::upper(rdn.substr(0, equals)) + std::string(rdn.substr(equals));
}

Rdn parse_rdn(std::string_view rdn) {
  const std::size_t equals = rdn.find('=');
  if (equals == base::npos || equals == 0)
    invalid(rdn);
  std::string_view value = trim_part(rdn.substr(equals + 1));
  if (value.size() >= 2 && value.front() == '"' && value.back() == '"')
    value = value.substr(1, value.size() - 2);
  return {std::string(base::trim(rdn.substr(0, equals))), platform::unescape_dn_value(value)};
}

std::string make_rdn(std::string_view type, std::string_view value) {
  return std::string(type) + "=" + platform::escape_dn_value(value);
}

std::string normalize_dn(std::string_view dn) {
  std::string out;
  out.reserve(dn.size());
  for (const std::string_view part : split_dn(dn)) {
    if (!out.empty())
      out.push_back(',');
    const Rdn rdn = parse_rdn(part);
    out += make_rdn(base::upper(rdn.type), base::upper(rdn.value));
  }
  return out;
}

std::string domain_dn(std::string_view domain) {
  std::string out;
  for (const std::string& label : base::split(domain, '.')) {
    if (!out.empty())
      out.push_back(',');
    out += make_rdn("DC", label);
  }
  return out;
}

std::string from_top_down(std::string_view name) {
  const std::vector<std::string_view> parts = split_at_slashes(name);
  const bool top_down = std::all_of(parts.begin(), parts.end(), [](std::string_view part) {
    return part.find('=') != base::npos && parent_dn(part).empty();
  });
  if (parts.size() == 1 || !top_down)
    return std::string(name);
  std::string dn;
  for (auto part = parts.rbegin(); part != parts.rend(); ++part)
    dn.append(dn.empty() ? "" : ",").append(*part);
  return dn;
}

}  // namespace twk::ads
