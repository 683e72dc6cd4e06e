#include "local/regedit.hpp"

#include "platform/utf16.hpp"

#include "base/errors.hpp"

namespace twk::local {
namespace {

constexpr std::string_view kKey = "HKEY_LOCAL_MACHINE\\Software\\Oxbrook\\TWK";

std::string with_key(std::string_view line) {
  return "REGEDIT4\r\n\r\n[" + std::string(kKey) + "]\r\n" + std::string(line) + "\r\n";
}

RegistryValue only_value(const RegistryTree& tree) {
  return tree.begin()->second.values.begin()->second;
}

TEST(RegeditTest, EveryTextSurvivesAndReadsAsItsLine) {
  const std::pair<std::string, std::string> cases[] = {
      {"", "\"\""},
      {"plain words", "\"plain words\""},
      {"\\\\FS1\\D$\\", "\"\\\\\\\\FS1\\\\D$\\\\\""},
      {"say \"yes\"", "\"say \\\"yes\\\"\""},
      {"Zo\xC3\xAB; [x]=y", "\"Zo\xC3\xAB; [x]=y\""},
      {"a\r\nb", "hex(1):61,0d,0a,62,00"},
      {"tab\t", "hex(1):74,61,62,09,00"},
      {std::string("a\0b\0", 4), "hex(1):61,00,62,00,00"},
      {"\xFF", "hex(1):ff,00"},
  };
  for (const auto& [text, right_side] : cases) {
    RegistryTree tree;
    set_registry_value(registry_key(tree, kKey), {"Value", text, {}});
    const std::string formatted = format_regedit(tree);
    EXPECT_EQ(formatted, with_key("\"Value\"=" + right_side));
    EXPECT_EQ(only_value(parse_regedit(formatted)).text, text) << right_side;
  }
}

TEST(RegeditTest, ValuesOfOtherKindsAreKeptUnchanged) {
  for (const std::string kind :
       {"dword:0000002A", "hex:01,02,\\\r\n  03,04", "hex(7):61,00,00", "HEX(2):25,00"}) {
    const std::string text = with_key("\"Value\"=" + kind);
    EXPECT_EQ(only_value(parse_regedit(text)).other, kind);
    EXPECT_EQ(format_regedit(parse_regedit(text)), text);
  }
}

TEST(RegeditTest, WhatAPersonWroteIsRead) {
  const RegistryTree tree = parse_regedit(
      "\xEF\xBB\xBFREGEDIT4\n"
      "; a comment\n"
      "  [HKEY_CURRENT_USER\\A]  \n"
      "@=\"nameless\"\n"
      "\"q\\\"uoted\" = \"first\"\n"
      "\n"
      "[hkey_current_user\\a]\n"
      "\"Q\\\"UOTED\"=hex(1):6c,\\\n  61,\\\n  73,74,00\n"
      "[HKEY_CURRENT_USER\\Empty]");
  EXPECT_EQ(format_regedit(tree),
            "REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\A]\r\n@=\"nameless\"\r\n\"q\\\"uoted\"=\"last\"\r\n"
            "\r\n[HKEY_CURRENT_USER\\Empty]\r\n");
}

TEST(RegeditTest, TheFormsThatARegistryEditorWritesAreRead) {
  const std::string version5 =
      "Windows Registry Editor Version 5.00\r\n\r\n[HKEY_CURRENT_USER\\A]\r\n\"a\"=\"Łódź\"\r\n"
      "\"b\"=hex(1):41,01,0a,00,00,00\r\n";
  const base::Bytes wide = platform::to_utf16(version5);
  const std::string little(wide.begin(), wide.end());
  std::string big = little;
  for (std::size_t i = 1; i < big.size(); i += 2)
    std::swap(big[i - 1], big[i]);
  for (const std::string& bytes : {"\xFF\xFE" + little, "\xFE\xFF" + big, version5}) {
    const RegistryTree tree = parse_regedit(regedit_text(bytes));
    EXPECT_EQ(tree.begin()->second.values.at("A").text, "Łódź");
    EXPECT_EQ(tree.begin()->second.values.at("B").text, "Ł\n");
  }
  EXPECT_EQ(regedit_text("REGEDIT4 \xFC"), "REGEDIT4 ü");
  EXPECT_THROW(regedit_text("\xFF\xFE\x41"), base::RuntimeError);
}

TEST(RegeditTest, WhatIsNotUnderstoodIsRefusedWithItsLine) {
  const struct {
    std::string text;
    std::string message;
  } cases[] = {
      {"", "line 1: the text begins with neither REGEDIT4 nor Windows Registry Editor Version 5.00"},
      {"Windows Registry Editor Version 5.00\n[A]\n\"a\"=hex(1):61\n",
       "line 3: the bytes of a text are not UTF-16"},
      {"REGEDIT4\n\"a\"=\"b\"\n", "line 2: a value comes before the first key"},
      {"REGEDIT4\n[A\n", "line 2: \"]\" is missing after the key"},
      {"REGEDIT4\n[]\n", "line 2: the key is empty"},
      {"REGEDIT4\n[-A]\n", "line 2: deleting a key is not supported"},
      {"REGEDIT4\n[A\tB]\n", "line 2: the key holds a control character"},
      {with_key("a=b"), "line 4: neither a key nor a value"},
      {with_key("\"a=b"), "line 4: a quote is not closed"},
      {with_key("\"a\"=\"b\\"), "line 4: a quote is not closed"},
      {with_key("\"a\" \"b\""), "line 4: \"=\" is missing after the name"},
      {with_key("\"a\"=\"b\" c"), "line 4: there is more after the closing quote"},
      {with_key("\"a\"=-"), "line 4: a value is neither quoted text nor dword or hex"},
      {with_key("\"a\"=hexagon"), "line 4: a value is neither quoted text nor dword or hex"},
      {with_key("\"a\"=hex(1):6"), "line 4: a byte is not two digits"},
      {with_key("\"a\"=hex(1):zz"), "line 4: a byte is not two digits"},
      {with_key("\"a\"=hex(1):61,"), "line 4: bytes are not separated by single commas"},
      {with_key("\"a\"=hex(1):61 62"), "line 4: bytes are not separated by single commas"},
      {with_key("\"a\"=hex:61,\\"), "line 4: the continuation of the value is missing"},
      {with_key("\"a\"=\"\xFF\""), "line 4: the text is not UTF-8"},
  };
  for (const auto& one : cases) {
    base::Trap trap;
    trap([&] { parse_regedit(one.text); });
    EXPECT_EQ(trap.number(), kInvalidFileFormat) << one.text;
    EXPECT_EQ(trap.description(), one.message) << one.text;
  }
}

}  // namespace
}  // namespace twk::local
