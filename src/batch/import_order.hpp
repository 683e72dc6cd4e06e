#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <string_view>

#include "creation/creation_view.hpp"
#include "creation/new_user_request.hpp"

namespace twk::session {
struct Session;
}

/// What is asked of an import, and who watches it.
namespace twk::batch {

/// What is asked of an import; which columns are the names is in `ImportState`.
struct ImportOrder {
  creation::NewUserRequest user;  ///< of each line, without its names
  bool halt_on_errors = false;
  bool halt_on_warnings = false;
  std::string resumes = {};  ///< the record of the run that this one goes on with; empty for none
  std::set<std::int32_t> made_before = {};  ///< lines of which a run that was broken off made accounts
  bool csv = false;  ///< the file is a spreadsheet's: fields may be quoted, the first line holds headings
};

/// What the settings ask of every import.
ImportOrder stored_order(session::Session& session);

/// Why users cannot be imported to where the request says; empty when they can.
std::string refused_place(const session::Session& session, const creation::NewUserRequest& request);
/// Why an expiry text cannot be a date, whatever the lines contain; empty when it can.
std::string refused_expiry(session::Session& session, std::string_view text);

/// What an import reports while it works.
class ImportView : public creation::CreationView {
 public:
  /// How many users were made so far, in words.
  virtual void counted(std::string_view text) = 0;
  /// How far the run is and how fast, once a second.
  virtual void pace(std::string_view /*text*/) {}
};

}  // namespace twk::batch
