#include <algorithm>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "cli/frame/resource_session.hpp"
#include "cli/frame/template_fields.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "cli/worlds/lab_commands.hpp"
#include "lab/making/lab_create.hpp"
#include "platform/adsi.hpp"
#include "world/template_places.hpp"

namespace twk::cli {
namespace {

struct ServerArguments {
  std::string name;
  std::string drives = "C,D";
  std::string template_name;
};

std::vector<std::string> drives_of(const std::string& list) {
  std::vector<std::string> drives;
  for (const std::string& drive : base::split(list, ',')) {
    std::string letter = base::upper(base::trim(drive));
    if (letter.size() != 1 || letter[0] < 'A' || letter[0] > 'Z')
      throw UsageError("--drives takes letters with commas between, such as C,D");
    if (std::find(drives.begin(), drives.end(), letter) == drives.end())
      drives.push_back(std::move(letter));
  }
  return drives;
}

/// Its drives are then among the server's.
std::vector<world::TemplatePlace> places_named(Context& context, const std::string& template_name,
                                               std::vector<std::string>& drives) {
  if (template_name.empty())
    return {};
  session::Session& session = context.session(Depth::kDatabases);
  load_named_template(session, template_name);
  std::vector<world::TemplatePlace> places = world::places_of_template(session.ActiveTemplate);
  for (const world::TemplatePlace& place : places) {
    std::string drive = base::upper(place.folder.substr(0, 1));
    if (std::find(drives.begin(), drives.end(), drive) == drives.end())
      drives.push_back(std::move(drive));
  }
  return places;
}

/// Each part of the folder that is not there yet.
void make_folder(platform::Files& files, const std::string& server, const std::string& folder) {
  const std::vector<std::string> parts = base::split(folder, '\\');
  std::string path = "\\\\" + server + "\\" + parts.front().substr(0, 1) + "$";
  for (std::size_t i = 1; i < parts.size(); ++i) {
    path += "\\" + parts[i];
    if (!files.exists(path))
      files.make_directory(path);
  }
}

void make_share(const platform::Platform& services, const std::string& server,
                const world::TemplatePlace& place) {
  const auto share =
      services.directory.GetObject(platform::shares_path(server))->Create("fileshare", place.share);
  share->Put("Path", place.folder);
  share->SetInfo();
}

int add_server(Context& context, const ServerArguments& arguments) {
  const std::filesystem::path folder = context.lab_folder();
  static_cast<void>(context.lab());
  std::vector<std::string> drives = drives_of(arguments.drives);
  const auto places = places_named(context, arguments.template_name, drives);
  std::vector<std::string> folders;
  std::vector<std::string> shares;
  in_plain_words([&] {
    lab::add_file_server(folder, {arguments.name, drives});
    const platform::Platform& services = context.services();
    for (const world::TemplatePlace& place : places) {
      make_folder(services.files, arguments.name, place.folder);
      folders.push_back(place.folder);
      if (place.share.empty())
        continue;
      make_share(services, arguments.name, place);
      shares.push_back(place.share);
    }
  });
  std::string message = "Added the file server " + arguments.name + " with the drives ";
  for (std::size_t i = 0; i < drives.size(); ++i)
    message += (i == 0 ? "" : ", ") + drives[i];
  if (!arguments.template_name.empty()) {
    message += "; " + std::to_string(folders.size()) + " folders and " + std::to_string(shares.size()) +
               " shares for the template " + arguments.template_name;
  }
  return tell_light(
      context, session::kGreen, message + ".",
      {{"server", arguments.name}, {"drives", drives}, {"folders", folders}, {"shares", shares}});
}

}  // namespace

void add_lab_server(Command& lab, Context& context) {
  auto* server = lab.add_subcommand("server", "The file servers of a lab");
  server->require_subcommand();
  auto arguments = std::make_shared<ServerArguments>();
  auto* add = server->add_subcommand("add", "Add a file server to the lab");
  add->add_option("NAME", arguments->name, "Its name, at most 15 letters and digits")->required();
  add->add_option("--drives", arguments->drives, "Its drives, letters with commas between")
      ->type_name("LETTERS")
      ->shows_default();
  add->add_option("--for-template", arguments->template_name,
                  "Make the folders and shares that the paths of this template need there, too")
      ->type_name("T");
  add->callback(
      [=, &context] { context.set_action([=, &context] { return add_server(context, *arguments); }); });
}

}  // namespace twk::cli
