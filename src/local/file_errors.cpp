#include "local/file_errors.hpp"

#include <cerrno>
#include <filesystem>
#include <system_error>

#include "base/errors.hpp"

namespace twk::local {
namespace {

bool is_parent_there(const std::string& path) {
  const std::filesystem::path parent = std::filesystem::path(path).parent_path();
  std::error_code ignored;
  return parent.empty() || std::filesystem::is_directory(parent, ignored);
}

}  // namespace

std::uint32_t number_of_file_error(int error, bool folder_is_there) {
  switch (error) {
    case ENOENT:
      return folder_is_there ? base::error::kFileNotFound : base::error::kPathNotFound;
    case ENOTDIR:
      return base::error::kPathNotFound;
    case EEXIST:
      return base::error::kFileExists;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
      return base::error::kDiskFull;
    case EACCES:
    case EPERM:
    case EROFS:
    case EAGAIN:
    case EBUSY:
    case ETXTBSY:
      return base::error::kPermissionDenied;
    case EXDEV:
      return base::error::kDifferentDrive;
    case ENAMETOOLONG:
    case EILSEQ:
    case EINVAL:
      return base::error::kBadFileName;
    default:
      return base::error::kPathFileAccess;
  }
}

void raise_file_error(int error, std::string_view action, const std::string& path) {
  throw base::RuntimeError(
      number_of_file_error(error, is_parent_there(path)),
      "cannot " + std::string(action) + " " + path + ": " + std::generic_category().message(error));
}

}  // namespace twk::local
