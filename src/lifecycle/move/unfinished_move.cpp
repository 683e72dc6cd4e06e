#include "lifecycle/move/unfinished_move.hpp"

#include "base/errors.hpp"
#include "base/text.hpp"
#include "creation/paths.hpp"
#include "session/session.hpp"

namespace twk::lifecycle {
namespace {

using session::Session;

/// For an account and a share, which together form a valid file name.
std::string memory_path(const Session& session, std::string_view account, const std::string& old_path) {
  return session.dbpath + "Unfinished move of " + std::string(account) + " from " +
         creation::Get_Server_Name(old_path) + " " + creation::Get_Share_Name(old_path) + ".txt";
}

}  // namespace

void remember_old_folder(Session& session, std::string_view account, const std::string& old_path,
                         const std::string& way) {
  if (session.run.terms.rehearse)
    return;
  // A single write, without a temporary file that a killed program would leave: the share is removed only
  // after it.
  base::Trap trap;
  trap(
      [&] { session.platform.files.open_append(memory_path(session, account, old_path), true)->write(way); });
}

std::string remembered_old_folder(Session& session, std::string_view account, const std::string& old_path) {
  std::string way;
  base::Trap none;
  none([&] { way = session.platform.files.read(memory_path(session, account, old_path)); });
  return way;
}

void forget_old_folder(Session& session, std::string_view account, const std::string& old_path) {
  if (session.run.terms.rehearse)
    return;
  base::Trap none;
  none([&] { session.platform.files.remove(memory_path(session, account, old_path)); });
}

}  // namespace twk::lifecycle
