#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "controls/basic.hpp"
#include "controls/list_view.hpp"

/// State of the windows that edit rows and hours. Fields have the names of the windows' controls.
namespace twk::windows {

/// Edits one row of a table.
struct Edit_Properties {
  std::int32_t EditPropertiesMode = 0;  ///< which list the row belongs to, see `windows::mode`
  bool EditPropertiesIsNew = false;     ///< the row is not in the list yet
  controls::Label title;
  controls::Label Property;  ///< caption of the first field
  controls::Label Label2;    ///< caption of the second field
  controls::Label hint;      ///< what a person should know about the row; may be empty
  controls::TextBox W2K_Attribute;
  controls::TextBox W2K_Propertry;
  /// The maximum length of the two fields.
  controls::Observable<int> W2K_Attribute_MaxLength{0};
  controls::Observable<int> W2K_Propertry_MaxLength{0};
  controls::OptionButton W2K_Person;
  controls::OptionButton W2K_2000;
  controls::Frame kind;  ///< around the two options
  controls::ComboBox WTS_YN;
  controls::ComboBox WTS_DRIVE_LETTER;
  controls::ComboBox WTS_TIME;
};

/// The custom attributes that the user details tab also shows.
struct Custom {
  controls::ListView ListView1;  ///< display name, and the attribute in sub-item 1
};

/// The hours of a week at which users may log on.
struct Logon_Hours {
  /// Row by row from Sunday, column by column from 12am; true is permitted.
  controls::Observable<std::vector<bool>> MSFlexGrid1{std::vector<bool>(std::size_t{7} * 24, true)};
  controls::OptionGroup Option1;  ///< 0 paints permitted, 1 denied
  controls::Label Label2;         ///< what was selected
  controls::OptionGroup Zone;     ///< time zone of the grid: 0 for UTC+12, 1 for this workstation's
  controls::Label zone_note;      ///< what a person should know about the zone; may be empty
  int hours_ahead = 12;           ///< of UTC, by the zone that is shown
  controls::Label hint;           ///< why the hours cannot be stored; empty when they can
  controls::Button Command2;      ///< OK
};

/// The table of directory permissions, or that of share permissions.
struct Permissions {
  bool share = false;
  controls::Label title;
  controls::ListView ListView1;  ///< account, and the access word in sub-item 1
  controls::ComboBox Access;
  controls::CheckBox NEW_Security;
  controls::TextBox ctrOwner;
  controls::Label Label2;  ///< caption of the owner
  controls::Label hint;    ///< why the account typed last is not accepted
};

}  // namespace twk::windows
