#include "lifecycle/file_operation.hpp"

#include <algorithm>
#include <array>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "lifecycle/consent.hpp"
#include "lifecycle/folder_use.hpp"
#include "lifecycle/tree_copy.hpp"
#include "lifecycle/tree_path.hpp"
#include "session/session.hpp"

namespace twk::lifecycle {
namespace {

using platform::Answer;
using session::Session;

constexpr std::string_view kContents = "\\*.*";
constexpr std::uint64_t kFilesATurn = 32;
constexpr std::uint64_t kBytesATurn = 8U << 20U;

bool is_yes(Session& session, const std::string& text, std::string_view title) {
  return session.platform.dialogs.MsgBox(text, platform::Buttons::kYesNo, platform::Icon::kQuestion, title) ==
         Answer::kYes;
}

/// "1.4 GB"; from 1024 on with one digit behind the point.
std::string size_text(std::uint64_t bytes) {
  constexpr std::array kUnits = {" bytes", " KB", " MB", " GB", " TB"};
  std::size_t unit = 0;
  std::uint64_t tenths = bytes * 10;
  for (; tenths >= 10240 && unit + 1 < kUnits.size(); ++unit)
    tenths /= 1024;
  std::string text = base::to_text(static_cast<std::int64_t>(tenths / 10));
  if (unit > 0)
    text += "." + base::to_text(static_cast<std::int64_t>(tenths % 10));
  return text + kUnits.at(unit);
}

std::string of_total(std::uint64_t done, std::uint64_t total) {
  return base::to_text(static_cast<std::int64_t>(done)) + " of " +
         base::to_text(static_cast<std::int64_t>(total)) + " files";
}

bool is_running(const Session& session) {
  return session.runs.Delete_Running || session.runs.Move_Running;
}

/// Shows the window with the Cancel button for a scope, unless a run has a window of its own.
class ShownProgress {
 public:
  explicit ShownProgress(Session& session)
      : session_(session), shows_(!is_running(session)), was_enabled_(session.form1.enabled) {
    if (!shows_)
      return;
    session_.file_progress.text.caption = std::string("Starting...");
    session_.file_progress.done.value = 0;
    session_.form1.enabled = false;
    session_.file_progress.visible = true;
  }
  ShownProgress(const ShownProgress&) = delete;
  ShownProgress& operator=(const ShownProgress&) = delete;
  ~ShownProgress() {
    if (!shows_)
      return;
    session_.file_progress.visible = false;
    session_.form1.enabled = was_enabled_;
  }

 private:
  Session& session_;
  bool shows_;
  bool was_enabled_;
};

/// Of the bytes, or of the files when they are empty.
int percent(const TreeProgress& done, const Tree& tree) {
  const std::uint64_t whole = tree.bytes > 0 ? tree.bytes : tree.files;
  const std::uint64_t part = tree.bytes > 0 ? done.bytes : done.files;
  return whole == 0 ? 100 : static_cast<int>(std::min(part, whole) * 100 / whole);
}

/// Tells how far the work is, and lets a press of Cancel in.
class Turns {
 public:
  Turns(Session& session, const Tree& tree, std::string_view verb)
      : session_(session), tree_(tree), verb_(verb) {}

  bool operator()(const TreeProgress& done) {
    const bool due = done.files >= told_.files + kFilesATurn || done.bytes >= told_.bytes + kBytesATurn ||
                     done.files == tree_.files;
    if (!due)
      return true;
    told_ = done;
    const std::string text = verb_ + ": " + of_total(done.files, tree_.files) + ", " + size_text(done.bytes) +
                             " of " + size_text(tree_.bytes);
    session_.multi_user.progress.caption = text;
    session_.file_progress.text.caption = text;
    session_.file_progress.done.value = percent(done, tree_);
    if (!is_running(session_))
      session_.form1.StatusBar1.panel1 = text;
    session_.platform.dialogs.DoEvents();
    return !session_.import.ImportStopped;
  }

