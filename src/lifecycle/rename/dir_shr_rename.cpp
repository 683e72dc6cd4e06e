#include "lifecycle/rename/dir_shr_rename.hpp"

#include "base/errors.hpp"
#include "base/text.hpp"
#include "creation/paths.hpp"
#include "platform/adsi.hpp"
#include "platform/network_path.hpp"
#include "session/session.hpp"

namespace twk::lifecycle {

using creation::Get_Server_Name;
using creation::Get_Share_Name;
using session::Session;

std::size_t tail_position(std::string_view path) {
  const std::string_view tail = platform::take_apart(path).tail;
  return tail.empty() ? 0 : path.size() - tail.size();
}

std::string tail_of(std::string_view path) {
  return std::string(platform::take_apart(path).tail);
}

bool Has_Sub_Path(std::string_view path) {
  return tail_position(path) != 0;
}

bool Same_Share(std::string_view a, std::string_view b) {
  return base::equals_fold(Get_Server_Name(a) + Get_Share_Name(a), Get_Server_Name(b) + Get_Share_Name(b));
}

std::string Admin_Path_Of(Session& session, std::string_view path, bool KeepTail) {
  const std::string folder = Share_Local_Path(session, path);
  if (folder.size() < 2 || folder[1] != ':') {
    base::raise(base::error::kPathNotFound,
                "The share of " + std::string(path) + " leads to no folder of a drive: " + folder);
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

std::string Share_Local_Path(Session& session, std::string_view path) {
  return session.platform.directory
      .GetObject(platform::share_path(Get_Server_Name(path), Get_Share_Name(path)))
      ->Get("Path")
      .text();
}

}  // namespace twk::lifecycle
