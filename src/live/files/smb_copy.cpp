#include "live/files/smb_copy.hpp"

#include "base/errors.hpp"

namespace twk::live {
namespace {

constexpr std::size_t kPiece = std::size_t{1} << 20U;

/// A file that is being written, removed again unless it is kept. A replacement is written next to the old
/// file.
class Draft {
 public:
  Draft(SmbClient& client, const SmbPath& target, bool replaces)
      : client_(client), target_(target), path_(target), replaces_(replaces) {
    if (replaces)
      path_.path += ".twk-copy";
    file_ = client_.open(path_, replaces ? SmbOpen::kReplace : SmbOpen::kNew);
  }
  Draft(const Draft&) = delete;
  Draft& operator=(const Draft&) = delete;
  ~Draft() {
    file_.reset();
    base::Trap trap;  // the cause of the failed copy is what gets reported
    if (!kept_)
      trap([&] { client_.remove_file(path_); });
  }

  void write(std::uint64_t offset, std::string_view bytes) { file_->write(offset, bytes); }
  void finish(std::int64_t modified) {
    file_.reset();
    client_.set_modified(path_, modified);
    if (replaces_)
      client_.rename(path_, target_);
    kept_ = true;
  }

 private:
  SmbClient& client_;
  SmbPath target_;
  SmbPath path_;
  bool replaces_;
  std::unique_ptr<SmbFile> file_;
  bool kept_ = false;
};

bool is_there(SmbClient& client, const SmbPath& path) {
  base::Trap trap;
  return trap([&] { client.status(path); });
}

/// False when `progress` stopped it.
bool copy_bytes(const CopySource& from, std::uint64_t size, Draft& draft,
                const platform::CopyProgress& progress) {
  for (std::uint64_t done = 0; done < size;) {
    const std::string piece = from.read(done, kPiece);
    if (piece.empty())
      return true;  // it shrank meanwhile, which the caller reports
    draft.write(done, piece);
    done += piece.size();
    if (progress && !progress(done))
      return false;
  }
  return true;
}

}  // namespace

bool copy_to_server(SmbClient& client, const CopySource& from, const SmbPath& to, bool replace,
                    const platform::CopyProgress& progress) {
  const platform::FileEntry before = from.status();
  if (before.directory || before.link)
    base::raise(base::error::kPathFileAccess, "cannot copy " + from.name + ": it is not an ordinary file");
  const bool there = is_there(client, to);
  if (there && !replace)
    base::raise(base::error::kFileExists, "cannot copy " + from.name + ": " + to.text() + " is there");
  Draft draft(client, to, there);
  if (!copy_bytes(from, before.size, draft, progress))
    return false;
  const platform::FileEntry after = from.status();
  if (after.size != before.size || after.modified != before.modified)
    base::raise(base::error::kPathFileAccess, "cannot copy " + from.name + ": it changed meanwhile");
  draft.finish(before.modified);
  return true;
}

}  // namespace twk::live
