#include "session/log_block.hpp"

#include "base/text.hpp"

namespace twk::session {
namespace {

constexpr std::string_view kUserLine = "User:";

}  // namespace

bool BlockReader::needs(std::string_view line) const {
  return line == kAsterisks || (begun_ && subject_.empty());
}

bool BlockReader::take(std::string_view line) {
  if (line == kAsterisks) {
    begun_ = true;
    for (std::string* const text : {&time_, &administrator_, &subject_, &name_})
      text->clear();
    return true;
  }
  if (!begun_ || !subject_.empty())
    return false;
  if (time_.empty())
    time_ = base::trim(line);
  else if (administrator_.empty() && line.starts_with(kUserLine))
    administrator_ = base::trim(line.substr(kUserLine.size()));
  else
    take_subject(base::trim(line));
  return false;
}

void BlockReader::take_subject(std::string_view line) {
  if (line.empty())
    return;
  subject_ = line;
  if (second_ != time_) {
    second_ = time_;
    alike_.clear();
  }
  name_ = time_ + "\n" + subject_ + "\n" + base::to_text(alike_[subject_]++);
}

}  // namespace twk::session
