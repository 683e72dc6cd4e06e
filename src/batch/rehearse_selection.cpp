#include "batch/rehearse_selection.hpp"

#include <functional>

#include "base/text.hpp"
#include "lifecycle/deletion/delete_user.hpp"
#include "lifecycle/move/move_user.hpp"
#include "lifecycle/trees/folder_use.hpp"

namespace twk::batch {
namespace {

/// Shows nothing: the steps tell all.
class Unwatched final : public session::RunView {
 public:
  explicit Unwatched(std::function<bool()> goes_on) : goes_on_(std::move(goes_on)) {}

  void status(std::string_view /*text*/) override {}
  void step(std::string_view /*caption*/) override {}
  void progress(int /*percent*/) override {}
  bool going_on() override { return goes_on_(); }

 private:
  std::function<bool()> goes_on_;
};

}  // namespace

struct SelectionRehearsal::Work {
  Work(session::Session& real, std::function<bool()> goes_on)
      : copy(real, [this](const std::string& step) { tell(step); }),
        known(copy.session()),
        view(std::move(goes_on)) {}

  void tell(const std::string& step) { steps.push_back(copy.session().log.concealed(step)); }
  /// What both kinds of order need to be a rehearsal.
  void take(session::RunTerms& terms) {
    terms.silent = true;
    terms.rehearse = [this](const std::string& step) { tell(step); };
  }

  std::vector<std::string> steps;
  RehearsedSession copy;
  lifecycle::KnownFolders known;
  Unwatched view;
  std::function<session::RunOutcome(const std::string& key)> run;
};

SelectionRehearsal::SelectionRehearsal(session::Session& real, lifecycle::DeleteOrder order,
                                       std::function<bool()> goes_on)
    : work_(std::make_unique<Work>(real, std::move(goes_on))) {
  work_->take(order.terms);
  order.mail.choose = [work = work_.get()](const mail::MailboxDeletion& request) {
    work->tell("Ask which mailbox is that of " + request.SamName);
    return std::optional<mail::Recipient>();
  };
  work_->run = [work = work_.get(), order = std::move(order)](const std::string& key) {
    return lifecycle::Delete_One_User(work->copy.session(), key, order, work->view);
  };
}

SelectionRehearsal::SelectionRehearsal(session::Session& real, lifecycle::MoveOrder order,
                                       std::function<bool()> goes_on)
    : work_(std::make_unique<Work>(real, std::move(goes_on))) {
  work_->take(order.terms);
  work_->run = [work = work_.get(), order = std::move(order)](const std::string& key) {
    return lifecycle::Move_One_User(work->copy.session(), key, order, work->view);
  };
}

SelectionRehearsal::~SelectionRehearsal() = default;

std::vector<std::string> SelectionRehearsal::steps_of(const MeantUser& user) {
  work_->steps.clear();
  const session::RunOutcome outcome =
      work_->run(session::is_active_directory(work_->copy.session()) ? user.path : user.name);
  if (outcome.light != session::kGreen)
    work_->steps.push_back(outcome.light + ": " + std::string(base::trim(outcome.message)));
  return std::move(work_->steps);
}

}  // namespace twk::batch
