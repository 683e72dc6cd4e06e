#pragma once

namespace twk::windows {

struct Desktop;

/// Reads the files of the database directory, see `stores::load_database`, and shows the sites and templates
/// in the lists of the windows.
void Load_Databases(Desktop& session);
/// The same for files that were read already.
void show_databases(Desktop& session);

}  // namespace twk::windows
