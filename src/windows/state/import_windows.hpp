#pragma once

#include <array>

#include "controls/basic.hpp"
#include "controls/list_view.hpp"

namespace twk::session {
struct LoadedDatabase;
}  // namespace twk::session

/// State of the windows besides the main one. Fields have the names of the windows' controls.
namespace twk::windows {

struct frmSplash {
  controls::Observable<bool> visible{false};
  controls::Label Splash_TxT;
};

/// Variables of the loaded template.
struct Varibles_Form {
  explicit Varibles_Form(session::LoadedDatabase& database);

  controls::Observable<bool> visible{false};
  controls::ListView& ListView1;
};

/// Share points of the loaded template, and the window that edits them.
struct frmSharePoints {
  std::string HomeSharePoint;
  std::string ProfileSharePoint;
  controls::TextBox HomeShareName;
  controls::TextBox ProfileShareName;
  controls::Button btnOK;
};

/// What the columns of an import file contain.
struct CSV_Import {
  controls::Label File_Name;
  controls::ListView ListView1;          ///< the first two lines
  controls::Observable<int> columns{0};  ///< columns of the preview, headed 1, 2, …
  controls::CheckBox chkImport;
  controls::ComboBox ImportFirst;
  controls::ComboBox ImportMiddle;
  controls::ComboBox ImportLast;
  controls::ComboBox ImportUserID;
  controls::ComboBox ImportPassword;
  bool rehearses = false;  ///< it was closed by "Rehearse"
};

/// Groups and expiry of imported accounts.
struct ImportGrps {
  controls::OptionGroup Grp_Range;  ///< 0 none, 1 all, 2 a range
  controls::TextBox LowerRange;
  controls::TextBox UpperRange;
  controls::TextBox Expiredate;
};

struct CancelImport {
  controls::Observable<bool> visible{false};
  controls::Button CancelButton;
};

}  // namespace twk::windows
