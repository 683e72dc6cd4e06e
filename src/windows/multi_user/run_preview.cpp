#include "windows/multi_user/run_preview.hpp"

#include <chrono>
#include <optional>

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "controls/drawing_off.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/hourglass.hpp"
#include "windows/state/multi_user.hpp"
#include "windows/state/run_preview.hpp"

namespace twk::windows {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kShownAccounts = 500;
constexpr std::size_t kNamedRows = 5;
constexpr Clock::duration kFirstLook = std::chrono::milliseconds(1500);

std::string number_of(std::size_t count, std::string_view one, std::string_view many) {
  return std::to_string(count) + " " + std::string(count == 1 ? one : many);
}

/// "ann, ben, cas and 3 more".
std::string first_of(const std::vector<std::string>& names) {
  std::string text;
  for (std::size_t i = 0; i < names.size() && i < kNamedRows; ++i)
    text += (i == 0 ? "" : ", ") + names[i];
  return names.size() <= kNamedRows ? text
                                    : text + " and " + std::to_string(names.size() - kNamedRows) + " more";
}

void add_sentence(std::string& text, const std::string& sentence) {
  text += (text.empty() ? "" : "\n") + sentence;
}

std::string who_is_meant(const batch::SelectedUsers& found) {
  std::string text = number_of(found.users.size(), "account", "accounts");
  if (found.groups > 0)
    text += ", with those of " + number_of(found.groups, "group", "groups");
  if (found.units > 0)
    text += (found.groups > 0 ? " and " : ", with those of ") + number_of(found.units, "OU", "OU's");
  text += ".";
  if (found.repeated > 0)
    text += " Some are meant by several rows and are shown once.";
  return text;
}

std::string who_is_not(const batch::SelectedUsers& found) {
  std::string text;
  if (!found.hidden.empty())
    add_sentence(text, number_of(found.hidden.size(), "row", "rows") +
                           " hidden by the filter left out: " + first_of(found.hidden));
  if (!found.gone.empty())
    add_sentence(text, number_of(found.gone.size(), "user", "users") +
                           " of an earlier run left out: " + first_of(found.gone));
  if (!found.unreadable.empty())
    add_sentence(text, number_of(found.unreadable.size(), "row", "rows") +
                           " cannot be read: " + first_of(found.unreadable));
  return text;
}

void list_accounts(RunPreview& preview, const std::vector<batch::MeantUser>& users) {
  const controls::DrawingOff off(preview.accounts);
  preview.accounts.clear();
  for (std::size_t place = 0; place < users.size() && place < kShownAccounts; ++place) {
    const batch::MeantUser& user = users[place];
    preview.accounts.add({}, user.name, "USER", {user.through, {}});
  }
  if (users.size() > kShownAccounts)
    preview.accounts.add({}, "and " + std::to_string(users.size() - kShownAccounts) + " more", {}, {});
}

/// "Delete the folder" of "Delete the folder \\FS1\D$\Users\jo with 3 files".
std::string kind_of(const std::string& step) {
  std::size_t end = 0;
  for (int words = 0; words < 3 && end != base::npos; ++words) {
    end = step.find_first_of(": ", end == 0 ? 0 : end + 1);
    if (end != base::npos && step[end] == ':')
      break;
  }
  return step.substr(0, end);
}

void show_effects(RunPreview& preview) {
  std::string text;
  for (const auto& [kind, count] : preview.kinds)
    text += (text.empty() ? "" : ", ") + kind + ": " + std::to_string(count);
  const std::string seen = preview.next == preview.users
                               ? "All accounts were looked at"
                               : std::to_string(preview.next) + " of " +
                                     number_of(preview.users, "account", "accounts") + " looked at";
  preview.effects.caption = seen + ". " + (text.empty() ? "Nothing would be done." : text + ".");
}

void look_at(RunPreview& preview, std::size_t place) {
  std::vector<std::string> steps;
  base::Trap trap;
  if (!trap([&] { steps = preview.rehearse(place); }))
    steps.push_back("RED: " + base::in_words(trap.number(), trap.description()));
  std::string told;
  for (const std::string& step : steps) {
    ++preview.kinds[kind_of(step)];
    told += (told.empty() ? "" : "; ") + step;
  }
  if (place < kShownAccounts)
    preview.accounts.set_sub_item(preview.accounts.at(place), 2, told.empty() ? "nothing" : told);
}

void look(Desktop& session, std::optional<Clock::duration> limit) {
  RunPreview& preview = session.run_preview;
  const Clock::time_point begin = Clock::now();
  preview.rehearsing = true;
  preview.Rehearse.caption = std::string("S&top");
  preview.Rehearse.visible = true;
  while (preview.next < preview.users && preview_goes_on(session)) {
    if (limit && Clock::now() - begin > *limit)
      break;
    look_at(preview, preview.next);
    // One that was stopped is looked at again.
    if (!preview_goes_on(session))
      break;
    ++preview.next;
    preview.done.value = static_cast<int>(preview.next * 100 / preview.users);
  }
  preview.rehearsing = false;
  preview.Rehearse.caption =
      "&Look at the other " + number_of(preview.users - preview.next, "account", "accounts");
  preview.Rehearse.visible = preview.next < preview.users;
  show_effects(preview);
}

void fill(RunPreview& preview, const PreviewOrder& order, const batch::SelectedUsers& found) {
  preview.title.caption = order.title;
  preview.question.caption = order.question;
  std::string counts = who_is_meant(found);
  if (const std::string others = who_is_not(found); !others.empty())
    add_sentence(counts, others);
  preview.counts.caption = counts;
  preview.effects.caption = std::string();
  preview.Start.caption = order.start;
  preview.Rehearse.visible = false;
  preview.done.value = 0;
  preview.users = found.users.size();
  preview.next = 0;
  preview.kinds.clear();
  preview.accepted = preview.closed = false;
  list_accounts(preview, found.users);
}

}  // namespace

bool is_run_wanted(Desktop& session, const PreviewOrder& order) {
  RunPreview& preview = session.run_preview;
  if (!preview.asks)
    return true;
  batch::SelectedUsers found;
  {
    const Hourglass hourglass(session.multi_user.mouse_pointer);
    found = batch::read_selected_users(session);
  }
  if (found.users.empty()) {
    const std::string others = who_is_not(found);
    session.multi_user.Label3.caption =
        "Nothing was done: the selection names no user." + (others.empty() ? "" : " " + others);
    return false;
  }
  fill(preview, order, found);
  if (order.rehearse)
    preview.rehearse = [&](std::size_t place) { return order.rehearse(found.users.at(place)); };
  session.platform.dialogs.show_modal("RunPreview");
  preview.rehearse = {};
  preview.accounts.clear();
  return preview.accepted;
}

void RunPreview_Shown(Desktop& session) {
  if (session.run_preview.rehearse)
    look(session, kFirstLook);
}

void RunPreview_Rehearse_Click(Desktop& session) {
  if (session.run_preview.rehearsing)
    session.run_preview.rehearsing = false;
  else
    look(session, std::nullopt);
}

void RunPreview_Start_Click(Desktop& session) {
  session.run_preview.accepted = true;
}

void RunPreview_Closed(Desktop& session) {
  session.run_preview.closed = true;
}

bool preview_goes_on(Desktop& session) {
  session.platform.dialogs.DoEvents();
  return session.run_preview.rehearsing && !session.run_preview.closed;
}

}  // namespace twk::windows
