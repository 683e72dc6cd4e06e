#include "stores/template_store.hpp"
#include "windows/editors/hours_of_week.hpp"

#include "records/layout.hpp"
#include "session/form1.hpp"
#include "session/multi_user.hpp"
#include "session/windows.hpp"
#include "stores/template_tab.hpp"
#include "support/world.hpp"

namespace twk::stores {
namespace {

class TemplateStoreTest : public test::TestWorld {
 protected:
  TemplateStoreTest() { Clear_TT(session); }

  void make(std::string_view lines) {
    ASSERT_TRUE(test::make_records("template", path_, lines));
    load_templates(session);
  }
  std::string dump() { return test::dump_records("template", path_); }
  void domain_groups(std::initializer_list<const char*> names) {
    for (const char* const name : names)
      form1.ListView5.add(std::string("key-") + name, name, "Global");
  }
  void choose(std::string_view name) {
    form1.templatelst.text = records::padded_template_name(name);
    templatelst_Click(session);
  }
  void select(controls::ListView& list, std::initializer_list<std::size_t> places) {
    for (const std::size_t place : places)
      list.at(place).selected = true;
  }
  void start_new(std::string_view name) {
    NewTemplate(session);
    form1.New_Template_Name.text = std::string(name);
  }

  session::Form1& form1 = session.form1;
  std::string path_ = database / "Template.dat";
};

const std::string kHours = "|LogonHours=" + std::string(42, 'f');
const std::string kStaff = "Name=Staff" + kHours;

TEST_F(TemplateStoreTest, ListsHoldTheNamesAsTheRecordsDo) {
  make(kStaff + "\nDeleted=-1|Name=Old" + kHours + "\nName=Büro" + kHours + "\n");
  const std::vector<std::string> names = {records::padded_template_name("Staff"),
                                          records::padded_template_name("Büro")};
  EXPECT_EQ(form1.templatelst.items(), names);
  EXPECT_EQ(form1.nutemplate.items(), names);
  EXPECT_EQ(session.multi_user.Multi_Template.items(), names);
  EXPECT_TRUE(form1.nutemplate.locked.get());
}

TEST_F(TemplateStoreTest, LoadingShowsTheRecord) {
  domain_groups({"Sales", "Staff"});
  form1.ListView5.add("other key", "sales", "Local");
  make(
      "GroupCount=3|Name=Staff|ProfilePath=pp|HomeDir=hd|ProfileDirPath=pdp|HomeDirPath=hdp|ProfileShare=ps|"
      "HomeShare=hs|HomeSharePoint=hsp|ProfileSharePoint=psp|LogonScript=l.cmd|HomeDrive=H:|LogonHours=" +
      std::string(42, '3') +
      "|PrimaryGroup=Users|Group0=Staff|Group1=Gone|Group2=sales|VariableName1=Dept|VariableValue1=Sales|"
      "VariableValue7=no name|VariableName50=Last\n");
  choose("Staff");
  EXPECT_EQ(form1.propath.text.get(), "pp");
  EXPECT_EQ(form1.homedir.text.get(), "hd");
  EXPECT_EQ(form1.Profilepath.text.get(), "pdp");
  EXPECT_EQ(form1.Homedirpath.text.get(), "hdp");
  EXPECT_EQ(form1.sharenameprofile.text.get(), "ps");
  EXPECT_EQ(form1.Sharenamehomedir.text.get(), "hs");
  EXPECT_EQ(form1.logon.text.get(), "l.cmd");
  EXPECT_EQ(form1.Home_Drive_letter.text.get(), "H:");
  EXPECT_EQ(form1.PrimaryGrp.caption.get(), "Users");
  EXPECT_EQ(session.share_points.HomeSharePoint, "hsp");
  EXPECT_EQ(session.share_points.ProfileShareName.text.get(), "psp");
  EXPECT_EQ(session.TemplateLogonHours, base::Bytes(21, 0x33));
  EXPECT_EQ(test::texts(session.variables.ListView1), (std::vector<std::string>{"Dept", "", "Last"}));
  EXPECT_EQ(session.variables.ListView1.at(1).sub_items, std::vector<std::string>{"no name"});
  EXPECT_EQ(test::texts(form1.ListView5), std::vector<std::string>{"Sales"});
  EXPECT_EQ(test::texts(form1.ListView6), (std::vector<std::string>{"Staff", "sales"}));
  EXPECT_EQ(form1.ListView6.at(0).key, "key-Staff");
  EXPECT_EQ(form1.ListView6.at(0).icon, "Global");
  EXPECT_TRUE(form1.Variables.enabled.get());
  EXPECT_TRUE(form1.btnSharePoints.enabled.get());
}

TEST_F(TemplateStoreTest, LoadingRequiresTheNameAsSpelledInTheList) {
  make("Deleted=-1|Name=Staff|HomeDir=old" + kHours + "\nName=Staff|HomeDir=new" + kHours +
       "\nName=1234567890123456789012345|HomeDir=full" + kHours + "\n");
  struct Case {
    std::string name;
    std::string_view home;
    std::int32_t number;
  };
  const Case cases[] = {{records::padded_template_name("Staff"), "new", 2},
                        {"Staff", "", 3},
                        {records::padded_template_name("STAFF"), "", 3},
                        {"1234567890123456789012345", "full", 3}};
  for (const Case& one : cases) {
    LoadTemplate(session, one.name);
    EXPECT_EQ(form1.homedir.text.get(), one.home) << one.name;
    EXPECT_EQ(session.LastRecordNo, one.number);
  }
}

TEST_F(TemplateStoreTest, FindLooksForTheTextOfTheListAmongLiveRecords) {
  make("Deleted=-1|Name=Staff" + kHours + "\n" + kStaff + "\n");
  form1.templatelst.text = " sTAFF";
  EXPECT_EQ(Find_Template(session), 2);
  form1.templatelst.text = "none";
  EXPECT_EQ(Find_Template(session), -1);
}

TEST_F(TemplateStoreTest, GroupsGoBackToTheDomainWithTheNextTemplate) {
  domain_groups({"A", "B", "C"});
  make("GroupCount=2|Name=Staff|Group0=B|Group1=A" + kHours + "\nName=Plain" + kHours + "\n");
  choose("Staff");
  EXPECT_EQ(test::texts(form1.ListView6), (std::vector<std::string>{"B", "A"}));
  choose("Plain");
  EXPECT_TRUE(form1.ListView6.empty());
  EXPECT_EQ(test::texts(form1.ListView5), (std::vector<std::string>{"C", "B", "A"}));
  EXPECT_NE(form1.ListView5.find_key("key-A"), nullptr);
}

TEST_F(TemplateStoreTest, ANewTemplateIsWrittenFromTheTab) {
  domain_groups({"A", "B"});
  start_new(" Büro ");
  EXPECT_TRUE(form1.New_Template_Name.visible.get());
  EXPECT_FALSE(form1.propath.locked.get());
  form1.propath.text = "pp";
  form1.homedir.text = "hd";
  form1.Profilepath.text = "pdp";
  form1.Homedirpath.text = "hdp";
  form1.sharenameprofile.text = "ps";
  form1.Sharenamehomedir.text = "hs";
  form1.logon.text = "l.cmd";
  form1.Home_Drive_letter.text = "h:";
  session.share_points.HomeSharePoint = "\\hsp";
  session.share_points.ProfileSharePoint = "psp\\";
  session.TemplateLogonHours.assign(21, 0x0F);
  select(form1.ListView5, {1});
  add_Click(session);
  select(form1.ListView6, {0});
  SetPriGroup(session);
  savetemplate(session);
  EXPECT_EQ(status(), "Template Saved...");
  std::string hours;
  for (int i = 0; i < 21; ++i)
    hours += "0f";
  EXPECT_EQ(
      dump(),
      "GroupCount=1|Name=Büro|ProfilePath=pp|HomeDir=hd|ProfileDirPath=pdp|HomeDirPath=hdp|ProfileShare=ps|"
      "HomeShare=hs|HomeSharePoint=hsp\\|ProfileSharePoint=psp\\|LogonScript=l.cmd|HomeDrive=h:|LogonHours=" +
          hours + "|PrimaryGroup=B|Group0=B\n");
  const std::vector<std::string> names = {records::padded_template_name("Büro")};
  EXPECT_EQ(form1.templatelst.items(), names);
  EXPECT_EQ(form1.nutemplate.items(), names);
  EXPECT_EQ(session.multi_user.Multi_Template.items(), names);
  EXPECT_FALSE(form1.New_Template_Name.visible.get());
  EXPECT_TRUE(form1.propath.locked.get());
  EXPECT_FALSE(form1.savetemplate.enabled.get());
  EXPECT_TRUE(form1.EditTemplate.enabled.get());
}

TEST_F(TemplateStoreTest, HomeDriveIsALetterAndAColonOrNothing) {
  for (const char* const drive : {"1:", "C", "C:\\", ":", "é:"}) {
    start_new("Staff");
    form1.Home_Drive_letter.text = drive;
    savetemplate(session);
    EXPECT_EQ(status(), "Home Drive Format Incorrect") << drive;
    EXPECT_FALSE(files.exists(path_));
  }
  EXPECT_EQ(dialogs.beeps, 5);
  form1.Home_Drive_letter.text = "";
  savetemplate(session);
  EXPECT_EQ(status(), "Template Saved...");
}

TEST_F(TemplateStoreTest, ADriveWithoutAHomeDirectoryIsNotKept) {
  start_new("Staff");
  form1.Home_Drive_letter.text = "H:";
  savetemplate(session);
  EXPECT_EQ(dump(), kStaff + "\n");
}

TEST_F(TemplateStoreTest, NamesThatCannotBeAreRefused) {
  make(kStaff + "\n");
  struct Case {
    std::string_view typed;
    std::string_view question;
    std::string_view title;
  };
  const Case cases[] = {
      {" STAFF ", "Template Name STAFF Already Exist \r\nChange Template Name.", "Template Name Conflict..."},
      {"  ", "Template Name cannot be blank.", "Template Name"}};
  std::string focus;
  const auto watch = session.form1.SetFocus.watch([&](std::string_view name) { focus = name; });
  for (const Case& one : cases) {
    focus.clear();
    start_new(one.typed);
    dialogs.expect(std::string(one.question));
    savetemplate(session);
    EXPECT_EQ(dialogs.last_title, one.title);
    EXPECT_EQ(focus, "New_Template_Name");
  }
  for (const auto& [name, refusal] :
       {std::pair{"a\nb", "Control character U+000A not allowed"},
        {"a\u00ADb", "Format character U+00AD not allowed"},
        {"Ж", "\"Ж\" cannot be stored: code page 1252 has no place for Ж (U+0416)"}}) {
    start_new(name);
    savetemplate(session);
    EXPECT_EQ(status(), refusal);
  }
  EXPECT_EQ(dump(), kStaff + "\n");
}

TEST_F(TemplateStoreTest, AnEditKeepsVariablesAndSpareSlotsAndDropsUnknownGroups) {
  domain_groups({"A"});
  make("Name=Other" + kHours + "\nGroupCount=2|Name=Staff|LogonHours=" + std::string(42, 'f') +
       "|Group0=Gone|Group1=A|Group9=spare|VariableName1=Dept|VariableValue1=Sales\n");
  choose("Staff");
  EditTemplate(session);
  EXPECT_EQ(status(), "Edit Template...");
  EXPECT_TRUE(form1.templatelst.locked.get());
  form1.logon.text = "x.cmd";
  session.ActiveTemplate = records::TemplateRecord();
  savetemplate(session);
  EXPECT_EQ(dump(), "Name=Other" + kHours + "\nGroupCount=1|Name=Staff|LogonScript=x.cmd" + kHours +
                        "|Group0=A|Group1=A|Group9=spare|VariableName1=Dept|VariableValue1=Sales\n");
  EXPECT_FALSE(session.EditingTemplate);
}

TEST_F(TemplateStoreTest, GroupsOfADomainThatIsNotLoadedAreKept) {
  make("GroupCount=2|Name=Staff" + kHours + "|Group0=B|Group1=A\n");
  choose("Staff");
  EditTemplate(session);
  savetemplate(session);
  start_new("Plain");
  savetemplate(session);
  choose("Staff");
  start_new("Copy");
  paste(session);
  savetemplate(session);
  EXPECT_EQ(dump(), "GroupCount=2|Name=Staff" + kHours + "|Group0=B|Group1=A\n" + "Name=Plain" + kHours +
                        "|Group0=B|Group1=A\nGroupCount=2|Name=Copy" + kHours + "|Group0=B|Group1=A\n");
}

TEST_F(TemplateStoreTest, AGroupIsFoundInAnyCaseAndOneThatDoesNotFitIsNotAdded) {
  domain_groups({"STAFF", "Łódź Team", "A name of 22 characters"});
  make("GroupCount=1|Name=Staff" + kHours + "|Group0=Staff\n");
  choose("Staff");
  EXPECT_EQ(test::texts(form1.ListView6), std::vector<std::string>{"STAFF"});
  EditTemplate(session);
  select(form1.ListView5, {0, 1});
  dialogs.expect("code page 1252 has no place for Ł (U+0141)");
  dialogs.expect("group names of at most 21 characters");
  add_Click(session);
  EXPECT_EQ(form1.ListView6.size(), 1U);
}

TEST_F(TemplateStoreTest, ANewTemplateGetsTheVariablesOfTheOneBrowsedBefore) {
  make(kStaff + "|VariableName1=Dept|VariableValue1=Sales\n");
  choose("Staff");
  start_new("Second");
  savetemplate(session);
  EXPECT_EQ(dump(), kStaff + "|VariableName1=Dept|VariableValue1=Sales\nName=Second" + kHours +
                        "|VariableName1=Dept|VariableValue1=Sales\n");
}

TEST_F(TemplateStoreTest, PasteCopiesTheTemplateLoadedLast) {
  domain_groups({"A", "B"});
  make("Name=First" + kHours + "\nGroupCount=1|Name=Staff|HomeDir=hd|HomeSharePoint=hsp" + kHours +
       "|Group0=B|VariableName1=Dept\n");
  choose("Staff");
  paste(session);
  EXPECT_EQ(test::texts(form1.ListView6), std::vector<std::string>{"B"});
  start_new("Copy");
  EXPECT_EQ(form1.homedir.text.get(), "");
  paste(session);
  EXPECT_EQ(form1.homedir.text.get(), "hd");
  EXPECT_EQ(session.share_points.HomeSharePoint, "hsp");
  EXPECT_EQ(test::texts(form1.ListView6), std::vector<std::string>{"B"});
  EXPECT_EQ(form1.New_Template_Name.text.get(), "Copy");
  savetemplate(session);
  EXPECT_EQ(form1.templatelst.items().size(), 3U);
  for (const std::int32_t beyond : {0, 4}) {
    start_new("Third");
    session.LastRecordNo = beyond;
    paste(session);
    EXPECT_EQ(form1.homedir.text.get(), "");
  }
}

TEST_F(TemplateStoreTest, ATemplateHoldsSeventyFiveGroups) {
  for (int i = 0; i < 76; ++i)
    form1.ListView5.add({}, "group" + base::to_text(i)).selected = true;
  add_Click(session);
  EXPECT_TRUE(form1.ListView6.empty()) << "moved outside of an edit";
  start_new("Big");
  dialogs.expect("Templates Limited to 75 Groups");
  ListView5_DblClick(session);
  EXPECT_EQ(dialogs.last_title, "Max Groups Reached");
  EXPECT_EQ(form1.ListView6.size(), 75U);
  savetemplate(session);
  EXPECT_EQ(session.ActiveTemplate.GroupCount, 75);
  EditTemplate(session);
  select(form1.ListView6, {0, 1});
  ListView6_DblClick(session);
  EXPECT_EQ(form1.ListView6.size(), 73U);
}

TEST_F(TemplateStoreTest, ALocalGroupCannotBePrimary) {
  form1.ListView6.add({}, "Operators", "Local").selected = true;
  SetPriGroup(session);
  EXPECT_EQ(form1.PrimaryGrp.caption.get(), "");
  EXPECT_EQ(dialogs.beeps, 1);
}

TEST_F(TemplateStoreTest, ADeletedNameCanBeUsedAgain) {
  make(kStaff + "\n");
  choose("Staff");
  form1.Confirm_Deletes.value = 1;
  dialogs.expect("Sure to Delete Template", platform::Answer::kNo);
  DeleteTemplate(session);
  EXPECT_EQ(dump(), kStaff + "\n");
  dialogs.expect("Sure to Delete Template", platform::Answer::kYes);
  DeleteTemplate(session);
  EXPECT_EQ(dump(), "Deleted=-1|" + kStaff + "\n");
  EXPECT_EQ(status(), "Template Deleted.");
  EXPECT_TRUE(form1.templatelst.items().empty());
  EXPECT_TRUE(form1.nutemplate.items().empty());
  start_new("Staff");
  savetemplate(session);
  EXPECT_EQ(dump(), "Deleted=-1|" + kStaff + "\n" + kStaff + "\n");
  EXPECT_EQ(Find_Template(session), 2);
}

TEST_F(TemplateStoreTest, VariablesAreSavedWhenTheirWindowCloses) {
  make(kStaff + "|VariableName1=Old|VariableValue9=gone\n");
  start_new("x");
  dialogs.expect("Must Save Template before editing Variables...");
  Variables(session);
  EXPECT_FALSE(session.variables.visible.get());
  Template_Cancel(session);
  choose("Staff");
  dialogs.on_modal = [this](std::string_view window) {
    EXPECT_EQ(window, "Varibles_Form");
    EXPECT_TRUE(session.variables.visible.get());
    session.variables.ListView1.clear();
    session.variables.ListView1.add({}, "Dept", {}, {"Sales"});
    session.variables.ListView1.add({}, "Flag");
  };
  Variables(session);
  EXPECT_FALSE(session.variables.visible.get());
  EXPECT_EQ(dump(), kStaff + "|VariableName1=Dept|VariableName2=Flag|VariableValue1=Sales\n");
}

TEST_F(TemplateStoreTest, ATemplateThatAColleagueDeletedIsReportedAndNothingIsWritten) {
  make(kStaff + "\n");
  choose("Staff");
  EditTemplate(session);
  ASSERT_TRUE(test::make_records("template", path_, "Deleted=-1|" + kStaff + "\n"));
  dialogs.expect("Error Opening Template.dat\r\nThe template is not in the file any more.");
  savetemplate(session);
  EXPECT_TRUE(session.EditingTemplate);
  dialogs.expect("Error Opening Template.dat");
  Varibles_Form_Unload(session);
  EXPECT_EQ(dump(), "Deleted=-1|" + kStaff + "\n");
}

TEST_F(TemplateStoreTest, AFailureAtAnyCallIsReportedAndTheTabStays) {
  files.fail_from(0, 0);
  start_new("First");
  savetemplate(session);
  const int calls = files.calls();
  ASSERT_GT(calls, 3);
  start_new("Second");
  for (int call = 1; call <= calls; ++call) {
    files.fail_from(call, base::error::kDiskFull);
    dialogs.expect("Error Opening Template.dat\r\nthe disk refuses");
    savetemplate(session);
    EXPECT_TRUE(form1.savetemplate.enabled.get());
    EXPECT_EQ(form1.templatelst.items().size(), 1U);
    EXPECT_EQ(dump(), "Name=First" + kHours + "\n");
  }
  files.fail_from(1, base::error::kPathFileAccess);
  for (const auto routine : {paste, DeleteTemplate, templatelst_Click}) {
    dialogs.expect("Error Opening Template.dat");
    session.LastRecordNo = 1;
    form1.templatelst.text = records::padded_template_name("First");
    routine(session);
  }
}

}  // namespace
}  // namespace twk::stores
