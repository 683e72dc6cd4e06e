#include "batch/heading_use.hpp"

#include <vector>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "batch/csv_headings.hpp"
#include "batch/import.hpp"
#include "format/import_headings.hpp"
#include "session/loaded_database.hpp"
#include "session/session.hpp"
#include "stores/template_store.hpp"

namespace twk::batch {
namespace {

struct NamedText {
  std::string name;
  std::string text;
};

void add_order(std::vector<NamedText>& texts, const creation::NewUserRequest& user) {
  texts.push_back({"the description", user.Description});
  texts.push_back({"the expiry", user.Expiry});
  texts.push_back({"the key", user.key.text});
  texts.push_back({"the format of account names", user.formats.account});
  texts.push_back({"the second format of account names", user.formats.taken});
  texts.push_back({"the format of full names", user.formats.full_name});
  if (user.password.formatted)
    texts.push_back({"the formatted password", user.password.format});
  else
    texts.push_back({"the default password", user.password.text});
  if (user.stages.command)
    texts.push_back({"the command after a creation", user.command.text});
}

void add_rows(std::vector<NamedText>& texts, const std::string& table, const controls::ListView& rows) {
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const controls::ListRow& row = rows.at(i);
    if (!row.sub_items.empty())
      texts.push_back({"the row " + row.text + " of " + table, row.sub_items.front()});
  }
}

void add_template(std::vector<NamedText>& texts, session::Session& session, std::string_view name) {
  stores::each_template(session, [&](const records::TemplateRecord& record) {
    if (!base::equals_fold(base::trim(record.Name), base::trim(name)))
      return false;
    for (std::size_t i = 0; i < record.VariableNames.size(); ++i) {
      const std::string variable(base::trim(record.VariableNames.at(i)));
      texts.push_back({"the variable " + variable + " of the template", record.VariableValues.at(i)});
    }
    return true;
  });
}

}  // namespace

ImportColumns usual_columns(const CsvHeadings& headings) {
  return {headings.usual_column({"First name", "First", "Given name", "GivenName", "Forename"}),
          headings.usual_column({"Middle name", "Middle", "Middle names"}),
          headings.usual_column({"Last name", "Last", "Surname", "Family name", "sn"}), 0, 0};
}

std::string refused_headings(session::Session& session, const ImportOrder& order,
                             const CsvHeadings& headings) {
  std::vector<NamedText> texts;
  add_order(texts, order.user);
  add_template(texts, session, order.user.TemplateName);
  add_rows(texts, "the directory's table", session.database.directory_rows);
  if (order.user.stages.mailbox)
    add_rows(texts, "the mail table", session.database.mail_rows);
  base::Trap trap;
  for (const auto& [name, text] : texts) {
    std::size_t from = 0;
    while (const auto tag = format::find_heading_tag(text, from)) {
      if (!trap([&, &heading = tag->heading] { static_cast<void>(headings.column(heading)); }))
        return name + ": " + trap.description();
      from = tag->begin + tag->size;
    }
  }
  return {};
}

}  // namespace twk::batch
