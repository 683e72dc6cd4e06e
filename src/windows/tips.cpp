#include "windows/tips.hpp"

#include "base/errors.hpp"
#include "base/text.hpp"
#include "base/text_file.hpp"
#include "stores/database_files.hpp"
#include "windows/state/desktop.hpp"

namespace twk::windows {
namespace {

std::vector<std::string> lines_of(std::string_view text) {
  std::vector<std::string> tips;
  for (std::string& line : base::split(text, '\n')) {
    if (line.ends_with('\r'))
      line.pop_back();
    if (!base::trim(line).empty())
      tips.emplace_back(base::trim(line));
  }
  return tips;
}

}  // namespace

std::vector<std::string> read_tips(Desktop& session, std::string_view shipped) {
  const std::string path = stores::database_path(session, kTipFile);
  if (!session.platform.files.exists(path))
    return lines_of(shipped);
  base::Trap trap;
  std::string text;
  trap([&] { text = base::decoded(session.platform.files.read(path)); });
  return lines_of(text);
}

}  // namespace twk::windows
