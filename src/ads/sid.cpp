#include "ads/sid.hpp"

namespace twk::ads {
namespace {

constexpr std::size_t kHeader = 8;
constexpr std::string_view kNtAuthorityBytes("\x00\x00\x00\x00\x00\x05", 6);

void append_word(std::string& out, std::uint32_t word) {
  for (unsigned shift = 0; shift < 32; shift += 8)
    out.push_back(static_cast<char>(word >> shift & 0xFFU));
}

std::string header(char count) {
  std::string sid("\x01", 1);
  sid.push_back(count);
  sid += kNtAuthorityBytes;
  return sid;
}

bool is_well_formed(std::string_view sid) {
  if (sid.size() <= kHeader || sid[0] != 1)
    return false;
  return sid.size() == kHeader + static_cast<unsigned char>(sid[1]) * std::size_t{4};
}

}  // namespace

std::string make_domain_sid(std::uint32_t a, std::uint32_t b, std::uint32_t c) {
  std::string sid = header(4);
  for (const std::uint32_t word : {21U, a, b, c})
    append_word(sid, word);
  return sid;
}

std::string make_builtin_sid(std::uint32_t rid) {
  std::string sid = header(2);
  append_word(sid, 32);
  append_word(sid, rid);
  return sid;
}

std::string append_rid(std::string_view domain_sid, std::uint32_t rid) {
  std::string sid(domain_sid);
  if (sid.size() > 1)
    ++sid[1];
  append_word(sid, rid);
  return sid;
}

std::optional<std::uint32_t> rid_of(std::string_view sid) {
  if (!is_well_formed(sid))
    return std::nullopt;
  std::uint32_t rid = 0;
  for (std::size_t i = 0; i < 4; ++i)
    rid = rid << 8U | static_cast<unsigned char>(sid[sid.size() - 1 - i]);
  return rid;
}

std::string without_rid(std::string_view sid) {
  if (!is_well_formed(sid))
    return {};
  std::string domain(sid.substr(0, sid.size() - 4));
  --domain[1];
  return domain;
}

}  // namespace twk::ads
