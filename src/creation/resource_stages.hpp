#pragma once

/// The stages on file servers and terminal servers. None of them stops a run: a failure warns.
namespace twk::creation {

struct CreationRun;

/// Makes the shares that the template requests, and paints `Sharedirs`.
void CreateUserShares(CreationRun& run);
/// Writes the template's terminal-server settings; without a light or a warning of the run.
void ApplyTerminalSettings(CreationRun& run);
/// Gives the new directories the access list of the table, and paints `Security`.
void ApplyDirPermissions(CreationRun& run);

}  // namespace twk::creation
