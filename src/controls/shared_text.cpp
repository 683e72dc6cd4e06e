#include "controls/shared_text.hpp"

#include <mutex>
#include <ostream>
#include <set>

namespace twk::controls {
namespace {

const std::string& kept(std::string_view text) {
  static std::mutex mutex;
  static std::set<std::string, std::less<>> texts;
  const std::lock_guard<std::mutex> lock(mutex);
  const auto found = texts.find(text);
  return found != texts.end() ? *found : *texts.emplace(text).first;
}

}  // namespace

SharedText::SharedText(std::string_view text) : text_(&kept(text)) {}

std::ostream& operator<<(std::ostream& out, const SharedText& text) {
  return out << text.text();
}

}  // namespace twk::controls
