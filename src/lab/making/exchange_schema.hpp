#pragma once

#include <string_view>

#include "ads/schema.hpp"

/// The part of an Exchange 5.5 directory's schema that mailbox administration meets. Bytes are held as
/// hexadecimal text, so that a value of `ads::Syntax::kOctetString` is digits, not raw bytes.
namespace twk::lab {

/// None for an attribute that the schema does not know. Folds case.
const ads::AttributeSchema* find_exchange_attribute(std::string_view name);

struct ExchangeClass {
  std::string_view name;   ///< "OrganizationalPerson"
  std::string_view chain;  ///< its superior classes, from "top" down, then itself, with blanks between
};
/// None for a class that a caller cannot make an object of. Folds case.
const ExchangeClass* find_exchange_class(std::string_view name);

}  // namespace twk::lab
