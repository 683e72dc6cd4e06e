#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "ads/staged_values.hpp"
#include "lab/store/entry_store.hpp"

/// What an Exchange 5.5 directory does by itself, and what it refuses, when objects are made, changed and
/// deleted.
namespace twk::lab {

/// The entry of that name. Raises kNoSuchObject.
const Entry& require_exchange_entry(const EntryStore& store, std::string_view dn);

/// Makes a mailbox, a custom recipient, a distribution list or a container. Raises kObjectExists for a name
/// in use, kNoSuchObject without its parent, kUnwilling for another class and for a place that holds no
/// recipients, kConstraint for a custom recipient without "Target-Address", and what `modify_exchange_object`
/// raises.
void add_exchange_object(EntryStore& store, std::string_view object_class, const std::string& dn,
                         const std::vector<ads::StagedChange>& values);
/// Raises what `add_exchange_object` would raise, and makes nothing.
void check_exchange_object(EntryStore& store, std::string_view object_class, const std::string& dn,
                           const std::vector<ads::StagedChange>& values);
/// All changes or none. Raises kNoSuchAttribute for an attribute that the schema does not know, kUnwilling
/// for an attribute that only the directory writes, kConstraint for a value that does not fit: one of bytes
/// is hexadecimal text, "Assoc-NT-Account" an account's identifier and "NT-Security-Descriptor" a descriptor
/// in that form.
void modify_exchange_object(EntryStore& store, const std::string& dn,
                            const std::vector<ads::StagedChange>& changes);
/// Raises what `modify_exchange_object` would raise, and changes nothing.
void check_exchange_changes(EntryStore& store, const std::string& dn,
                            const std::vector<ads::StagedChange>& changes);
/// Raises kNotOnNonLeaf for an object with children, kUnwilling for a part of the server's own configuration.
void delete_exchange_object(EntryStore& store, const std::string& dn);

}  // namespace twk::lab
