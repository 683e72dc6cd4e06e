#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "creation/creation_run.hpp"
#include "creation/quiet_view.hpp"
#include "format/compiled_format.hpp"
#include "session/creation_outcome.hpp"

namespace twk::creation {

/// Settles most lines of a preview in a small part of the time that `create_user` takes: those of plain
/// names, for which nothing but names has to be looked up. All that lines have in common (groups, expiry,
/// template, site, settings) was fine for a line that took the long way, and is not asked again.
///
/// A line has the outcome that it would have on the long way, and lines of both kinds may alternate: what is
/// taken by one is taken for the other. Whatever is unusual about an order, a domain or a line takes the long
/// way: recognised persons, copied users, columns of groups, account names from rows, letters beyond ASCII,
/// no first or last name, a folder that exists.
class PlainPreview {
 public:
  /// For the lines of one run in a session whose services change nothing.
  PlainPreview(session::Session& session, const NewUserRequest& order);

  /// The outcome of the line in hand, whose names the request has; none, with nothing done, for one that has
  /// to take the long way.
  std::optional<session::CreationOutcome> settle(const NewUserRequest& request);
  /// The outcome of a line that took it.
  void learn(const session::CreationOutcome& outcome);

 private:
  enum class Search { kFound, kRefused, kUnusual };

  /// A path with U+001F in the place of the account's name.
  struct AccountPath {
    std::string text;
    [[nodiscard]] bool ends_in_name() const;
  };

  bool prepare();
  bool prepare_principal_name();
  bool prepare_folders();
  bool take_names(const NewUserRequest& request);
  Search search_name();
  bool form_name(const format::CompiledFormat& format);
  bool is_taken();
  void skip_taken_serials(const format::CompiledFormat& format);
  bool is_free_elsewhere();
  bool has_password();
  void foresee_principal();
  session::CreationOutcome outcome(Search end);

  session::Session& session_;
  QuietView view_;
  CreationRun run_;
  bool is_open_ = false;
  bool is_closed_ = false;  ///< for good
  bool password_varies_ = false;

  std::optional<format::CompiledFormat> account_;
  std::optional<format::CompiledFormat> taken_;
  std::optional<format::CompiledFormat> principal_;
  std::vector<AccountPath> folders_;
  format::CompiledFormat::Values values_;

  std::string name_;
  std::string former_;  ///< the name that was tried before
  std::string folded_;
  std::string key_;  ///< what the key of the account in the tree begins with
  std::size_t key_start_ = 0;
  std::string text_;
  std::int32_t tries_ = 0;
  std::int16_t first_serial_ = 0;
  std::string serials_;  ///< what the search in hand has in common with others
  /// By that, the first serial number that such a search has not found taken yet. A name that is taken stays
  /// so.
  std::unordered_map<std::string, std::int16_t> next_serials_;
};

}  // namespace twk::creation
