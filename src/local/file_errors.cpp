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

std::uint32_t runtime_number(int error, const std::string& path) {
  switch (error) {
    case ENOENT:
      return is_parent_there(path) ? base::error::kFileNotFound : base::error::kPathNotFound;
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

}  // namespace

void raise_file_error(int error, std::string_view action, const std::string& path) {
  throw base::RuntimeError(runtime_number(error, path), "cannot " + std::string(action) + " " + path + ": " +
                                                            std::generic_category().message(error));
}

}  // namespace twk::local
