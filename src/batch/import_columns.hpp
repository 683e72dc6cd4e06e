#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace twk::session {
struct ImportState;
}

/// What the columns of an import file hold.
namespace twk::batch {

struct ImportOrder;

/// Counted from 1; 0 for none.
struct ImportColumns {
  int first = 1;
  int middle = 2;
  int last = 3;
  int id = 0;
  int password = 0;
};

/// A file as a person chooses its columns by it.
struct FileColumns {
  std::vector<std::string> shown;  ///< the first two lines
  int offered =
      0;  ///< columns of the first line that can be a user; one beyond the last field cannot be chosen
  int widest = 0;  ///< fields of the longest line
};
FileColumns survey_columns(std::string_view bytes);

/// First, middle and last name in the first three columns, as far as the file has them.
ImportColumns standard_columns(const FileColumns& file);

/// "%IMPORT4%" for column 4.
std::string column_tag(int column);

/// The lines are read by these columns from here on; `standard` when they are those of every file.
void use_columns(session::ImportState& state, ImportOrder& order, const ImportColumns& columns,
                 bool standard);

}  // namespace twk::batch
