#include "lab/shares/lab_config.hpp"

#include <fcntl.h>

#include <algorithm>
#include <array>
#include <set>

#include "base/text.hpp"
#include "lab/store/errors.hpp"
#include "local/descriptor.hpp"
#include "local/replace_file.hpp"
#include "platform/security.hpp"

namespace twk::lab {
namespace {

constexpr std::uint32_t kInvalidCall = 5;
constexpr std::size_t kLongestNetbiosName = 15;

/// What is wrong with a value; the caller knows its line.
struct BadValue {
  std::string what;
};

constexpr int kMostMinutes = 99999;

int read_number(std::string_view text, int most) {
  const auto number = base::to_number(text);
  if (!number || *number < 0 || *number > most)
    throw BadValue{"not a number from 0 to " + base::to_text(most)};
  return *number;
}

bool read_switch(std::string_view text) {
  if (base::equals_fold(text, "on"))
    return true;
  if (base::equals_fold(text, "off"))
    return false;
  throw BadValue{"neither on nor off"};
}

DomainKind read_kind(std::string_view text) {
  if (base::equals_fold(text, "native"))
    return DomainKind::kNative;
  if (base::equals_fold(text, "mixed"))
    return DomainKind::kMixed;
  if (base::equals_fold(text, "nt"))
    return DomainKind::kNt;
  throw BadValue{"not one of native, mixed, nt"};
}

DefaultAnswer read_answer(std::string_view text) {
  if (base::equals_fold(text, "none"))
    return DefaultAnswer::kNone;
  if (base::equals_fold(text, "yes"))
    return DefaultAnswer::kYes;
  if (base::equals_fold(text, "no"))
    return DefaultAnswer::kNo;
  throw BadValue{"not one of yes, no, none"};
}

bool is_name_character(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' || c == '_';
}

void check_label(std::string_view label, std::size_t longest) {
  if (label.empty() || label.size() > longest)
    throw BadValue{"a name is empty or too long"};
  for (const char c : label) {
    if (!is_name_character(c))
      throw BadValue{"a name holds a character other than letters, digits, \"-\" and \"_\""};
  }
}

std::string read_domain(std::string_view text) {
  if (text.find('.') == base::npos)
    throw BadValue{"a DNS name has a dot"};
  if (text.size() > 255)
    throw BadValue{"a name is too long"};
  for (const std::string& label : base::split(text, '.'))
    check_label(label, 63);
  return std::string(text);
}

std::string read_netbios(std::string_view text) {
  check_label(text, kLongestNetbiosName);
  return std::string(text);
}

std::string read_privileges(std::string_view text) {
  for (const std::string& name : base::split(text, ' ')) {
    const auto known = known_privileges();
    const bool is_known = name.empty() || std::any_of(known.begin(), known.end(), [&](std::string_view one) {
                            return base::equals_fold(one, name);
                          });
    if (!is_known)
      throw BadValue{"there is no privilege " + name};
  }
  return std::string(text);
}

void read_setting(LabConfig& config, std::string_view name, std::string_view value) {
  if (name == "domain") {
    config.domain = read_domain(value);
  } else if (name == "netbios") {
    config.netbios = read_netbios(value);
  } else if (name == "kind") {
    config.kind = read_kind(value);
  } else if (name == "controller") {
    config.controller = read_netbios(value);
  } else if (name == "password.minimum_length") {
    config.passwords.minimum_length = read_number(value, 127);
  } else if (name == "password.complexity") {
    config.passwords.complexity = read_switch(value);
  } else if (name == "password.maximum_age") {
    config.passwords.maximum_age = read_number(value, 999);
  } else if (name == "lockout.threshold") {
    config.passwords.lockout_threshold = read_number(value, 999);
  } else if (name == "lockout.duration") {
    config.passwords.lockout_duration = read_number(value, kMostMinutes);
  } else if (name == "lockout.window") {
    config.passwords.lockout_window = read_number(value, kMostMinutes);
  } else if (name == "logon") {
    config.logon = value;
  } else if (name == "privileges") {
    config.privileges = read_privileges(value);
  } else if (name == "answer") {
    config.default_answer = read_answer(value);
  } else {
    throw BadValue{"no such setting"};
  }
}

void complete(LabConfig& config) {
  if (config.kind == DomainKind::kNt) {
    if (config.netbios.empty())
      throw BadValue{"a lab of kind nt needs \"netbios\""};
    return;
  }
  if (config.domain.empty())
    throw BadValue{"\"domain\" is missing"};
  if (config.netbios.empty()) {
    const std::string_view label = std::string_view(config.domain).substr(0, config.domain.find('.'));
    config.netbios = base::upper(label.substr(0, kLongestNetbiosName));
  }
}

LabConfig parse(const std::string& file, std::string_view text) {
  LabConfig config;
  std::set<std::string, std::less<>> seen;
  int line_number = 0;
  const auto located = [&](const std::string& what) {
    return file + ":" + base::to_text(line_number) + ": " + what;
  };
  try {
    for (const std::string& raw : base::split(text, '\n')) {
      ++line_number;
      std::string_view line = raw;
      if (line.ends_with('\r'))
        line.remove_suffix(1);
      line = base::trim(line);
      if (line.empty() || line.front() == '#')
        continue;
      const std::size_t equals = line.find('=');
      if (equals == base::npos)
        throw BadValue{"not of the form name = value"};
      const std::string name = base::lower(base::trim(line.substr(0, equals)));
      if (!seen.insert(name).second)
        throw BadValue{"\"" + name + "\" is given twice"};
      try {
        read_setting(config, name, base::trim(line.substr(equals + 1)));
      } catch (const BadValue& bad) {
        throw BadValue{"\"" + name + "\": " + bad.what};
      }
    }
    complete(config);
  } catch (const BadValue& bad) {
    raise(kInvalidCall, located(bad.what));
  }
  return config;
}

std::string_view kind_word(DomainKind kind) {
  if (kind == DomainKind::kMixed)
    return "mixed";
  return kind == DomainKind::kNt ? "nt" : "native";
}

std::string_view answer_word(DefaultAnswer answer) {
  if (answer == DefaultAnswer::kYes)
    return "yes";
  return answer == DefaultAnswer::kNo ? "no" : "none";
}

}  // namespace

std::span<const std::string_view> known_privileges() {
  static constexpr std::array<std::string_view, 6> kNames = {
      platform::privilege::kBackup, platform::privilege::kRestore, platform::privilege::kTakeOwnership,
      "SeSecurityPrivilege",        "SeChangeNotifyPrivilege",     "SeShutdownPrivilege"};
  return kNames;
}

const std::string& domain_name(const LabConfig& config) {
  return config.kind == DomainKind::kNt ? config.netbios : config.domain;
}

LabConfig read_lab_config(const std::filesystem::path& file) {
  const local::Descriptor input = local::open_descriptor(file.string(), O_RDONLY);
  return parse(file.string(), local::read_all(input, file.string()));
}

namespace {

std::string print(const LabConfig& config) {
  std::string text;
  const auto setting = [&](std::string_view name, std::string_view value) {
    text.append(name).append(" = ").append(value).append("\n");
  };
  if (!config.domain.empty())
    setting("domain", config.domain);
  if (!config.netbios.empty())
    setting("netbios", config.netbios);
  setting("kind", kind_word(config.kind));
  setting("controller", config.controller);
  setting("password.minimum_length", base::to_text(config.passwords.minimum_length));
  setting("password.complexity", config.passwords.complexity ? "on" : "off");
  setting("password.maximum_age", base::to_text(config.passwords.maximum_age));
  setting("lockout.threshold", base::to_text(config.passwords.lockout_threshold));
  setting("lockout.duration", base::to_text(config.passwords.lockout_duration));
  setting("lockout.window", base::to_text(config.passwords.lockout_window));
  if (!config.logon.empty())
    setting("logon", config.logon);
  if (config.privileges)
    setting("privileges", *config.privileges);
  setting("answer", answer_word(config.default_answer));
  return text;
}

}  // namespace

void check_lab_config(const LabConfig& config) {
  static_cast<void>(parse("the configuration", print(config)));
}

void write_lab_config(const std::filesystem::path& file, const LabConfig& config) {
  const std::string text = print(config);
  static_cast<void>(parse(file.string(), text));
  local::replace_file(file.string(), text, local::Access::kPrivate);
}

}  // namespace twk::lab
