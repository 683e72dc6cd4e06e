#include "batch/remaining_lines.hpp"

namespace twk::batch {
namespace {

constexpr std::string_view kLittle = "\xFF\xFE";
constexpr std::string_view kBig = "\xFE\xFF";

}  // namespace

std::string RemainingLines::line_break() const {
  if (bytes_.starts_with(kLittle))
    return {'\n', '\0'};
  return bytes_.starts_with(kBig) ? std::string{'\0', '\n'} : std::string("\n");
}

void RemainingLines::open(platform::Files& files, std::string path, std::string_view bytes) {
  files_ = &files;
  path_ = std::move(path);
  bytes_ = bytes;
  taken_.clear();
  files.write(path_, bytes);
  file_ = files.open_random(path_);
}

void RemainingLines::take(std::string_view raw) {
  if (!file_)
    return;
  const auto offset = static_cast<std::size_t>(raw.data() - bytes_.data());
  taken_.emplace_back(offset, raw.size());
  const std::string one = line_break();
  std::string empty;
  while (empty.size() < raw.size())
    empty += one;
  file_->put(offset, empty);
}

void RemainingLines::finish() {
  if (!file_)
    return;
  file_.reset();
  std::string rest;
  std::size_t from = 0;
  for (const auto& [offset, size] : taken_) {
    rest += bytes_.substr(from, offset - from);
    from = offset + size;
  }
  rest += bytes_.substr(from);
  files_->write(path_, rest);
}

}  // namespace twk::batch
