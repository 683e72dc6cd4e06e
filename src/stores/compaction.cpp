#include "stores/compaction.hpp"

#include "base/text.hpp"
#include "records/record_file.hpp"
#include "session/log_tab.hpp"
#include "session/session.hpp"
#include "stores/database_files.hpp"
#include "stores/site_store.hpp"
#include "stores/template_store.hpp"

namespace twk::stores {
namespace {

using session::Session;

/// Replaces the records of the file by what `keep` returns for each, in one step. A missing file is not
/// made.
void replace_records(Session& session, std::string_view name, std::size_t record_size,
                     const std::function<std::string(std::string_view bytes)>& keep) {
  platform::Files& files = session.platform.files;
  const std::string path = database_path(session, name);
  if (!files.exists(path))
    return;
  records::RecordFile file = records::RecordFile::open(files, path, record_size);
  const records::RecordFile::NumbersHold held = file.hold_numbers();
  std::string kept;
  file.search([&](std::string_view bytes) {
    kept += keep(bytes);
    return false;
  });
  files.write(path, kept);
}

}  // namespace

void Check_Template_Groups(Session& session, const controls::ListView& domain_groups) {
  records::TemplateRecord& record = session.ActiveTemplate;
  session.log.line("Checking template " + record.Name);
  std::array<std::string, records::kGroupSlots> kept;
  std::size_t count = 0;
  for (std::size_t slot = 0; slot < static_cast<std::size_t>(record.GroupCount); ++slot) {
    const std::string name(base::trim(record.Groups.at(slot)));
    if (domain_groups.find_text(name).empty()) {
      session.log.line("Global Group Removed : " + name);
    } else {
      kept.at(count++) = name;
    }
  }
  record.GroupCount = static_cast<std::int16_t>(count);
  record.Groups = kept;
  session.log.line(" ");
}

void compact_sites(Session& session) {
  replace_records(session, kSiteFile, records::kSiteRecordSize, [](std::string_view bytes) {
    return records::is_deleted(bytes) ? std::string() : std::string(bytes);
  });
}

void compact_templates(Session& session, const controls::ListView* domain_groups) {
  session::ActivityLog& log = session.log;
  log.open();
  log.line(session::kAsterisks);
  log.line(session::date_and_time(session));
  log.line("Start Compact");
  replace_records(session, kTemplateFile, records::kTemplateRecordSize, [&](std::string_view bytes) {
    if (records::is_deleted(bytes)) {
      log.line(std::string(base::trim(records::listed_template_name(bytes))) + " Deleted.");
      log.line(" ");
      return std::string();
    }
    if (domain_groups == nullptr)
      return std::string(bytes);
    session.ActiveTemplate = records::decode_template(bytes);
    Check_Template_Groups(session, *domain_groups);
    return records::encode_template(session.ActiveTemplate);
  });
  log.line("Compact Finished.");
  log.close();
}

}  // namespace twk::stores
