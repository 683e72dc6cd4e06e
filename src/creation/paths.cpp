#include "creation/paths.hpp"

#include "base/text.hpp"
#include "format/replace.hpp"
#include "session/form1.hpp"
#include "session/session.hpp"
#include "session/windows.hpp"

namespace twk::creation {
namespace {

using session::Session;

/// Trimmed, with "%Server%" and "%UserName%" filled in.
std::string expand_path(const CreationRun& run, std::string_view text) {
  const std::string server(base::trim(run.session.form1.NTSERVER.text.get()));
  return format::FRString(format::FRString(base::trim(text), "%Server%", server), "%UserName%",
                          base::trim(run.SamName));
}

/// The network path that reaches a directory of the site's server.
std::string reachable_path(const CreationRun& run, const std::string& local, std::string_view share_point) {
  std::string path = "\\\\" + std::string(base::trim(run.session.form1.NTSERVER.text.get())) + "\\";
  if (!share_point.empty()) {
    const std::size_t slash = local.rfind('\\');
    return path + format::FRString(share_point, "%UserName%", base::trim(run.SamName)) +
           (slash == base::npos ? local : local.substr(slash + 1));
  }
  return path + std::string(base::left(local, 1)) + "$" + std::string(base::mid(local, 3));
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
  log(run, std::string(texts.success) + path);
  return Step::kGoOn;
}

}  // namespace

std::string Get_Server_Name(std::string_view path) {
  constexpr std::size_t kBehindSlashes = 2;
  if (!path.starts_with('\\') || path.size() <= kBehindSlashes)
    return {};
  const std::size_t end = path.find('\\', kBehindSlashes);
  return end == base::npos ? std::string() : std::string(path.substr(kBehindSlashes, end - kBehindSlashes));
}

std::string Get_Share_Name(std::string_view path) {
  if (!path.starts_with("\\\\"))
    return {};
  const std::size_t first = path.find('\\', 2);
  if (first == base::npos)
    return {};
  const std::size_t second = path.find('\\', first + 1);
  return std::string(path.substr(first + 1, second == base::npos ? base::npos : second - first - 1));
}

void ResolvePaths(CreationRun& run) {
  const session::Form1& form = run.session.form1;
  const session::frmSharePoints& points = run.session.share_points;
  ResolvedPaths& paths = run.paths;
  if (!base::trim(form.Profilepath.text.get()).empty()) {
    paths.ProfileLocalDir = expand_path(run, form.Profilepath.text.get());
    paths.ProfileShareDir = reachable_path(run, paths.ProfileLocalDir, points.ProfileSharePoint);
    paths.WantProfileDir = true;
  }
  if (!base::trim(form.Homedirpath.text.get()).empty()) {
    paths.HomeLocalDir = expand_path(run, form.Homedirpath.text.get());
    paths.HomeShareDir = reachable_path(run, paths.HomeLocalDir, points.HomeSharePoint);
    paths.WantHomeDir = true;
  }
  paths.ProfileText = expand_path(run, form.propath.text.get());
  paths.HomeDirText = expand_path(run, form.homedir.text.get());
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
