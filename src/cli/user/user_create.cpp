#include "base/text.hpp"
#include "cli/frame/creation_progress.hpp"
#include "cli/frame/rehearsed_steps.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "cli/terminal/input.hpp"
#include "cli/user/user_commands.hpp"
#include "creation/create_user.hpp"
#include "creation/stored_request.hpp"

namespace twk::cli {
namespace {

struct CreateArguments {
  CreationPlace place;
  std::string id;
  std::string description;
  std::vector<std::string> names;
  bool password_stdin = false;
  std::string password_file;
  bool dry_run = false;
};

/// A given password replaces the default one, exactly as it is: the run asks for it, and the answer is ready.
void use_password(Context& context, const CreateArguments& arguments, creation::NewUserRequest& request) {
  if (!arguments.password_stdin && arguments.password_file.empty())
    return;
  context.dialogs().set_password(read_password(arguments.password_stdin ? "-" : arguments.password_file));
  request.password = {.text = "PROMPT", .format = {}, .formatted = false};
  request.password_is_given = true;
}

void take_names(const CreateArguments& arguments, creation::NewUserRequest& request) {
  const bool with_middle = arguments.names.size() == 3;
  request.FirstName = arguments.names.front();
  request.MiddleName = with_middle ? arguments.names[1] : std::string();
  request.LastName = arguments.names.back();
  request.UserId = arguments.id;
  request.Description = arguments.description;
}

int create_user(Context& context, const CreateArguments& arguments) {
  if (arguments.dry_run)
    print_steps(context);
  if (arguments.dry_run && context.dialogs().asks_person())
    context.dialogs().set_asking(Asking::kYes);
  session::Session& session = context.session(Depth::kNamed);
  session.import.rehearsed = arguments.dry_run;
  creation::NewUserRequest request = creation::stored_request(session);
  choose_place(context, session, arguments.place, request);
  use_password(context, arguments, request);
  take_names(arguments, request);
  session::CreationOutcome& outcome = session.LastCreation;
  outcome = {};
  {
    CreationProgress view(session);
    context.dialogs().before_text([&] { view.clear(); });
    act(session, [&] {
      outcome = creation::create_user(session, request, view);
      view.clear();
    });
    context.dialogs().before_text({});
  }
  const std::string light = outcome.light.empty() ? std::string(session::kRed) : outcome.light;
  const std::string message(
      base::trim(outcome.message.empty() ? session.status.panel1.get() : outcome.message));
  context.output().result({{"user", outcome.user},
                           {"light", light},
                           {"message", message},
                           {"warnings", warnings_of(light, message, outcome.warnings)}},
                          context.output().light(light) + "  " + message);
  return exit_code_of_light(light);
}

}  // namespace

void add_user_create(Command& user, Context& context) {
  auto arguments = std::make_shared<CreateArguments>();
  auto* create = user.add_subcommand("create", "Create one user");
  add_place_options(*create, arguments->place);
  create->add_option("--id", arguments->id, "Account name, instead of the one from the name format")
      ->may_be_empty();
  create->add_option("--description", arguments->description, "Description")
      ->type_name("TEXT")
      ->may_be_empty();
  auto* from_input = create->add_flag("--password-stdin", arguments->password_stdin,
                                      "The password is a line of standard input");
  create->add_option("--password-file", arguments->password_file, "The password is the first line of a file")
      ->type_name("FILE")
      ->excludes(from_input);
  add_dry_run(*create, arguments->dry_run);
  create->add_option("NAMES", arguments->names, "FIRST [MIDDLE] LAST")
      ->required()
      ->values(2, 3)
      ->type_name("NAME");
  create->callback(
      [=, &context] { context.set_action([=, &context] { return create_user(context, *arguments); }); });
}

}  // namespace twk::cli
