#pragma once

#include "controls/basic.hpp"
#include "controls/list_view.hpp"

/// State of the windows around the tree. Fields bear the names of the windows' controls.
namespace twk::session {

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

}  // namespace twk::session
