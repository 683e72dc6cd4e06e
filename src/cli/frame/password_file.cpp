#include "cli/frame/password_file.hpp"

#include <fcntl.h>

#include <cerrno>

#include "cli/terminal/failures.hpp"
#include "local/file_errors.hpp"

namespace twk::cli {
namespace {

local::Descriptor open_new(const std::string& path) {
  constexpr mode_t kOwnerOnly = 0600;
  local::Descriptor file =
      local::try_open_descriptor(path, O_WRONLY | O_CREAT | O_EXCL | O_APPEND | O_NOFOLLOW, kOwnerOnly);
  if (file.get() < 0 && errno == EEXIST)
    throw BadInput("The file " + path + " exists already: passwords are written to a new one only");
  if (file.get() < 0)
    local::raise_file_error(errno, "create", path);
  return file;
}

std::string csv_quoted(std::string_view text) {
  std::string out = "\"";
  for (const char c : text)
    out += c == '"' ? std::string("\"\"") : std::string(1, c);
  return out + "\"";
}

}  // namespace

PasswordFile::PasswordFile(std::string path) : path_(std::move(path)), file_(open_new(path_)) {
  local::write_all(file_, "account,password\r\n", path_);
}

void PasswordFile::add(std::string_view account, std::string_view password) {
  local::write_all(file_, csv_quoted(account) + "," + csv_quoted(password) + "\r\n", path_);
}

}  // namespace twk::cli
