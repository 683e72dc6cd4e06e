#include "format/filling.hpp"

#include <algorithm>
#include <array>

#include "base/text.hpp"
#include "format/import_headings.hpp"
#include "format/name_tags.hpp"
#include "format/replace.hpp"
#include "format/tags.hpp"
#include "session/loaded_database.hpp"
#include "session/session.hpp"

namespace twk::format {
namespace {

/// Characters that begin a tag, or change the one after it.
constexpr std::string_view kActive = "%#123456789";

/// Stand for those characters of data until the text is whole, so that no step takes them for the
/// administrator's. U+FDD0 and the next ones are not characters of any text (Unicode 23.7, "Noncharacters").
constexpr std::array<std::string_view, kActive.size()> kOfData = {"\uFDD0", "\uFDD1", "\uFDD2", "\uFDD3",
                                                                  "\uFDD4", "\uFDD5", "\uFDD6", "\uFDD7",
                                                                  "\uFDD8", "\uFDD9", "\uFDDA"};

/// The last field that a format of names can name.
constexpr std::size_t kMostFieldsOfNames = 99;

std::string inert(std::string_view data, std::string_view active = kActive) {
  std::string text;
  text.reserve(data.size());
  for (const char c : data) {
    if (active.find(c) == base::npos)
      text += c;
    else
      text += kOfData.at(kActive.find(c));
  }
  return text;
}

/// A text with its upper-case form. Case mapping keeps byte positions, so one search serves both.
class FoldedText {
 public:
  explicit FoldedText(std::string text) : text_(std::move(text)), folded_(base::upper(text_)) {}

  /// Replaces the first occurrence of `tag`, upper case, until there is none.
  void expand(std::string_view tag, std::string_view value) {
    const std::string folded_value = base::upper(value);
    std::size_t from = 0;
    for (int i = 0; i < kMostExpansions && text_.size() <= kMostText; ++i) {
      const std::size_t at = folded_.find(tag, from);
      if (at == base::npos)
        return;
      text_.replace(at, tag.size(), value);
      folded_.replace(at, tag.size(), folded_value);
      // The tag cannot be before this, except one that begins there and ends in the value.
      from = at - std::min(at, tag.size() - 1);
    }
  }

  std::string take() { return std::move(text_); }

 private:
  std::string text_;
  std::string folded_;
};

}  // namespace

Filling::Filling(session::Session& session, std::string text) : session_(session), text_(std::move(text)) {}

Filling& Filling::tag(std::string_view name, std::string_view value) {
  text_ = FRString(text_, name, inert(value));
  return *this;
}

Filling& Filling::names(std::string_view first, std::string_view middle, std::string_view last) {
  // First, because "#" and digits of a heading are no modifiers of names.
  if (session_.import.Importing)
    put_fields_under_headings({});
  text_.insert(0, 1, ' ');
  text_.push_back(' ');
  // "#" of a name is dropped like any other, and a digit at its end counts for the tag after it.
  expand_name(text_, "%FIRST%", inert(first, "%"));
  expand_name(text_, "%MIDDLE%", inert(middle, "%"));
  expand_name(text_, "%LAST%", inert(last, "%"));
  std::erase(text_, '#');
  if (session_.import.Importing)
    put_fields(kMostFieldsOfNames, {});
  expand_serials(session_, text_);
  text_ = base::trim(text_);
  return *this;
}

Filling& Filling::import_fields(const Escape& escape) {
  const std::int16_t count = session_.import.ImportFieldCount;
  if (!session_.import.Importing)
    return *this;
  put_fields_under_headings(escape);
  if (count > 0)
    put_fields(std::min(static_cast<std::size_t>(count), session::kMostImportFields), escape);
  return *this;
}

void Filling::put_fields(std::size_t last, const Escape& escape) {
  if (find_tag(text_, "%IMPORT") == base::npos)
    return;
  for (std::size_t i = 1; i <= last; ++i) {
    const std::string name = "%IMPORT" + base::to_text(static_cast<std::int64_t>(i)) + "%";
    const std::string& field = session_.import.ImportFields.at(i);
    if (find_tag(text_, name) != base::npos)
      tag(name, escape ? escape(field) : field);
  }
}

void Filling::put_fields_under_headings(const Escape& escape) {
  const session::ImportState& state = session_.import;
  std::size_t from = 0;
  while (const auto found = find_heading_tag(text_, from)) {
    const auto column = state.columns_by_heading.find(heading_key(found->heading));
    from = found->begin + 1;
    if (column == state.columns_by_heading.end() || column->second > state.fields_of_record.size())
      continue;
    const std::string& field = state.fields_of_record.at(column->second - 1);
    const std::string value = inert(escape ? escape(field) : field);
    if (text_.size() + value.size() > kMostText)
      return;
    text_.replace(found->begin, found->size, value);
    from = found->begin + value.size();
  }
}

Filling& Filling::variables() {
  const controls::ListView& rows = session_.database.variables;
  if (rows.empty() || text_.find('%') == base::npos)
    return *this;
  FoldedText folded(std::move(text_));
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const controls::ListRow& row = rows.at(i);
    const std::string name = "%" + base::upper(base::trim(row.text)) + "%";
    folded.expand(name, row.sub_items.empty() ? std::string_view() : base::trim(row.sub_items.front()));
  }
  text_ = folded.take();
  return *this;
}

bool Filling::holds(std::string_view tag) const {
  return find_tag(text_, tag) != base::npos;
}

std::string Filling::take() {
  for (std::size_t i = 0; i < kOfData.size(); ++i) {
    if (text_.find(kOfData.at(i)) != base::npos)
      text_ = FRString(text_, kOfData.at(i), kActive.substr(i, 1));
  }
  return std::move(text_);
}

}  // namespace twk::format
