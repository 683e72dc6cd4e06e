#include "live/files/smb_path.hpp"

#include <algorithm>

#include "base/errors.hpp"
#include "base/text.hpp"

namespace twk::live {
namespace {

/// What no file name on a Windows server contains, [MS-FSCC] 2.1.5.
constexpr std::string_view kForbidden = "\"<>|*?:";

/// Characters that need no escape in a URL, RFC 3986 2.3, and the slash.
constexpr std::string_view kPlain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~/";

void append_escaped(std::string& url, std::string_view text) {
  for (const char character : text) {
    if (kPlain.find(character) != base::npos)
      url += character;
    else
      url += "%" + base::hex_byte(static_cast<std::uint8_t>(character));
  }
}

void require_part(std::string_view part, std::string_view whole) {
  if (part == "." || part == "..")
    base::raise(base::error::kPathNotFound, "A path must not lead back: " + std::string(whole));
  if (const auto control = base::find_control_character(part))
    base::raise(base::error::kBadFileName, "A path holds " + *control);
  if (part.find_first_of(kForbidden) != base::npos)
    base::raise(base::error::kBadFileName, "A character that no file name may have: " + std::string(whole));
}

}  // namespace

std::string SmbPath::url() const {
  std::string url = "smb://";
  append_escaped(url, server);
  url += '/';
  append_escaped(url, share);
  if (!path.empty()) {
    url += '/';
    append_escaped(url, path);
  }
  return url;
}

std::string SmbPath::text() const {
  std::string text = path.empty() ? share : share + "\\" + path;
  std::replace(text.begin(), text.end(), '/', '\\');
  return "\\\\" + server + "\\" + text;
}

std::optional<SmbPath> SmbPath::folder() const {
  if (path.empty())
    return std::nullopt;
  const std::size_t slash = path.rfind('/');
  return SmbPath{server, share, slash == base::npos ? std::string() : path.substr(0, slash)};
}

std::optional<SmbPath> parse_smb_path(std::string_view whole) {
  if (!whole.starts_with("\\\\"))
    return std::nullopt;
  SmbPath parsed;
  std::size_t count = 0;
  std::size_t start = 2;
  while (start <= whole.size()) {
    const std::size_t end = std::min(whole.find_first_of("\\/", start), whole.size());
    const std::string_view part = whole.substr(start, end - start);
    start = end + 1;
    if (part.empty() && count >= 2)
      continue;
    require_part(part, whole);
    if (count == 0)
      parsed.server = part;
    else if (count == 1)
      parsed.share = part;
    else
      parsed.path += (parsed.path.empty() ? "" : "/") + std::string(part);
    ++count;
  }
  if (parsed.server.empty() || parsed.share.empty())
    base::raise(base::error::kBadFileName, "Not a path of a file server: " + std::string(whole));
  return parsed;
}

}  // namespace twk::live
