#include "directory/read_once.hpp"

#include <variant>

#include "base/errors.hpp"
#include "directory/load_options.hpp"
#include "session/session.hpp"

namespace twk::directory {
namespace {

using session::KnownValues;

void add_value(KnownValues& values, const platform::Value& value, const std::string& owner) {
  for (const platform::Value& one : value.list()) {
    if (const auto* const text = std::get_if<std::string>(&one.data))
      values.add(*text, owner);
    else
      values.add_other();
  }
}

KnownValues read_values(session::Session& session, const ValuesWanted& wanted) {
  platform::QueryText query{wanted.base, wanted.filter, {wanted.attribute}, wanted.scope};
  if (!wanted.owner.empty())
    query.attributes.push_back(wanted.owner);
  platform::QueryOptions options = query_options(read_load_options(session));
  options.sort_on.clear();
  const auto rows = session.platform.query.execute(query, options);
  KnownValues values;
  for (; !rows->at_eof(); rows->MoveNext())
    add_value(values, rows->field(0), wanted.owner.empty() ? std::string() : rows->field(1).text());
  return values;
}

/// A domain that cannot be searched is asked line by line as before.
KnownValues values_or_none(session::Session& session, const std::function<ValuesWanted()>& wanted) {
  KnownValues values;
  base::Trap trap;
  if (!trap([&] { values = read_values(session, wanted()); }))
    values.add_other();
  return values;
}

}  // namespace

KnownValues::Answer find_value(session::Session& session, session::ReadOnce& known,
                               const std::function<ValuesWanted()>& wanted, std::string_view value) {
  constexpr std::int32_t kFewQuestions = 20;
  if (!known.values) {
    if (++known.questions <= kFewQuestions)
      return KnownValues::Answer::kAsk;
    known.values = values_or_none(session, wanted);
  }
  return known.values->find(value);
}

}  // namespace twk::directory
