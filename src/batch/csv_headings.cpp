#include "batch/csv_headings.hpp"

#include <algorithm>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "format/import_headings.hpp"

namespace twk::batch {
namespace {

/// Headings that a message lists before it stops.
constexpr std::size_t kMostListed = 20;

std::string quoted(std::string_view heading) {
  return "\"" + format::heading_text(heading) + "\"";
}

}  // namespace

CsvHeadings::CsvHeadings(const std::vector<std::string>& fields) {
  for (const std::string& field : fields) {
    texts_.push_back(format::heading_text(field));
    if (!texts_.back().empty())
      columns_[format::heading_key(field)].push_back(static_cast<int>(texts_.size()));
  }
}

std::string CsvHeadings::listed() const {
  std::string text;
  for (std::size_t i = 0; i < std::min(texts_.size(), kMostListed); ++i)
    text += (i == 0 ? "" : ", ") + quoted(texts_.at(i));
  return text + (texts_.size() > kMostListed ? " …" : "");
}

int CsvHeadings::column(std::string_view heading) const {
  const auto found = columns_.find(format::heading_key(heading));
  if (found == columns_.end()) {
    base::raise(base::error::kTypeMismatch,
                "no column has the heading " + quoted(heading) + ". The headings are " + listed());
  }
  const std::vector<int>& columns = found->second;
  if (columns.size() > 1) {
    base::raise(base::error::kTypeMismatch, "the columns " + base::to_text(columns.front()) + " and " +
                                                base::to_text(columns.at(1)) + " both have the heading " +
                                                quoted(heading) + ". Use the number of one instead");
  }
  return columns.front();
}

int CsvHeadings::usual_column(const std::vector<std::string_view>& headings) const {
  for (const std::string_view heading : headings) {
    const auto found = columns_.find(format::heading_key(heading));
    if (found != columns_.end() && found->second.size() == 1)
      return found->second.front();
  }
  return 0;
}

std::map<std::string, std::size_t> CsvHeadings::columns_by_key() const {
  std::map<std::string, std::size_t> single;
  for (const auto& [key, columns] : columns_) {
    if (columns.size() == 1)
      single[key] = static_cast<std::size_t>(columns.front());
  }
  return single;
}

}  // namespace twk::batch
