#include "cli/worlds/lab_import.hpp"

#include <optional>

#include "ads/dn.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "cli/terminal/failures.hpp"
#include "lab/making/lab_create.hpp"
#include "lab/store/entry_store.hpp"
#include "local/replace_file.hpp"

namespace twk::cli {
namespace {

void tell_warning(const std::string& warning) {
  complain(warning);
}

/// The first value of an attribute of a record.
std::string value_of(const lab::LdifRecord& record, std::string_view name) {
  for (const lab::LdifAttribute& attribute : record.attributes) {
    if (base::equals_fold(attribute.name, name) && !attribute.values.empty())
      return attribute.values.front();
  }
  return {};
}

/// "twk.test" of "DC=twk,DC=test"; nothing for a name that has other parts.
std::string dns_name(std::string_view dn) {
  std::string name;
  for (const std::string_view part : ads::split_dn(dn)) {
    const ads::Rdn rdn = ads::parse_rdn(part);
    if (!base::equals_fold(rdn.type, "DC"))
      return {};
    name += (name.empty() ? "" : ".") + rdn.value;
  }
  return name;
}

/// A lab of the exported domain.
lab::LabPlan plan_of(std::string_view text) {
  std::optional<lab::LabPlan> plan;
  lab::read_ldif(text, [&](const lab::LdifRecord& record) {
    if (plan)
      return;
    const std::string domain = dns_name(record.dn);
    if (domain.empty() || base::starts_with_fold(record.dn, "DC=ForestDnsZones") ||
        base::starts_with_fold(record.dn, "DC=DomainDnsZones"))
      return;
    plan.emplace();
    plan->domain = domain;
    plan->kind =
        value_of(record, "nTMixedDomain") == "1" ? lab::DomainKind::kMixed : lab::DomainKind::kNative;
    plan->users = plan->groups = plan->ous = 0;
    plan->exchange.reset();
  });
  if (!plan)
    throw BadInput("There is no entry of a domain (\"dn: DC=…\") in the file, so no lab was made.");
  return *plan;
}

LabImport make_lab(const std::filesystem::path& folder, std::string_view text) {
  const bool was_there = std::filesystem::exists(folder);
  lab::create_lab(folder, plan_of(text));
  try {
    local::replace_file((folder / "domain.ldif").string(), text, local::Access::kPrivate);
    LabImport result;
    result.made = true;
    result.added = lab::open_entry_store(folder, "domain", tell_warning)->size();
    return result;
  } catch (...) {
    std::filesystem::remove_all(folder);
    if (was_there)
      std::filesystem::create_directory(folder);
    throw;
  }
}

void take(lab::EntryStore& store, lab::LdifRecord&& record, LabImport& result) {
  switch (record.type) {
    case lab::ChangeType::kContent:
    case lab::ChangeType::kAdd:
      if (store.find(record.dn) != nullptr) {
        ++result.skipped;
        return;
      }
      store.add(record.dn, std::move(record.attributes), [] {});
      ++result.added;
      return;
    case lab::ChangeType::kModify:
      store.modify(record.dn, record.modifications, [] {});
      break;
    case lab::ChangeType::kDelete:
      store.remove(record.dn, [] {});
      break;
    case lab::ChangeType::kModRdn:
      store.rename(record.dn, record.new_rdn, record.new_superior.value_or(std::string()), [] {});
      break;
  }
  ++result.changed;
}

LabImport add_to_lab(const std::filesystem::path& folder, std::string_view text) {
  const auto store = lab::open_entry_store(folder, "domain", tell_warning);
  LabImport result;
  lab::read_ldif(text, [](const lab::LdifRecord&) {});
  store->begin_batch();
  std::optional<std::string> refused;
  lab::read_ldif(text, [&](lab::LdifRecord&& record) {
    if (refused)
      return;
    const std::string place = "Line " + std::to_string(record.line) + " (" + record.dn + "): ";
    base::Trap trap;
    if (!trap([&] { take(*store, std::move(record), result); }))
      refused = place + trap.description();
  });
  store->end_batch();
  if (refused) {
    throw BadInput(*refused + ". " + std::to_string(result.added + result.changed) +
                   " records before it were imported.");
  }
  return result;
}

}  // namespace

LabImport import_ldif(const std::filesystem::path& folder, std::string_view text) {
  return std::filesystem::exists(folder / "lab.conf") ? add_to_lab(folder, text) : make_lab(folder, text);
}

}  // namespace twk::cli
