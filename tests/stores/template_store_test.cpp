#include "stores/template_store.hpp"

#include "records/layout.hpp"
#include "session/loaded_database.hpp"
#include "session/loaded_domain.hpp"
#include "stores/template_changes.hpp"
#include "support/world.hpp"

namespace twk::stores {
namespace {

class TemplateStoreTest : public test::TestWorld {
 protected:
  void make(std::string_view lines) {
    ASSERT_TRUE(test::make_records("template", path_, lines));
    load_template_names(session);
  }
  std::string dump() { return test::dump_records("template", path_); }
  void domain_groups(std::initializer_list<const char*> texts) {
    for (const char* const name : texts)
      choice.add(std::string("key-") + name, name, "Global");
  }
  void load(std::string_view name) {
    EXPECT_TRUE(load_template(session, records::padded_template_name(name)).done) << name;
  }
  StoreOutcome save_new(std::string name) {
    return save_template(session, {.Name = std::move(name)}, SaveAs::kNew);
  }
  /// Saves the loaded template as it is.
  StoreOutcome save_loaded() {
    return save_template(session, edit_of(session.ActiveTemplate), SaveAs::kLive);
  }

  controls::ListView& choice = session.domain.template_choice;
  controls::ListView& groups = session.domain.template_groups;
  controls::ListView& variables = session.database.variables;
  std::vector<std::string>& names = session.database.templates;
  std::string path_ = database / "Template.dat";
};

const std::string kHours = "|LogonHours=" + std::string(42, 'f');
const std::string kStaff = "Name=Staff" + kHours;

TEST_F(TemplateStoreTest, LoadingTakesTheRecordItsHoursVariablesAndGroups) {
  domain_groups({"Sales", "Staff"});
  choice.add("other key", "sales", "Local");
  make("Deleted=-1|Name=Old" + kHours +
       "\nGroupCount=3|Name=Staff|HomeDir=hd|LogonHours=" + std::string(42, '3') +
       "|Group0=Staff|Group1=Gone|Group2=sales|VariableName1=Dept|VariableValue1=Sales|"
       "VariableValue7=no name|VariableName50=Last\nName=Plain" +
       kHours + "\n");
  EXPECT_EQ(names,
            (std::vector{records::padded_template_name("Staff"), records::padded_template_name("Plain")}));
  load("Staff");
  EXPECT_EQ(session.ActiveTemplate.HomeDir, "hd");
  EXPECT_EQ(session.TemplateLogonHours, base::Bytes(21, 0x33));
  EXPECT_EQ(test::texts(variables), (std::vector<std::string>{"Dept", "", "Last"}));
  EXPECT_EQ(variables.at(1).sub_items, std::vector<std::string>{"no name"});
  EXPECT_EQ(test::texts(choice), std::vector<std::string>{"Sales"});
  EXPECT_EQ(test::texts(groups), (std::vector<std::string>{"Staff", "sales"}));
  EXPECT_EQ(groups.at(0).key, "key-Staff");
  EXPECT_EQ(groups.at(0).icon, "Global");
  load("Plain");
  EXPECT_TRUE(groups.empty());
  EXPECT_EQ(test::texts(choice), (std::vector<std::string>{"Sales", "Staff", "sales"}));
  EXPECT_NE(choice.find_key("key-Staff"), nullptr);
}

TEST_F(TemplateStoreTest, LoadingRequiresTheNameAsSpelledInTheList) {
  make("Deleted=-1|Name=Staff|HomeDir=old" + kHours + "\nName=Staff|HomeDir=new" + kHours +
       "\nName=1234567890123456789012345|HomeDir=full" + kHours + "\n");
  struct Case {
    std::string name;
    bool found;
    std::int32_t number;
  };
  const Case cases[] = {{records::padded_template_name("Staff"), true, 2},
                        {"Staff", false, 3},
                        {records::padded_template_name("STAFF"), false, 3},
                        {"1234567890123456789012345", true, 3}};
  for (const Case& one : cases) {
    EXPECT_EQ(load_template(session, one.name).done, one.found) << one.name;
    EXPECT_EQ(session.LastRecordNo, one.number);
  }
  EXPECT_EQ(Find_Template(session, " sTAFF"), 2);
  EXPECT_EQ(Find_Template(session, "none"), -1);
}

TEST_F(TemplateStoreTest, ANewTemplateIsWrittenWithTheGroupsAndHoursOfTheSession) {
  domain_groups({"A", "B"});
  session.TemplateLogonHours.assign(21, 0xFF);
  choice.at(1).selected = true;
  add_selected_groups(session);
  const StoreOutcome saved = save_template(session,
                                           {.Name = " Büro ",
                                            .ProfilePath = "pp",
                                            .HomeDir = "hd",
                                            .ProfileDirPath = "pdp",
                                            .HomeDirPath = "hdp",
                                            .ProfileShare = "ps",
                                            .HomeShare = "hs",
                                            .HomeSharePoint = "\\hsp",
                                            .ProfileSharePoint = "psp\\",
                                            .LogonScript = "l.cmd",
                                            .HomeDrive = "h:",
                                            .PrimaryGroup = "B"},
                                           SaveAs::kNew);
  EXPECT_EQ(saved.status, "Template Saved...");
  EXPECT_EQ(
      dump(),
      "GroupCount=1|Name=Büro|ProfilePath=pp|HomeDir=hd|ProfileDirPath=pdp|HomeDirPath=hdp|ProfileShare=ps|"
      "HomeShare=hs|HomeSharePoint=hsp\\|ProfileSharePoint=psp\\|LogonScript=l.cmd|HomeDrive=h:" +
          kHours + "|PrimaryGroup=B|Group0=B\n");
  EXPECT_EQ(names, std::vector<std::string>{records::padded_template_name("Büro")});
}

TEST_F(TemplateStoreTest, HomeDriveIsALetterAndAColonOrNothing) {
  for (const char* const drive : {"1:", "C", "C:\\", ":", "é:"}) {
    const StoreOutcome outcome =
        save_template(session, {.Name = "Staff", .HomeDir = "x", .HomeDrive = drive}, SaveAs::kNew);
    EXPECT_EQ(outcome.status, "Home Drive Format Incorrect") << drive;
    EXPECT_FALSE(files.exists(path_));
  }
  // A drive without a home directory is not kept.
  EXPECT_TRUE(save_template(session, {.Name = "Staff", .HomeDrive = "H:"}, SaveAs::kNew).done);
  EXPECT_EQ(dump(), kStaff + "\n");
}

TEST_F(TemplateStoreTest, NamesThatCannotBeAreRefused) {
  make(kStaff + "\n");
  struct Case {
    std::string name;
    std::string_view message;
    std::string_view title;
    std::string_view status;
  };
  const Case cases[] = {{" STAFF ", "Template Name STAFF Already Exist \r\nChange Template Name.",
                         "Template Name Conflict...", ""},
                        {"  ", "Template Name cannot be blank.", "Template Name", ""},
                        {"a\nb", "", "", "Control character U+000A not allowed"},
                        {"a\u00ADb", "", "", "Format character U+00AD not allowed"},
                        {"Ж", "", "", "\"Ж\" cannot be stored: code page 1252 has no place for Ж (U+0416)"}};
  for (const Case& one : cases) {
    const StoreOutcome outcome = save_new(one.name);
    EXPECT_EQ(outcome.message, one.message);
    EXPECT_EQ(outcome.title, one.title);
    EXPECT_EQ(outcome.status, one.status);
    EXPECT_EQ(outcome.at_name, !one.message.empty());
  }
  EXPECT_EQ(dump(), kStaff + "\n");
}

TEST_F(TemplateStoreTest, AnEditKeepsVariablesAndSpareSlotsAndDropsUnknownGroups) {
  domain_groups({"A"});
  make("Name=Other" + kHours + "\nGroupCount=2|Name=Staff|LogonHours=" + std::string(42, 'f') +
       "|Group0=Gone|Group1=A|Group9=spare|VariableName1=Dept|VariableValue1=Sales\n");
  load("Staff");
  session.ActiveTemplate = records::TemplateRecord();
  EXPECT_TRUE(save_template(session, {.Name = "Staff", .LogonScript = "x.cmd"}, SaveAs::kLive).done);
  EXPECT_EQ(dump(), "Name=Other" + kHours + "\nGroupCount=1|Name=Staff|LogonScript=x.cmd" + kHours +
                        "|Group0=A|Group1=A|Group9=spare|VariableName1=Dept|VariableValue1=Sales\n");
}

TEST_F(TemplateStoreTest, GroupsOfADomainThatIsNotLoadedAreKept) {
  make("GroupCount=2|Name=Staff" + kHours + "|Group0=B|Group1=A\n");
  load("Staff");
  save_loaded();
  release_template(session);
  save_new("Plain");
  load_template_record(session, 1);
  save_new("Copy");
  EXPECT_EQ(dump(), "GroupCount=2|Name=Staff" + kHours + "|Group0=B|Group1=A\n" + "Name=Plain" + kHours +
                        "|Group0=B|Group1=A\nGroupCount=2|Name=Copy" + kHours + "|Group0=B|Group1=A\n");
}

TEST_F(TemplateStoreTest, AGroupIsFoundInAnyCaseAndOneThatDoesNotFitIsNotAdded) {
  domain_groups({"STAFF", "Łódź Team", "A name of 22 characters"});
  make("GroupCount=1|Name=Staff" + kHours + "|Group0=Staff\n");
  load("Staff");
  EXPECT_EQ(test::texts(groups), std::vector<std::string>{"STAFF"});
  choice.at(0).selected = true;
  choice.at(1).selected = true;
  dialogs.expect("code page 1252 has no place for Ł (U+0141)");
  dialogs.expect("group names of at most 21 characters");
  add_selected_groups(session);
  EXPECT_EQ(groups.size(), 1U);
  EXPECT_EQ(primary_group_refusal(groups.at(0)), "");
  EXPECT_EQ(primary_group_refusal(groups.add({}, "Operators", "Local")),
            "A local group cannot be the primary group");
}

TEST_F(TemplateStoreTest, ATemplateHoldsSeventyFiveGroups) {
  for (int i = 0; i < 76; ++i)
    choice.add({}, "group" + base::to_text(i)).selected = true;
  dialogs.expect("Templates Limited to 75 Groups");
  add_selected_groups(session);
  EXPECT_EQ(dialogs.last_title, "Max Groups Reached");
  save_new("Big");
  EXPECT_EQ(session.ActiveTemplate.GroupCount, 75);
}

TEST_F(TemplateStoreTest, ANewTemplateGetsTheVariablesOfTheOneLoadedBeforeAndChangesAreSavedApart) {
  make(kStaff + "|VariableName1=Dept|VariableValue1=Sales|VariableValue9=gone\n");
  load("Staff");
  save_new("Second");
  variables.clear();
  variables.add({}, "Dept", {}, {"Legal"});
  variables.add({}, "Flag");
  EXPECT_TRUE(save_variables(session, "Staff").done);
  EXPECT_EQ(dump(), kStaff + "|VariableName1=Dept|VariableName2=Flag|VariableValue1=Legal\nName=Second" +
                        kHours + "|VariableName1=Dept|VariableValue1=Sales|VariableValue9=gone\n");
}

TEST_F(TemplateStoreTest, ADeletedNameCanBeUsedAgain) {
  make(kStaff + "\n");
  EXPECT_EQ(delete_template(session, "Staff").status, "Template Deleted.");
  EXPECT_EQ(dump(), "Deleted=-1|" + kStaff + "\n");
  EXPECT_TRUE(names.empty());
  save_new("Staff");
  EXPECT_EQ(dump(), "Deleted=-1|" + kStaff + "\n" + kStaff + "\n");
  EXPECT_EQ(Find_Template(session, "Staff"), 2);
}

TEST_F(TemplateStoreTest, ATemplateThatAColleagueDeletedIsReportedAndNothingIsWritten) {
  make(kStaff + "\n");
  load("Staff");
  ASSERT_TRUE(test::make_records("template", path_, "Deleted=-1|" + kStaff + "\n"));
  for (const StoreOutcome& outcome : {save_loaded(), save_variables(session, "Staff")})
    EXPECT_EQ(outcome.message, "Error Opening Template.dat\r\nThe template is not in the file any more.");
  EXPECT_EQ(dump(), "Deleted=-1|" + kStaff + "\n");
}

TEST_F(TemplateStoreTest, AFailureAtAnyCallIsReportedAndNothingIsWritten) {
  files.fail_from(0, 0);
  save_new("First");
  const int calls = files.calls();
  ASSERT_GT(calls, 3);
  for (int call = 1; call <= calls; ++call) {
    files.fail_from(call, base::error::kDiskFull);
    EXPECT_THAT(save_new("Second").message,
                testing::StartsWith("Error Opening Template.dat\r\nthe disk refuses"));
    EXPECT_EQ(names.size(), 1U);
    EXPECT_EQ(dump(), "Name=First" + kHours + "\n");
  }
}

}  // namespace
}  // namespace twk::stores
