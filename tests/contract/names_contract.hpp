#pragma once

#include "contract/world.hpp"
#include "platform/ldap_text.hpp"
#include "platform/query.hpp"

namespace twk::contract {

/// Names that a person may type and that mean something else to a filter, a name or a path.
class NamesContract : public Contract {
 protected:
  /// Names of the objects of a class below the unit that have exactly this one.
  std::vector<std::string> found(const std::string& object_class, const std::string& name) {
    return column_of(w_, "<LDAP://" + w_.domain() + "/" + w_.unit() + ">;(&(objectClass=" + object_class +
                             ")(name=" + platform::escape_filter_value(name) + "));name;subtree");
  }
};

/// 64 characters are the most that a name has ([MS-ADSC] attribute cn, rangeUpper).
TEST_P(NamesContract, HostileNamesAreMadeFoundRenamedAndDeleted) {
  const std::string longest(64, 'x');
  const std::string names[] = {
      "*)(objectClass=*", "cn=a,ou=b", "# leading", "\"quoted\" \\ back", "a+b;c<d>e", "slash/in/it",
      "Жанна Дарк",       "smile 😀",   "(((",       "%SamName%",          longest};
  const std::pair<const char*, const char*> kinds[] = {
      {"user", "CN="}, {"group", "CN="}, {"organizationalUnit", "OU="}};
  const platform::ObjectPtr unit = get_entry(w_, w_.unit());
  int number = 0;
  for (const auto& [object_class, type] : kinds) {
    for (const std::string& name : names) {
      SCOPED_TRACE(std::string(object_class) + " " + name);
      const std::string rdn = type + platform::escape_dn_value(name);
      const auto object = unit->Create(object_class, rdn);
      if (std::string_view(object_class) != "organizationalUnit")
        object->Put("samAccountName", "hostile" + std::to_string(++number));
      object->SetInfo();
      EXPECT_THAT(found(object_class, name), testing::ElementsAre(name));
      EXPECT_EQ(w_.directory().GetObject(object->ADsPath())->Get("name").text(), name);
      const auto renamed = unit->MoveHere(object->ADsPath(), type + std::string("Tame"));
      EXPECT_THAT(found(object_class, name), testing::IsEmpty());
      const auto back = unit->MoveHere(renamed->ADsPath(), rdn);
      EXPECT_EQ(back->ADsPath(), object->ADsPath());
      unit->Delete(object_class, rdn);
      EXPECT_THAT(found("*", name), testing::IsEmpty());
    }
  }
}

TEST_P(NamesContract, NamesThatNoObjectCanHaveAreRefused) {
  const std::string too_long(65, 'x');
  const std::string names[] = {too_long, std::string("nul\0in it", 9), "", "tab\tin it"};
  const platform::ObjectPtr unit = get_entry(w_, w_.unit());
  for (const char* const object_class : {"user", "group"}) {
    for (const std::string& name : names) {
      EXPECT_NE(number_of([&] {
                  store(unit->Create(object_class, "CN=" + platform::escape_dn_value(name)),
                        {{"samAccountName", "refused"}});
                }),
                0U)
          << object_class << " " << name;
    }
  }
  EXPECT_EQ(number_of([&] { get_account(w_, "refused"); }), platform::ads_error::kUserNotFound);
}

/// A filter of such a text finds what it spells and nothing else.
TEST_P(NamesContract, LookUpsByNameFindNothingElse) {
  make_user(w_, "Jo", "jo");
  for (const char* const name : {"*", "*)(objectClass=*", "jo)(cn=*", "\\2a", "j?", ""})
    EXPECT_NE(number_of([&] { get_account(w_, name); }), 0U) << name;
}

}  // namespace twk::contract
