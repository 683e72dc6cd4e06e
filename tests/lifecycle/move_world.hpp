#pragma once

#include "lifecycle/lifecycle_world.hpp"
#include "lifecycle/move/move_user.hpp"
#include "lifecycle/rehearsal/rehearsal.hpp"
#include "stores/side_tables.hpp"
#include "windows/multi_user/move_tab.hpp"

namespace twk::lifecycle {

using lab::DomainKind;
using test::LifecycleWorld;

enum class Moved { kNot, kWithWarnings, kWholly };

inline Moved moved(const session::RunOutcome& outcome) {
  if (!outcome.done)
    return Moved::kNot;
  return outcome.light == session::kGreen ? Moved::kWholly : Moved::kWithWarnings;
}

/// jo moves from her own shares on FS1 to the site's server FS2, where the template also makes shares.
class MoveWorld : public LifecycleWorld {
 public:
  explicit MoveWorld(DomainKind kind) : LifecycleWorld(kind) {
    site.NTServer = "FS2";
    staff.HomeDir = "\\\\%Server%\\%UserName%$";
    staff.HomeShare = "%UserName%$";
    staff.ProfilePath = "\\\\%Server%\\%UserName%.prf$";
    staff.ProfileShare = "%UserName%.prf$";
    fill();
  }
  void fill() {
    put("FS1/D/Users/jo/a.txt", "aaaa");
    put("FS1/D/Users/jo/Mail/b.txt", "bbb");
    put("FS1/D/Profiles/jo/NTUser.dat");
    share("FS1", "jo$", "D:\\Users\\jo");
    share("FS1", "jo.prf$", "D:\\Profiles\\jo");
  }
  /// Everything as before the first move.
  void put_back() {
    for (const std::string server : {"FS1", "FS2"}) {
      for (const std::string& name : shares(server))
        services.network.NetShareDel(server, name);
      for (const char* const name : {"/D/Users/jo", "/D/Profiles/jo"})
        std::filesystem::remove_all(server_folder(server + name));
    }
    fill();
    test::store(account("jo"), {{"HomeDirectory", "\\\\FS1\\jo$"}, {"Profile", "\\\\FS1\\jo.prf$"}});
    session.form1.ListView1.clear();
  }
  void start_at(const std::string& home, const std::string& profile, int data) {
    set("Setup", "BatchFileMove", "moved.cmd %Domain% %NTServer% %UserName%");
    start_with(home, profile);
    stores::write_permissions(session, "SharePerm.dat",
                              std::vector{records::PermissionRecord{false, "Everyone", "Full Control", ""}});
    windows::MultiUser& window = session.multi_user;
    window.Multi_Site.text = std::string("Head Office");
    window.Multi_Template.text = records::padded_template_name("Staff");
    window.UserData.index = data;
  }
  void start_at_own_shares(int data) { start_at("\\\\FS1\\jo$", "\\\\FS1\\jo.prf$", data); }
  Moved move() { return move_of(key()); }
  Moved move_of(const std::string& who) {
    MoveOrder order = windows::move_order(session);
    order.terms = with_silence(order.terms.silent);
    return moved(Move_One_User(session, who, order, view));
  }
  /// Steps and outcome of the same move rehearsed.
  std::pair<std::vector<std::string>, Moved> rehearse() {
    std::vector<std::string> steps;
    const auto tell = [&](const std::string& step) { steps.push_back(step); };
    Rehearsal rehearsal(session.platform, tell);
    windows::Desktop rehearsed(rehearsal.services(), "", session.program_directory);
    rehearsed.DirectoryMode = session.DirectoryMode;
    rehearsed.DomainName = session.DomainName;
    rehearsed.NTDomainName = session.NTDomainName;
    rehearsed.dbpath = session.dbpath;
    MoveOrder order = windows::move_order(session);
    order.terms = with_silence(true);
    order.terms.rehearse = tell;
    const Moved outcome = moved(Move_One_User(rehearsed, key(), order, view));
    EXPECT_EQ(outcome == Moved::kNot, steps.empty() || steps.back().starts_with("Refused: "));
    return {steps, outcome};
  }
  /// Whether a rehearsal can know how the move ends.
  [[nodiscard]] bool is_foreseeable() const {
    return !files.before && !directory.before && network.refused_share.empty() && !dialogs.on_events &&
           session.multi_user.No_Prompt.on();
  }
  void write_template() {
    test::put_file((folder.path() / "db/Template.dat").string(), records::encode_template(staff));
  }
  void set_profile(const std::string& path) { test::store(account("jo"), {{"Profile", path}}); }
  /// As if "jo" no longer had folders on FS1.
  void lose_old_folders() {
    for (const std::string name : {"Users/jo", "Profiles/jo"})
      std::filesystem::remove_all(server_folder("FS1/D/" + name));
    for (const char* const share : {"jo$", "jo.prf$"})
      services.network.NetShareDel("FS1", share);
  }
};

inline constexpr int kMoveData = 0;
inline constexpr int kCopyData = 1;
inline constexpr int kNoData = 2;

using Names = std::set<std::string>;

inline const Names kEmpty = {"Users/", "Profiles/"};
inline const Names kWhole = {
    "Users/",    "Users/jo/",    "Users/jo/a.txt",        "Users/jo/Mail/", "Users/jo/Mail/b.txt",
    "Profiles/", "Profiles/jo/", "Profiles/jo/NTUser.dat"};
inline const Names kFolders = {"Users/", "Users/jo/", "Profiles/", "Profiles/jo/"};

inline constexpr Moved kNotMoved = Moved::kNot;
inline constexpr Moved kWarned = Moved::kWithWarnings;
inline constexpr Moved kMoved = Moved::kWholly;
inline const char* const kOldHome = R"(\\FS1\jo$)";
inline const char* const kNewHome = R"(\\FS2\jo$)";
inline const Names kOldShares = {"jo$", "jo.prf$"};

}  // namespace twk::lifecycle
