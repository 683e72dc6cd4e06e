#include "lifecycle/trees/file_progress.hpp"

#include <algorithm>
#include <array>

#include "base/text.hpp"
#include "session/session.hpp"

namespace twk::lifecycle {
namespace {

constexpr std::uint64_t kFilesATurn = 32;
constexpr std::uint64_t kBytesATurn = 8U << 20U;

std::string number_text(std::uint64_t number) {
  return base::to_text(static_cast<std::int64_t>(number));
}

/// Of the bytes, or of the files when they are empty.
int percent(const TreeProgress& done, const Tree& tree) {
  const std::uint64_t whole = tree.bytes > 0 ? tree.bytes : tree.files;
  const std::uint64_t part = tree.bytes > 0 ? done.bytes : done.files;
  return whole == 0 ? 100 : static_cast<int>(std::min(part, whole) * 100 / whole);
}

/// "1 file, ", "5 files, ".
std::string files_text(std::size_t files) {
  return number_text(files) + (files == 1 ? " file, " : " files, ");
}

}  // namespace

std::string size_text(std::uint64_t bytes) {
  if (bytes == 1)
    return "1 byte";
  constexpr std::array kUnits = {" bytes", " KB", " MB", " GB", " TB"};
  std::size_t unit = 0;
  std::uint64_t tenths = bytes * 10;
  for (; tenths >= 10240 && unit + 1 < kUnits.size(); ++unit)
    tenths /= 1024;
  std::string text = number_text(tenths / 10);
  if (unit > 0)
    text += "." + number_text(tenths % 10);
  return text + kUnits.at(unit);
}

std::string contents_text(const Tree& tree) {
  return files_text(tree.files) + size_text(tree.bytes);
}

bool Turns::operator()(const TreeProgress& done) {
  const bool due = done.files >= told_.files + kFilesATurn || done.bytes >= told_.bytes + kBytesATurn ||
                   done.files == tree_.files;
  if (!due)
    return true;
  told_ = done;
  const std::string text = verb_ + ": " + number_text(done.files) + " of " + files_text(tree_.files) +
                           size_text(done.bytes) + " of " + size_text(tree_.bytes);
  session_.run.view().files(text, percent(done, tree_));
  return session_.run.goes_on();
}

}  // namespace twk::lifecycle
