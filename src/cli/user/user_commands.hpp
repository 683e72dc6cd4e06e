#pragma once

#include <string>

#include "cli/frame/context.hpp"
#include "cli/parser/command.hpp"
#include "controls/tree_view.hpp"
#include "creation/new_user_request.hpp"
#include "directory/account_fields.hpp"

/// The parts of the command `user`, a file each, and what they share.
namespace twk::cli {

void add_user_create(Command& user, Context& context);
void add_user_import(Command& user, Context& context);
void add_user_find(Command& user, Context& context);
void add_user_move_ou(Command& user, Context& context);
void add_user_set(Command& user, Context& context);
void add_user_groups(Command& user, Context& context);
void add_user_delete(Command& user, Context& context);
void add_user_move(Command& user, Context& context);
void add_user_rename(Command& user, Context& context);
void add_user_reset_password(Command& user, Context& context);
void add_user_show(Command& user, Context& context);
void add_user_list(Command& user, Context& context);
/// copy, diff.
void add_user_compare(Command& user, Context& context);

/// The node of the user of that account name, common name, principal name or distinguished name, after
/// opening what is above it. Raises `Refused` when there is none.
controls::TreeNode& reach_user(Context& context, session::Session& session, const std::string& name);
/// The same for what `find_user` found.
controls::TreeNode& reach_located_user(Context& context, session::Session& session,
                                       const std::string& located);
/// The same, or the user who had that name before an interrupted renaming.
controls::TreeNode& reach_renamed_user(Context& context, session::Session& session, const std::string& name);
/// The account itself, and its groups in the lists of the session. Raises `Refused` when it cannot be read.
directory::UserDetails read_details(Context& context, session::Session& session, const std::string& name);

/// The inputs for a new user.
struct CreationPlace {
  std::string template_name;
  std::string site;
  std::string ou;
  std::string like;
  bool keep_names = false;
  bool plain_letters = false;
  std::string key;
};

/// --template, --site, one of --ou and --like, and --keep-names. Without `required` the command looks itself
/// whether the first two are needed.
void add_place_options(Command& command, CreationPlace& place, bool required = true);

/// Puts template and site into the request, and where the user belongs: the OU, which is opened in the tree,
/// or the place of the user to copy. Raises `UsageError` or `Refused`.
void choose_place(Context& context, session::Session& session, const CreationPlace& place,
                  creation::NewUserRequest& request);

}  // namespace twk::cli
