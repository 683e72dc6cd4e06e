#pragma once

#include <string>
#include <vector>

#include "creation/new_user_request.hpp"

namespace twk::session {
struct Session;
}

namespace twk::creation {

/// What a creation would make of its request.
struct ForeseenUser {
  std::string place;           ///< the distinguished name of where the account would be
  std::string account;         ///< its name
  std::string common_name;     ///< in Active Directory
  std::string full_name;       ///< "displayName"
  std::string principal_name;  ///< empty when no row of the directory table gives one
  std::string home;            ///< what the account says
  std::string profile;
  std::vector<std::string> groups;    ///< paths
  std::string fault;                  ///< why no account would be made; empty when one would
  std::vector<std::string> warnings;  ///< what it would be made without, folders that exist already
};

/// Goes the way of `create_user` up to the account, over a session whose services change nothing, and makes
/// nothing there either, so that the session can be asked again.
ForeseenUser foresee_user(session::Session& rehearsed, NewUserRequest request);

}  // namespace twk::creation
