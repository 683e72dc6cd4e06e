#include "cli/terminal/input.hpp"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <utility>

#include "base/secret.hpp"
#include "base/text.hpp"
#include "base/text_file.hpp"
#include "cli/terminal/failures.hpp"

namespace twk::cli {
namespace {

constexpr std::size_t kMostBytes = std::size_t{64} << 20U;

struct CloseFile {
  void operator()(std::FILE* file) const {
    if (file != stdin)
      std::fclose(file);
  }
};

[[noreturn]] void fail(const std::string& name, int reason) {
  throw BadInput("Cannot read " + name + ": " + std::strerror(reason));  // NOLINT(concurrency-mt-unsafe)
}

}  // namespace

std::string read_input(const std::string& path) {
  const std::string name = path == "-" ? "standard input" : path;
  const std::unique_ptr<std::FILE, CloseFile> file(path == "-" ? stdin : std::fopen(path.c_str(), "rb"));
  if (!file)
    fail(name, errno);
  std::string out;
  std::string piece(std::size_t{1} << 16U, '\0');
  std::size_t count = 0;
  while ((count = std::fread(piece.data(), 1, piece.size(), file.get())) > 0) {
    if (out.size() + count > kMostBytes)
      throw BadInput(name + " is larger than 64 MiB");
    out.append(piece, 0, count);
  }
  if (std::ferror(file.get()) != 0)
    fail(name, errno);
  return out;
}

std::vector<std::string> text_lines(std::string_view text) {
  std::vector<std::string> lines = base::split(base::decoded(text), '\n');
  for (std::string& line : lines) {
    if (line.ends_with('\r'))
      line.pop_back();
  }
  if (!lines.empty() && lines.back().empty())
    lines.pop_back();
  return lines;
}

std::string read_password(const std::string& path) {
  std::string text = read_input(path);
  std::vector<std::string> lines = text_lines(text);
  base::wipe(text);
  if (lines.empty())
    throw BadInput("There is no password in " + (path == "-" ? "standard input" : path));
  return std::move(lines.front());
}

}  // namespace twk::cli
