#include "session/foreseen_names.hpp"

#include <functional>
#include <utility>

namespace twk::session {

std::uint64_t ForeseenNames::hash_of(std::string_view name) {
  const std::uint64_t hash = std::hash<std::string_view>{}(name);
  return hash == 0 ? 1 : hash;
}

std::size_t ForeseenNames::slot_of(std::uint64_t hash) const {
  std::size_t at = hash & (slots_.size() - 1);
  while (slots_[at] != 0 && slots_[at] != hash)
    at = (at + 1) & (slots_.size() - 1);
  return at;
}

bool ForeseenNames::place(std::uint64_t hash) {
  return std::exchange(slots_[slot_of(hash)], hash) == 0;
}

bool ForeseenNames::has(std::string_view name) const {
  return !slots_.empty() && slots_[slot_of(hash_of(name))] != 0;
}

bool ForeseenNames::add(std::string_view name) {
  constexpr std::size_t kFewest = 1024;
  if (size_ * 4 >= slots_.size() * 3) {
    const std::vector<std::uint64_t> old =
        std::exchange(slots_, std::vector<std::uint64_t>(slots_.empty() ? kFewest : slots_.size() * 2));
    for (const std::uint64_t hash : old) {
      if (hash != 0)
        place(hash);
    }
  }
  const bool is_new = place(hash_of(name));
  size_ += is_new ? 1U : 0U;
  return is_new;
}

void ForeseenNames::clear() {
  slots_.clear();
  size_ = 0;
}

}  // namespace twk::session
