#include "cli/twk_fixture.hpp"

namespace twk::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class ImportingUsers : public TwkLab {
 protected:
  [[nodiscard]] ProgramResult import(std::string_view csv, const Arguments& further = {}) const {
    Arguments arguments = {"--json", "user",        "import", file("new.csv", csv), "--template", "staff",
                           "--site", "head office", "--ou",   kNewStarters};
    arguments.insert(arguments.end(), further.begin(), further.end());
    return run(arguments);
  }
};

TEST_F(ImportingUsers, PrintsARowForEachLineAndTheCounts) {
  play(R"(
$ user import $FILE $STAFF => 1
{"line": 1, "user": "John.Smith", "light": "GREEN", "message": "John.Smith Created User", "warnings": []}
{"message": "The line has fewer than two fields", "warnings": ["The line has fewer than two fields"]}
{"user": "Jürgen.Müller"}
{"light": "RED"}
{"created": 2, "refused": 2, "importErr": "$LAB/db/Import.err"}
)",
       {{"$FILE", {file("new.csv", "John,Fred,Smith\r\n\r\nJ\xFCrgen,,M\xFCller\r\nAl,*,B*\r\n")}}});
  EXPECT_THAT(get_file(database_file("Import.err")), HasSubstr("The following users were not created."));
}

// The template's group was given by the line already.
TEST_F(ImportingUsers, TakesColumnsGroupsAndExpiryAsChosen) {
  play(R"(
$ user import $FILE $STAFF --first 3 --middle 0 --last 4 --id 1 --password 2 --groups 5-5
  --expires %IMPORT6% --description "of %IMPORT5%"
{"user": "x1"}
{"created": 1}
$ user show x1
{"fullName": "Al Bo", "expires": "2027-12-31", "description": "of staff"}
$ settings get Setup ImportGroupsFinish => 2
)",
       {{"$FILE", {file("new.csv", "x1,Secret-Word-9,Al,Bo,staff,31/12/2027\n")}}});
}

TEST_F(ImportingUsers, ShowsNobodysPassword) {
  play(R"(
$ settings set Setup BatchFileCreate "/nowhere %IMPORT4%"
$ settings set UM RunCmd Yes
$ user import $FILE $STAFF --password 4 => 1
| /nowhere ********
- Secret-Word-9
$ log show
- Secret-Word-9
)",
       {{"$FILE", {file("new.csv", "Al,,Bo,Secret-Word-9\n")}}});
}

TEST_F(ImportingUsers, HaltsAtTheFirstWarningWhenAsked) {
  play(R"(
$ user import $FILE $STAFF --halt-on-warnings => 2 Errors during Import
| John.Smith1
- Al.Bo
)",
       {{"$FILE", {file("new.csv", "John,,Smith\nJohn,,Smith\nAl,,Bo\n")}}});
}

TEST_F(ImportingUsers, ForeseesInAPreviewAndInADryRunWhatTheImportReportsAndWritesNothing) {
  for (const std::string stage : {"CreateDirs", "CreateShares", "SetPermissions", "MailAccount"})
    ASSERT_EQ(run({"settings", "set", "UM", stage, "No"}).exit_code, 0);
  play(
      "$ user create --template Staff --site 'Head Office' --ou OU=London,DC=twk,DC=test --id elsewhere El "
      "Se");
  const std::string log = get_file(database_file("Log.txt"));
  const std::string csv =
      "ann,,lee,annlee,Secret-Word-1,Staff,31/12/2030\n"
      "ann,,lee,annlee,Secret-Word-1\n"
      "kim,,day,annl,Secret-Word-1\n"
      "kim,,day,elsewhere,Secret-Word-1\n"
      "narrow,line\n"
      "alone\n"
      "al,,bo,b*,Secret-Word-1\n"
      "ada,,may,ada,Secret-Word-1,No Such Group\n"
      "eva,,may,eva,Secret-Word-1,Domain Users,31/02/2030\n"
      "no,,word,nopass\n";
  const Arguments columns = {"--id", "4", "--password", "5", "--groups", "6-6", "--expires", "%IMPORT7%"};
  Arguments preview = columns;
  preview.emplace_back("--preview");
  Arguments dry_run = columns;
  dry_run.emplace_back("--dry-run");
  const ProgramResult seen = import(csv, preview);
  const ProgramResult rehearsed = import(csv, dry_run);
  EXPECT_EQ(get_file(database_file("Log.txt")), log);
  EXPECT_FALSE(std::filesystem::exists(database_file("Import.err")));
  EXPECT_EQ(seen.exit_code, 2);
  EXPECT_THAT(rehearsed.out, Not(HasSubstr("Secret-Word")));
  const auto shown = json_lines(seen.out);
  auto foreseen = json_lines(rehearsed.out);
  std::erase_if(foreseen, [](const nlohmann::json& row) { return row.contains("step"); });
  const auto made = json_lines(import(csv, columns).out);
  ASSERT_EQ(shown.size(), 10U) << seen.err;
  ASSERT_EQ(made.size(), 11U);
  ASSERT_EQ(foreseen.size(), 11U) << rehearsed.err;
  std::string lights;
  for (std::size_t i = 0; i < shown.size(); ++i) {
    lights += shown[i]["light"].get<std::string>().substr(0, 1);
    for (const char* const key : {"user", "light", "warnings"}) {
      EXPECT_EQ(shown[i][key], made[i][key]) << i << " " << key;
      EXPECT_EQ(foreseen[i][key], made[i][key]) << i << " " << key;
    }
  }
  EXPECT_EQ(lights, "GYGRRRRYYY");
}

