#pragma once

#include "creation/creation_run.hpp"

/// The account itself. A step that stops the run raises; any other writes to the log and warns.
namespace twk::creation {

/// Creates the account through the WinNT provider and sets its fields, password and flags. Any failure
/// raises, including the password's; the account may then be left half made.
void CreateNtAccount(CreationRun& run);

/// Creates the account through the LDAP provider, in one request if the directory can and agrees,
/// otherwise step by step; the first step reports a name in use separately, in a box. A refused password only
/// warns. Flags that the LDAP object does not have are set through the WinNT provider.
void CreateAdAccount(CreationRun& run);

/// What the account stage of a rehearsed run would encounter, reported as by the stage itself: a name in use,
/// an invalid expiry, groups and a principal name that it would not get. Raises what would stop the run.
void ForeseeAccount(CreationRun& run);

/// Warns about a principal name that is in use, as `ApplyW2kProperties` would.
void ForeseePrincipalName(CreationRun& run);
/// The same of a name whose tags are filled in.
void foresee_principal_name(CreationRun& run, const std::string& name);

/// Stages on an account that is not stored yet the rows of the directory table that mean the same there, and
/// remembers them in `first_properties`. Reports nothing: `ApplyW2kProperties` does, when it gets to them.
void StageFirstProperties(CreationRun& run);

/// Writes the rows of the directory table on the new account, except those written with it, and reports each;
/// a refused one leaves the others in place.
void ApplyW2kProperties(CreationRun& run);

/// Adds the account to groups: those named in the import line's columns, then those of the template, or those
/// of the copied user.
void ApplyGroups(CreationRun& run);

/// Makes the template's primary group the account's. It must be a member by then.
void SetPrimaryGroup(CreationRun& run);

/// Shows the new account in the tree and the lists.
void AddUserToViews(CreationRun& run);

/// Runs the command after a creation. Raises a failure to expand it; a command that does not start
/// warns.
void RunCreateCommand(CreationRun& run);

}  // namespace twk::creation
