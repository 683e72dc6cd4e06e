#pragma once

/// The stages on file servers and terminal servers. None of them stops a run: what fails warns.
namespace twk::creation {

struct CreationRun;

/// Shares the directories that the template wants shared, and paints `Sharedirs`.
void CreateUserShares(CreationRun& run);
/// Writes the template's terminal-server settings; no light, and no warning of the run.
void ApplyTerminalSettings(CreationRun& run);
/// Gives the new directories the access list of the table, and paints `Security`.
void ApplyDirPermissions(CreationRun& run);

}  // namespace twk::creation
