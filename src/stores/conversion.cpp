#include "stores/conversion.hpp"

#include "base/errors.hpp"
#include "base/text.hpp"
#include "session/session.hpp"
#include "session/settings.hpp"
#include "stores/old_records.hpp"
#include "stores/record_file.hpp"
#include "stores/records.hpp"
#include "stores/side_tables.hpp"
#include "stores/site_store.hpp"
#include "stores/template_store.hpp"

namespace twk::stores {
namespace {

using platform::Buttons;
using platform::Icon;
using session::Session;

constexpr std::string_view kTitle = "Convert";
/// The generation whose permission tables alone are old.
constexpr std::string_view kBeforePermissions = "2.3";

/// One conversion: the log, and what to say when the step in hand fails.
struct Conversion {
  Session& session;
  std::string dbpath;
  std::unique_ptr<platform::AppendFile> log_file;
  std::string failure_text;

  [[nodiscard]] std::string path(std::string_view file) const { return dbpath + std::string(file); }
  [[nodiscard]] platform::Files& files() const { return session.platform.files; }
  void log(std::string_view text) { session::write_run_file(session, log_file, text); }
  void say(std::string_view text, Icon icon) const {
    session.platform.dialogs.MsgBox(text, Buttons::kOk, icon, kTitle);
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

/// Record lengths of a file before its conversion and behind it.
struct Lengths {
  std::size_t old;
  std::size_t today;
};

/// Stops before anything is written: beside a file that an earlier conversion kept, whose name is needed for
/// this one, and for records of today, which read as old ones would be nonsense. A file of old records is
/// taken for one of today only when it is damaged besides.
void require_convertible(Conversion& conversion, std::string_view file, std::string_view kept,
                         const Lengths& lengths, std::string_view rename_failure) {
  if (conversion.files().exists(conversion.path(kept))) {
    conversion.failure_text = rename_failure;
    throw base::RuntimeError(base::error::kFileExists, conversion.path(kept) + " exists already");
  }
  const std::size_t size = conversion.files().read(conversion.path(file)).size();
  if (size % lengths.today == 0 && size % lengths.old != 0) {
    throw base::RuntimeError(base::error::kBadFileName, conversion.path(file) +
                                                            " has today's layout already. "
                                                            "Nothing was converted");
  }
}

/// Calls `use` with each whole old record of the file.
void for_each_record(Conversion& conversion, std::string_view file, std::size_t record_size,
                     const std::function<void(std::string_view)>& use) {
  const std::string bytes = conversion.files().read(conversion.path(file));
  if (const std::size_t stray = bytes.size() % record_size; stray != 0) {
    const std::string text = std::string(file) + " ends in " +
                             base::to_text(static_cast<std::int64_t>(stray)) +
                             " bytes that are no whole record; they were left out";
    conversion.log(text);
    session::LOG_TAB(conversion.session, session::kYellow, text);
  }
  for (std::size_t at = 0; at + record_size <= bytes.size(); at += record_size)
    use(std::string_view(bytes).substr(at, record_size));
}

/// A renaming that broke off between its two steps is brought to its end. True when there was one: the file
/// is converted then.
bool finish_renaming(Conversion& conversion, std::string_view file, std::string_view fresh,
                     std::string_view kept) {
  platform::Files& files = conversion.files();
  if (files.exists(conversion.path(file)) || !files.exists(conversion.path(fresh)) ||
      !files.exists(conversion.path(kept)))
    return false;
  files.rename(conversion.path(fresh), conversion.path(file));
  return true;
}

/// False when the file is not there, which is told.
bool is_there(Conversion& conversion, std::string_view file) {
  if (conversion.files().exists(conversion.path(file)))
    return true;
  conversion.say("Can't find " + conversion.path(file), Icon::kExclamation);
  return false;
}

void put_in_place(Conversion& conversion, std::string_view file, std::string_view fresh,
                  std::string_view kept) {
  conversion.files().rename(conversion.path(file), conversion.path(kept));
  conversion.files().rename(conversion.path(fresh), conversion.path(file));
}

void convert_sites(Conversion& conversion) {
  constexpr std::string_view kNew = "Site.new";
  constexpr std::string_view kOld = "Site.v22";
  constexpr std::string_view kRenameFailure = "Error renaming Site File. File May Already exist";
  conversion.failure_text = "Error with site file...";
  if (finish_renaming(conversion, kSiteFile, kNew, kOld) || !is_there(conversion, kSiteFile))
    return;
  require_convertible(conversion, kSiteFile, kOld, {kOldSiteRecordSize, kSiteRecordSize}, kRenameFailure);
  conversion.log("Opening Site.new");
  conversion.log("Opening Site.dat");
  std::string converted;
  for_each_record(conversion, kSiteFile, kOldSiteRecordSize, [&converted](std::string_view record) {
    if (!is_deleted(record))
      converted += upgrade_site(record);
  });
  conversion.files().write(conversion.path(kNew), converted);
  conversion.failure_text = kRenameFailure;
  put_in_place(conversion, kSiteFile, kNew, kOld);
}

void convert_templates(Conversion& conversion, TemplateGeneration generation) {
  constexpr std::string_view kNew = "Template.new";
  constexpr std::string_view kOld = "Template.v23";
  constexpr std::string_view kRenameFailure = "Error renaming template files. File may already exist.";
  conversion.failure_text = "Error with template file ....";
  if (finish_renaming(conversion, kTemplateFile, kNew, kOld) || !is_there(conversion, kTemplateFile))
    return;
  require_convertible(conversion, kTemplateFile, kOld,
                      {old_template_record_size(generation), kTemplateRecordSize}, kRenameFailure);
  conversion.log("Opening Template.new");
  conversion.log("Opening Template.dat");
  std::vector<std::string> live;
  for_each_record(conversion, kTemplateFile, old_template_record_size(generation),
                  [&live](std::string_view record) {
                    if (!is_deleted(record))
                      live.emplace_back(record);
                  });
  conversion.log(base::to_text(static_cast<std::int64_t>(live.size())) + ": templates to convert");
  std::string converted;
  for (const std::string& record : live) {
    conversion.log("Converting Template:" + std::string(base::trim(listed_template_name(record))));
    converted += upgrade_template(record, generation);
    conversion.log("Template converted");
  }
  conversion.files().write(conversion.path(kNew), converted);
  conversion.failure_text = kRenameFailure;
  put_in_place(conversion, kTemplateFile, kNew, kOld);
}

struct PermissionTable {
  std::string_view file;
  std::string_view fresh;
  std::string_view kept;
  std::string_view failure_text;
  std::string_view kept_line;
  std::string_view fresh_line;
};

constexpr std::array kPermissionTables = {
    PermissionTable{kPermissionFile, "Permissions.new", "Permissions.v24", "Error converting Permissions.dat",
                    "Rename Permissions.dat to Permission.v24", "Rename Permissions.ner to Permissions.dat"},
    PermissionTable{kSharePermissionFile, "Shareperm.new", "SharePerm.v24", "Error converting SharePerm.dat",
                    "Rename SharePerm.dat to SharePerm.v24", "Rename sharePerm.new to SharePerm.dat"}};

void convert_permissions(Conversion& conversion) {
  for (const PermissionTable& table : kPermissionTables) {
    conversion.failure_text = table.failure_text;
    if (finish_renaming(conversion, table.file, table.fresh, table.kept) ||
        !conversion.files().exists(conversion.path(table.file)))
      continue;
    require_convertible(conversion, table.file, table.kept, {kOldPermissionRecordSize, kPermissionRecordSize},
                        table.failure_text);
    std::string converted;
    for_each_record(conversion, table.file, kOldPermissionRecordSize,
                    [&converted](std::string_view record) { converted += upgrade_permission(record); });
    conversion.files().write(conversion.path(table.fresh), converted);
    conversion.log(table.kept_line);
    conversion.files().rename(conversion.path(table.file), conversion.path(table.kept));
    conversion.log(table.fresh_line);
    conversion.files().rename(conversion.path(table.fresh), conversion.path(table.file));
  }
}

void run_stage(Conversion& conversion, std::int32_t stage) {
  switch (stage) {
    case conversion::kFrom1:
      convert_sites(conversion);
      convert_templates(conversion, TemplateGeneration::k1);
      break;
    case conversion::kFrom20:
      convert_templates(conversion, TemplateGeneration::k20);
      break;
    case conversion::kFrom21:
      convert_templates(conversion, TemplateGeneration::k21);
      break;
    case conversion::kFrom22:
      convert_templates(conversion, TemplateGeneration::k22);
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

/// What is to be done about a version, in its order.
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
  for (const OldDatabase& step : steps) {
    session.platform.dialogs.MsgBox(step.text, Buttons::kOk, Icon::kCritical, step.title);
    if (!Convert(session, session.form1.dbpath.text.get(), step.stage)) {
      throw base::RuntimeError(
          base::error::kBadFileName,
          "The database files in " + session.form1.dbpath.text.get() + " are of generation \"" +
              session::read_setting(session, session::kVersion, "DBVersion") +
              "\" and could not be converted. Convert.log tells the step. Where another administrator has "
              "converted them already, set DBVersion to 2.4.");
    }
    // What one step completed is not to be taken for the whole.
    if (step.stage != steps.back().stage)
      session::write_setting(session, session::kVersion, "DBVersion", kBeforePermissions);
  }
  return !steps.empty();
}

}  // namespace twk::stores
