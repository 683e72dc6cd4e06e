#include "format/reference.hpp"

#include <array>

namespace twk::format {
namespace {

constexpr std::array kParts = {
    FormatPart{"%first%", "The first name", "%first%", "John"},
    FormatPart{"%middle%", "The middle name", "%middle%", "Fred"},
    FormatPart{"%last%", "The last name", "%last%", "Smith"},
    FormatPart{"%n%, %nn%, %nnn%",
               "A serial number with at least 1, 2 or 3 digits, which increases until the name is free; it "
               "begins with the setting IncNumber",
               "%last%%nn%", "Smith01"},
    FormatPart{"%IMPORT1% to %IMPORT99%", "That field of the line that is being imported", "%IMPORT2%",
               "Sales"},
    FormatPart{"%IMPORT:Department%", "The field under that heading of the file", "%IMPORT:Department%",
               "Sales"},
    FormatPart{"1 to 9 before a tag", "Only so many first letters", "1%first%%last%", "JSmith"},
    FormatPart{"1 to 9 after a tag", "Only so many last letters", "%first%2", "hn"},
    FormatPart{"#", "Is never printed; keeps a digit away from the tag before it", "%last%#1%first%",
               "SmithJ"},
    FormatPart{"#U before a tag", "In capitals, also with a number of letters", "#U%first%", "JOHN"},
    FormatPart{"#L before a tag", "In small letters, also with a number of letters", "#L%first%2", "hn"},
    FormatPart{"Anything else", "Is printed as it stands", "%first%.%last%", "John.Smith"},
    FormatPart{"All together", "First letter in capitals, last name in small letters", "#U1%first%#L%last%",
               "Jsmith"},
};

constexpr std::array kVariables = {
    KnownVariable{
        "%UserName%", "The account name",
        "paths, shares, passwords, accounts of permissions, mail and terminal-server rows, commands"},
    KnownVariable{"%Account%", "The account name that was found to be free", "rows of the directory table"},
    KnownVariable{"%Domain%", "The domain",
                  "accounts of permissions, directory and mail rows, commands; in a row of the Exchange 2000 "
                  "table with an \"@\" in front"},
    KnownVariable{"%Server%", "The site's file server", "paths, terminal-server rows, commands"},
    KnownVariable{"%NTServer%", "The same", "commands after a move"},
    KnownVariable{"%EXServer%", "The site's mail server", "mail rows, commands"},
    KnownVariable{"%EXSite%", "The site's Exchange site", "mail rows, commands"},
    KnownVariable{"%EXorg%", "The site's Exchange organization", "mail rows, commands"},
};

}  // namespace

std::span<const FormatPart> all_format_parts() {
  return kParts;
}

std::span<const KnownVariable> all_known_variables() {
  return kVariables;
}

}  // namespace twk::format