TEST_F(ImportingUsers, PrintsTheStepsOfADryRunBeforeTheOutcome) {
  play(R"(
$ user create $STAFF --dry-run Jo Smith => 0 Nothing was created.
| Make the folder \\FS1\D$\Users\Jo.Smith
| Make the user CN=Jo.Smith in LDAP://$NEW
| Set permissions on \\FS1\D$\Users\Jo.Smith
| Make the mailbox CN=Jo.Smith
| GREEN  Jo.Smith would be created
$ user import $FILE $STAFF --dry-run => 1
| 1     Make the user CN=Jo.Smith in LDAP://$NEW
| 2     YELLOW  Jo.Smith1
| 2 would be created, 1 of them with warnings, 0 not created. Nothing was written.
$ user show Jo.Smith => 2
$ user create $STAFF --dry-run --keep-names jo 'da Silva'
| FullName = jo da Silva
$ user create $STAFF --dry-run jo 'da Silva'
| FullName = Jo Da Silva
$ template edit Staff --home-dir-path 'D:\Homes\%UserName%'
$ user import $FILE $STAFF --preview => 2 There is no folder \\FS1\D$\Homes
{"check": "folder", "light": "RED"}
$ user import $FILE $STAFF --make-parents => 1
| 2 created, 1 of them with warnings
)",
       {{"$FILE", {file("two.csv", "Jo,,Smith\nJo,,Smith\n")}}});
}

// The first Müller has the number of a person who is there by the second run, which makes only the new one.
TEST_F(ImportingUsers, RecognizesPeopleByAKeyAndWritesNamesInPlainLetters) {
  play(R"TWK(
$ table set w2k $ROWS
$ user import $FILE $STAFF $KEY --dry-run => 1
| 3     YELLOW  Jurgen.Mueller        An earlier line is of the same person: employeeNumber 7
| 3 would be created, 0 of them with warnings, 1 not created, 1 with an account already.
$ user import $FILE $STAFF $KEY => 1
{"line": 2, "user": "Lukasz.Mueller", "light": "GREEN"}
{"line": 3, "light": "YELLOW", "message": "Has an account already: Lukasz.Mueller (employeeNumber 7)"}
{"line": 4, "user": "Lukasz.Mueller1"}
{"line": 5, "user": "Giannes.Strasse"}
{"line": 6, "light": "RED", "message": "There is no employeeNumber by which the person could be recognised"}
{"created": 3, "warned": 0, "refused": 1, "known": 1}
$ user show Lukasz.Mueller1
{"userPrincipalName": "Lukasz.Mueller1@twk.test", "fullName": "Łukasz Müller"}
$ user import $FILE $STAFF $KEY --halt-on-warnings => 1
| 0 created, 0 of them with warnings, 1 not created, 4 with an account already.
$ user import $FILE $STAFF --csv --key employeeNumber=%IMPORT9% => 1
| RED     Łukasz.Müller         There is no employeeNumber
$ user import $FILE $STAFF --csv --key employeeNumber=7 => 64 --key needs a column of the file
$ user import $FILE $STAFF --csv --key employeeNumber)(cn=%IMPORT3% => 64 --key takes an attribute
$ user import $FILE $STAFF --csv --key shoeSize=%IMPORT3% => 2 does not know the attribute shoeSize
{"check": "key", "light": "RED"}
$ user create $STAFF --plain-letters --key employeeNumber=8 Ann Lee => 1
| YELLOW  Has an account already: Lukasz.Mueller1
$ user create $STAFF --plain-letters Seán "O'Neill" --dry-run
| GREEN  Sean.ONeill would be created
)TWK",
       {{"$ROWS", {file("rows.txt", "p,userPrincipalName,%Account%@%Domain%\n")}},
        {"$KEY", {"--csv", "--plain-letters", "--key", "employeeNumber=%IMPORT:No%"}},
        {"$FILE",
         {file("people.csv",
               "First name,Last name,No\nŁukasz,Müller,7\nJurgen,Müller,7\nŁukasz,Müller,8\n"
               "Γιάννης,Straße,9\nAl,Bo,\n")}}});
}

