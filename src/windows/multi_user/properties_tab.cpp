#include "windows/multi_user/properties_tab.hpp"

#include <algorithm>
#include <optional>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "batch/change_property.hpp"
#include "batch/property_file.hpp"
#include "windows/account/run_history.hpp"
#include "windows/multi_user/run_preview.hpp"
#include "windows/multi_user/run_window.hpp"
#include "windows/state/ad_properties.hpp"

namespace twk::windows {
namespace {

using batch::PropertySchema;

constexpr std::string_view kTitle = "AD Propeties Import";
constexpr std::string_view kMultiValue = ":- Multi value";

void show(ADProperties& tab, const PropertySchema& property) {
  const bool several = property.multi_valued;
  tab.Syntax.caption = property.syntax + std::string(several ? kMultiValue : std::string_view{});
  tab.multi_value = several;
  tab.AD_Append.enabled = several;
  tab.AD_Replace.enabled = several;
}

std::string chosen(const Desktop& session) {
  return std::string(base::trim(session.ad_properties.AD_Properties.text.get()));
}

std::string file_title(std::string_view path) {
  const std::size_t slash = path.find_last_of("\\/");
  return std::string(slash == base::npos ? path : path.substr(slash + 1));
}

/// `CHANGE_AD` stops the run, and the tab's own bar shows its progress.
class PropertiesView final : public session::RunView {
 public:
  explicit PropertiesView(Desktop& session)
      : session_(session),
        window_(session, session.ad_properties.CHANGE_AD,
                {&session.multi_user.Command7.enabled, &session.multi_user.DELIMPORT.enabled,
                 &session.multi_user.Command1.enabled, &session.multi_user.Command2.enabled,
                 &session.multi_user.AD_CHANGE.enabled, &session.ad_properties.AD_Properties.enabled,
                 &session.ad_properties.AD_Append.enabled, &session.ad_properties.AD_Replace.enabled}) {
    session.ad_properties.progress.value = 0;
    session.ad_properties.progress_visible = true;
  }
  PropertiesView(const PropertiesView&) = delete;
  PropertiesView& operator=(const PropertiesView&) = delete;
  ~PropertiesView() override { session_.ad_properties.progress_visible = false; }

  void status(std::string_view text) override { session_.status.panel1 = std::string(text); }
  void step(std::string_view caption) override { session_.multi_user.Label3.caption = std::string(caption); }
  void progress(int percent) override { session_.ad_properties.progress.value = percent; }
  bool going_on() override {
    session_.platform.dialogs.DoEvents();
    return true;
  }