 private:
  Session& session_;
  const Tree& tree_;
  std::string verb_;
  TreeProgress told_;
};

std::string name_of(const TreePath& path) {
  return path.parts.empty() ? path.share : path.parts.back();
}

/// A folder that is closed to the program now may be open once ownership was taken.
bool rehearse_deletion(Session& session, const std::string& path) {
  Tree tree;
  base::Trap closed;
  if (closed([&] { tree = read_tree(session.platform.files, path); })) {
    session.runs.rehearse("Delete the folder " + path + " with " +
                          base::to_text(static_cast<std::int64_t>(tree.files)) + " files, " +
                          size_text(tree.bytes));
  } else {
    session.runs.rehearse("Delete the folder " + path +
                          ", which cannot be looked through now: " + closed.description());
  }
  return true;
}

/// True when all went; the folder of a share itself stays, its share holds it.
bool delete_tree(Session& session, std::string_view path, const Owner& owner) {
  const TreePath own = require_own_tree(session, path, owner);
  if (session.runs.rehearse)
    return rehearse_deletion(session, own.text());
  platform::Files& files = session.platform.files;
  const Tree tree = read_tree(files, own.text());
  if (!is_silent(session) &&
      !is_yes(session,
              "Are you sure you want to remove the folder '" + name_of(own) + "' and all its contents?\r\n" +
                  own.text() + "\r\n" + base::to_text(static_cast<std::int64_t>(tree.files)) + " files, " +
                  size_text(tree.bytes),
              "Confirm Folder Delete"))
    return false;
  const ShownProgress shown(session);
  if (!remove_tree(files, tree, {Turns(session, tree, "Deleting " + own.text()), {}}))
    return false;
  if (!own.parts.empty())
    files.remove_directory(own.text());
  return true;
}

/// Raises when the target lies within the source: what is copied there would be copied again.
void require_outside(Session& session, const TreePath& source, const TreePath& target) {
  const auto outer = folder_on_server(session, source);
  const auto inner = folder_on_server(session, target);
  if (base::equals_fold(source.server, target.server) && outer && inner && holds_folder(*outer, *inner)) {
    base::raise(base::error::kPathFileAccess,
                target.text() + " is the folder " + source.text() + " or lies in it");
  }
}

bool copy_or_move(Session& session, std::string_view from, std::string_view to, FileWork work,
                  const Owner& owner) {
  if (from.ends_with(kContents))
    from.remove_suffix(kContents.size());
  const bool moves = work == FileWork::kMove;
  const TreePath source = moves ? require_own_tree(session, from, owner) : parse_tree_path(from);
  const TreePath target = parse_tree_path(to);
  require_outside(session, source, target);
  platform::Files& files = session.platform.files;
  const Tree tree = read_tree(files, source.text());
  if (session.runs.rehearse) {
    session.runs.rehearse((moves ? "Move what " : "Copy what ") + source.text() + " holds to " +
                          target.text() + ": " + base::to_text(static_cast<std::int64_t>(tree.files)) +
                          " files, " + size_text(tree.bytes));
    return true;
  }
  TreeHooks hooks;
  hooks.going_on = Turns(session, tree, (moves ? "Moving " : "Copying ") + source.text());
  hooks.may_replace = [&](const std::string& file) {
    return is_silent(session) || is_yes(session,
                                        "This folder already contains a file named\r\n" + file +
                                            "\r\nReplace it, and all others that are there already?",
                                        "Confirm File Replace");
  };
  const ShownProgress shown(session);
  if (!copy_tree(files, tree, target.text(), hooks))
    return false;
  if (moves)
    remove_copied(files, tree);
  return true;
}

}  // namespace

bool File_Operation(Session& session, std::string_view from, std::string_view to, FileWork work,
                    const Owner& owner) {
  bool done = false;
  base::Trap trap;
  trap([&] {
    done = work == FileWork::kDelete ? delete_tree(session, from, owner)
                                     : copy_or_move(session, from, to, work, owner);
  });
  if (trap.number() != 0) {
    session.log.reason("File operation failed: " + trap.description());
    session.form1.StatusBar1.panel1 = trap.description();
    if (session.runs.rehearse)
      session.runs.rehearse("Refused: " + trap.description());
  }
  return done;
}

void FileProgress_CancelButton_Click(Session& session) {
  session.import.ImportStopped = true;
  session.file_progress.text.caption = std::string("Stopping...");
}

bool Check_Path_Word(Session& session, std::string_view path, std::string_view word,
                     std::string_view message) {
  if (base::find_fold(path, word) == base::npos)
    return false;
  session.platform.dialogs.beep();
  session.log.line(message);
  return true;
}

std::string Locate_Share_Point(Session& session, const std::string& server, const std::string& share) {
  constexpr std::size_t kMostCandidates = 5;
  const std::string object = "WinNT://" + server + "/lanmanserver";
  const std::string folder = session.platform.directory.GetObject(object + "/" + share)->Get("Path").text();
  std::vector<std::string> above;
  for (std::size_t at = folder.size(); at > 0 && above.size() < kMostCandidates; --at) {
    if (folder[at - 1] == '\\')
      above.push_back(folder.substr(0, at - 1));
  }
  std::string found;
  const std::vector<std::string> classes{"FileShare"};
  session.platform.directory.GetObject(object)->enumerate(classes, [&](const platform::ObjectPtr& one) {
    std::string path = one->Get("Path").text();
    // A drive has a backslash at its end, as no other folder has.
    while (path.ends_with('\\'))
      path.pop_back();
    for (const std::string& candidate : above) {
      if (base::equals_fold(path, candidate))
        found = "\\\\" + server + "\\" + one->Name() + folder.substr(path.size());
    }
    return found.empty();
  });
  return found;
}

bool delete_share(Session& session, const std::string& server, const std::string& share) {
  const auto folder = share_folder(session, server, share);
  if (folder && is_drive_root(*folder)) {
    session.log.line("Not deleting share " + share + " on " + server + ": it is the whole drive " + *folder);
    return false;
  }
  session.platform.directory.GetObject("WinNT://" + server + "/lanmanserver")->Delete("fileshare", share);
  folder_use(session)->forget_share(server, share);
  return true;
}

}  // namespace twk::lifecycle
