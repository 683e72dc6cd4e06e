#include "world/template_places.hpp"

#include <algorithm>

#include "base/text.hpp"

namespace twk::world {
namespace {

/// The parts of a path between its backslashes.
std::vector<std::string> parts_of(std::string_view path) {
  std::vector<std::string> parts = base::split(base::trim(path), '\\');
  std::erase_if(parts, [](const std::string& part) { return part.empty(); });
  return parts;
}

std::string joined(const std::vector<std::string>& parts, std::size_t count) {
  std::string path;
  for (std::size_t i = 0; i < count; ++i)
    path += (i == 0 ? "" : "\\") + parts[i];
  return path;
}

bool is_variable(const std::string& part) {
  return part.find('%') != base::npos;
}

bool is_drive_path(const std::vector<std::string>& parts) {
  return !parts.empty() && parts[0].size() == 2 && parts[0][1] == ':';
}

/// Home or profile: the folder to make, what the account says about it, and the share point between.
class Places {
 public:
  void add(const std::string& to_make, const std::string& of_account, const std::string& share_point) {
    const std::vector<std::string> folder = parts_of(to_make);
    const auto variable = std::find_if(folder.begin(), folder.end(), is_variable);
    const auto fixed = static_cast<std::size_t>(variable - folder.begin());
    // Of a path without a variable, the last folder is the user's own, too.
    const std::size_t above = std::min(fixed, folder.empty() ? 0 : folder.size() - 1);
    if (!is_drive_path(folder) || above < 2)
      return;
    const std::string top = joined(folder, above);
    const std::vector<std::string> point = parts_of(share_point);
    if (point.size() == 1 && !is_variable(point[0]))
      put({top, point[0]});
    else
      put({top, {}});
    const std::vector<std::string> path = parts_of(of_account);
    // "\\server\share\a\b": below the share as many folders as at the end of the one to make.
    if (!of_account.starts_with("\\\\") || path.size() < 3 || is_variable(path[1]) || path[1].ends_with('$'))
      return;
    const std::size_t below = path.size() - 2;
    if (below >= folder.size() || folder.size() - below > above || folder.size() - below < 2)
      return;
    put({joined(folder, folder.size() - below), path[1]});
  }

  std::vector<TemplatePlace> take() { return std::move(places_); }

 private:
  void put(TemplatePlace place) {
    const auto same = [&](const TemplatePlace& one) {
      return base::equals_fold(one.folder, place.folder) &&
             (place.share.empty() || one.share.empty() || base::equals_fold(one.share, place.share));
    };
    const auto known = std::find_if(places_.begin(), places_.end(), same);
    if (known == places_.end())
      places_.push_back(std::move(place));
    else if (known->share.empty())
      known->share = std::move(place.share);
  }

  std::vector<TemplatePlace> places_;
};

}  // namespace

std::vector<TemplatePlace> places_of_template(const records::TemplateRecord& record) {
  Places places;
  places.add(record.HomeDirPath, record.HomeDir, record.HomeSharePoint);
  places.add(record.ProfileDirPath, record.ProfilePath, record.ProfileSharePoint);
  return places.take();
}

}  // namespace twk::world
