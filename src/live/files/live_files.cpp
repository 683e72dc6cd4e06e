#include "live/files/live_files.hpp"

#include <algorithm>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "live/files/smb_copy.hpp"

namespace twk::live {
namespace {

class LiveAppendFile final : public platform::AppendFile {
 public:
  explicit LiveAppendFile(std::unique_ptr<SmbFile> file) : file_(std::move(file)) {}
  void write(std::string_view bytes) override { file_->write(file_->size(), bytes); }

 private:
  std::unique_ptr<SmbFile> file_;
};

[[noreturn]] void refuse_records(const SmbPath& path) {
  base::raise(base::error::kPathFileAccess,
              "cannot open " + path.text() +
                  ": a file of records is used through a mounted folder, not through a network path");
}

std::string read_all(SmbFile& file) {
  std::string bytes;
  constexpr std::size_t kPiece = std::size_t{1} << 20;
  for (;;) {
    const std::string piece = file.read(bytes.size(), kPiece);
    bytes += piece;
    if (piece.size() < kPiece)
      return bytes;
  }
}

}  // namespace

bool LiveFiles::is_there(const SmbPath& path) {
  base::Trap trap;
  trap([&] { client_.status(path); });
  return trap.number() == 0;
}

bool LiveFiles::exists(std::string_view path) {
  bool found = false;
  base::Trap unreachable;
  unreachable([&] {
    const auto place = parse_smb_path(path);
    found = place ? is_there(*place) : workstation_.exists(path);
  });
  return found;
}

bool LiveFiles::is_directory(std::string_view path) {
  bool found = false;
  base::Trap unreachable;
  unreachable([&] {
    const auto place = parse_smb_path(path);
    found = place ? client_.status(*place).directory : workstation_.is_directory(path);
  });
  return found;
}

void LiveFiles::make_directory(std::string_view path) {
  if (const auto place = parse_smb_path(path))
    client_.make_directory(*place);
  else
    workstation_.make_directory(path);
}

std::vector<platform::FileEntry> LiveFiles::list(std::string_view path) {
  const auto place = parse_smb_path(path);
  if (!place)
    return workstation_.list(path);
  std::vector<platform::FileEntry> entries = client_.list(*place);
  std::sort(entries.begin(), entries.end(), [](const auto& a, const auto& b) { return a.name < b.name; });
  return entries;
}

/// Lists its folder: only there does a server report the spelling of a name and whether it is a link.
platform::FileEntry LiveFiles::status(std::string_view path) {
  const auto place = parse_smb_path(path);
  if (!place)
    return workstation_.status(path);
  platform::FileEntry found = client_.status(*place);
  const auto folder = place->folder();
  if (!folder) {
    found.name = place->share;
    return found;
  }
  const std::string name = place->path.substr(folder->path.empty() ? 0 : folder->path.size() + 1);
  for (platform::FileEntry& entry : client_.list(*folder)) {
    if (base::equals_fold(entry.name, name))
      return std::move(entry);
  }
  found.name = name;
  return found;
}

void LiveFiles::remove_directory(std::string_view path) {
  if (const auto place = parse_smb_path(path))
    client_.remove_directory(*place);
  else
    workstation_.remove_directory(path);
}

std::string LiveFiles::read(std::string_view path) {
  const auto place = parse_smb_path(path);
  return place ? read_all(*client_.open(*place, SmbOpen::kRead)) : workstation_.read(path);
}

void LiveFiles::write(std::string_view path, std::string_view bytes) {
  const auto place = parse_smb_path(path);
  if (!place)
    return workstation_.write(path, bytes);
  if (!is_there(*place)) {
    client_.open(*place, SmbOpen::kNew)->write(0, bytes);
    return;
  }
  SmbPath fresh = *place;
  fresh.path += ".twk-new";
  client_.open(fresh, SmbOpen::kReplace)->write(0, bytes);
  client_.rename(fresh, *place);
}

void LiveFiles::remove(std::string_view path) {
  const auto place = parse_smb_path(path);
  if (!place)
    return workstation_.remove(path);
  if (client_.status(*place).directory)
    base::raise(base::error::kPathFileAccess, "cannot remove " + place->text() + ": it is a folder");
  client_.remove_file(*place);
}

bool LiveFiles::copy_file(std::string_view from, std::string_view to, bool replace,
                          const platform::CopyProgress& progress) {
  const auto source = parse_smb_path(from);
  const auto target = parse_smb_path(to);
  if (!source && !target)
    return workstation_.copy_file(from, to, replace, progress);
  if (!target) {
    base::raise(base::error::kPathFileAccess,
                "cannot copy " + source->text() + ": " + std::string(to) + " is on the workstation");
  }
  CopySource file{.name = std::string(from), .status = [&] { return status(from); }, .read = {}};
  if (!source) {
    const auto opened = workstation_.open_random_read(from);
    file.read = [&](std::uint64_t offset, std::size_t count) { return opened->read(offset, count); };
    return copy_to_server(client_, file, *target, replace, progress);
  }
  std::unique_ptr<SmbFile> opened;
  file.read = [&](std::uint64_t offset, std::size_t count) {
    if (opened == nullptr)
      opened = client_.open(*source, SmbOpen::kRead);
    return opened->read(offset, count);
  };
  return copy_to_server(client_, file, *target, replace, progress);
}

void LiveFiles::rename(std::string_view from, std::string_view to, bool replace) {
  const auto source = parse_smb_path(from);
  const auto target = parse_smb_path(to);
  if (!source && !target)
    return workstation_.rename(from, to, replace);
  const bool same_share = source && target && base::equals_fold(source->server, target->server) &&
                          base::equals_fold(source->share, target->share);
  if (!same_share) {
    base::raise(base::error::kDifferentDrive,
                "cannot rename " + std::string(from) + ": " + std::string(to) + " is not on the same share");
  }
  client_.status(*source);
  if (!replace && is_there(*target))
    base::raise(base::error::kFileExists,
                "cannot rename " + source->text() + ": " + target->text() + " is there");
  client_.rename(*source, *target);
}

std::unique_ptr<platform::AppendFile> LiveFiles::open_append(std::string_view path, bool truncate) {
  const auto place = parse_smb_path(path);
  if (!place)
    return workstation_.open_append(path, truncate);
  return std::make_unique<LiveAppendFile>(
      client_.open(*place, truncate ? SmbOpen::kReplace : SmbOpen::kWrite));
}

std::unique_ptr<platform::RandomFile> LiveFiles::open_random(std::string_view path) {
  if (const auto place = parse_smb_path(path))
    refuse_records(*place);
  return workstation_.open_random(path);
}

std::unique_ptr<platform::RandomFile> LiveFiles::open_random_read(std::string_view path) {
  if (const auto place = parse_smb_path(path))
    refuse_records(*place);
  return workstation_.open_random_read(path);
}

}  // namespace twk::live