 private:
  Desktop& session_;
  RunningWindow window_;
};

batch::PropertyCounts run_file(Desktop& session, const std::string& path, const PropertyObserver& user_done) {
  batch::PropertyCounts counts;
  base::Trap trap;
  trap([&] {
    const std::string bytes = session.platform.files.read(path);
    auto order = property_order(session);
    if (!order) {
      counts.failure = session.multi_user.Label3.caption;
      return;
    }
    order->user_done = [&](const batch::PropertyOutcome& outcome) {
      session.multi_user.AD_CHANGE.text = outcome.value;
      if (user_done)
        user_done(outcome);
    };
    std::vector<batch::AccountChange> changes;
    order->changed = [&](const batch::AccountChange& change) { changes.push_back(change); };
    PropertiesView view(session);
    counts = batch::change_from_file(session, *order, file_title(path), bytes, view);
    keep_run(session, std::move(changes));
  });
  if (trap.number() != 0)
    counts.failure = trap.description();
  return counts;
}

std::string what_changes(const Desktop& session, const batch::PropertyOrder& order) {
  const std::string& value = session.multi_user.AD_CHANGE.text;
  const std::string name = session.ad_properties.AD_Properties.text;
  if (order.append && order.property.multi_valued)
    return "Add \"" + value + "\" to " + name + ".";
  return value.empty() ? "Empty " + name + "." : "Set " + name + " to \"" + value + "\".";
}

void log(Desktop& session, const std::string& text) {
  session.log.open();
  session.log.line(text);
  session.log.close();
}

}  // namespace

void prepare_properties(Desktop& session) {
  ADProperties& tab = session.ad_properties;
  if (!session::is_active_directory(session)) {
    tab.AD_Properties.clear();
    tab.filled_for.clear();
    return;
  }
  if (tab.filled_for == session.DomainName)
    return;
  base::Trap trap;
  if (trap([&] { fill_properties(session); })) {
    tab.filled_for = session.DomainName;
    return;
  }
  session.platform.dialogs.MsgBox("Error Setting AD Properties in mutliuser form", platform::Buttons::kOk,
                                  platform::Icon::kExclamation, "");
}

void fill_properties(Desktop& session) {
  ADProperties& tab = session.ad_properties;
  tab.AD_Properties.clear();
  controls::choose(tab.AD_Append, tab.AD_Replace, true);
  AD_Properties_Click(session);
  batch::read_property_names(session,
                             [&tab](std::string name) { tab.AD_Properties.add_item(std::move(name)); });
}

void AD_Properties_Click(Desktop& session) {
  ADProperties& tab = session.ad_properties;
  const std::string property = chosen(session);
  tab.looked_up = property;
  PropertySchema schema;
  base::Trap trap;
  if (!property.empty())
    trap([&] { schema = batch::look_up_property(session, property); });
  show(tab, schema);
  if (trap.number() != 0)
    session.multi_user.Label3.caption = "\"" + property + "\" is not a property: " + trap.description();
}

void AD_Properties_Change(Desktop& session) {
  ADProperties& tab = session.ad_properties;
  const std::vector<std::string>& names = tab.AD_Properties.items();
  const std::string property = chosen(session);
  if (std::any_of(names.begin(), names.end(),
                  [&](const std::string& name) { return base::equals_fold(name, property); }))
    return AD_Properties_Click(session);
  tab.looked_up.clear();
  show(tab, {});
}

void AD_Properties_Leave(Desktop& session) {
  if (session.ad_properties.looked_up != chosen(session))
    AD_Properties_Click(session);
}

/// What the tab asks for; none, which `Label3` explains, for no property and for one that the schema does not
/// know.
std::optional<batch::PropertyOrder> property_order(Desktop& session) {
  ADProperties& tab = session.ad_properties;
  controls::Observable<std::string>& told = session.multi_user.Label3.caption;
  const std::string property = chosen(session);
  if (property.empty()) {
    told = std::string("Select the property to change first.");
    return std::nullopt;
  }
  if (tab.looked_up != property)
    AD_Properties_Click(session);
  std::string syntax = tab.Syntax.caption;
  if (syntax.empty())
    return std::nullopt;
  if (tab.multi_value)
    syntax.resize(syntax.size() - kMultiValue.size());
  return batch::PropertyOrder{{property, syntax, tab.multi_value}, tab.AD_Append.value};
}

batch::PropertyCounts CHANGE_AD_Click(Desktop& session, const PropertyObserver& user_done) {
  if (session.ad_properties.CHANGE_AD.caption == std::string(kCancelCaption)) {
    session.run.stopped = true;
    return {};
  }
  if (is_running(session.multi_user) || lacks_selection(session))
    return {};
  auto order = property_order(session);
  if (!order)
    return {};
  order->user_done = user_done;
  if (!is_run_wanted(session, {"Change AD Properties", what_changes(session, *order), "&Change"}))
    return {};
  std::vector<batch::AccountChange> changes;
  order->changed = [&](const batch::AccountChange& change) { changes.push_back(change); };
  PropertiesView view(session);
  auto counts = batch::change_selection(session, *order, session.multi_user.AD_CHANGE.text, view);
  keep_run(session, std::move(changes));
  return counts;
}

batch::PropertyCounts DELIMPORT_Click(Desktop& session, const PropertyObserver& user_done) {
  platform::Dialogs& dialogs = session.platform.dialogs;
  if (is_running(session.multi_user))
    return {};
  const std::string property = chosen(session);
  if (property.empty()) {
    dialogs.MsgBox("Select the AD Propery to change first, before importing the file.",
                   platform::Buttons::kOk, platform::Icon::kNone, kTitle);
    return {};
  }
  if (dialogs.MsgBox("This will import AD properties for the users in the csv file\r\n"
                     "Format must be Username,ADValue",
                     platform::Buttons::kOkCancel, platform::Icon::kNone, kTitle) != platform::Answer::kOk)
    return {};
  log(session, "Importing users to change AD value " + property);
  const auto path =
      dialogs.open_file("Open file to import", "CSV Files (*.csv)|*.csv|Text Files (*.txt)|*.txt|");
  if (!path || path->empty())
    return {};
  batch::PropertyCounts counts = run_file(session, *path, user_done);
  if (!counts.failure.empty()) {
    log(session, counts.failure);
    dialogs.MsgBox(counts.failure, platform::Buttons::kOk, platform::Icon::kExclamation, kTitle);
  }
  session.multi_user.Label3.caption =
      std::string(counts.stopped ? "Import of AD Properties canceled, check log for errors"
                                 : "Import of AD Properties has completed, check log for errors");
  return counts;
}

}  // namespace twk::windows
