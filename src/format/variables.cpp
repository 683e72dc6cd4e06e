#include "format/variables.hpp"

#include <algorithm>

#include "base/text.hpp"
#include "format/tags.hpp"
#include "session/session.hpp"

namespace twk::format {
namespace {

/// A text beside its upper-case form. Case mapping keeps byte positions, so one search serves both.
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
      // Nothing before can be the tag, but for one that begins there and ends in the value.
      from = at - std::min(at, tag.size() - 1);
    }
  }

  std::string take() { return std::move(text_); }

 private:
  std::string text_;
  std::string folded_;
};

}  // namespace

std::string FRString(std::string_view text, std::string_view find, std::string_view replacement) {
  if (find.empty() || text.size() < find.size())
    return std::string(text);
  // A tag's percent sign has no case, so its absence settles the matter without a folded copy.
  if (find.front() == '%' && text.find('%') == base::npos)
    return std::string(text);
  const std::string folded = base::upper(text);
  const std::string wanted = base::upper(find);
  std::string out;
  std::size_t from = 0;
  for (std::size_t at = folded.find(wanted); at != base::npos; at = folded.find(wanted, from)) {
    out += text.substr(from, at - from);
    out += replacement;
    from = at + find.size();
    if (out.size() > kMostText && out.size() > text.size())
      return std::string(text);
  }
  return out += text.substr(from);
}

std::string Replace_Variables(session::Session& session, std::string text) {
  const controls::ListView& rows = session.variables.ListView1;
  if (rows.empty() || text.find('%') == base::npos)
    return text;
  FoldedText folded(std::move(text));
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const controls::ListRow& row = rows.at(i);
    const std::string tag = "%" + base::upper(base::trim(row.text)) + "%";
    folded.expand(tag, row.sub_items.empty() ? std::string_view() : base::trim(row.sub_items.front()));
  }
  return folded.take();
}

std::string replace_import_fields(const session::ImportState& state, std::string text, std::size_t last) {
  if (find_tag(text, "%IMPORT") == base::npos)
    return text;
  for (std::size_t i = 1; i <= std::min(last, session::kMostImportFields); ++i) {
    const std::string tag = "%IMPORT" + base::to_text(static_cast<std::int64_t>(i)) + "%";
    if (find_tag(text, tag) != base::npos)
      text = FRString(text, tag, state.ImportFields.at(i));
  }
  return text;
}

std::string replace_import_fields(const session::Session& session, std::string text) {
  const std::int16_t count = session.import.ImportFieldCount;
  return replace_import_fields(session.import, std::move(text),
                               count < 0 ? 0U : static_cast<std::size_t>(count));
}

}  // namespace twk::format
