#include "cli/twk_fixture.hpp"

namespace twk::test {
namespace {

class Rehearsal : public TwkLab {
 protected:
  Rehearsal() {
    play(R"(
$ user create $STAFF Ann Lee
)");
  }

  void set_policy(const std::string& name, int value) const {
    std::string text = get_file(lab() + "/lab.conf");
    const std::size_t at = text.find(name + " = ");
    text.replace(at, text.find('\n', at) - at, name + " = " + std::to_string(value));
    put_file(lab() + "/lab.conf", text);
  }
};

TEST_F(Rehearsal, AUserLogsOnOrLearnsWhyNot) {
  play(R"(
$ lab logon Ann.Lee --password-stdin => 2
< Welcome-2-Work
{"light": "RED", "user": "Ann.Lee", "allowed": false, "passwordChecked": true, "wrongPasswords": 0,
 "reasons": [{"status": "0xC0000224", "name": "STATUS_PASSWORD_MUST_CHANGE",
              "text": "The user password must be changed before logging on the first time."}]}
$ user set Ann.Lee mustChange=no
$ lab logon Ann.Lee --password-stdin
< Welcome-2-Work
> GREEN  Ann.Lee could log on now.
$ lab logon Ann.Lee
> GREEN  Ann.Lee could log on now with the right password.
$ user show Ann.Lee --attributes logonCount,badPwdCount
{"logonCount": "1", "badPwdCount": "0"}
$ user set Ann.Lee disabled=yes
$ lab expire Ann.Lee
| GREEN  The account of Ann.Lee has expired.
$ lab logon Ann.Lee => 2
| STATUS_ACCOUNT_DISABLED (0xC0000072): The referenced account is currently disabled
| Also: STATUS_ACCOUNT_EXPIRED.
$ user set Ann.Lee disabled=no expires=never
$ lab logon Nobody => 2 There is no user "Nobody".
$ lab logon Ann.Lee --at soon => 64 --at
)");
}

TEST_F(Rehearsal, WrongPasswordsLockAsThePolicySays) {
  set_policy("lockout.threshold", 2);
  set_policy("lockout.duration", 30);
  play(R"(
$ user set Ann.Lee mustChange=no
$ lab logon Ann.Lee --password-stdin --at 2030-01-01 => 2 
< wrong
{"wrongPasswords": 0}
$ lab logon Ann.Lee --password-stdin => 2
< wrong
{"wrongPasswords": 1}
$ lab logon Ann.Lee --password-stdin => 2
< wrong
| STATUS_LOGON_FAILURE (0xC000006D)
| This wrong password locked the account.
$ lab logon Ann.Lee --password-stdin => 2
< Welcome-2-Work
| could not log on now. STATUS_ACCOUNT_LOCKED_OUT (0xC0000234)
$ lab logon Ann.Lee --at 2050-01-01
| GREEN
$ user show Ann.Lee
{"locked": true}
$ users unlock Ann.Lee
$ lab logon Ann.Lee --password-stdin
< Welcome-2-Work
{"wrongPasswords": 0}
)");
}

TEST_F(Rehearsal, HoursAndThePasswordsAgeCount) {
  set_policy("password.maximum_age", 30);
  play(R"(
$ user set Ann.Lee mustChange=no
$ hours set --user Ann.Lee --zone workstation $HOURS
$ lab logon Ann.Lee --at "2026-11-23 08:30"
| GREEN
$ lab logon Ann.Lee --at "2026-11-23 07:59" => 2
| STATUS_INVALID_LOGON_HOURS (0xC000006F)
$ lab logon Ann.Lee --at "2026-11-24 08:30" => 2
| STATUS_INVALID_LOGON_HOURS
$ lab logon Ann.Lee --at "2050-11-21 08:30" => 2
| STATUS_PASSWORD_EXPIRED (0xC0000071): The user account password has expired.
)",
       {{"$HOURS",
         {file(
             "hours.txt", std::string(24, '.') + "\n........#...............\n" + [] {
               std::string rest;
               for (int day = 2; day < 7; ++day)
                 rest += std::string(24, '.') + "\n";
               return rest;
             }())}}});
}

TEST_F(Rehearsal, TheDoctorLooksAtAllOfALab) {
  play(R"(
$ --json doctor
| {"step":"configuration","outcome":"passed","detail":"twk.test, native, controller DC1"}
| {"step":"file servers","outcome":"passed","detail":"1 server, 4 shares"}
| {"step":"templates","outcome":"passed","detail":"1 template"}
$ site add Branch --nt-server FS9
$ template edit Staff --home-dir \\FS7\Users\%UserName%
$ group delete Staff --yes
$ doctor => 1
| there is no file server FS9: `twk lab server add FS9`
| template "Staff": there is no group "Staff"
| \\FS7\Users\%UserName% names the file server FS7
)");
  put_file(lab() + "/domain.ldif", "dn: nonsense\n");
  play(R"(
$ doctor => 2
| RED      directory
| domain.ldif
| SKIPPED  templates
)");
  put_file(lab() + "/lab.conf", "domain = nonsense\n");
  play(R"(
$ doctor => 2
| RED      configuration
| lab.conf:1
$ --lab $LAB/db doctor => 64
)");
}

TEST_F(Rehearsal, AServerGetsTheFoldersAndSharesOfATemplate) {
  play(R"(
$ lab server add FS2 --drives c --for-template Staff
{"light": "GREEN", "server": "FS2", "drives": ["C", "D"], "folders": ["D:\\Users", "D:\\Profiles"],
 "shares": ["Users", "Profiles"]}
$ share show FS2 Users
{"path": "D:\\Users"}
$ site add Branch --nt-server FS2
$ user create --template Staff --site Branch --ou $NEW Bob Day
$ user show Bob.Day
{"homeDirectory": "\\\\FS2\\Users\\Bob.Day"}
$ lab server add fs2 => 2 already
$ lab server add 'a b' => 2 Not a name for a server
$ lab server add FS3 --drives CD => 64 --drives
$ lab server add FS3 --for-template Nothing => 2
$ share list FS3 => 2
$ lab server add FS3
| the drives C, D.
)");
}

TEST(EmptyLab, HasNobodyInvented) {
  const TemporaryDirectory folder;
  play_without_lab(R"(
$ lab init $FOLDER/a --empty
{"users": 3, "groups": 8, "ous": 1}
$ lab init $FOLDER/b --empty --users 5 => 64 --empty
$ lab init $FOLDER/c => 0 25 of the 28 users are invented; `lab init DIR --empty` invents nobody
)",
                   {{"$FOLDER", {folder.path().string()}}});
}

}  // namespace
}  // namespace twk::test
