#pragma once

#include <array>
#include <string>
#include <vector>

#include "batch/csv_headings.hpp"
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

/// A column of the preview of an import file.
struct PreviewColumn {
  std::string heading;
  std::string use;  ///< which part of a user it holds; empty for none

  friend bool operator==(const PreviewColumn&, const PreviewColumn&) = default;
};

/// What the columns of an import file contain.
struct CSV_Import {
  std::string path;
  controls::Label File_Name;
  controls::ListView ListView1;  ///< the first two lines, or of a spreadsheet's file the first records
  controls::Observable<int> columns{0};  ///< of the widest of these lines
  controls::Observable<std::vector<PreviewColumn>> preview;
  controls::CheckBox chkCsv;  ///< fields may be quoted, the first line holds headings
  controls::Label Hint;       ///< why that box, or this file, needs attention
  batch::CsvHeadings headings;
  std::vector<std::vector<std::string>> records;  ///< the first ones of a spreadsheet's file
  controls::CheckBox chkImport;
  controls::ComboBox ImportFirst;
  controls::ComboBox ImportMiddle;
  controls::ComboBox ImportLast;
  controls::ComboBox ImportUserID;
  controls::ComboBox ImportPassword;
  controls::CheckBox chkKeepNames;     ///< names as they are written, otherwise with a capital letter first
  controls::CheckBox chkPlainLetters;  ///< account names without accents and foreign scripts
  controls::TextBox KeyAttribute;      ///< by which people who have an account are recognised; empty for none
  controls::ComboBox KeyColumn;        ///< what it holds
  bool rehearses = false;              ///< it was closed by "Rehearse"
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
  controls::Label heading;  ///< the title of the window: a rehearsal is no import
  controls::Button CancelButton;
};

}  // namespace twk::windows
