#pragma once

namespace twk::windows {

struct Desktop;

/// The entry of the options menu: asks, compacts the database, see `stores::compact_database`, and shows the
/// domain as it was loaded for that. True when it succeeded.
bool Compact_Database(Desktop& session);

}  // namespace twk::windows
