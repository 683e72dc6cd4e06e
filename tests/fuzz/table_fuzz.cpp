#include <cstdint>
#include <cstdlib>

#include "fuzz/fuzz_world.hpp"
#include "local/regedit.hpp"
#include "platform/registry.hpp"
#include "session/loaded_database.hpp"
#include "session/settings.hpp"
#include "session/text_file.hpp"
#include "stores/side_tables.hpp"
#include "stores/site_store.hpp"
#include "stores/template_store.hpp"
#include "windows/read_settings.hpp"

namespace {

using namespace twk;

/// Each reader of the database's files gets the bytes, and may refuse them.
void read_database(test::FuzzWorld& world) {
  session::Session& session = world.session;
  base::Trap trap;
  stores::fill_wts_rows(session);
  for (void (*load)(session::Session&) :
       {stores::load_mail_table, stores::load_w2k_table, stores::load_wts_table, stores::load_site_names,
        stores::load_template_names})
    trap([&] { load(session); });
  for (const std::string_view file : {stores::kPermissionFile, stores::kSharePermissionFile})
    trap([&] { stores::read_permissions(session, file); });
  trap([&] { stores::load_template_record(session, 1); });
  for (const controls::ListView* const list :
       {&session.database.directory_rows, &session.database.mail_rows, &session.database.terminal_rows}) {
    for (std::size_t i = 0; i < list->size(); ++i) {
      if (list->at(i).sub_items.size() != 1)
        std::abort();
    }
  }
  // A control character becomes its number, so that what was written once stays.
  const std::string written = session::table_bytes(session::table_lines(world.files.contents));
  if (session::table_bytes(session::table_lines(written)) != written)
    std::abort();
}

/// The settings as a registry editor writes them: each value where the start looks for it.
void read_settings(test::FuzzWorld& world) {
  base::Trap trap;
  trap([&] {
    for (const auto& [path, key] : local::parse_regedit(local::regedit_text(world.files.contents))) {
      for (const auto& [folded, value] : key.values)
        session::write_setting(world.session, path.substr(path.rfind('\\') + 1), value.name, value.text);
    }
    windows::read_settings(world.session);
  });
}

}  // namespace

/// The bytes of a file that another administrator has put into the database's folder or the settings.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  test::FuzzWorld world;
  world.files.contents.assign(reinterpret_cast<const char*>(data), size);
  world.files.present = true;
  for (const char* const file : {"Site.dat", "Template.dat", "Permissions.dat", "SharePerm.dat"})
    world.files.records[file] = world.files.contents;
  read_database(world);
  read_settings(world);
  return 0;
}
