#pragma once

#include <memory>
#include <string>

#include "controls/basic.hpp"
#include "controls/list_view.hpp"
#include "controls/tree_view.hpp"

namespace twk::mail {
struct MailSearch;
struct SiteSearch;
}  // namespace twk::mail

/// State of the windows around the tree. Fields have the names of the windows' controls.
namespace twk::windows {

/// How a directory is loaded.
struct frmADOptions {
  controls::TextBox PageSize;
  controls::TextBox UserLimit;
  controls::CheckBox SkipUsers;
  controls::CheckBox SkipGroups;
  controls::CheckBox TemplateGroups;
  controls::OptionButton LoadAllUsersoption;
  controls::OptionButton DontLoadAllUsers;
  controls::OptionButton UseGC;
  controls::OptionButton UseLDAP;
  controls::OptionButton Sorton;
  controls::OptionButton Sortoff;
  controls::Label txtDescription;
};

/// Finds users by part of their name.
struct frmFindW2KUser {
  std::string unit;  ///< only in it and below; empty for the whole domain
  controls::TextBox txtFind;
  controls::Button btnSelectuser;
  controls::Label Label2;
  controls::ListView ListView1;  ///< name, and in sub-item 1 where it is
};

/// Limits the session to one OU.
struct Select_OU {
  controls::Label OU;
  controls::CheckBox SUBOU;
  controls::OptionGroup REG_KEY;  ///< 0 the person's settings, 1 the machine's
};

/// Finds a mailbox on an Exchange 5.5 server, to delete it.
struct Serach_Mail {
  controls::Observable<std::string> caption{"Select Mailbox"};  ///< the window's title
  controls::TextBox Text1;                                      ///< name of the mailbox
  controls::TextBox Text2;                                      ///< Exchange server
  controls::TreeView TreeView1;  ///< containers, and in them the mailboxes found by their paths
  controls::Button Delete_Mail;
  std::shared_ptr<const mail::MailSearch> asked;
  std::shared_ptr<const mail::SiteSearch> found;  ///< what the tree shows; none after a failure
  bool Chosen = false;                            ///< the selected mailbox is the one to delete
};

}  // namespace twk::windows
