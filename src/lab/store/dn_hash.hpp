#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

/// Hashes under which two spellings of one name are the same.
namespace twk::lab {

inline constexpr std::uint64_t kHashSeed = 0xCBF29CE484222325U;

/// The text in upper case, as `base::upper` returns it; quick for ASCII.
std::string folded_key(std::string_view text);

/// Of bytes as they stand, and of text without regard to case.
std::uint64_t hash_bytes(std::string_view bytes, std::uint64_t seed = kHashSeed);
std::uint64_t hash_folded(std::string_view text, std::uint64_t seed = kHashSeed);
std::uint64_t mix_hash(std::uint64_t a, std::uint64_t b);

/// Without escapes and quotes, so that every comma parts it.
bool is_simple_name(std::string_view name);
/// The hash of the name "<rdn>,<parent>". Raises kInvalidDn.
std::uint64_t hash_below(std::uint64_t parent, std::string_view rdn);
/// The hash of a whole name, from the root down; kHashSeed for the empty name. Raises kInvalidDn.
std::uint64_t hash_dn(std::string_view dn);
/// Hashes many names: the hash of a parent, as it is spelled, is remembered for a while.
class DnHasher {
 public:
  /// As `hash_dn`.
  std::uint64_t hash(std::string_view dn);
  /// The same; text that is not a name has a hash, too.
  std::uint64_t hash_or_text(std::string_view text);

 private:
  struct Parent {
    std::string dn;
    std::uint64_t hash = kHashSeed;
  };
  std::array<Parent, 256> parents_;  ///< each where the hash of its text says
};

/// True when both are the same name, however spelled.
bool same_dn(std::string_view a, std::string_view b);

}  // namespace twk::lab
