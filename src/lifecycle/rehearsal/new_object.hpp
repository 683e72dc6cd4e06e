#pragma once

#include <memory>
#include <optional>
#include <string>

#include "lifecycle/rehearsal/made_objects.hpp"
#include "platform/directory.hpp"

namespace twk::lifecycle {

/// A class in the words of a step: "organizational unit".
std::string kind_of(std::string_view object_class);
/// The same of what is deleted: "account".
std::string deleted_kind(std::string_view object_class);
/// A value in the words of a step: "title = Head".
std::string staged_text(const Staging& staging);
/// "Rename LDAP://… to CN=Jo West", or where to it is moved.
std::string moved_text(std::string_view source, const std::string& target,
                       const std::optional<std::string>& name);
/// True for the password that stands for one that the run asks for.
bool is_asked_for(std::string_view password);
/// Raises what the write would raise, as far as the object can say.
void foresee_write(platform::DirectoryObject& object);
/// The same for a password; "PROMPT" stands for one that the run asks for, about which nothing is known.
void foresee_password(platform::DirectoryObject& object, std::string_view password);
void foresee_deletion(platform::DirectoryObject& object);
void foresee_members(platform::DirectoryObject& group);
void foresee_move(platform::DirectoryObject& container, std::string_view source);

/// An object that a rehearsal makes: its values are staged on `draft`, a new child of the real container,
/// which refuses what the directory would refuse and is never written. `state` is null until it was "made".
platform::ObjectPtr new_object(ReportingDirectory& directory, platform::ObjectPtr draft,
                               std::shared_ptr<MadeState> state);

}  // namespace twk::lifecycle
