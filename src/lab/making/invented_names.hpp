#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

namespace twk::lab {

/// Numbers that look random and are the same for the same seed everywhere: splitmix64.
class SeededNumbers {
 public:
  explicit SeededNumbers(std::uint64_t seed) : state_(seed) {}
  std::uint64_t next();
  /// From 0 to `count` - 1.
  std::size_t below(std::size_t count) { return static_cast<std::size_t>(next() % count); }

 private:
  std::uint64_t state_;
};

struct Person {
  std::string given_name;
  std::string surname;
  std::string common_name;  ///< given name and surname, numbered when another person has them
  std::string
      account_name;  ///< "jsmith", "jsmith2" …; small ASCII letters, at most 20 characters, never twice
  std::string title;
};

/// People of many languages, whose names stay within code page 1252.
class InventedPeople {
 public:
  explicit InventedPeople(SeededNumbers& numbers) : numbers_(numbers) {}
  /// Reserves the account name for a person who is not invented.
  void reserve(std::string_view account_name);
  Person next();

 private:
  SeededNumbers& numbers_;
  std::unordered_map<std::string, unsigned> same_name_;
  std::unordered_map<std::string, unsigned> same_account_;
  std::unordered_set<std::string> taken_;
};

/// The n-th place, department, kind of group; numbered when the list is used up.
std::string place_name(std::size_t n);
std::string department_name(std::size_t n);
std::string group_name(std::size_t n);

/// The name in small ASCII letters, without accents and without anything else but digits.
std::string plain_letters(std::string_view name);

}  // namespace twk::lab
