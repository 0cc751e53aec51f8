#include "mof/TMofLexer.h"

#include <gtest/gtest.h>

#include "tests/mof/Mof.h"

namespace havtest {
namespace {

using hav::mof::TMofLexer;
using hav::mof::TMofReport;
using hav::mof::TMofText;
using hav::mof::TMofToken;
using EKind = TMofToken::EKind;

struct Seen {
  EKind kind;
  std::string text;
};
bool operator==(const Seen& a, const Seen& b) { return a.kind == b.kind && a.text == b.text; }
std::ostream& operator<<(std::ostream& out, const Seen& seen) {
  return out << static_cast<int>(seen.kind) << " " << seen.text;
}

struct Tokens {
  std::vector<Seen> seen;
  Lines messages;
};

Tokens Lex(const std::string& content) {
  const TMofText text("a.mof", content);
  TMofReport report;
  TMofLexer lexer(text, report);
  Tokens tokens;
  for (auto token = lexer.Next(); token.kind != EKind::kEnd; token = lexer.Next())
    tokens.seen.push_back({token.kind, std::string(token.text)});
  tokens.messages = Messages(report);
  return tokens;
}

std::vector<Seen> Sound(const std::string& content) {
  auto tokens = Lex(content);
  EXPECT_EQ(Lines{}, tokens.messages) << content;
  return tokens.seen;
}

std::string StringOf(const std::string& content) {
  const auto seen = Sound(content);
  EXPECT_EQ(1u, seen.size());
  EXPECT_EQ(EKind::kString, seen.at(0).kind);
  return TMofLexer::StringValue(seen.at(0).text);
}

char16_t CharacterOf(const std::string& content) {
  const auto seen = Sound(content);
  EXPECT_EQ(1u, seen.size());
  EXPECT_EQ(EKind::kCharacter, seen.at(0).kind);
  return TMofLexer::CharacterValue(seen.at(0).text);
}

TEST(TMofLexer, NamesAliasesPragmasAndPunctuation) {
  EXPECT_EQ((std::vector<Seen>{{EKind::kName, "class"},
                               {EKind::kName, "CIM_A1"},
                               {EKind::kName, "_x"},
                               {EKind::kAlias, "$Alias_1"},
                               {EKind::kPragma, "#PRAGMA"},
                               {EKind::kPunctuation, "{"},
                               {EKind::kPunctuation, "}"},
                               {EKind::kPunctuation, "="}}),
            Sound("class CIM_A1 _x $Alias_1 #PRAGMA{}="));
}

TEST(TMofLexer, BothFormsOfComment) {
  EXPECT_EQ((std::vector<Seen>{{EKind::kName, "a"}, {EKind::kName, "b"}, {EKind::kName, "c"}}),
            Sound("a/* \" * / \n */b// $ \" /*\r\nc // end"));
}

TEST(TMofLexer, EveryFormOfInteger) {
  for (const auto* text : {"0", "7", "12345678901234567890", "+5", "-5", "017", "-017", "0x1F",
                           "0XaB", "-0xff", "101b", "0B", "-1B"})
    EXPECT_EQ((std::vector<Seen>{{EKind::kInteger, text}}), Sound(text));
}

TEST(TMofLexer, EveryFormOfReal) {
  for (const auto* text : {"1.0", ".5", "-.5", "+2.5", "1.5e10", "1.5E+10", "1.5e-10"})
    EXPECT_EQ((std::vector<Seen>{{EKind::kReal, text}}), Sound(text));
}

TEST(TMofLexer, WrongNumbersAreReportedWhole) {
  for (const std::string text :
       {"12abc", "089", "0x", "0xG", "1.", "1.2.3", "1.5e", "102b", "1_0"}) {
    const auto tokens = Lex(" " + text + ";");
    EXPECT_EQ((std::vector<Seen>{{EKind::kBroken, text}, {EKind::kPunctuation, ";"}}), tokens.seen);
    EXPECT_EQ((Lines{"a.mof:1:2: error: '" + text + "' is not a number"}), tokens.messages);
  }
}

TEST(TMofLexer, StringsWithEveryEscape) {
  EXPECT_EQ("\b\t\n\f\r\"'\\", StringOf(R"("\b\t\n\f\r\"\'\\")"));
  EXPECT_EQ("AB", StringOf(R"("\x41\X0042")"));
  EXPECT_EQ("A1", StringOf(R"("\x00411")"));
  EXPECT_EQ("Jg", StringOf(R"("\x4ag")"));
  EXPECT_EQ("\xC3\xA9\xE2\x82\xAC", StringOf(R"("\xe9\x20AC")"));
  EXPECT_EQ("\xF0\x9F\x98\x80", StringOf(R"("\xD83D\xDE00")"));
  EXPECT_EQ(std::string(1, '\0'), StringOf(R"("\x0")"));
  EXPECT_EQ("", StringOf(R"("")"));
}

TEST(TMofLexer, AdjacentStringsAreOne) {
  EXPECT_EQ("abc", StringOf("\"a\" // \"no\"\r\n \"b\" /* \"no\" */\"c\""));
}

TEST(TMofLexer, Utf8IsKept) {
  EXPECT_EQ("h\xC3\xA9 \xF0\x9F\x98\x80", StringOf("\"h\xC3\xA9 \xF0\x9F\x98\x80\""));
}

TEST(TMofLexer, OtherBytesAreKeptWithOneWarning) {
  const auto tokens = Lex("\"a\xE9\" ; \"\xFF\"");
  ASSERT_EQ(3u, tokens.seen.size());
  EXPECT_EQ("a\xE9", TMofLexer::StringValue(tokens.seen[0].text));
  EXPECT_EQ((Lines{"a.mof:1:3: warning: the text is not UTF-8; its bytes are taken as they are"}),
            tokens.messages);
}

TEST(TMofLexer, UnknownEscapesAreTakenAsTheyAreWritten) {
  EXPECT_EQ((Lines{R"(a.mof:1:3: warning: unknown escape '\q' is taken as it is written)"}),
            Lex(R"("a\q")").messages);
  EXPECT_EQ((Lines{R"(a.mof:1:2: warning: unknown escape '\x' is taken as it is written)"}),
            Lex(R"("\xg")").messages);
  EXPECT_EQ((Lines{R"(a.mof:1:2: warning: unknown escape '\x' is taken as it is written)"}),
            Lex(R"("\xD83D")").messages);
  EXPECT_EQ((Lines{R"(a.mof:1:2: warning: unknown escape '\x' is taken as it is written)"}),
            Lex(R"("\xDE00")").messages);
  EXPECT_EQ((std::vector<Seen>{{EKind::kString, R"("\q" "b")"}}), Lex(R"("\q" "b")").seen);
  EXPECT_EQ(R"(a\qb\x\xD83D")", TMofLexer::StringValue(R"("a\qb" "\x\xD83D\"")"));
}

TEST(TMofLexer, BackslashesInIncludedNamesSeparateFolders) {
  EXPECT_EQ(Lines{}, Lex(R"(#pragma include ("new\CIM_X.mof"))").messages);
  EXPECT_EQ(R"(new\CIM_X.mof)", TMofLexer::FileName(R"("new\CIM" "_X.mof")"));
  EXPECT_EQ(R"(\a"b)", TMofLexer::FileName(R"("\\a\"b")"));
  EXPECT_EQ(1u, Lex(R"(#pragma namespace ("a\q"))").messages.size());
}

TEST(TMofLexer, StringsEndOnTheirLine) {
  const auto tokens = Lex("a \"b\nc");
  EXPECT_EQ((Lines{"a.mof:1:3: error: the string is not closed on its line"}), tokens.messages);
  EXPECT_EQ((std::vector<Seen>{{EKind::kName, "a"}, {EKind::kBroken, "\"b"}, {EKind::kName, "c"}}),
            tokens.seen);
  EXPECT_EQ((Lines{"a.mof:1:1: error: the string is not closed on its line"}),
            Lex("\"a\\\"").messages);
  EXPECT_EQ((Lines{"a.mof:1:1: error: the string is not closed on its line"}),
            Lex("\"a\\").messages);
}

TEST(TMofLexer, Characters) {
  EXPECT_EQ(u'x', CharacterOf("'x'"));
  EXPECT_EQ(u'\'', CharacterOf(R"('\'')"));
  EXPECT_EQ(u'"', CharacterOf("'\"'"));
  EXPECT_EQ(u'\n', CharacterOf(R"('\n')"));
  EXPECT_EQ(u'\xE9', CharacterOf("'\xC3\xA9'"));
  EXPECT_EQ(static_cast<char16_t>(0xD800), CharacterOf(R"('\xD800')"));
}

TEST(TMofLexer, WrongCharacters) {
  for (const std::string text : {"''", "'ab'", "'", "'\xF0\x9F\x98\x80'", R"('\q')"})
    EXPECT_EQ((Lines{"a.mof:1:1: error: a character stands alone between single quotes, as 'x'"}),
              Lex(text).messages)
        << text;
}

TEST(TMofLexer, WhatTheLanguageDoesNotHave) {
  EXPECT_EQ(
      (Lines{"a.mof:1:1: error: unexpected character '@'",
             "a.mof:1:5: error: unexpected character '\xC3\xA9'",
             "a.mof:1:7: error: unexpected byte 0x01", "a.mof:1:9: error: unexpected byte 0xFF"}),
      Lex("@@@ \xC3\xA9 \x01 \xFF").messages);
  EXPECT_EQ((Lines{"a.mof:1:1: error: expected '#pragma', found '#include'"}),
            Lex("#include <x>\n").messages);
  EXPECT_EQ((Lines{"a.mof:2:1: error: the comment is not closed"}), Lex("a\n/* b").messages);
}

TEST(TMofLexer, LinesAndColumnsCountCharacters) {
  EXPECT_EQ((Lines{"a.mof:2:2: error: unexpected character '!'"}), Lex("\r\n !").messages);
  EXPECT_EQ((Lines{"a.mof:2:2: error: unexpected character '!'"}), Lex("\r !").messages);
  EXPECT_EQ((Lines{"a.mof:1:5: error: unexpected character '!'"}), Lex("\"\xC3\xA9\"\t!").messages);
  EXPECT_EQ((Lines{"a.mof:1:1: error: unexpected character '!'"}), Lex("\xEF\xBB\xBF!").messages);
}

TEST(TMofLexer, AFullReportEndsTheText) {
  std::string content;
  for (int i = 0; i < 1000; ++i) content += "@ ";
  const auto tokens = Lex(content + "a");
  EXPECT_EQ(TMofReport::kDefaultLimit, tokens.messages.size());
  EXPECT_TRUE(tokens.seen.empty());
}

}  // namespace
}  // namespace havtest
