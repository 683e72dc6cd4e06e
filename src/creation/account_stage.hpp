#pragma once

#include "creation/creation_run.hpp"

/// The account itself. A step that may stop the run raises; one that may not writes to the log and warns.
namespace twk::creation {

/// Creates the account through the WinNT provider and sets its fields, password and flags. Any failure
/// raises, the password's too; the account may then stand half made.
void CreateNtAccount(CreationRun& run);

/// Creates the account through the LDAP provider, in one request where the directory can and agrees,
/// otherwise step by step; the first step tells a name in use apart, in a box. A password that is refused
/// only warns. Flags that the LDAP object does not carry are set through the WinNT provider.
void CreateAdAccount(CreationRun& run);

/// What the account stage of a rehearsed run would meet, told as the stage itself would: a name in use, an
/// end of the account that is no day, groups and a principal name that it would not get. Raises what would
/// stop the run.
void ForeseeAccount(CreationRun& run);

/// Warns of a principal name that is in use, as `ApplyW2kProperties` would.
void ForeseePrincipalName(CreationRun& run);

/// Stages on an account that is not stored yet the rows of the directory table that mean the same there, and
/// remembers them in `first_properties`. Nothing is told: that is for `ApplyW2kProperties`, at their place.
void StageFirstProperties(CreationRun& run);

/// Writes the rows of the directory table on the new account, except those that went with it, and tells of
/// each; one that is refused leaves the others in place.
void ApplyW2kProperties(CreationRun& run);

/// Adds the account to groups: those named in the import line's columns, then those of the template, or those
/// of the user that is copied.
void ApplyGroups(CreationRun& run);

/// Makes the template's primary group the account's. It must be a member by then.
void SetPrimaryGroup(CreationRun& run);

/// Shows the new account in the tree and the lists.
void AddUserToViews(CreationRun& run);

/// Runs the command that follows a creation. Raises what expanding it raises; a command that does not start
/// warns.
void RunCreateCommand(CreationRun& run);

}  // namespace twk::creation
