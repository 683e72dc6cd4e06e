#include <algorithm>

#include "base/text.hpp"
#include "cli/frame/context.hpp"
#include "cli/group/group_commands.hpp"
#include "cli/terminal/failures.hpp"
#include "groups/group_add.hpp"
#include "session/group_windows.hpp"

namespace twk::cli {
namespace {

constexpr std::array<std::string_view, 3> kScopes = {"domain-local", "global", "universal"};
constexpr std::array<std::string_view, 2> kKinds = {"security", "distribution"};

struct CreateArguments {
  std::string name;
  std::string description;
  std::string scope{kScopes[1]};
  std::string kind{kKinds[0]};
};

/// Chooses one of the window's options. Raises `Refused` for one that this kind of domain lacks.
template <std::size_t size>
void choose(std::array<controls::OptionButton, size>& options,
            const std::array<std::string_view, size>& words, const std::string& word) {
  const auto place = static_cast<std::size_t>(std::find(words.begin(), words.end(), word) - words.begin());
  if (!options.at(place).value.get() && !options.at(place).enabled.get())
    throw Refused("This kind of domain has no " + word + " groups.");
  for (std::size_t i = 0; i < size; ++i)
    options.at(i).value = i == place;
}

int create_group(Context& context, const CreateArguments& arguments) {
  session::Session& session = groups_session(context, false);
  groups::GroupAdd_Form_Load(session);
  session::GroupAdd& window = session.group_add;
  window.GRP_Name.text = arguments.name;
  window.GRP_DESCRIPTION.text = arguments.description;
  choose(window.Option1, kScopes, arguments.scope);
  choose(window.Option2, kKinds, arguments.kind);
  if (base::trim(arguments.name).empty())
    throw Refused("The name of a group cannot be blank.");
  context.dialogs().forget_trouble();
  const bool made = groups::GroupAdd_OKButton_Click(session);
  const std::string& trouble = context.dialogs().last_trouble();
  return tell_group(context, arguments.name, made ? session::kGreen : session::kRed,
                    made || trouble.empty() ? session.groups.StatusBar1.panel1.get() : trouble);
}

template <std::size_t size>
Option* add_choice(Command& command, const std::string& name, std::string& value,
                   const std::array<std::string_view, size>& words, const std::string& description) {
  return command.add_option(name, value, description)
      ->check(Check::one_of(std::vector<std::string>(words.begin(), words.end())))
      ->shows_default();
}

}  // namespace

void add_group_create(Command& group, Context& context) {
  auto arguments = std::make_shared<CreateArguments>();
  auto* create = group.add_subcommand("create", "Make a group in the managed OU, or among the users");
  create->add_option("NAME", arguments->name, "Its name")->required();
  create->add_option("--description", arguments->description, "What it is for")
      ->type_name("D")
      ->may_be_empty();
  add_choice(*create, "--scope", arguments->scope, kScopes, "Its scope: domain-local, global or universal")
      ->type_name("SCOPE");
  add_choice(*create, "--kind", arguments->kind, kKinds, "security, or distribution for mail only")
      ->type_name("KIND");
  create->callback(
      [=, &context] { context.set_action([=, &context] { return create_group(context, *arguments); }); });
}

}  // namespace twk::cli
