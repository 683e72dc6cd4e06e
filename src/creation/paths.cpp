#include "creation/paths.hpp"

#include "base/text.hpp"
#include "format/replace.hpp"
#include "platform/network_path.hpp"
#include "session/session.hpp"

namespace twk::creation {
namespace {

using session::Session;

/// Trimmed, with "%Server%" and "%UserName%" filled in.
std::string expand_path(const CreationRun& run, std::string_view text) {
  return format::FRString(format::FRString(base::trim(text), "%Server%", run.site.server), "%UserName%",
                          base::trim(run.SamName));
}

std::string reachable(const CreationRun& run, const std::string& folder, std::string_view share_point) {
  return reachable_path(run.site.server, folder,
                        format::FRString(share_point, "%UserName%", base::trim(run.SamName)));
}

struct DirectoryTexts {
  std::string_view question;
  std::string_view status;
  std::string_view failure;
  std::string_view success;
};

constexpr DirectoryTexts kHomeTexts{"Home Dir  Already Exist \r\nContinue ?",
                                    "Error Creating Users Home Dir...",
                                    "Error Creating Users Home Dir: ", "Created Home Directory: "};
constexpr DirectoryTexts kProfileTexts{"Profile Dir  Already Exist \r\nContinue ?",
                                       "Error Creating Users Profile Dir....",
                                       "Error Creating Users Profile Dir: ", "Created Profile Directory: "};

Step make_directory(CreationRun& run, const std::string& path, const DirectoryTexts& texts,
                    CreationStage stage) {
  Session& session = run.session;
  if (session.platform.files.exists(path)) {
    const platform::Answer answer = session.platform.dialogs.MsgBox(
        texts.question, platform::Buttons::kYesNo, platform::Icon::kQuestion, "Error Creating Dir");
    return answer == platform::Answer::kYes ? Step::kGoOn : Step::kEnd;
  }
  session.Error_Status_Text = texts.status;
  session.Error_Log_Text = std::string(texts.failure) + path;
  run.stage = stage;
  session.platform.files.make_directory(path);
  run.view.made({MadeThing::Kind::kFolder, path, {}, {}, nullptr});
  log(run, std::string(texts.success) + path);
  return Step::kGoOn;
}

}  // namespace

std::string Get_Server_Name(std::string_view path) {
  return std::string(platform::take_apart(path).server);
}

std::string Get_Share_Name(std::string_view path) {
  return path.starts_with("\\\\") ? std::string(platform::take_apart(path).share) : std::string();
}

std::string reachable_path(std::string_view server, std::string_view folder, std::string_view share_point) {
  const std::string path = "\\\\" + std::string(server) + "\\";
  if (share_point.empty())
    return path + std::string(base::left(folder, 1)) + "$" + std::string(base::mid(folder, 3));
  return path + std::string(share_point) + std::string(folder.substr(folder.rfind('\\') + 1));
}

void ResolvePaths(CreationRun& run) {
  const TemplateValues& values = run.user_template;
  ResolvedPaths& paths = run.paths;
  if (!values.ProfileDir.empty()) {
    paths.ProfileLocalDir = expand_path(run, values.ProfileDir);
    paths.ProfileShareDir = reachable(run, paths.ProfileLocalDir, values.ProfileSharePoint);
    paths.WantProfileDir = true;
  }
  if (!values.HomeDir.empty()) {
    paths.HomeLocalDir = expand_path(run, values.HomeDir);
    paths.HomeShareDir = reachable(run, paths.HomeLocalDir, values.HomeSharePoint);
    paths.WantHomeDir = true;
  }
  paths.ProfileText = expand_path(run, values.ProfilePath);
  paths.HomeDirText = expand_path(run, values.HomePath);
}

Step CreateDirectories(CreationRun& run) {
  const ResolvedPaths& paths = run.paths;
  Step step = Step::kGoOn;
  if (paths.WantHomeDir)
    step = make_directory(run, paths.HomeShareDir, kHomeTexts, CreationStage::kNone);
  if (step == Step::kGoOn && paths.WantProfileDir) {
    step = make_directory(run, paths.ProfileShareDir, kProfileTexts, CreationStage::kProfileDirectory);
  }
  return step;
}

}  // namespace twk::creation
