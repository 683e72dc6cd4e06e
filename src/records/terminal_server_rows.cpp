#include "records/terminal_server_rows.hpp"

#include "base/text.hpp"

namespace twk::records {

std::uint32_t milliseconds_of(std::string_view word) {
  for (std::size_t i = 1; i < kTimeWords.size(); ++i) {
    if (base::equals_fold(kTimeWords.at(i).word, word))
      return kTimeWords.at(i).milliseconds;
  }
  return 0;
}

std::uint32_t number_of_switch(std::string_view word) {
  return base::equals_fold(word, "TRUE") || base::equals_fold(word, "YES") ? 1 : 0;
}

}  // namespace twk::records
