#include "creation/creation_run.hpp"

#include "controls/basic.hpp"
#include "controls/tree_view.hpp"
#include "format/filling.hpp"
#include "session/form1.hpp"
#include "session/session.hpp"

namespace twk::creation {

CreationRun::CreationRun(session::Session& owner) : session(owner) {
  const session::Form1& form = owner.form1;
  request.TemplateName = form.nutemplate.text;
  request.SiteName = form.NUsitename.text;
  request.FirstName = form.strFirst.text;
  request.MiddleName = form.StrMiddle.text;
  request.LastName = form.strLast.text;
  request.UserId = form.UserID_Box.text;
  request.CopyUser = form.Copy_User.on();
  if (const controls::TreeNode* const node = form.TreeView1.selected()) {
    request.SelectedNodeKind = node->image;
    request.SelectedNodeKey = node->key;
    request.SelectedNodeText = node->text;
    if (node->parent != nullptr)
      request.ParentNodeKey = node->parent->key;
  }
}

void log(CreationRun& run, std::string_view text) {
  run.session.log.line(text);
}

void warn(CreationRun& run, std::string_view text) {
  run.session.platform.dialogs.beep();
  run.session.log.reason(text);
  run.RunWarning = 2;
}

void warn(CreationRun& run, std::string_view text, std::string_view why) {
  run.session.platform.dialogs.beep();
  run.session.log.reason(text, why);
  run.RunWarning = 2;
}

void show_step(CreationRun& run, std::string_view caption) {
  run.session.form1.progress.caption = std::string(caption);
}

void set_progress(CreationRun& run, int value) {
  run.session.form1.ProgressBar1.value = value;
}

void paint(controls::Label& light, std::int32_t colour, const char* caption) {
  light.colour = colour;
  light.caption = caption;
}

void complete(controls::Label& light) {
  paint(light, controls::kBlue, "Completed");
}

const std::string& container_key(const CreationRun& run) {
  return run.request.CopyUser ? run.request.ParentNodeKey : run.request.SelectedNodeKey;
}

std::string expand_row_value(CreationRun& run, std::string_view value) {
  return format::Filling(run.session, std::string(value))
      .variables()
      .names(run.request.FirstName, run.request.MiddleName, run.request.LastName)
      .tag("%Domain%", run.session.DomainName)
      .import_fields()
      .take();
}

}  // namespace twk::creation