// Beyond some lines the keys of the domain are read at once, and those of the run's own accounts are added.
TEST_F(ImportingUsers, RecognizesThePeopleOfALongFile) {
  std::string csv;
  const auto person = [&](int number, const std::string& key) {
    csv += "Al" + std::to_string(number) + ",,Bo" + std::to_string(number) + "," + key + "\n";
  };
  for (int number = 0; number < 40; ++number)
    person(number, std::to_string(number % 4 == 3 ? 1000 - number : number));
  for (const int known : {0, 7, 12, 23, 38, 39})
    person(40 + known, std::to_string(known % 4 == 3 ? 1000 - known : known));
  for (const char* const key : {"\u00E9 1", "\u00C9 1", "late"})
    person(100 + static_cast<int>(csv.size()), key);
  const auto counts = [&](const Arguments& more) {
    Arguments order = {"--key", "employeeNumber=%IMPORT4%"};
    order.insert(order.end(), more.begin(), more.end());
    const nlohmann::json end = json_lines(import(csv, order).out).back();
    return std::pair(end["created"].get<int>(), end["known"].get<int>());
  };
  const auto foreseen = counts({"--dry-run"});
  EXPECT_EQ(foreseen.second, 7) << "six by their numbers, one by a text that compares alike";
  EXPECT_EQ(counts({}), foreseen);
  EXPECT_EQ(counts({}), std::pair(0, 49));
}

TEST_F(ImportingUsers, RefusesWhatHoldsNoLineAndAColumnThatNoLineHas) {
  ASSERT_EQ(import("John,,Smith\nalone\nJohn,,Smith,4\n").exit_code, 1);
  const std::string errors = database_file("Import.err");
  play(R"(
$ user import /dev/null $STAFF => 65 /dev/null is not an ordinary file
$ user import $EMPTY $STAFF => 65 contains no user
$ user import gone.csv $STAFF => 65 There is no file gone.csv
$ user import $ERRORS $STAFF --last 5 => 64 no column 5: the longest line has 1
)",
       {{"$EMPTY", {file("empty.csv", "")}}, {"$ERRORS", {errors}}});
  EXPECT_THAT(get_file(errors), testing::EndsWith("alone\r\n"));
}

TEST_F(ImportingUsers, ReadsASpreadsheetByItsHeadings) {
  const std::string csv =
      "Surname;Given name;Logon;\"Room\r\nname\";Floor\r\n"
      "\"M\xFCller, Dr.\";J\xFCrgen;jm;\"12; North\";3\r\n;;;\r\nBo;Al;jm;\"x\r\ny\"\r\nalone\r\n";
  play(R"(
$ settings set Setup BatchFileCreate "/nowhere %IMPORT:room name%"
$ settings set UM RunCmd Yes
$ settings set Setup AltSetupID %IMPORT:logon%
$ user import $FILE $STAFF --csv --id " logon" --description "%IMPORT:ROOM NAME%/%IMPORT5%" => 1
{"line": 3, "user": "jm", "light": "YELLOW"}
{"line": 5, "user": "jm", "light": "RED"}
{"line": 7, "light": "RED", "message": "The line has fewer than two fields"}
{"created": 1, "refused": 2}
$ log show
| Running Script: /nowhere "12; North"
$ user show jm
{"fullName": "Jürgen Müller, Dr.", "description": "12; North/3"}
$ user import $ERRORS $STAFF --csv --id 3 --preview => 2
{"line": 7, "user": "jm", "last": "Bo"}
{"line": 9, "light": "RED"}
)",
       {{"$FILE", {file("new.csv", csv)}}, {"$ERRORS", {database_file("Import.err")}}});
}

