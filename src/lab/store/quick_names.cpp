#include "lab/store/quick_names.hpp"

#include <fcntl.h>

#include <algorithm>
#include <set>
#include <vector>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "lab/store/base64.hpp"
#include "lab/store/posix_file.hpp"

namespace twk::lab {
namespace {

class NameFinder {
 public:
  NameFinder(std::string_view attribute, std::string_view object_class, std::string_view prefix,
             std::size_t most)
      : line_("\n" + std::string(attribute) + ":"),
        class_line_("\nobjectClass: " + std::string(object_class) + "\n"),
        prefix_(prefix),
        most_(most) {}

  /// Looks through whole records, which begin after a line end and end with an empty line.
  void look_through(std::string_view records) {
    for (std::size_t at = records.find(line_); at != std::string_view::npos && names_.size() < most_;
         at = records.find(line_, at + line_.size())) {
      const std::size_t begin = at + line_.size();
      std::string name = value(unfolded(records.substr(begin)));
      if (base::starts_with_fold(name, prefix_) && is_of_class(records, at))
        names_.insert(std::move(name));
    }
  }
  [[nodiscard]] bool is_full() const { return names_.size() >= most_; }
  [[nodiscard]] std::vector<std::string> take() { return {names_.begin(), names_.end()}; }

 private:
  /// The line with those that go on with it (RFC 2849, note 2).
  static std::string unfolded(std::string_view text) {
    std::string line;
    for (;;) {
      const std::size_t end = std::min(text.find('\n'), text.size());
      line += text.substr(0, end);
      if (text.substr(end, 2) != "\n ")
        return line;
      text.remove_prefix(end + 2);
    }
  }

  /// What follows the colon after an attribute's name.
  static std::string value(std::string_view rest) {
    if (rest.starts_with(':'))
      return decode_base64(base::trim(rest.substr(1))).value_or(std::string());
    return std::string(base::trim(rest));
  }

  [[nodiscard]] bool is_of_class(std::string_view records, std::size_t at) const {
    const std::size_t before = records.rfind("\n\n", at);
    const std::size_t begin = before == std::string_view::npos ? 0 : before + 1;
    const std::size_t end = records.find("\n\n", at + 1);
    return records.substr(begin, end == std::string_view::npos ? end : end + 1 - begin).find(class_line_) !=
           std::string_view::npos;
  }

  std::string line_;
  std::string class_line_;
  std::string prefix_;
  std::size_t most_;
  std::set<std::string> names_;
};

void look_through(const std::filesystem::path& path, NameFinder& finder) {
  constexpr std::size_t kBlock = std::size_t{1} << 20;
  const auto file = PosixFile::try_open(path, O_RDONLY);
  if (!file)
    return;
  std::string text = "\n";
  std::vector<char> block(kBlock);
  for (std::uint64_t offset = 0; !finder.is_full();) {
    const std::size_t size = file->read(offset, block);
    if (size == 0)
      return finder.look_through(text);
    offset += size;
    text.append(block.data(), size);
    const std::size_t end = text.rfind("\n\n");
    if (end == std::string::npos)
      continue;
    finder.look_through(std::string_view(text).substr(0, end + 2));
    text.erase(0, end + 1);
  }
}

}  // namespace

std::vector<std::string> quick_names(const std::filesystem::path& lab, std::string_view attribute,
                                     std::string_view object_class, std::string_view prefix,
                                     std::size_t most) {
  NameFinder finder(attribute, object_class, prefix, most);
  base::Trap unreadable;
  unreadable([&] {
    for (const char* const name : {"domain.journal.ldif", "domain.ldif"})
      look_through(lab / name, finder);
  });
  return finder.take();
}

}  // namespace twk::lab
