#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace twk::session {
struct Session;
}

/// The administrator's own commands. Their text is split into words first, and then each word is filled, so
/// that a value never begins or ends a word, whatever it contains.
namespace twk::creation {

/// The user a command is run for.
struct CommandUser {
  std::string account;
  std::string first;
  std::string middle;
  std::string last;
};

/// The words of a command's text: blanks and tabs separate, double quotes hold a word together and are not
/// part of it (`""` is an empty word). A quote that is not closed reaches to the end. Everything else,
/// including backslashes, is unchanged, and so are `tags`, even with blanks in them.
std::vector<std::string> split_command(std::string_view text, const std::vector<std::string>& tags = {});

/// The words of `text`, those with a tag filled by `fill`. Tags of the template's variables stay whole. A
/// word whose value is empty stays as an empty argument.
std::vector<std::string> fill_words(const session::Session& session, std::string_view text,
                                    const std::function<std::string(std::string)>& fill);

/// The servers that a command may name.
struct CommandPlace {
  std::string server;
  std::string mail_server;
  std::string mail_site;
  std::string mail_organization;
};

/// An administrator's command with its tags expanded: the fields of the import line, the built-in names, the
/// name tags, the variables of the loaded template.
std::vector<std::string> command_words(session::Session& session, std::string_view command,
                                       const CommandUser& user, const CommandPlace& place);

/// A command on one line, for people: a word that is empty or contains a blank or a quote is quoted, with a
/// backslash before each quote in it.
std::string shown_command(const std::vector<std::string>& words);

}  // namespace twk::creation
