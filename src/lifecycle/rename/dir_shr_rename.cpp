#include "lifecycle/rename/dir_shr_rename.hpp"

#include "base/errors.hpp"
#include "base/text.hpp"
#include "creation/paths.hpp"
#include "lifecycle/trees/file_operation.hpp"
#include "session/session.hpp"

namespace twk::lifecycle {

using creation::Get_Server_Name;
using creation::Get_Share_Name;
using session::Session;

std::size_t tail_position(std::string_view path) {
  constexpr std::size_t kBehindSlashes = 2;
  if (!path.starts_with('\\') || path.size() <= kBehindSlashes)
    return 0;
  const std::size_t share = path.find('\\', kBehindSlashes);
  if (share == base::npos)
    return 0;
  const std::size_t tail = path.find('\\', share + 1);
  return tail == base::npos ? 0 : tail;
}

std::string tail_of(std::string_view path) {
  const std::size_t at = tail_position(path);
  return at == 0 ? std::string() : std::string(path.substr(at));
}

bool Has_Sub_Path(std::string_view path) {
  return tail_position(path) != 0;
}

bool Same_Share(std::string_view a, std::string_view b) {
  return base::equals_fold(Get_Server_Name(a) + Get_Share_Name(a), Get_Server_Name(b) + Get_Share_Name(b));
}

bool Delete_Share_Of(Session& session, std::string_view path) {
  bool deleted = false;
  base::Trap trap;
  trap([&] { deleted = delete_share(session, Get_Server_Name(path), Get_Share_Name(path)); });
  return deleted;
}

std::string Admin_Path_Of(Session& session, std::string_view path, bool KeepTail) {
  const std::string folder = Share_Local_Path(session, path);
  if (folder.size() < 2 || folder[1] != ':') {
    base::raise(base::error::kPathNotFound,
                "The share of " + std::string(path) + " stands for no folder of a drive: " + folder);
  }
  return "\\\\" + Get_Server_Name(path) + "\\" + folder.substr(0, 1) + "$" + folder.substr(2) +
         (KeepTail ? tail_of(path) : std::string());
}

bool Dir_Exists(Session& session, std::string_view path) {
  const bool there = session.platform.files.is_directory(path);
  look_up_temp(session);
  return there;
}

void look_up_temp(Session& session) {
  const std::string temp = session.platform.environment.variable("TEMP");
  if (!temp.empty())
    static_cast<void>(session.platform.files.is_directory(temp));
}

std::string Cut_At_Name(std::string_view path, std::string_view name) {
  const std::size_t found = base::find_fold(path, name);
  if (found == base::npos)
    return {};
  return std::string(path.substr(0, path.find('\\', found + name.size())));
}

std::string Share_Local_Path(Session& session, std::string_view path) {
  return session.platform.directory
      .GetObject("WinNT://" + Get_Server_Name(path) + "/lanmanserver/" + Get_Share_Name(path))
      ->Get("Path")
      .text();
}

}  // namespace twk::lifecycle
