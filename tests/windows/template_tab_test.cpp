#include "windows/template_tab.hpp"

#include "records/layout.hpp"
#include "stores/template_store.hpp"
#include "support/world.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/import_windows.hpp"
#include "windows/state/multi_user.hpp"

namespace twk::windows {
namespace {

class TemplateTab : public test::TestWorld {
 protected:
  TemplateTab() { Clear_TT(session); }

  void make(std::string_view lines) {
    ASSERT_TRUE(test::make_records("template", path_, lines));
    stores::load_template_names(session);
    list_templates(session);
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
  void start_new(std::string_view name) {
    NewTemplate(session);
    form1.New_Template_Name.text = std::string(name);
  }
  /// The boxes of the tab, in the order of a record.
  std::vector<controls::Observable<std::string>*> boxes() {
    return {&form1.propath.text,     &form1.homedir.text,          &form1.Profilepath.text,
            &form1.Homedirpath.text, &form1.sharenameprofile.text, &form1.Sharenamehomedir.text,
            &form1.logon.text,       &form1.Home_Drive_letter.text};
  }

  windows::Form1& form1 = session.form1;
  std::string path_ = database / "Template.dat";
};

const std::string kHours = "|LogonHours=" + std::string(42, 'f');
const std::string kStaff = "Name=Staff" + kHours;
const std::string kFull =
    "|ProfilePath=pp|HomeDir=hd|ProfileDirPath=pdp|HomeDirPath=hdp|ProfileShare=ps|HomeShare=hs|"
    "HomeSharePoint=hsp\\|ProfileSharePoint=psp\\|LogonScript=l.cmd|HomeDrive=H:" +
    kHours + "|PrimaryGroup=B|Group0=B";

TEST_F(TemplateTab, ANewTemplateIsWrittenFromTheTabAndAChosenOneIsShown) {
  domain_groups({"A", "B"});
  start_new(" Büro ");
  EXPECT_TRUE(form1.New_Template_Name.visible.get());
  EXPECT_FALSE(form1.propath.locked.get());
  const std::vector<std::string> texts = {"pp", "hd", "pdp", "hdp", "ps", "hs", "l.cmd", "H:"};
  for (std::size_t i = 0; i < texts.size(); ++i)
    *boxes().at(i) = texts[i];
  session.share_points.HomeSharePoint = "\\hsp";
  session.share_points.ProfileSharePoint = "psp\\";
  form1.ListView5.at(1).selected = true;
  add_Click(session);
  form1.ListView6.at(0).selected = true;
  SetPriGroup(session);
  savetemplate(session);
  EXPECT_EQ(status(), "Template Saved...");
  EXPECT_EQ(dump(), "GroupCount=1|Name=Büro" + kFull + "\n");
  const std::vector<std::string> names = {records::padded_template_name("Büro")};
  EXPECT_EQ(form1.templatelst.items(), names);
  EXPECT_EQ(form1.nutemplate.items(), names);
  EXPECT_EQ(session.multi_user.Multi_Template.items(), names);
  EXPECT_FALSE(form1.New_Template_Name.visible.get());
  EXPECT_TRUE(form1.propath.locked.get());
  EXPECT_FALSE(form1.savetemplate.enabled.get());
  EXPECT_TRUE(form1.EditTemplate.enabled.get());

  Template_Cancel(session);
  EXPECT_EQ(form1.homedir.text.get(), "");
  EXPECT_TRUE(form1.ListView6.empty());
  choose("Büro");
  EXPECT_EQ(session.share_points.HomeSharePoint, "hsp\\");
  EXPECT_TRUE(form1.Variables.enabled.get());
  EXPECT_TRUE(form1.btnSharePoints.enabled.get());
}

TEST_F(TemplateTab, ARefusedNameGetsTheFocus) {
  make(kStaff + "\n");
  std::string focus;
  const auto watch = form1.SetFocus.watch([&](std::string_view name) { focus = name; });
  start_new("staff");
  dialogs.expect("Template Name staff Already Exist");
  savetemplate(session);
  EXPECT_EQ(focus, "New_Template_Name");
  EXPECT_TRUE(form1.savetemplate.enabled.get());
}

TEST_F(TemplateTab, AnEditWritesTheChosenTemplate) {
  make("Name=Other" + kHours + "\n" + kStaff + "\n");
  EXPECT_TRUE(form1.nutemplate.locked.get());
  choose("Staff");
  EditTemplate(session);
  EXPECT_EQ(status(), "Edit Template...");
  EXPECT_TRUE(form1.templatelst.locked.get());
  form1.logon.text = "x.cmd";
  form1.Home_Drive_letter.text = "H:";
  savetemplate(session);
  EXPECT_EQ(dump(), "Name=Other" + kHours + "\nName=Staff|LogonScript=x.cmd" + kHours + "\n");
  EXPECT_FALSE(session.EditingTemplate);
  EXPECT_EQ(form1.Home_Drive_letter.text.get(), "");
}

TEST_F(TemplateTab, GroupsMoveWhileTheTemplateIsEditedAndALocalOneCannotBePrimary) {
  domain_groups({"A"});
  form1.ListView5.at(0).selected = true;
  add_Click(session);
  EXPECT_TRUE(form1.ListView6.empty()) << "moved outside of an edit";
  start_new("Staff");
  ListView5_DblClick(session);
  ASSERT_EQ(form1.ListView6.size(), 1U);
  form1.ListView6.set_icon(form1.ListView6.at(0), "Local");
  form1.ListView6.at(0).selected = true;
  SetPriGroup(session);
  EXPECT_EQ(form1.PrimaryGrp.caption.get(), "");
  EXPECT_EQ(dialogs.beeps, 1);
  ListView6_DblClick(session);
  EXPECT_TRUE(form1.ListView6.empty());
}

TEST_F(TemplateTab, PasteCopiesTheTemplateLoadedLast) {
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

TEST_F(TemplateTab, DeletingAsksAndForgetsTheName) {
  make(kStaff + "\n");
  choose("Staff");
  form1.Confirm_Deletes.value = 1;
  dialogs.expect("Sure to Delete Template", platform::Answer::kNo);
  DeleteTemplate(session);
  EXPECT_EQ(dump(), kStaff + "\n");
  dialogs.expect("Sure to Delete Template", platform::Answer::kYes);
  DeleteTemplate(session);
  EXPECT_EQ(status(), "Template Deleted.");
  EXPECT_TRUE(form1.templatelst.items().empty());
  EXPECT_TRUE(form1.nutemplate.items().empty());
}

TEST_F(TemplateTab, VariablesAreSavedWhenTheirWindowCloses) {
  make(kStaff + "\n");
  start_new("x");
  dialogs.expect("Must Save Template before editing Variables...");
  Variables(session);
  EXPECT_FALSE(session.variables.visible.get());
  Template_Cancel(session);
  choose("Staff");
  dialogs.on_modal = [this](std::string_view window) {
    EXPECT_EQ(window, "Varibles_Form");
    EXPECT_TRUE(session.variables.visible.get());
    session.variables.ListView1.add({}, "Dept", {}, {"Sales"});
  };
  Variables(session);
  EXPECT_FALSE(session.variables.visible.get());
  EXPECT_EQ(dump(), kStaff + "|VariableName1=Dept|VariableValue1=Sales\n");
}

TEST_F(TemplateTab, AFailureIsReportedAndTheTabStays) {
  make(kStaff + "|HomeDir=hd\n");
  choose("Staff");
  EditTemplate(session);
  for (const auto routine : {savetemplate, DeleteTemplate, templatelst_Click, Varibles_Form_Unload}) {
    files.fail_from(1, base::error::kPathFileAccess);
    dialogs.expect("Error Opening Template.dat");
    routine(session);
    EXPECT_EQ(form1.homedir.text.get(), "hd");
    EXPECT_EQ(form1.templatelst.items().size(), 1U);
  }
  start_new("Second");
  dialogs.expect("Error Opening Template.dat");
  paste(session);
}

}  // namespace
}  // namespace twk::windows
