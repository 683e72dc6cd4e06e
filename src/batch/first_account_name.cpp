#include "batch/first_account_name.hpp"

#include "base/text.hpp"
#include "batch/csv_headings.hpp"
#include "batch/csv_lines.hpp"
#include "batch/import.hpp"
#include "batch/import_names.hpp"
#include "creation/validate_request.hpp"
#include "session/session.hpp"

namespace twk::batch {

std::string first_account_name(session::Session& session, const ImportOrder& order,
                               const CsvHeadings& headings, const std::vector<std::string>& fields) {
  session::ImportState& state = session.import;
  state.columns_by_heading = headings.columns_by_key();
  take_up_fields(state, fields, headings.size());
  creation::NewUserRequest request = order.user;
  fill_names(state, request);
  // A look at a name uses no serial number.
  const auto counter = session.SerialCounter;
  const bool used = session.SerialTokenUsed;
  session.SerialTokenUsed = false;
  state.Importing = true;
  std::string name = creation::form_user_id(session, request, request.formats.account);
  state.Importing = false;
  session.SerialTokenUsed = used;
  session.SerialCounter = counter;
  return name;
}

}  // namespace twk::batch
