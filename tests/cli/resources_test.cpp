#include "cli/twk_fixture.hpp"

namespace twk::test {
namespace {

/// A sample lab in which John Smith was created.
class Resources : public TwkLab {
 protected:
  Resources() { play("$ user create $STAFF John Smith"); }

  void play_there(std::string_view transcript) const {
    play(transcript, {{"$USERS", {R"(\\FS1\D$\Users)"}}, {"$HOME", {R"(\\FS1\D$\Users\John.Smith)"}}});
  }
  [[nodiscard]] std::string folder() const { return lab() + "/servers/FS1/D/Users/John.Smith"; }
};

TEST_F(Resources, AccessIsShownGrantedReplacedAndDenied) {
  play_there(R"(
$ acl show $HOME
| TWK\John.Smith       allow  Change        this folder, subfolders         no
$ --json acl show $HOME
| "type":"allow","access":"Change","mask":"0x001301BF","appliesTo":"this folder, subfolders","inherited":false}
$ acl set $HOME --account Staff --access read
$ acl show $HOME
| TWK\Staff            allow  Read
| TWK\John.Smith       allow  Change
$ acl set $HOME --account Staff --access "No Access" --replace
$ acl show $HOME
| TWK\Staff            deny   No Access
- TWK\John.Smith
$ log show
| Set Permissions for Staff
)");
}

TEST_F(Resources, WhatAUserCanDoThereIsShown) {
  play_there(R"(
$ acl check $HOME TWK\Administrator
{"full": true, "change": true, "read": true, "write": true}
$ acl check $HOME John.Smith
{"full": false, "change": true, "read": true, "write": true}
$ acl set $HOME --account "Domain Users" --access "No Access"
$ acl check $HOME John.Smith
| Write         no
)");
  const auto rights = result_of({"acl", "check", R"(\\FS1\D$\Users\John.Smith)", "Administrator"})["rights"];
  EXPECT_EQ(rights["changePermissions"], true);
}

TEST_F(Resources, TheTableIsAppliedAsACreationWould) {
  play_there(R"(
$ table set permissions
< %UserName%,Read,%UserName%,yes
$ acl set $HOME --from-table John.Smith
$ acl show $HOME => 77 Access is denied
$ owner take $HOME
$ acl show $HOME
| BUILTIN\Administrators
| TWK\John.Smith       allow  Read
$ table set permissions
< Staff,Read
< nobody,Read
$ acl set $HOME --from-table John.Smith => 1
| YELLOW  The table was refused in part: nobody on $HOME: No mapping
$ table set permissions
$ acl set $HOME --from-table John.Smith => 2 has no rows
)");
}

TEST_F(Resources, ATreeIsTakenOver) {
  std::filesystem::create_directory(folder() + "/deep");
  put_file(folder() + "/deep/f.txt", "x");
  play_there(R"(
$ owner take $HOME --account John.Smith
$ acl show $HOME\deep\f.txt
| BUILTIN\Administrators
$ owner take $HOME --recurse --account nobody => 2 There is no account "nobody".
$ acl set $HOME --account Staff --access "no access" --recurse => 2 the owner of the tree
$ acl show $HOME
| Owner        TWK\John.Smith
$ acl set $HOME --account Staff --access "Full Control" --recurse
$ acl show $HOME\deep\f.txt
| Owner        TWK\Staff
$ owner take $HOME --recurse
{"written": 3, "refused": 0}
$ acl show $HOME\deep\f.txt
| BUILTIN\Administrators  allow  Full Control
- TWK\Staff
)");
}

TEST_F(Resources, ABrokenListIsNamed) {
  const std::string records = lab() + "/servers/FS1/server";
  std::filesystem::remove(records + ".journal.ldif");
  put_file(records + ".ldif",
           "dn: CN=Folders\nobjectClass: container\n\ndn: CN=D,CN=Folders\nobjectClass: fileObject\n\n"
           "dn: CN=Users,CN=D,CN=Folders\nobjectClass: fileObject\n\n"
           "dn: CN=John.Smith,CN=Users,CN=D,CN=Folders\nobjectClass: fileObject\n"
           "nTSecurityDescriptor:: AAAA\n");
  play_there(R"(
$ acl show $HOME => 65 The security descriptor of D:\Users\John.Smith
$ owner take $HOME --recurse => 65 The security descriptor of D:\Users\John.Smith
$ acl set $HOME --account Staff --access Read => 65 The security descriptor of D:\Users\John.Smith
)");
}

TEST_F(Resources, WhatCannotBeDoneIsExplainedInPlainWords) {
  play_there(R"(
$ acl set $HOME --account nobody --access Read => 2 There is no account "nobody".
>
$ log show
| There is no account "nobody".
$ acl check $HOME nobody => 2 There is no account "nobody".
$ owner take $HOME --account nobody => 2 There is no account
$ acl show $USERS\none => 65 no file or folder
$ acl show /tmp => 2 have no security descriptor
$ acl set $HOME --account Staff --access Write => 64 Full Control, Change
$ acl set $HOME --account Staff => 64 --access
$ acl set $HOME --from-table x --replace => 64 leave out the other options
$ share list FS9 => 2 There is no server FS9.
$ share add FS9 x D:\Users => 2 There is no server FS9.
$ share add FS1 users D:\Users => 2 already
$ share add FS1 x D:\none => 2 no folder
$ share show FS1 User => 2 Near: "Users"
$ share delete FS1 none => 2 no share "none"
$ --yes share delete FS1 D$ => 77
)");
}

TEST_F(Resources, SharesAreListedAddedShownAndDeleted) {
  play_there(R"(
$ table set share-permissions
< %UserName%,Change
< Everyone,Read
$ share add FS1 John$ D:\Users\John.Smith --remark Home --table John.Smith
$ share show \\fs1 john$
{"path": "D:\\Users\\John.Smith", "remark": "Home", "defaultList": false}
$ share show \\fs1 john$
| TWK\John.Smith  allow  Change
| Everyone        allow  Read
$ share add FS1 Plain D:\Users
$ share show FS1 Plain
{"entries": []}
$ share list FS1
| D$
| John$
| Plain
$ share delete FS1 john$ => 2
< n
$ --yes share delete FS1 john$
$ share show FS1 John$ => 2 no share "John$"
$ log show
| Creating Shares: \\FS1\John$
$ table set share-permissions
< nobody,Change
$ share add FS1 John$ D:\Users\John.Smith --table John.Smith
  => 2 not found: nobody, and no row is left that gives John.Smith access
$ share show FS1 John$ => 2 no share
$ table set share-permissions
< nobody,Change
< %UserName%,Read
$ share add FS1 John$ D:\Users\John.Smith --table John.Smith => 1
| not found: nobody, which gets no access
)");
  EXPECT_TRUE(std::filesystem::exists(folder()));
}

class NtResources : public Resources {
 protected:
  static void SetUpTestSuite() { make("nt"); }
};

TEST_F(NtResources, AccountsAreAskedForAtTheController) {
  play_there(R"(
$ acl set $HOME --account Staff --access Read
$ owner take $HOME --account John.Smith
$ acl show $HOME
| Owner        OLDNT\John.Smith
| OLDNT\Staff
| OLDNT\John.Smith
)");
}

}  // namespace
}  // namespace twk::test
