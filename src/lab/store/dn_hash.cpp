#include "lab/store/dn_hash.hpp"

#include <algorithm>
#include <functional>
#include <optional>

#include "ads/dn.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"

namespace twk::lab {
namespace {

constexpr std::uint64_t kPrime = 0x100000001B3U;

char upper_ascii(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - ('a' - 'A')) : c;
}

bool is_simple_rdn(std::string_view trimmed) {
  return trimmed.find('=') != base::npos && trimmed.front() != '=';
}

/// Of an RDN with a type and without escapes and quotes; `equals` is where its '=' is.
std::uint64_t hash_simple_rdn(std::uint64_t parent, std::string_view rdn, std::size_t equals) {
  const std::uint64_t type = hash_folded(base::trim(rdn.substr(0, equals)));
  return mix_hash(parent, hash_folded(base::trim(rdn.substr(equals + 1)), type));
}

/// None for a name that has to be taken apart with care.
std::optional<std::uint64_t> hash_simple_dn(std::string_view dn) {
  if (!is_simple_name(dn))
    return std::nullopt;
  std::uint64_t hash = kHashSeed;
  for (std::string_view rest = dn; !rest.empty();) {
    const std::size_t comma = rest.rfind(',');
    const std::string_view part = base::trim(comma == base::npos ? rest : rest.substr(comma + 1));
    if (!is_simple_rdn(part) || comma == 0)
      break;
    hash = hash_simple_rdn(hash, part, part.find('='));
    if (comma == base::npos)
      return hash;
    rest = rest.substr(0, comma);
  }
  return std::nullopt;
}

}  // namespace

std::string folded_key(std::string_view text) {
  if (!base::is_ascii(text))
    return base::upper(text);
  std::string key(text);
  std::transform(key.begin(), key.end(), key.begin(), upper_ascii);
  return key;
}

bool is_simple_name(std::string_view name) {
  return name.find('\\') == base::npos && name.find('"') == base::npos;
}

std::uint64_t hash_bytes(std::string_view bytes, std::uint64_t seed) {
  for (const char c : bytes)
    seed = (seed ^ static_cast<unsigned char>(c)) * kPrime;
  return seed;
}

std::uint64_t hash_folded(std::string_view text, std::uint64_t seed) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(upper_ascii(text[i]));
    if (byte >= 0x80)
      return hash_bytes(base::upper(text.substr(i)), seed);
    seed = (seed ^ byte) * kPrime;
  }
  return seed;
}

std::uint64_t mix_hash(std::uint64_t a, std::uint64_t b) {
  std::uint64_t mixed = a * 0x9E3779B97F4A7C15U ^ b;
  mixed = (mixed ^ mixed >> 30U) * 0xBF58476D1CE4E5B9U;
  mixed = (mixed ^ mixed >> 27U) * 0x94D049BB133111EBU;
  return mixed ^ mixed >> 31U;
}

std::uint64_t hash_below(std::uint64_t parent, std::string_view rdn) {
  if (!is_simple_name(rdn)) {
    const ads::Rdn parts = ads::parse_rdn(rdn);
    return mix_hash(parent, hash_folded(parts.value, hash_folded(parts.type)));
  }
  const std::size_t equals = rdn.find('=');
  if (equals == base::npos || equals == 0)
    return mix_hash(parent, hash_folded(ads::parse_rdn(rdn).value));
  return hash_simple_rdn(parent, rdn, equals);
}

std::uint64_t hash_dn(std::string_view dn) {
  if (const auto hash = hash_simple_dn(dn))
    return *hash;
  const std::vector<std::string_view> parts = ads::split_dn(dn);
  std::uint64_t hash = kHashSeed;
  for (auto part = parts.rbegin(); part != parts.rend(); ++part)
    hash = hash_below(hash, *part);
  return hash;
}

std::uint64_t DnHasher::hash(std::string_view dn) {
  const std::size_t comma = dn.find(',');
  if (comma == base::npos || !is_simple_name(dn))
    return hash_dn(dn);
  const std::string_view rdn = base::trim(dn.substr(0, comma));
  if (!is_simple_rdn(rdn))
    return hash_dn(dn);
  const std::string_view parent = dn.substr(comma + 1);
  Parent& known = parents_.at(std::hash<std::string_view>{}(parent) % parents_.size());
  if (known.dn != parent) {
    const auto fresh = hash_simple_dn(parent);
    if (!fresh)
      return hash_dn(dn);
    known = {std::string(parent), *fresh};
  }
  return hash_simple_rdn(known.hash, rdn, rdn.find('='));
}

std::uint64_t DnHasher::hash_or_text(std::string_view text) {
  try {
    return hash(text);
  } catch (const base::RuntimeError&) {
    return hash_folded(text);
  }
}

bool same_dn(std::string_view a, std::string_view b) {
  if (a == b)
    return true;
  try {
    return ads::normalize_dn(a) == ads::normalize_dn(b);
  } catch (const base::RuntimeError&) {
    return false;
  }
}

}  // namespace twk::lab
