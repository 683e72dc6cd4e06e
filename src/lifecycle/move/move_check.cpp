#include <algorithm>

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "creation/paths.hpp"
#include "lifecycle/account/account_log.hpp"
#include "lifecycle/move/move_run.hpp"
#include "lifecycle/rename/dir_shr_rename.hpp"
#include "lifecycle/trees/folder_use.hpp"
#include "platform/adsi.hpp"
#include "resources/share502.hpp"

namespace twk::lifecycle {
namespace {

using session::Session;

[[noreturn]] void raise_refusal(const std::string& why) {
  base::raise(base::error::kPathFileAccess, why);
}

/// "\\FS1\Users\jo", without a variable whose value differs between workstations.
bool is_network_path(std::string_view path) {
  return path.starts_with("\\\\") && path.find('%') == base::npos;
}

/// "FS1" and "fs1.twk.test" are one server.
bool is_same_server(std::string_view a, std::string_view b) {
  return base::equals_fold(a.substr(0, a.find('.')), b.substr(0, b.find('.')));
}

bool is_same_folder(std::string_view a, std::string_view b) {
  return holds_folder(a, b) && holds_folder(b, a);
}

std::string with_parts(std::string folder, const TreePath& path) {
  while (folder.ends_with('\\'))
    folder.pop_back();
  for (const std::string& part : path.parts)
    folder += "\\" + part;
  return folder;
}

template <typename Test>
bool is_any(const std::vector<std::string>& places, const Test& test) {
  return std::any_of(places.begin(), places.end(), test);
}

bool is_folder(MoveRun& run, const std::string& path) {
  return run.session.platform.files.is_directory(path);
}

std::string parent_of(const TreePath& path) {
  TreePath parent = path;
  if (!parent.parts.empty())
    parent.parts.pop_back();
  return parent.text();
}

/// Why a folder does not exist: what the server says, or that it is not a folder.
std::string absence(MoveRun& run, const std::string& path) {
  base::Trap trap;
  trap([&] { static_cast<void>(run.session.platform.files.status(path)); });
  return trap.number() == 0 ? path + " is not a folder" : path + " cannot be reached: " + trap.description();
}

/// The folder to make, or to fill if it exists.
void check_new_folder(MoveRun& run, MovedFolder& folder) {
  Session& session = run.session;
  const TreePath place = parse_tree_path(folder.new_admin);
  require_no_link_on_the_way(session, place);
  if (!is_folder(run, place.text()) && !is_folder(run, parent_of(place)))
    base::raise(base::error::kPathNotFound, absence(run, parent_of(place)));
  if (folder.old == OldFolder::kAlready)
    return;
  require_own_tree(session, place.text(), {.account = run.key, .own_share = folder.new_share});
  const auto use = folder_use(session);
  folder.used_by_others =
      !use->claims_within(place, run.key).empty() || !use->claims_above(place, run.key).empty();
}

void check_new_share(MoveRun& run, const MovedFolder& folder) {
  if (folder.new_share.empty())
    return;
  if (!folder.wanted)
    raise_refusal("The template has the share " + folder.new_share + " for the " + std::string(folder.what) +
                  " but no folder for it");
  const auto there = folder_use(run.session)->folder_of_share(run.server, folder.new_share);
  const auto is_that = [&](const std::string& place) { return is_same_folder(*there, place); };
  if (there && !is_any(made_places(run, folder), is_that)) {
    raise_refusal("The share " + folder.new_share + " on " + run.server + " is taken: it leads to " + *there);
  }
  const std::string& refusal = folder_use(run.session)->refusal_of_shares(run.server);
  if (!there && !refusal.empty())
    raise_refusal(refusal);
}

/// Two users, or home and profile, cannot use one share for two folders.
void check_shares_apart(const MoveRun& run) {
  if (!run.home.new_share.empty() && base::equals_fold(run.home.new_share, run.profile.new_share) &&
      !is_same_folder(run.home.new_local, run.profile.new_local))
    raise_refusal("The template gives home and profile one share, " + run.home.new_share +
                  ", for two folders");
}

/// The account's new folders must exist, or be made by this move; the workstation makes a profile's last
/// folder at the first logon.
void check_new_path(MoveRun& run, const MovedFolder& folder) {
  const bool takes_data = folder.old == OldFolder::kThere;
  if (!is_network_path(folder.new_unc)) {
    if (takes_data)
      raise_refusal("The template's path of the " + std::string(folder.what) + ", \"" + folder.new_unc +
                    "\", is not one that data can be copied to");
    return;
  }
  const TreePath path = parse_tree_path(folder.new_unc);
  const auto place = new_place(run, folder);
  if (!place)
    base::raise(base::error::kPathNotFound, path.server + " has no share " + path.share + ", to which " +
                                                folder.new_unc + " leads, and this move does not make it");
  if (folder.wanted && is_same_server(path.server, run.server) &&
      is_any(made_places(run, folder), [&](const std::string& made) { return holds_folder(made, *place); }))
    return;
  if (is_folder(run, path.text())) {
    require_no_link_on_the_way(run.session, path);
    if (takes_data)
      require_own_tree(run.session, path.text(), {.account = run.key, .own_share = folder.new_share});
    return;
  }
  if (&folder != &run.profile || !is_folder(run, parent_of(path)))
    base::raise(base::error::kPathNotFound, absence(run, path.text()) + ", and this move does not make it");
}

/// True when the server answers but does not have the folder. Raises when it does not answer.
bool is_missing(MoveRun& run, const TreePath& path) {
  if (!folder_use(run.session)->folder_of_share(path.server, path.share))
    return true;
  base::Trap trap;
  trap([&] { static_cast<void>(run.session.platform.files.status(path.text())); });
  if (trap.number() == base::error::kFileNotFound || trap.number() == base::error::kPathNotFound)
    return true;
  raise_refusal(absence(run, path.text()));
}

/// Both folders as their server spells them.
struct Places {
  std::string old;
  std::string fresh;
};

std::optional<Places> places_on_one_server(MoveRun& run, const MovedFolder& folder, const TreePath& old) {
  if (!is_network_path(folder.new_unc) || !is_same_server(old.server, parse_tree_path(folder.new_unc).server))
    return std::nullopt;
  const auto from = folder_use(run.session)->folder_of_share(old.server, old.share);
  const auto to = new_place(run, folder);
  return from && to ? std::optional(Places{with_parts(*from, old), *to}) : std::nullopt;
}

OldFolder look_at_old(MoveRun& run, const MovedFolder& folder) {
  if (!is_network_path(folder.old_path))
    raise_refusal("The " + std::string(folder.what) + " \"" + folder.old_path +
                  "\" is not a path that data can be copied from");
  const TreePath path = parse_tree_path(folder.old_path);
  const auto places = places_on_one_server(run, folder, path);
  if (places && is_same_folder(places->old, places->fresh))
    return OldFolder::kAlready;
  if (places && holds_folder(places->old, places->fresh))
    raise_refusal("The new " + std::string(folder.what) + " " + folder.new_unc + " is inside the old one, " +
                  folder.old_path);
  if (!Dir_Exists(run.session, path.text()) && is_missing(run, path))
    return OldFolder::kMissing;
  require_own_tree(run.session, path.text(), {.account = run.key, .own_share = path.share});
  if (path.parts.empty() && !folder.new_share.empty())
    require_own_share(run.session, path.server, path.share, {.account = run.key, .own_share = path.share});
  return OldFolder::kThere;
}

/// For a profile in a WinNT domain, the folder named after the user is moved.
void cut_profile(MoveRun& run) {
  if (session::is_active_directory(run.session) || !run.order.profile_named_by_user)
    return;
  run.profile.old_path = cut_at_folder_of(run.profile.old_path, run.key);
  run.profile.full_path = run.profile.new_unc;
  run.profile.new_unc = cut_at_folder_of(run.profile.new_unc, run.key);
}

MoveStep check_old(MoveRun& run, MovedFolder& folder) {
  const bool is_profile = &folder == &run.profile;
  if (run.DataMode == 0 || !folder.wanted || folder.old_path.empty() ||
      (is_profile && !reasons_to_leave_profile(folder.old_path).empty()))
    return MoveStep::kGoOn;
  if (is_profile)
    cut_profile(run);
  base::Trap trap;
  if (trap([&] { folder.old = look_at_old(run, folder); }))
    return MoveStep::kGoOn;
  folder.old = OldFolder::kUnknown;
  const bool is_named = base::find_fold(trap.description(), folder.old_path) != base::npos;
  return refuse_unless_wanted(
      run, (is_named ? std::string() : "The " + std::string(folder.what) + " " + folder.old_path + ": ") +
               base::in_words(trap.number(), trap.description()));
}

/// A profile is often kept in the home.
void find_nested(MoveRun& run, MovedFolder& outer, const MovedFolder& inner) {
  if (outer.old != OldFolder::kThere || inner.old != OldFolder::kThere)
    return;
  const TreePath out = parse_tree_path(outer.old_path);
  const TreePath in = parse_tree_path(inner.old_path);
  const auto out_folder = folder_use(run.session)->folder_of_share(out.server, out.share);
  const auto in_folder = folder_use(run.session)->folder_of_share(in.server, in.share);
  if (!is_same_server(out.server, in.server) || !out_folder || !in_folder)
    return;
  const std::string above = with_parts(*out_folder, out);
  const std::string below = with_parts(*in_folder, in);
  if (holds_folder(above, below) && !is_same_folder(above, below))
    outer.except = below.substr(above.size() + 1);
}

void check_new(MoveRun& run, MovedFolder& folder) {
  check_new_share(run, folder);
  if (folder.wanted)
    check_new_folder(run, folder);
  check_new_path(run, folder);
}

/// An account that cannot be written would lose the path to moved data: to test that, an existing value is
/// written again.
void require_writable_account(MoveRun& run) {
  const bool home = run.home.old == OldFolder::kThere;
  if (run.session.run.terms.rehearse || run.DataMode != static_cast<int>(FileWork::kMove) ||
      (!home && run.profile.old != OldFolder::kThere))
    return;
  prepare_failure(run.session, "Error Setting User Details, Can't find Domain PDC..",
                  "Error Setting User Details, Can't find Domain PDC..");
  platform::User user(run.user);
  if (home)
    user.put_HomeDirectory(user.HomeDirectory());
  else
    user.put_Profile(user.Profile());
  user.SetInfo();
}

}  // namespace

std::vector<std::string> made_places(MoveRun& run, const MovedFolder& folder) {
  const auto use = folder_use(run.session);
  std::vector<std::string> places{folder.new_local};
  // A Samba server calls every drive C.
  const std::string drive(base::left(folder.new_local, 1));
  const auto root = use->folder_of_share(run.server, drive + "$");
  if (root && root->size() > 1 && !base::starts_with_fold(*root, drive))
    places.insert(places.begin(), root->substr(0, 1) + folder.new_local.substr(1));
  const TreePath way = parse_tree_path(folder.new_admin);
  const auto shared = use->folder_of_share(way.server, way.share);
  if (shared && !shared->empty())
    places.push_back(with_parts(*shared, way));
  return places;
}

std::optional<std::string> new_place(MoveRun& run, const MovedFolder& folder) {
  const TreePath path = parse_tree_path(folder.new_unc);
  const auto shared = folder_use(run.session)->folder_of_share(path.server, path.share);
  if (shared)
    return with_parts(*shared, path);
  for (const MovedFolder* const made : {&run.profile, &run.home}) {
    if (made->wanted && !made->new_share.empty() && base::equals_fold(path.share, made->new_share) &&
        is_same_server(path.server, run.server))
      return with_parts(made_places(run, *made).front(), path);
  }
  return std::nullopt;
}

std::size_t levels_below_new(MoveRun& run, const MovedFolder& folder) {
  const auto place = new_place(run, folder);
  for (const std::string& made : made_places(run, folder)) {
    if (place && holds_folder(made, *place)) {
      const auto depth = [](std::string_view path) { return std::count(path.begin(), path.end(), '\\'); };
      return static_cast<std::size_t>(depth(*place) - depth(with_parts(made, {})));
    }
  }
  return 0;
}

void claim_new_places(MoveRun& run, bool claims) {
  const auto use = folder_use(run.session);
  use->account_has(run.key, "new home", claims ? run.home.new_unc : std::string());
  use->account_has(run.key, "new profile", claims ? run.profile.new_unc : std::string());
}

MoveStep check_move(MoveRun& run) {
  for (MovedFolder* const folder : {&run.profile, &run.home}) {
    const MoveStep step = check_old(run, *folder);
    if (step != MoveStep::kGoOn)
      return step;
  }
  base::Trap trap;
  trap([&] {
    find_nested(run, run.home, run.profile);
    find_nested(run, run.profile, run.home);
    check_shares_apart(run);
    claim_new_places(run, true);
    check_new(run, run.profile);
    check_new(run, run.home);
  });
  if (trap.number() != 0)
    return refuse(run, base::in_words(trap.number(), trap.description()));
  require_writable_account(run);
  return MoveStep::kGoOn;
}

}  // namespace twk::lifecycle
