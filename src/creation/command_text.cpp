#include "creation/command_text.hpp"

#include <algorithm>

#include "base/text.hpp"
#include "format/filling.hpp"
#include "format/variables.hpp"
#include "session/session.hpp"

namespace twk::creation {
namespace {

/// The tags of variables and of the import's headings that contain something that would end a word.
std::vector<std::string> tags_that_end_words(const session::Session& session) {
  std::vector<std::string> tags;
  for (const format::Variable& variable : format::template_variables(session)) {
    const std::string_view name = base::trim(variable.name);
    if (name.find_first_of(" \t\"") != base::npos)
      tags.push_back("%" + std::string(name) + "%");
  }
  if (!session.import.Importing)
    return tags;
  for (const auto& [heading, column] : session.import.columns_by_heading)
    tags.push_back("%IMPORT:" + heading + "%");
  return tags;
}

/// The length of the tag that `text` begins with; 0 for none.
std::size_t tag_at(std::string_view text, const std::vector<std::string>& tags) {
  const auto found = std::find_if(tags.begin(), tags.end(),
                                  [&](const std::string& tag) { return base::starts_with_fold(text, tag); });
  return found == tags.end() ? 0 : found->size();
}

/// The blanks at both ends are the administrator's, from inside quotes.
std::string fill_word(const std::string& word, const std::function<std::string(std::string)>& fill) {
  const std::size_t first = word.find_first_not_of(' ');
  if (first == base::npos)
    return word;
  const std::size_t end = word.find_last_not_of(' ') + 1;
  return word.substr(0, first) + fill(word.substr(first, end - first)) + word.substr(end);
}

}  // namespace

std::vector<std::string> split_command(std::string_view text, const std::vector<std::string>& tags) {
  std::vector<std::string> words;
  bool in_word = false;
  bool quoted = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (!quoted && (c == ' ' || c == '\t')) {
      in_word = false;
      continue;
    }
    if (!in_word)
      words.emplace_back();
    in_word = true;
    if (c == '"') {
      quoted = !quoted;
    } else {
      const std::size_t length = std::max<std::size_t>(1, c == '%' ? tag_at(text.substr(i), tags) : 0);
      words.back() += text.substr(i, length);
      i += length - 1;
    }
  }
  return words;
}

std::vector<std::string> fill_words(const session::Session& session, std::string_view text,
                                    const std::function<std::string(std::string)>& fill) {
  std::vector<std::string> words = split_command(text, tags_that_end_words(session));
  for (std::string& word : words) {
    if (word.find_first_of("%#") != base::npos)
      word = fill_word(word, fill);
  }
  return words;
}

std::vector<std::string> command_words(session::Session& session, std::string_view command,
                                       const CommandUser& user, const CommandPlace& place) {
  return fill_words(session, command, [&](std::string word) {
    return format::Filling(session, std::move(word))
        .import_fields()
        .tag("%Domain%", session.DomainName)
        .tag("%Server%", place.server)
        .tag("%UserName%", user.account)
        .tag("%EXServer%", place.mail_server)
        .tag("%EXSite%", place.mail_site)
        .tag("%EXorg%", place.mail_organization)
        .names(user.first, user.middle, user.last)
        .variables()
        .take();
  });
}

std::string shown_command(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) {
    if (!text.empty())
      text += ' ';
    if (!word.empty() && word.find_first_of(" \t\"") == base::npos) {
      text += word;
      continue;
    }
    text += '"';
    for (const char c : word)
      text.append(c == '"' ? "\\" : "").push_back(c);
    text += '"';
  }
  return text;
}

}  // namespace twk::creation