TEST_F(ImportingUsers, RefusesASpreadsheetBeforeTheFirstUser) {
  struct Case {
    std::string csv;
    Arguments options;
    int exit_code;
    std::string reason;
  };
  const std::string people = "First name,Last name,Phone,phone,Nick\nJo,Smith,1,2,x\n";
  const Case cases[] = {
      {people + "Al,\"Bo\n", {}, 65, "new.csv, line 3, column 4: the quote that begins here is never closed"},
      {people + "Al,Bo,1,2,x,y\n", {}, 65, "new.csv, line 3 has 6 fields, but there are 5 headings"},
      {"First name,Last name\n,\n", {}, 65, "new.csv contains no user below its heading line"},
      {"Name\nJo\n", {}, 65, "line 1, the heading line, has one column: no comma, semicolon or tab"},
      {people, {"--id", "PHONE"}, 64, "--id: the columns 3 and 4 both have the heading \"PHONE\""},
      {people,
       {"--last", "Name"},
       64,
       "no column has the heading \"Name\". The headings are \"First name\", "},
      {people, {"--id", "6"}, 64, "there is no column 6: the heading line has 5"},
      {people, {"--expires", "%IMPORT:End%"}, 64, "the expiry: no column has the heading \"End\""},
      {"Nick,Last name\nJo,Smith\n", {}, 64, "say which column holds the first name: --first takes"},
  };
  for (const Case& one : cases) {
    Arguments options = one.options;
    options.emplace_back("--csv");
    const ProgramResult result = import(one.csv, options);
    EXPECT_EQ(result.exit_code, one.exit_code) << one.csv;
    EXPECT_THAT(result.err, HasSubstr(one.reason));
    EXPECT_EQ(result.out, "");
  }
  EXPECT_FALSE(std::filesystem::exists(database_file("Import.err")));
  EXPECT_THAT(import(people, {"--first", "Nick"}).err, HasSubstr("--first takes the number of a column"));
}

TEST_F(ImportingUsers, HintsAtSpreadsheetsOnceAndNotInJson) {
  const std::pair<const char*, const char*> cases[] = {
      {"\"Smith, Jo\",,x\n\"Bo\",,Al\n", "has quoted fields"},
      {"Jo;A;Smith\nAl;;Bo\n", "has semicolons"},
      {"\xFF\xFEJ", "has UTF-16"},
      {"Jo,5\",Smith\nAl,;;,Bo\n", ""}};
  for (const auto& [csv, sign] : cases) {
    const std::string path = file("new.csv", csv);
    const std::string said = run({"user", "import", path, "--template", "Staff", "--site", "Head Office",
                                  "--ou", kNewStarters, "--preview"})
                                 .err;
    EXPECT_THAT(said, HasSubstr(sign));
    EXPECT_EQ(said.find("--csv") == said.rfind("--csv") && said.find("--csv") != said.npos, *sign != 0)
        << said;
    EXPECT_THAT(import(csv, {"--preview"}).err, Not(HasSubstr("--csv")));
  }
}

TEST_F(ImportingUsers, ReadsTheSamplesOfAllSeparatorsAlike) {
  const auto rows_of = [this](const std::string& separator) {
    const std::string path = TWK_SOURCE_DIR "/samples/starters-" + separator + ".csv";
    const ProgramResult result =
        run({"--json", "user", "import", path, "--template", "Staff", "--site", "Head Office", "--ou",
             kNewStarters, "--csv", "--preview", "--expires-after", "%IMPORT:Account ends%", "--description",
             "%IMPORT:Department%, %IMPORT:Office%"});
    EXPECT_EQ(result.exit_code, 0) << result.err << result.out;
    return json_lines(result.out);
  };
  const auto rows = rows_of("comma");
  ASSERT_EQ(rows.size(), 7U);
  EXPECT_EQ(rows[2]["user"], "Brian.Hartley");
  EXPECT_EQ(rows[2]["line"], 5);
  EXPECT_EQ(rows_of("semicolon"), rows);
  EXPECT_EQ(rows_of("tab"), rows);
}

