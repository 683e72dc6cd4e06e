#include "cli/terminal/output.hpp"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "base/errors.hpp"
#include "cli/terminal/display.hpp"
#include "session/activity_log.hpp"

namespace twk::cli {
namespace {

constexpr std::string_view kGap = "  ";

std::string dumped(const Json& object) {
  return object.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
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
  if (value.is_string())
    return value.get<std::string>();
  if (value.is_boolean())
    return value.get<bool>() ? "yes" : "no";
  if (value.is_null())
    return {};
  if (!value.is_array())
    return value.dump();
  std::string out;
  for (const Json& element : value)
    out += (out.empty() ? "" : ", ") + text_of(element);
  return out;
}

std::string Output::cell(const Column& column, const Json& row) const {
  const auto found = row.find(column.key);
  return found == row.end() ? std::string() : printable(text_of(*found));
}

void Output::table(const std::vector<Column>& columns, const std::vector<Json>& rows) {
  if (json_) {
    for (const Json& row : rows)
      write(dumped(row));
    return;
  }
  if (rows.empty())
    return;
  std::vector<std::vector<std::string>> lines(1);
  for (const Column& column : columns)
    lines.front().push_back(column.title);
  for (const Json& row : rows) {
    std::vector<std::string>& line = lines.emplace_back();
    for (const Column& column : columns)
      line.push_back(cell(column, row));
  }
  std::vector<std::size_t> widths(columns.size(), 0);
  for (const auto& line : lines) {
    for (std::size_t i = 0; i < line.size(); ++i)
      widths[i] = std::max(widths[i], display_width(line[i]));
  }
  std::string out;
  for (const auto& line : lines)
    append_row(out, line, widths);
  write(out);
}

void Output::details(const std::vector<Column>& fields, const Json& object) {
  if (json_) {
    write(dumped(object));
    return;
  }
  std::size_t width = 0;
  for (const Column& field : fields)
    width = std::max(width, display_width(field.title));
  std::string out;
  for (const Column& field : fields)
    append_row(out, {field.title, cell(field, object)}, {width, 0});
  write(out);
}

void Output::result(const Json& object, std::string_view text) {
  write(json_ ? dumped(object) : std::string(text) + "\n");
  if (failure_ == 0 && std::fflush(stdout) != 0)
    failure_ = errno;
}

void Output::raw(std::string_view bytes) {
  write(bytes);
}

std::string Output::light(std::string_view word) const {
  if (json_ || !may_colour(STDOUT_FILENO))
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
