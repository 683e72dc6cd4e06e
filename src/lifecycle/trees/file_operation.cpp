#include "lifecycle/trees/file_operation.hpp"

#include <algorithm>

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "lifecycle/account/consent.hpp"
#include "lifecycle/trees/file_progress.hpp"
#include "lifecycle/trees/folder_use.hpp"
#include "lifecycle/trees/tree_copy.hpp"
#include "lifecycle/trees/tree_path.hpp"
#include "platform/adsi.hpp"
#include "session/session.hpp"

namespace twk::lifecycle {
namespace {

using platform::Answer;
using session::Session;

constexpr std::string_view kContents = "\\*.*";

bool is_yes(Session& session, const std::string& text, std::string_view title) {
  return session.platform.dialogs.MsgBox(text, platform::Buttons::kYesNo, platform::Icon::kQuestion, title) ==
         Answer::kYes;
}

std::string name_of(const TreePath& path) {
  return path.parts.empty() ? path.share : path.parts.back();
}

/// A folder that the program cannot read now may become readable once ownership is taken.
bool rehearse_deletion(Session& session, const std::string& path) {
  Tree tree;
  base::Trap closed;
  if (closed([&] { tree = read_tree(session.platform.files, path); })) {
    session.run.terms.rehearse("Delete the folder " + path + " with " + contents_text(tree));
  } else {
    session.run.terms.rehearse("Delete the folder " + path +
                               ", which cannot be read now: " + closed.description());
  }
  return true;
}

/// True when everything was deleted; the folder of a share itself stays, because it is shared.
bool delete_tree(Session& session, std::string_view path, const Owner& owner) {
  const TreePath own = require_own_tree(session, path, owner);
  if (session.run.terms.rehearse)
    return rehearse_deletion(session, own.text());
  platform::Files& files = session.platform.files;
  const Tree tree = read_tree(files, own.text());
  if (!is_silent(session) &&
      !is_yes(session,
              "Are you sure you want to remove the folder '" + name_of(own) + "' and all its contents?\r\n" +
                  own.text() + "\r\n" + contents_text(tree),
              "Confirm Folder Delete"))
    return false;
  const ShownProgress shown(session.run.view());
  if (!remove_tree(files, tree, {.going_on = Turns(session, tree, "Deleting " + own.text())}))
    return false;
  if (!own.parts.empty())
    files.remove_directory(own.text());
  return true;
}

/// Raises when the target is inside the source: what is copied there would be copied again.
void require_outside(Session& session, const TreePath& source, const TreePath& target) {
  const auto outer = folder_on_server(session, source);
  const auto inner = folder_on_server(session, target);
  if (base::equals_fold(source.server, target.server) && outer && inner && holds_folder(*outer, *inner)) {
    base::raise(base::error::kPathFileAccess,
                target.text() + " is the folder " + source.text() + " or is inside it");
  }
}

/// What a copy or a move works on.
struct CopyWork {
  TreePath source;
  TreePath target;
  bool moves;
};

CopyWork prepare_copy(Session& session, std::string_view from, std::string_view to, FileWork work,
                      const Owner& owner) {
  if (from.ends_with(kContents))
    from.remove_suffix(kContents.size());
  const bool moves = work == FileWork::kMove;
  CopyWork prepared{moves ? require_own_tree(session, from, owner) : parse_tree_path(from),
                    parse_tree_path(to), moves};
  require_outside(session, prepared.source, prepared.target);
  require_no_link_on_the_way(session, prepared.source);
  require_no_link_on_the_way(session, prepared.target);
  return prepared;
}

void rehearse_copy(Session& session, const CopyWork& work, const Tree& tree, const CopyPlan& plan,
                   const CopyRules& rules) {
  if (!plan.replaced.empty() && !rules.replaces)
    base::raise(base::error::kFileExists, plan.replaced + " already exists and is a different file");
  const auto replaced = std::count(plan.steps.begin(), plan.steps.end(), CopyStep::kReplace);
  session.run.terms.rehearse((work.moves ? "Move what " : "Copy what ") + work.source.text() + " holds to " +
                             work.target.text() + ": " + contents_text(tree) +
                             (replaced == 0 ? "" : ", replacing " + base::to_text(replaced)));
}

bool copy_or_move(Session& session, const CopyWork& work, const CopyRules& rules) {
  platform::Files& files = session.platform.files;
  const std::string target = work.target.text();
  Tree tree = read_tree(files, work.source.text());
  if (!rules.except.empty())
    leave_out(tree, rules.except);
  const CopyPlan plan = plan_copy(files, tree, target);
  if (session.run.terms.rehearse) {
    rehearse_copy(session, work, tree, plan, rules);
    return true;
  }
  TreeHooks hooks;
  hooks.going_on = Turns(session, tree, (work.moves ? "Moving " : "Copying ") + tree.top);
  hooks.made = rules.made;
  if (rules.replaces) {
    hooks.may_replace = [&](const std::string& file) {
      return is_silent(session) || is_yes(session,
                                          "This folder already contains a file named\r\n" + file +
                                              "\r\nReplace it, and all others that already exist?",
                                          "Confirm File Replace");
    };
  }
  const ShownProgress shown(session.run.view());
  if (!rules.apart)
    require_other_folder(files, tree.top, target);
  if (!copy_tree(files, tree, target, plan, hooks))
    return false;
  if (work.moves)
    remove_copied(files, tree, target);
  return true;
}

}  // namespace

bool File_Operation(Session& session, std::string_view from, std::string_view to, FileWork work,
                    const Owner& owner, const CopyRules& rules) {
  bool done = false;
  base::Trap trap;
  trap([&] {
    done = work == FileWork::kDelete
               ? delete_tree(session, from, owner)
               : copy_or_move(session, prepare_copy(session, from, to, work, owner), rules);
  });
  if (trap.number() != 0) {
    session.log.reason("File operation failed: " + base::in_words(trap.number(), trap.description()));
    session.status.panel1 = trap.description();
    if (session.run.terms.rehearse)
      session.run.terms.rehearse("Refused: " + base::in_words(trap.number(), trap.description()));
  }
  return done;
}

bool Check_Path_Word(Session& session, std::string_view path, std::string_view word,
                     std::string_view message) {
  if (base::find_fold(path, word) == base::npos)
    return false;
  session.platform.dialogs.beep();
  session.log.reason(message);
  return true;
}

std::string Locate_Share_Point(Session& session, const std::string& server, const std::string& share) {
  constexpr std::size_t kMostCandidates = 5;
  platform::DirectoryService& directory = session.platform.directory;
  const std::string folder = directory.GetObject(platform::share_path(server, share))->Get("Path").text();
  std::vector<std::string> above;
  for (std::size_t at = folder.size(); at > 0 && above.size() < kMostCandidates; --at) {
    if (folder[at - 1] == '\\')
      above.push_back(folder.substr(0, at - 1));
  }
  std::string found;
  const std::vector<std::string> classes{"FileShare"};
  directory.GetObject(platform::shares_path(server))->enumerate(classes, [&](const platform::ObjectPtr& one) {
    std::string path = one->Get("Path").text();
    // A drive has a backslash at its end, unlike any other folder.
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
  session.platform.directory.GetObject(platform::shares_path(server))->Delete("fileshare", share);
  folder_use(session)->forget_share(server, share);
  return true;
}

}  // namespace twk::lifecycle
