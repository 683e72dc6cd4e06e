#include "batch/account_change.hpp"

#include <algorithm>
#include <array>
#include <iterator>

#include "base/text.hpp"

namespace twk::batch {
namespace {

constexpr std::array<std::string_view, 6> kWords = {"enabled", "disabled", "joined", "left", "moved", "set"};

std::string key_of(const std::string& name, std::size_t place) {
  return name + base::to_text(static_cast<std::int64_t>(place) + 1);
}

void add_values(records::JsonLine& entry, const std::string& name, const std::vector<std::string>& values) {
  for (std::size_t i = 0; i < values.size(); ++i)
    entry.add(key_of(name, i), values[i]);
}

/// A directory has no empty values.
std::vector<std::string> recorded_values(const records::JsonLine& entry, const std::string& name) {
  std::vector<std::string> values;
  for (std::string value; !(value = entry.text(key_of(name, values.size()))).empty();)
    values.push_back(std::move(value));
  return values;
}

}  // namespace

void add_change(records::JsonLine& entry, const AccountChange& change) {
  entry.add("change", std::string(kWords.at(static_cast<std::size_t>(change.kind))));
  entry.add("sid", change.sid);
  entry.add("what", change.what);
  add_values(entry, "before", change.before);
  add_values(entry, "after", change.after);
}

std::optional<AccountChange> change_of(const records::JsonLine& entry) {
  const auto word = std::ranges::find(kWords, entry.text("change"));
  if (word == kWords.end())
    return std::nullopt;
  return AccountChange{static_cast<AccountChange::Kind>(std::distance(kWords.begin(), word)),
                       entry.text("sid"), entry.text("what"), recorded_values(entry, "before"),
                       recorded_values(entry, "after")};
}

}  // namespace twk::batch
