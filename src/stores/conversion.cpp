#include "stores/conversion.hpp"

#include "base/errors.hpp"
#include "base/text.hpp"
#include "records/old_records.hpp"
#include "records/record_file.hpp"
#include "records/records.hpp"
#include "session/log_tab.hpp"
#include "session/session.hpp"
#include "session/settings.hpp"
#include "stores/side_tables.hpp"
#include "stores/site_store.hpp"
#include "stores/template_store.hpp"

namespace twk::stores {
namespace {

using platform::Buttons;
using platform::Icon;
using session::Session;

constexpr std::string_view kConvertTitle = "Convert";
/// The generation in which only the permission tables are old.
constexpr std::string_view kBeforePermissions = "2.3";

/// One conversion: the log, and what to say when the current step fails.
struct Conversion {
  Session& session;
  std::string dbpath;
  std::unique_ptr<platform::AppendFile> log_file;
  std::string failure_text;

  [[nodiscard]] std::string path(std::string_view file) const { return dbpath + std::string(file); }
  [[nodiscard]] platform::Files& files() const { return session.platform.files; }
  void log(std::string_view text) {
    if (!log_file)
      return;
    base::Trap trap;
    if (trap([&] { log_file->write(session::log_line(text)); }))
      return;
    log_file.reset();
    session::LOG_TAB(session, session::kYellow, "Cannot write Convert.log: " + trap.description());
  }
  void say(std::string_view text, Icon icon) const {
    session.platform.dialogs.MsgBox(text, Buttons::kOk, icon, kConvertTitle);
  }
};

void begin_log(Conversion& conversion) {
  Session& session = conversion.session;
  base::Trap trap;
  if (!trap([&] { conversion.log_file = conversion.files().open_append("Convert.log"); }))
    session::LOG_TAB(session, session::kYellow, "Cannot write Convert.log: " + trap.description());
  conversion.log(session::kAsterisks);
  conversion.log(session::date_and_time(session));
  conversion.log("User:" + session.platform.environment.variable("USERNAME"));
}

/// What a conversion knows about a file.
struct OldFile {
  std::string_view file;
  std::string_view fresh;  ///< where earlier versions of the program put the new records
  std::string_view kept;   ///< where the old records stay
  std::size_t old_size;    ///< of a record
  std::size_t todays_size;
  std::string_view rename_failure;
  /// True for bytes that may be the beginning of a record of any generation.
  bool (*begins_record)(std::string_view bytes);
};

bool is_boolean(std::string_view bytes) {
  return bytes == std::string_view("\0\0", 2) || bytes == "\xFF\xFF";
}
bool begins_site(std::string_view bytes) {
  return is_boolean(bytes.substr(0, 2)) && is_boolean(bytes.substr(2, 2));
}
bool begins_template(std::string_view bytes) {
  const bool counted = static_cast<unsigned char>(bytes[2]) <= records::kMostGroups && bytes[3] == '\0';
  return is_boolean(bytes.substr(0, 2)) && counted;
}
bool begins_permission(std::string_view bytes) {
  return is_boolean(bytes.substr(0, 2));
}

bool holds_records(std::string_view bytes, std::size_t record_size, const OldFile& old) {
  bool fits = bytes.size() >= record_size;
  for (std::size_t at = 0; fits && at + record_size <= bytes.size(); at += record_size)
    fits = old.begins_record(bytes.substr(at));
  return fits;
}

/// Another administrator may have converted the files before. Records that are read at the wrong length begin
/// in the middle of texts; if that does not decide, fewer bytes are left over with the right length.
bool has_todays_layout(std::string_view bytes, const OldFile& old) {
  const bool as_old = holds_records(bytes, old.old_size, old);
  const bool as_today = holds_records(bytes, old.todays_size, old);
  if (bytes.empty() || as_old != as_today)
    return as_today || bytes.empty();
  const std::size_t old_rest = bytes.size() % old.old_size;
  const std::size_t todays_rest = bytes.size() % old.todays_size;
  if (old_rest == todays_rest) {
    throw base::RuntimeError(
        base::error::kBadFileName,
        std::string(old.file) + " may have the old layout or today's. Nothing was converted");
  }
  return todays_rest < old_rest;
}

/// The old records; none when there is nothing to convert. Stops when an earlier conversion kept a file
/// under the name needed for this one; if it holds the same bytes, that conversion was interrupted.
std::optional<std::string> records_to_convert(Conversion& conversion, const OldFile& old) {
  std::string bytes = conversion.files().read(conversion.path(old.file));
  if (has_todays_layout(bytes, old)) {
    conversion.log(std::string(old.file) + " already has today's layout");
    return std::nullopt;
  }
  const std::string kept = conversion.path(old.kept);
  if (conversion.files().exists(kept) && conversion.files().read(kept) != bytes) {
    conversion.failure_text = old.rename_failure;
    throw base::RuntimeError(base::error::kFileExists, kept + " exists already");
  }
  return bytes;
}

/// Calls `use` with each whole old record.
void for_each_record(Conversion& conversion, const OldFile& old, std::string_view bytes,
                     const std::function<void(std::string_view)>& use) {
  if (const std::size_t stray = bytes.size() % old.old_size; stray != 0) {
    const std::string text = std::string(old.file) + " ends in " +
                             base::to_text(static_cast<std::int64_t>(stray)) +
                             " bytes that are not a whole record; they were left out";
    conversion.log(text);
    session::LOG_TAB(conversion.session, session::kYellow, text);
  }
  for (std::size_t at = 0; at + old.old_size <= bytes.size(); at += old.old_size)
    use(bytes.substr(at, old.old_size));
}

/// Completes a renaming of an earlier version of the program that was interrupted between its two steps. True
/// when there was one: the file is then converted.
bool finish_renaming(Conversion& conversion, const OldFile& old) {
  platform::Files& files = conversion.files();
  if (files.exists(conversion.path(old.file)) || !files.exists(conversion.path(old.fresh)) ||
      !files.exists(conversion.path(old.kept)))
    return false;
  files.rename(conversion.path(old.fresh), conversion.path(old.file));
  return true;
}

/// False when the file does not exist, which is reported.
bool is_there(Conversion& conversion, std::string_view file) {
  if (conversion.files().exists(conversion.path(file)))
    return true;
  conversion.say("Can't find " + conversion.path(file), Icon::kExclamation);
  return false;
}

/// Keeps the old records under their other name. The copy keeps the access rights, the write brings it to the
/// disk.
void keep_old(Conversion& conversion, const OldFile& old, std::string_view bytes) {
  platform::Files& files = conversion.files();
  const std::string kept = conversion.path(old.kept);
  if (!files.status(conversion.path(old.file)).link && !files.exists(kept))
    files.copy_file(conversion.path(old.file), kept, false, {});
  files.write(kept, bytes);
}

/// The new records replace the old ones in the file itself, so that its access rights, and a link, stay. When
/// that fails, nothing is changed.
void put_in_place(Conversion& conversion, const OldFile& old, std::string_view bytes,
                  std::string_view converted) {
  platform::Files& files = conversion.files();
  const std::string kept = conversion.path(old.kept);
  const bool made = !files.exists(kept);
  base::Trap trap;
  if (trap([&] {
        keep_old(conversion, old, bytes);
        files.write(conversion.path(old.file), converted);
      }))
    return;
  const base::RuntimeError failure(trap.number(), trap.description());
  if (made)
    trap([&] { files.remove(kept); });
  throw base::RuntimeError(failure);
}

void convert_sites(Conversion& conversion) {
  constexpr OldFile kSites{kSiteFile,
                           "Site.new",
                           "Site.v22",
                           records::kOldSiteRecordSize,
                           records::kSiteRecordSize,
                           "Error renaming Site File. File May Already exist",
                           begins_site};
  conversion.failure_text = "Error with site file...";
  if (finish_renaming(conversion, kSites) || !is_there(conversion, kSiteFile))
    return;
  records::RecordFile file =
      records::RecordFile::open(conversion.files(), conversion.path(kSiteFile), records::kSiteRecordSize);
  const records::RecordFile::NumbersHold held = file.hold_numbers();
  const auto bytes = records_to_convert(conversion, kSites);
  if (!bytes)
    return;
  conversion.log("Opening Site.new");
  conversion.log("Opening Site.dat");
  std::string converted;
  for_each_record(conversion, kSites, *bytes, [&converted](std::string_view record) {
    if (!records::is_deleted(record))
      converted += records::upgrade_site(record);
  });
  conversion.failure_text = kSites.rename_failure;
  put_in_place(conversion, kSites, *bytes, converted);
}

/// The live templates of the bytes in today's layout.
std::string upgraded_templates(Conversion& conversion, const OldFile& old, std::string_view bytes,
                               records::TemplateGeneration generation) {
  std::vector<std::string_view> live;
  for_each_record(conversion, old, bytes, [&live](std::string_view record) {
    if (!records::is_deleted(record))
      live.push_back(record);
  });
  conversion.log(base::to_text(static_cast<std::int64_t>(live.size())) + ": templates to convert");
  std::string converted;
  for (const std::string_view record : live) {
    conversion.log("Converting Template:" + std::string(base::trim(records::listed_template_name(record))));
    converted += records::upgrade_template(record, generation);
    conversion.log("Template converted");
  }
  return converted;
}

void convert_templates(Conversion& conversion, records::TemplateGeneration generation) {
  const OldFile templates{kTemplateFile,
                          "Template.new",
                          "Template.v23",
                          records::old_template_record_size(generation),
                          records::kTemplateRecordSize,
                          "Error renaming template files. File may already exist.",
                          begins_template};
  conversion.failure_text = "Error with template file ....";
  if (finish_renaming(conversion, templates) || !is_there(conversion, kTemplateFile))
    return;
  records::RecordFile file = records::RecordFile::open(conversion.files(), conversion.path(kTemplateFile),
                                                       records::kTemplateRecordSize);
  const records::RecordFile::NumbersHold held = file.hold_numbers();
  const auto bytes = records_to_convert(conversion, templates);
  if (!bytes)
    return;
  conversion.log("Opening Template.new");
  conversion.log("Opening Template.dat");
  const std::string converted = upgraded_templates(conversion, templates, *bytes, generation);
  conversion.failure_text = templates.rename_failure;
  put_in_place(conversion, templates, *bytes, converted);
}

struct PermissionTable {
  OldFile old;
  std::string_view kept_line;
  std::string_view fresh_line;
};

constexpr OldFile permission_file(std::string_view file, std::string_view fresh, std::string_view kept,
                                  std::string_view failure_text) {
  return {file,
          fresh,
          kept,
          records::kOldPermissionRecordSize,
          records::kPermissionRecordSize,
          failure_text,
          begins_permission};
}

constexpr std::array kPermissionTables = {
    PermissionTable{permission_file(kPermissionFile, "Permissions.new", "Permissions.v24",
                                    "Error converting Permissions.dat"),
                    "Rename Permissions.dat to Permission.v24", "Rename Permissions.ner to Permissions.dat"},
    PermissionTable{permission_file(kSharePermissionFile, "Shareperm.new", "SharePerm.v24",
                                    "Error converting SharePerm.dat"),
                    "Rename SharePerm.dat to SharePerm.v24", "Rename sharePerm.new to SharePerm.dat"}};

void convert_permissions(Conversion& conversion) {
  for (const PermissionTable& table : kPermissionTables) {
    conversion.failure_text = table.old.rename_failure;
    if (finish_renaming(conversion, table.old) || !conversion.files().exists(conversion.path(table.old.file)))
      continue;
    const auto bytes = records_to_convert(conversion, table.old);
    if (!bytes)
      continue;
    std::string converted;
    for_each_record(conversion, table.old, *bytes, [&converted](std::string_view record) {
      converted += records::upgrade_permission(record);
    });
    conversion.log(table.kept_line);
    conversion.log(table.fresh_line);
    put_in_place(conversion, table.old, *bytes, converted);
  }
}

void run_stage(Conversion& conversion, std::int32_t stage) {
  switch (stage) {
    case conversion::kFrom1:
      convert_sites(conversion);
      convert_templates(conversion, records::TemplateGeneration::k1);
      break;
    case conversion::kFrom20:
      convert_templates(conversion, records::TemplateGeneration::k20);
      break;
    case conversion::kFrom21:
      convert_templates(conversion, records::TemplateGeneration::k21);
      break;
    case conversion::kFrom22:
      convert_templates(conversion, records::TemplateGeneration::k22);
      break;
    default:
      convert_permissions(conversion);
      break;
  }
}

struct OldDatabase {
  std::string_view title;
  std::string_view text;
  std::int32_t stage;
};

constexpr std::string_view kTemplateTitle = "Update Template.dat !!!";
constexpr std::string_view kTemplateText =
    "TWK dectected an older version of Template.dat file\r\nThis can cause unpredictable results if used"
    "\r\n\r\nTWK will now convert it to the new format.\r\nYour original file will be renamed Template.v23";

/// The steps for a version, in order.
std::vector<OldDatabase> steps_from(std::string_view version) {
  std::vector<OldDatabase> steps;
  if (version == "2.2")
    steps.push_back({kTemplateTitle, kTemplateText, conversion::kFrom22});
  if (version == "2.0")
    steps.push_back({kTemplateTitle, kTemplateText, conversion::kFrom20});
  if (version == "2.1")
    steps.push_back({kTemplateTitle, kTemplateText, conversion::kFrom21});
  if (version.starts_with('1'))
    steps.push_back({"Update Site.dat & Template.dat !!!",
                     "TWK dectected an older version of Site.dat/Template.dat files\r\n"
                     "This can cause unpredictable results if used\r\n\r\n"
                     "TWK will now convert them to the new format.\r\n"
                     "Your original files will be renamed Template.v23 & Site.v22",
                     conversion::kFrom1});
  if (!version.empty() && version != session::kDataVersion)
    steps.push_back({"Update dat Files !!!",
                     "TWK dectected older versions of Permissions.dat & SharePerm.dat file\r\n"
                     "This can cause unpredictable results if used\r\n\r\n"
                     "TWK will now convert them to the new format.\r\n"
                     "Your original files will be renamed with a .v24 extension",
                     conversion::kFrom23});
  return steps;
}

bool run_steps(Session& session, const std::vector<OldDatabase>& steps) {
  for (const OldDatabase& step : steps) {
    session.platform.dialogs.MsgBox(step.text, Buttons::kOk, Icon::kCritical, step.title);
    if (!Convert(session, session.dbpath, step.stage))
      return false;
    // One completed step must not be taken for the whole conversion.
    if (step.stage != steps.back().stage)
      session::write_setting(session, session::kVersion, "DBVersion", kBeforePermissions);
  }
  return true;
}

}  // namespace

bool Convert(Session& session, std::string_view dbpath, std::int32_t stage) {
  Conversion conversion{session, std::string(dbpath), nullptr, {}};
  begin_log(conversion);
  try {
    run_stage(conversion, stage);
  } catch (const base::RuntimeError& failure) {
    const std::string text = conversion.failure_text + "\r\n" + failure.description();
    conversion.log(conversion.failure_text);
    conversion.log("Error Number: " + base::to_text(failure.number()) + " " + failure.description());
    conversion.say(text, Icon::kCritical);
    return false;
  }
  session::write_setting(session, session::kVersion, "DBVersion", session::kDataVersion);
  conversion.say("Conversion Complete", Icon::kInformation);
  return true;
}

bool convert_old_database(Session& session) {
  const std::string version = session::read_setting(session, session::kVersion, "DBVersion");
  const std::vector<OldDatabase> steps = steps_from(version);
  if (!run_steps(session, steps)) {
    throw base::RuntimeError(base::error::kBadFileName,
                             "The database files in " + session.dbpath + " are of generation \"" +
                                 session::read_setting(session, session::kVersion, "DBVersion") +
                                 "\" and could not be converted. Convert.log shows the step.");
  }
  return !steps.empty();
}

bool convert_database_from(Session& session, std::string_view version) {
  return run_steps(session, steps_from(version));
}

}  // namespace twk::stores