TEST_F(ImportingUsers, ReadsTheSameCellsFromWhatLibreOfficeSavesInAnyForm) {
  const auto rows_of = [this](const std::string& form) {
    const std::string path = TWK_SOURCE_DIR "/tests/cli/spreadsheets/" + form + ".csv";
    const Arguments order = {"--json",
                             "user",
                             "import",
                             path,
                             "--csv",
                             "--ou",
                             kNewStarters,
                             "--template=Staff",
                             "--site",
                             "Head Office",
                             "--first=Vorname",
                             "--middle=0",
                             "--last=Nachname",
                             "--dry-run",
                             "--description=%IMPORT:Abteilung%|%IMPORT:Bemerkung%|%IMPORT:Personalnummer%"};
    return json_lines(run(order).out);
  };
  const auto rows = rows_of("comma-utf-8");
  std::string read;
  for (const nlohmann::json& row : rows) {
    const std::string step = row.value("step", "");
    if (const std::size_t at = step.find(": Description = "); at != step.npos)
      read += row["line"].dump() + step.substr(at + 15) + "\n";
    else if (row.contains("user"))
      read += row["user"].get<std::string>() + "\n";
  }
  EXPECT_EQ(read,
            "2 Einkauf, Lager|nennt sich \"Joe\"|0007\nJörg.Müller\n"
            "3 Vertrieb; Süd|zieht um\nam 1. März|0012\nÄnne.Groß\nZoë.O'Neill\n"
            "6 Tabim Feld||0031\nSøren.Østergård\n7 |\"ganz\" in Anführung|0044\nHélène.Dupont\n");
  for (const char* const form :
       {"comma-windows-1252", "semicolon-utf-8", "semicolon-windows-1252", "tab-utf-8", "tab-windows-1252"})
    EXPECT_EQ(rows_of(form), rows) << form;
}

TEST_F(ImportingUsers, GoesOnWithAHaltedRunAndTakesItBack) {
  const std::string passwords = file("passwords.csv", "");
  std::filesystem::remove(passwords);
  play(R"(
$ user import $FILE $STAFF --halt-on-warnings --passwords $PASSWORDS => 2 Errors during Import
| 3 created, 1 of them
$ user import $FILE $STAFF --passwords $PASSWORDS => 65 exists already
$ user import --resume $FILE => 65 no line of the record
$ user import --resume $FILE $FILE => 64
$ user import --undo $FILE --preview => 64 no --preview
$ user import --resume $FILE --ou OU=London,DC=twk,DC=test => 64 from the record
$ user import $FILE => 64 --template is required
)",
       {{"$FILE", {file("new.csv", "Al,,Bo\nJohn,,Smith\nJohn,,Smith\nAl,,Bo\n")}},
        {"$PASSWORDS", {passwords}}});
  EXPECT_THAT(get_file(passwords), testing::StartsWith("account,password\r\n\"Al.Bo\",\""));
  EXPECT_EQ(std::filesystem::status(passwords).permissions(),
            std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
  std::string record;
  for (const auto& entry :
       std::filesystem::directory_iterator(std::filesystem::path(database_file("Log.txt")).parent_path())) {
    if (entry.path().extension() == ".jsonl")
      record = entry.path().string();
  }
  EXPECT_THAT(get_file(record), Not(HasSubstr("Welcome")));
  play(R"(
$ user import --undo $RECORD --dry-run
| Delete
$ user show Al.Bo
$ --yes user import --undo $RECORD
{"line": 3, "user": "John.Smith1", "light": "GREEN"}
{"line": 2}
{"line": 1}
{"done": 3}
$ user show Al.Bo => 2
$ --yes user import --undo $RECORD => 1
{"done": 0}
$ user import --resume $RECORD --dry-run => 2
| 1     GREEN   Al.Bo
| 3     YELLOW  John.Smith1
| 3 would be created
$ user show Al.Bo => 2
$ user import --resume $RECORD => 2
{"line": 1, "user": "Al.Bo"}
{"line": 2}
{"line": 3, "user": "John.Smith1"}
{"created": 3}
$ user import --resume $RECORD => 1 Nobody can be asked
{"line": 4, "light": "RED"}
{"created": 0}
)",
       {{"$RECORD", {record}}});
}

TEST_F(ImportingUsers, StopsAfterTheCurrentUserAtCtrlC) {
  const ProgramResult result = run({"user", "import", file("many.csv", new_people(200)), "--template",
                                    "Staff", "--site", "Head Office", "--ou", kNewStarters},
                                   "\x03", at_terminal());
  EXPECT_EQ(result.exit_code, 1) << result.out;
  EXPECT_THAT(result.out,
              AllOf(HasSubstr("1     GREEN"), HasSubstr(" not created, stopped."), Not(HasSubstr("\n200 "))));
}

}  // namespace
}  // namespace twk::test
