#include "cli/terminal/output.hpp"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <nlohmann/json.hpp>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "cli/terminal/display.hpp"
#include "session/activity_log.hpp"

namespace twk::cli {
namespace {

constexpr std::string_view kGap = "  ";

nlohmann::ordered_json printed(const Json& value) {
  if (const bool* const boolean = value.boolean())
    return *boolean;
  if (const std::int64_t* const number = value.number())
    return *number;
  if (const std::string* const text = value.text())
    return *text;
  if (const Json::List* const list = value.list()) {
    auto array = nlohmann::ordered_json::array();
    for (const Json& element : *list)
      array.push_back(printed(element));
    return array;
  }
  if (const Json::Object* const members = value.members()) {
    auto object = nlohmann::ordered_json::object();
    for (const Json::Member& member : *members)
      object[member.key] = printed(member.value);
    return object;
  }
  return nullptr;
}

std::string dumped(const Json& value) {
  return printed(value).dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

void append_row(std::string& out, const std::vector<std::string>& cells,
                const std::vector<std::size_t>& widths) {
  for (std::size_t i = 0; i < cells.size(); ++i) {
    const bool last = i + 1 == cells.size();
    out += last ? cells[i] : pad(cells[i], widths[i]);
    out += last ? "\n" : kGap;
  }
}

}  // namespace

Json warnings_of(std::string_view light, const std::string& message,
                 const std::vector<std::string>& reasons) {
  if (light == session::kGreen)
    return Json::array();
  return reasons.empty() ? Json::array({message}) : Json(reasons);
}

std::string text_of(const Json& value) {
  if (const std::string* const text = value.text())
    return *text;
  if (const bool* const boolean = value.boolean())
    return *boolean ? "yes" : "no";
  if (value.is_null())
    return {};
  if (value.list() == nullptr)
    return dumped(value);
  std::vector<std::string> texts;
  bool has_comma = false;
  for (const Json& element : *value.list()) {
    texts.push_back(text_of(element));
    has_comma = has_comma || texts.back().find(',') != base::npos;
  }
  std::string out;
  for (const std::string& text : texts)
    out += (out.empty() ? "" : has_comma ? "; " : ", ") + text;
  return out;
}

namespace {

std::string cell_of(const Column& column, const Json& row) {
  const Json* const value = row.find(column.key);
  return value == nullptr ? std::string() : printable(text_of(*value));
}

/// A field of RFC 4180, in quotes where it needs them.
std::string csv_field(const std::string& text) {
  if (text.find_first_of(",\"\r\n") == base::npos)
    return text;
  std::string out = "\"";
  for (const char c : text)
    out += c == '"' ? std::string("\"\"") : std::string(1, c);
  return out + "\"";
}

std::string csv_record(const std::vector<std::string>& fields) {
  std::string out;
  for (std::size_t i = 0; i < fields.size(); ++i)
    out += (i == 0 ? "" : ",") + csv_field(fields[i]);
  return out + "\r\n";
}

std::string csv_of(const std::vector<Column>& columns, const std::vector<Json>& rows) {
  // A file gets the texts as they are, a terminal none that steers it.
  const bool for_terminal = is_terminal(STDOUT_FILENO);
  std::vector<std::string> fields;
  fields.reserve(columns.size());
  for (const Column& column : columns)
    fields.push_back(column.key);
  std::string out = csv_record(fields);
  for (const Json& row : rows) {
    fields.clear();
    for (const Column& column : columns) {
      const Json* const value = row.find(column.key);
      const std::string text = value == nullptr ? std::string() : text_of(*value);
      fields.push_back(for_terminal ? printable(text, true) : text);
    }
    out += csv_record(fields);
  }
  return out;
}

std::vector<std::string> cells_of(const std::vector<Column>& columns, const Json& row) {
  std::vector<std::string> cells;
  cells.reserve(columns.size());
  for (const Column& column : columns)
    cells.push_back(cell_of(column, row));
  return cells;
}

}  // namespace

void Output::table(const std::vector<Column>& columns, const std::vector<Json>& rows) {
  if (json_) {
    for (const Json& row : rows)
      write(dumped(row) + "\n");
  } else if (csv_) {
    write(csv_of(columns, rows));
  } else if (!rows.empty()) {
    print_rows(columns, rows);
  }
}

std::vector<std::size_t> Output::print_rows(const std::vector<Column>& columns,
                                            const std::vector<Json>& rows) {
  std::vector<std::vector<std::string>> lines(1);
  for (const Column& column : columns)
    lines.front().push_back(column.title);
  for (const Json& row : rows)
    lines.push_back(cells_of(columns, row));
  std::vector<std::size_t> widths(columns.size(), 0);
  for (const auto& line : lines) {
    for (std::size_t i = 0; i < line.size(); ++i)
      widths[i] = std::max(widths[i], display_width(line[i]));
  }
  std::string out;
  for (const auto& line : lines)
    append_row(out, line, widths);
  write(out);
  return widths;
}

void RowPrinter::add(const Json& row) {
  constexpr std::size_t kHeldBack = 1000;
  if (output_.json())
    return output_.write(dumped(row) + "\n");
  if (widths_.empty()) {
    first_.push_back(row);
    if (first_.size() == kHeldBack)
      finish();
    return;
  }
  std::string out;
  append_row(out, cells_of(columns_, row), widths_);
  output_.write(out);
}

void RowPrinter::add_texts(std::initializer_list<std::string_view> texts) {
  line_.clear();
  std::size_t column = 0;
  for (const std::string_view text : texts) {
    const std::size_t begin = line_.size();
    line_ += printable(text);
    if (++column == texts.size())
      break;
    const std::size_t used = display_width(std::string_view(line_).substr(begin));
    const std::size_t width = widths_[column - 1];
    line_.append(width - std::min(width, used), ' ').append(kGap);
  }
  output_.write(line_ += '\n');
}

void RowPrinter::finish() {
  if (!first_.empty())
    widths_ = output_.print_rows(columns_, first_);
  first_.clear();
}

void Output::details(const std::vector<Column>& fields, const Json& object) {
  if (json_) {
    write(dumped(object) + "\n");
    return;
  }
  if (csv_)
    return write(csv_of(fields, {object}));
  std::size_t width = 0;
  for (const Column& field : fields)
    width = std::max(width, display_width(field.title));
  std::string out;
  for (const Column& field : fields)
    append_row(out, {field.title, cell_of(field, object)}, {width, 0});
  write(out);
}

void Output::forget_last() {
  last_message_.clear();
  last_record_.clear();
}

void Output::result(const Json& object, std::string_view text) {
  last_message_ = object.text_at("message");
  last_record_ = object.text_at("record");
  write((json_ ? dumped(object) : std::string(text)) + "\n");
  if (failure_ == 0 && std::fflush(stdout) != 0)
    failure_ = errno;
}

void Output::raw(std::string_view bytes) {
  write(bytes);
}

Output::Output() : coloured_(may_colour(STDOUT_FILENO)) {}

std::string Output::light(std::string_view word) const {
  if (json_ || !coloured_)
    return std::string(word);
  const std::string_view colour = word == session::kGreen    ? "\x1b[32m"
                                  : word == session::kYellow ? "\x1b[33m"
                                                             : "\x1b[31m";
  return std::string(colour) + std::string(word) + "\x1b[0m";
}

void Output::write(std::string_view bytes) {
  if (failure_ == 0 && std::fwrite(bytes.data(), 1, bytes.size(), stdout) != bytes.size())
    failure_ = errno;
}

void Output::finish() {
  if (std::fflush(stdout) != 0 && failure_ == 0)
    failure_ = errno;
  if (failure_ != 0 && failure_ != EPIPE) {
    throw base::RuntimeError(
        failure_ == ENOSPC ? base::error::kDiskFull : base::error::kPathFileAccess,
        std::string("Cannot write to standard output: ") + std::strerror(failure_));  // NOLINT
  }
}

}  // namespace twk::cli
