#include "windows/csv_layout.hpp"
#include "windows/import.hpp"

#include <cstdint>
#include <cstdlib>
#include <utility>

#include "fuzz/fuzz_world.hpp"
#include "records/records.hpp"
#include "windows/state/form1.hpp"

/// The bytes of an import file, of which each line goes through layout, splitting, names and the checks of a
/// creation, to the point where an account would be made.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  twk::test::FuzzWorld world;
  twk::windows::Desktop& session = world.session;
  world.files.contents.assign(reinterpret_cast<const char*>(data), size);
  twk::records::TemplateRecord staff;
  staff.Name = "Staff";
  twk::records::SiteRecord head_office;
  head_office.Name = "Head Office";
  world.files.records = {{"Template.dat", twk::records::encode_template(staff)},
                         {"Site.dat", twk::records::encode_site(head_office)}};
  // As in the list of templates, with the blanks of the record.
  session.form1.nutemplate.text = twk::records::listed_template_name(world.files.records["Template.dat"]);
  session.form1.NUsitename.text = std::string("Head Office");
  session.form1.setupid.text = std::string("%first%#1%last%%IMPORT4%");
  session.form1.ALTID.text = std::string("%last%%n%");
  session.form1.FN_Format.text = std::string("%First% %Middle% %Last%");
  session.form1.Description.text = std::string("%IMPORT5% %IMPORT99%");
  session.form1.Create_User_Account.value = 1;
  twk::windows::load_csv_layout(session, "starters.csv");
  twk::windows::csv_layout_ok(session);
  std::int32_t rows = 0;
  session.import.row_done = [&rows](const twk::session::ImportRow& row) {
    if (row.line <= std::exchange(rows, row.line))
      std::abort();
  };
  if (!twk::windows::Import_File(session, "starters.csv") || session.import.Importing)
    std::abort();
  return 0;
}
