#pragma once

#include <string_view>
#include <vector>

#include "creation/creation_run.hpp"
#include "stores/side_tables.hpp"

/// People who have an account already, by an attribute that names them ("employeeNumber").
namespace twk::creation {

/// True for what RFC 4512 calls an attribute's name, such as "employeeNumber": it becomes part of a filter.
bool is_attribute_name(std::string_view text);

/// Ends the run for a person whose key an account of the domain has, or one that a rehearsal would have made.
/// A person without a key is refused, as nobody could recognise her later. Raises what the directory raises.
Step RecognizePerson(CreationRun& run);

/// The account of this run is recognised from here on.
void remember_person(CreationRun& run);
/// A run that failed may have made the account: whoever has that key is asked for again.
void doubt_person(CreationRun& run);

/// The directory table, with a row for the key unless the table has one for its attribute.
std::vector<stores::DirectoryRow> directory_rows_with_key(const CreationRun& run);

}  // namespace twk::creation
