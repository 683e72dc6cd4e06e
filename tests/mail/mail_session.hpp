#pragma once

#include "support/lab_session.hpp"
#include "windows/create_user.hpp"
#include "windows/state/form1.hpp"

namespace twk::test {

inline const std::string kPlace = "OU=Head Office,O=Tarnwick";

/// A lab session whose site has the lab's Exchange 5.5 server.
class MailSession : public LabSession {
 public:
  explicit MailSession(lab::DomainKind kind = lab::DomainKind::kNative, std::string_view command_line = "")
      : LabSession(kind, command_line) {
    site.ExchangeServer = "EX55";
    site.ExchangeOrg = "Tarnwick";
    site.ExchangeSite = "Head Office";
  }
  void start_with(const std::vector<std::pair<std::string, std::string>>& rows) {
    start();
    std::filesystem::remove(folder.path() / "db/Log.txt");
    session.form1.ListView8.clear();
    for (const auto& [name, value] : rows)
      session.form1.ListView8.add({}, name, "MAIL", {value});
  }
  void create(std::string_view first = "Jo", std::string_view last = "Smith") {
    type_names(first, "", last);
    windows::CreateUser_Click(session);
  }
  platform::ObjectPtr object(const std::string& name) {
    return services.directory.GetObject("LDAP://EX55/" + name + "," + kPlace);
  }
  platform::ObjectPtr mailbox(const std::string& name) { return object("CN=" + name + ",CN=Recipients"); }
  /// An attribute of the mailbox; empty when it has none, or when there is no mailbox.
  std::string of(const std::string& name, std::string_view attribute) {
    std::string text;
    base::Trap trap;
    trap([&] { text = mailbox(name)->Get(attribute).text(); });
    return text;
  }
  [[nodiscard]] std::string light() const { return session.form1.MailAccount.caption; }
  [[nodiscard]] std::int32_t colour() const { return session.form1.MailAccount.colour; }
};

inline const std::vector<std::pair<std::string, std::string>> kRows = {
    {"Container", "Recipients"},
    {"Target-Address", "%first%.%last%@mail.test"},
    {"Replication-Sensitivity", "20"}};

inline std::vector<std::pair<std::string, std::string>> with_row(const std::string& name,
                                                                 const std::string& value) {
  auto rows = kRows;
  rows.emplace_back(name, value);
  return rows;
}

}  // namespace twk::test
