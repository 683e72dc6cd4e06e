#pragma once

#include <set>

#include "contract/world.hpp"

namespace twk::contract {

using testing::ElementsAre;

class QueryContract : public Contract {
 protected:
  std::unique_ptr<platform::Recordset> run(const std::string& text,
                                           const platform::QueryOptions& options = {}) {
    return world_->query().execute(platform::parse_query_text(text), options);
  }

  std::string below_unit() const { return "<LDAP://" + world_->domain() + "/" + world_->unit() + ">;"; }

  void make_three_users() {
    make_user(w_, "Zoë Smith", "zsmith");
    platform::User ann(make_user(w_, "Ann", "ann"));
    ann.put_FullName("Zz Ann");
    ann.Put("userPrincipalName", "ann@" + w_.domain());
    ann.SetInfo();
    platform::User ben(make_user(w_, "Ben", "ben"));
    ben.put_FullName("Aa Ben");
    ben.SetInfo();
  }
};

TEST_P(QueryContract, FiltersFindTheObjectsThatTheyDescribe) {
  make_three_users();
  make_group(w_, "Readers");
  get_entry(w_, w_.unit())->Create("organizationalUnit", "OU=Below")->SetInfo();
  const std::string unit = world_->unit();
  const std::string unit_name = unit.substr(3, unit.find(',') - 3);
  const struct {
    const char* filter;
    const char* scope;
    std::vector<std::string> names;
  } cases[] = {
      {"(&(objectCategory=Person)(objectClass=User))", "onelevel", {"Ann", "Ben", "Zoë Smith"}},
      {"(&(objectCategory=OrganizationalUnit)(objectClass=OrganizationalUnit))", "onelevel", {"Below"}},
      {"(&(objectCategory=group)(objectClass=Group))", "SubTree", {"Readers"}},
      {"(&(objectCategory=Person)(objectClass=User)(cn=*smith*))", "subtree", {"Zoë Smith"}},
      {"(&(objectClass=user)(sAMAccountName=ANN))", "subtree", {"Ann"}},
      {"(&(objectClass=user)(!(sAMAccountName=ann)))", "onelevel", {"Ben", "Zoë Smith"}},
      {"(|(displayName=Aa Ben)(cn=zoë smith))", "onelevel", {"Ben", "Zoë Smith"}},
      {"(&(objectCategory=Person)(objectClass=User)(PrimaryGroupID=513))",
       "onelevel",
       {"Ann", "Ben", "Zoë Smith"}},
      {"(userAccountControl:1.2.840.113556.1.4.803:=512)", "onelevel", {"Ann", "Ben", "Zoë Smith"}},
      {"(objectClass=organizationalUnit)", "base", {unit_name}},
  };
  platform::QueryOptions by_name;
  by_name.sort_on = "name";
  for (const auto& one : cases) {
    EXPECT_EQ(column_of(w_, below_unit() + one.filter + ";name;" + one.scope, 0, by_name), one.names)
        << one.filter;
  }
}

TEST_P(QueryContract, PathsCarryTheProviderAndServerOfTheBase) {
  make_user(w_, "Jo", "jo");
  const std::string dn = "CN=Jo," + w_.unit();
  for (const std::string prefix : {"LDAP://", "GC://"}) {
    const std::string text =
        "<" + prefix + w_.domain() + ">;(sAMAccountName=jo);adsPath,distinguishedName;subtree";
    EXPECT_THAT(column_of(w_, text), ElementsAre(prefix + w_.domain() + "/" + dn));
    EXPECT_THAT(column_of(w_, text, 1), ElementsAre(dn));
  }
}

TEST_P(QueryContract, UserWithoutDisplayNameHasANullFieldAndSortsFirst) {
  make_three_users();
  platform::QueryOptions sorted;
  sorted.sort_on = "DisplayName";
  sorted.page_size = 2;
  const std::string text =
      below_unit() + "(&(objectCategory=Person)(objectClass=User));adsPath,DisplayName,name;onelevel";
  EXPECT_THAT(column_of(w_, text, 2, sorted), ElementsAre("Zoë Smith", "Ben", "Ann"));
  const auto rows = run(text, sorted);
  EXPECT_TRUE(rows->field(1).is_empty());
  rows->MoveNext();
  EXPECT_EQ(rows->field(1).text(), "Aa Ben");
}

TEST_P(QueryContract, WalksInPagesGoOnBesideEachOtherAndMayBeLeftInTheMiddle) {
  make_three_users();
  platform::QueryOptions paged;
  paged.page_size = 1;
  const std::string text = below_unit() + "(objectClass=user);name;onelevel";
  const auto rest = [](platform::Recordset& rows) {
    std::set<std::string> names;
    for (; !rows.at_eof(); rows.MoveNext())
      EXPECT_TRUE(names.insert(rows.field(0).text()).second);
    return names;
  };
  const std::set<std::string> all = {"Ann", "Ben", "Zoë Smith"};
  const auto first = run(text, paged);
  const auto second = run(text, paged);
  first->MoveNext();
  second->MoveNext();
  run(text, paged)->MoveNext();
  const auto closed = run(text, paged);
  closed->Close();
  EXPECT_EQ(rest(*run(text, paged)), all);
  EXPECT_EQ(rest(*first).size(), 2U);
  EXPECT_EQ(rest(*second).size(), 2U);
  second->MoveFirst();
  EXPECT_EQ(rest(*second), all);
}

TEST_P(QueryContract, BothEndsOfARecordsetAreKnown) {
  const std::string text = below_unit() + "(objectClass=user);name;onelevel";
  const auto none = run(text);
  EXPECT_TRUE(none->at_eof() && none->at_bof());
  make_three_users();
  const auto rows = run(text);
  rows->MoveFirst();
  EXPECT_FALSE(rows->at_bof());
  rows->MoveLast();
  EXPECT_FALSE(rows->at_eof());
  rows->MoveNext();
  EXPECT_TRUE(rows->at_eof());
  EXPECT_NE(number_of([&] { static_cast<void>(rows->field(0)); }), 0U);
}

TEST_P(QueryContract, RowsOutliveTheObjectsTheyShow) {
  make_three_users();
  const auto rows = run(below_unit() + "(objectClass=user);adsPath,name,displayName;onelevel");
  const platform::ObjectPtr unit = get_entry(w_, w_.unit());
  for (const char* const name : {"CN=Ann", "CN=Ben", "CN=Zoë Smith"})
    unit->Delete("user", name);
  int count = 0;
  for (; !rows->at_eof(); rows->MoveNext()) {
    EXPECT_TRUE(rows->field(0).text().starts_with("LDAP://"));
    EXPECT_FALSE(rows->field(1).text().empty());
    ++count;
  }
  EXPECT_EQ(count, 3);
}

TEST_P(QueryContract, DomainsAndPrincipalNamesAreFoundBelowTheForestsPath) {
  make_three_users();
  const std::string forest = children_of(w_.directory().GetObject("GC:")).back()->ADsPath();
  EXPECT_THAT(column_of(w_, "<" + forest +
                                ">;(&(objectCategory=Domain)(objectClass=Domain));distinguishedName;subTree"),
              ElementsAre(w_.root()));
  const std::string by_principal =
      "<" + forest + ">;(&(objectClass=user)(objectCategory=person)(userprincipalName=";
  const std::string rest = "));userPrincipalName,cn,distinguishedName;subtree";
  EXPECT_THAT(column_of(w_, by_principal + "ANN@" + w_.domain() + rest, 1), ElementsAre("Ann"));
  EXPECT_THAT(column_of(w_, by_principal + "nobody@" + w_.domain() + rest, 1), ElementsAre());
}

TEST_P(QueryContract, GroupTokenIsTheRelativeIdOfTheGroup) {
  const std::string text = "<LDAP://" + w_.domain() +
                           ">;(&(objectCategory=group)(objectClass=Group)(cn=Domain "
                           "Users));adsPath,Name,primaryGroupToken;SubTree";
  EXPECT_THAT(column_of(w_, text, 1), ElementsAre("Domain Users"));
  EXPECT_EQ(run(text)->field(2), platform::Value(513));
}

TEST_P(QueryContract, QueryThatCannotBeAnsweredRaises) {
  const std::string good = "(objectClass=user);name;onelevel";
  for (const std::string& text :
       {below_unit() + "(objectClass=user;name;onelevel", below_unit() + "((;name;onelevel",
        "<LDAP://" + w_.domain() + "/OU=Nowhere," + w_.root() + ">;" + good,
        "<LDAP://elsewhere.example>;" + good, "<HTTP://" + w_.domain() + ">;" + good}) {
    EXPECT_NE(number_of([&] { run(text); }), 0U) << text;
  }
}

}  // namespace twk::contract
