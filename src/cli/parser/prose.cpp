#include "cli/parser/prose.hpp"

#include <algorithm>
#include <array>
#include <utility>

#include "base/text.hpp"
#include "cli/terminal/display.hpp"

namespace twk::cli {
namespace {

using Lines = std::vector<std::string>;

constexpr std::string_view kFence = "```";

/// Sections that are not named after their group.
constexpr std::array kMoreSections = {
    std::pair<std::string_view, std::string_view>{"user", "Users who leave, move or change their names"},
    std::pair<std::string_view, std::string_view>{"profile", "Users who leave, move or change their names"},
    std::pair<std::string_view, std::string_view>{"acl", "acl, owner"},
    std::pair<std::string_view, std::string_view>{"owner", "acl, owner"},
    std::pair<std::string_view, std::string_view>{"doctor", "A real domain"}};

bool is_about(std::string_view group, std::string_view heading) {
  return heading == group ||
         std::ranges::find(kMoreSections, std::pair(group, heading)) != kMoreSections.end();
}

/// The paragraphs, lists, tables and boxes of a section, each with its lines.
std::vector<Lines> blocks_of(const Lines& section) {
  std::vector<Lines> blocks(1);
  bool in_box = false;
  for (const std::string& line : section) {
    if (line.starts_with(kFence))
      in_box = !in_box;
    if (line.empty() && !in_box)
      blocks.emplace_back();
    else
      blocks.back().push_back(line);
  }
  std::erase_if(blocks, [](const Lines& block) { return block.empty(); });
  return blocks;
}

std::vector<Lines> sections_about(std::string_view group) {
  std::vector<Lines> sections;
  bool wanted = false;
  for (const std::string& line : base::split(std::string(command_line_documentation()), '\n')) {
    if (line.starts_with("## ")) {
      wanted = is_about(group, std::string_view(line).substr(3));
      if (wanted)
        sections.emplace_back();
    } else if (line.starts_with("# ")) {
      wanted = false;
    } else if (wanted) {
      sections.back().push_back(line);
    }
  }
  return sections;
}

bool begins_with_words(std::string_view text, std::string_view words) {
  return text.starts_with(words) && (text.size() == words.size() || text[words.size()] == ' ');
}

/// The commands that a paragraph names in code, with or without their group.
std::vector<std::string_view> named_in(const Lines& block, std::string_view group, const Lines& names) {
  std::string text;
  for (const std::string& line : block)
    text += line + " ";
  const Lines parts = base::split(text, '`');  // every other one is code
  std::vector<std::string_view> named;
  for (std::size_t i = 1; i < parts.size(); i += 2) {
    for (const std::string& name : names) {
      if (begins_with_words(parts[i], name) || begins_with_words(parts[i], std::string(group) + " " + name))
        named.push_back(name);
    }
  }
  return named;
}

bool is_example(std::string_view line, std::string_view words) {
  const std::string padded = " " + std::string(line) + " ";
  return padded.find("twk ") != std::string::npos &&
         padded.find(" " + std::string(words) + " ") != std::string::npos;
}

/// Without the marks of code, emphasis and links.
std::string plain(std::string text) {
  for (std::size_t link = text.find("]("); link != std::string::npos; link = text.find("](", link)) {
    const std::size_t end = text.find(')', link);
    const std::size_t begin = text.rfind('[', link);
    if (end == std::string::npos || begin == std::string::npos)
      break;
    text.erase(link, end - link + 1);
    text.erase(begin, 1);
  }
  std::erase(text, '`');
  for (std::size_t bold = text.find("**"); bold != std::string::npos; bold = text.find("**", bold))
    text.erase(bold, 2);
  return text;
}

/// "| a | b |" as "a: b"; nothing for the line below the heading.
std::string row_text(std::string_view line) {
  if (line.find_first_not_of("|- ") == std::string_view::npos)
    return {};
  std::string text;
  for (const std::string& cell : base::split(std::string(line.substr(1, line.size() - 2)), '|')) {
    const std::string_view shown = base::trim(cell);
    if (!shown.empty())
      text += (text.empty() ? "" : ": ") + std::string(shown);
  }
  return "- " + text;
}

/// A block for a terminal.
std::string shown(const Lines& block) {
  std::string result;
  std::string item;
  const auto finish = [&] {
    constexpr std::size_t kListIndent = 2;
    if (!item.empty())
      result += fill(plain(item), item.starts_with("- ") ? kListIndent : 0) + "\n";
    item.clear();
  };
  bool in_box = false;
  for (const std::string& line : block) {
    const bool fence = line.starts_with(kFence);
    in_box = in_box != fence;
    if (fence) {
      finish();
    } else if (in_box) {
      result += "    " + line + "\n";
    } else if (line.starts_with('|')) {
      finish();
      item = row_text(line);
    } else {
      if (line.starts_with("- "))
        finish();
      item += (item.empty() ? "" : " ") + line;
    }
  }
  finish();
  return result;
}

}  // namespace

std::string prose_of(std::string_view group, std::string_view name, const std::vector<std::string>& names) {
  const std::string words = std::string(group) + (name.empty() ? "" : " ") + std::string(name);
  std::string examples;
  std::string text;
  for (const Lines& section : sections_about(group)) {
    bool about = true;
    for (const Lines& block : blocks_of(section)) {
      if (block.front() == "```sh") {
        for (const std::string& line : block)
          examples += is_example(line, words) ? "  " + line + "\n" : "";
        continue;
      }
      const auto named = named_in(block, group, names);
      about = named.empty() ? about : std::ranges::find(named, name) != named.end();
      if (about || name.empty())
        text += "\n" + shown(block);
    }
  }
  return (examples.empty() ? "" : "\nExamples:\n" + examples) + text;
}

}  // namespace twk::cli
