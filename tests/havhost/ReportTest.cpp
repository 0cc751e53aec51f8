// What reports are made of: text for terminals, columns, order, the log and progress.
#include <gtest/gtest.h>

#include <sstream>

#include "havcore/havcore.h"
#include "havhost/Program.h"
#include "havhost/TConsole.h"
#include "havhost/THostLogger.h"
#include "havhost/TProgressLine.h"
#include "havhost/report/Json.h"
#include "havhost/report/TPathOrder.h"
#include "havhost/report/Text.h"
#include "tests/havhost/Havhost.h"

namespace havtest {
namespace {

using namespace havhost;
using namespace NORVHAV20;

TEST(Text, ControlCharactersAreEscaped) {
  EXPECT_EQ(Printable("a\tb\nc\rd\x1b[0m\x7f"), "a\\tb\\nc\\rd\\x1b[0m\\x7f");
  EXPECT_EQ(Printable(std::string_view("\0", 1)), "\\x00");
  EXPECT_EQ(Printable("\xC2\x9B"), "\\xc2\\x9b");
}

TEST(Text, WhatTurnsTextOrTakesNoPlaceIsEscaped) {
  EXPECT_EQ(Printable("a\xE2\x80\xAE"
                      "b"),
            "a\\xe2\\x80\\xaeb");
  for (const char* character : {"\u061C", "\u200B", "\u200D", "\u200F", "\u2028", "\u202A",
                                "\u2060", "\u2066", "\u2069", "\uFEFF", "\U000E0041"})
    EXPECT_EQ(Printable(character)[0], '\\') << character;
  for (const char* character : {"\u00A0", "\u0301", "\u2010", "\u2027", "\u202F", "\u2070"})
    EXPECT_EQ(Printable(character), character);
}

TEST(Text, CsvQuotesWhatNeedsIt) {
  std::ostringstream out;
  PrintCsvLine(out, {"a b", "c,d", "e\"f", "g\nh", ""});
  EXPECT_EQ(out.str(), "a b,\"c,d\",\"e\"\"f\",\"g\nh\",\n");
}

TEST(Text, BytesThatAreNoUtf8AreEscaped) {
  EXPECT_EQ(Printable("a\xFF\xC3"), "a\\xff\\xc3");
  EXPECT_EQ(WithoutStrayBytes("a\xFF\n"), "a\\xff\n");
  EXPECT_EQ(Printable("\xC3\xA4 \xE2\x82\xAC \xF0\x9F\x98\x80"),
            "\xC3\xA4 \xE2\x82\xAC \xF0\x9F\x98\x80");
}

TEST(Text, APathIsReadAsItIsPrinted) {
  const std::string paths[] = {"T.K=\"a\nb\tc\rd\x1b\"", "T.K=\"\xFF\xC3\"", "T.K=\"\xC2\x9B\"",
                               std::string("T.K=\"\0\"", 7), "T.K=\"\\\\x41\\\\n\\\"\""};
  for (const auto& path : paths) {
    EXPECT_EQ(PathOfPrintable(Printable(path)), path);
    EXPECT_EQ(PathOfPrintable(WithoutStrayBytes(path)), path);
    EXPECT_EQ(PathOfPrintable(path), path);
  }
  for (const char* const rest : {"\\", "\\x", "\\x4", "\\xg0", "\\x-1", "\\q"})
    EXPECT_EQ(PathOfPrintable(rest), rest);
}

TEST(Text, WidthCountsCharacters) {
  EXPECT_EQ(Width(""), 0u);
  EXPECT_EQ(Width("\xC3\xA4\xE2\x82\xAC"
                  "x"),
            3u);
}

TEST(Text, CountsAgreeWithTheirNoun) {
  EXPECT_EQ(Count(0, "instances"), "0 instances");
  EXPECT_EQ(Count(1, "instances"), "1 instance");
  EXPECT_EQ(Count(2, "instances"), "2 instances");
}

TEST(Text, NumbersInTextOrderByTheirValue) {
  EXPECT_TRUE(NaturalLess("eth2", "eth10"));
  EXPECT_FALSE(NaturalLess("eth10", "eth2"));
  EXPECT_TRUE(NaturalLess("a", "ab"));
  EXPECT_TRUE(NaturalLess("a9b", "a10a"));
  EXPECT_FALSE(NaturalLess("a1", "a1"));
  EXPECT_TRUE(NaturalLess("a01", "a1"));
  EXPECT_FALSE(NaturalLess("a1", "a01"));
  EXPECT_TRUE(NaturalLess("99999999999999999999998", "99999999999999999999999"));
}

TEST(Text, RowsAreAlignedAndEndWithoutBlanks) {
  std::ostringstream out;
  PrintRows(out, "> ", {{"a", "bb", "c"}, {"\xC3\xA4\xC3\xA4\xC3\xA4", "", ""}, {"a"}});
  EXPECT_EQ(out.str(), "> a    bb  c\n> \xC3\xA4\xC3\xA4\xC3\xA4\n> a\n");
}

TEST(Text, WideCellsDoNotMoveTheOthers) {
  std::ostringstream out;
  PrintRows(out, "", {{"a", "1"}, {"abcdef", "2"}}, 3);
  EXPECT_EQ(out.str(), "a  1\nabcdef  2\n");
}

TEST(Json, ValuesKeepTheirKind) {
  EXPECT_EQ(ToJson(TCIMValue()).dump(), "null");
  EXPECT_EQ(ToJson(TCIMValue(true)).dump(), "true");
  EXPECT_EQ(ToJson(TCIMValue(std::uint64_t{18446744073709551615u})).dump(), "18446744073709551615");
  EXPECT_EQ(ToJson(TCIMValue(std::int8_t{-128})).dump(), "-128");
  EXPECT_EQ(ToJson(TCIMValue(1.5)).dump(), "1.5");
  EXPECT_EQ(ToJson(TCIMValue(1.0 / 0.0 * 0.0)).is_string(), true);
  EXPECT_EQ(ToJson(TCIMValue(u'x')).dump(), "\"x\"");
  EXPECT_EQ(ToJson(TCIMValue(TCIMDateTime())).dump(), "\"00000000000000.000000:000\"");
  EXPECT_EQ(
      ToJson(TCIMValue(kCIMUInt8, {TCIMValue(std::uint8_t{1}), TCIMValue::Null(kCIMUInt8)})).dump(),
      "[1,null]");
}

TEST(Json, BytesThatAreNoUtf8AreReplaced) {
  std::ostringstream out;
  PrintJson(out, {{"text", "a\xFF"}});
  EXPECT_EQ(out.str(), "{\n  \"version\": 1,\n  \"text\": \"a\xEF\xBF\xBD\"\n}\n");
}

TEST(TPathOrder, NumbersInKeysOrderByTheirValue) {
  const auto less = [](const TCIMValue& a, const TCIMValue& b) {
    TCIMReference first({}, {{"Key", a}});
    TCIMReference second({}, {{"Key", b}});
    EXPECT_FALSE(TPathOrder(second) < TPathOrder(first) && TPathOrder(first) < TPathOrder(second));
    return TPathOrder(first) < TPathOrder(second);
  };
  EXPECT_TRUE(less(std::uint32_t{2}, std::uint32_t{10}));
  EXPECT_TRUE(less(std::int32_t{-10}, std::int32_t{-2}));
  EXPECT_TRUE(less(1.25, 1.5));
  EXPECT_TRUE(less("eth2", "eth10"));
  EXPECT_FALSE(less("eth10", "eth2"));
  EXPECT_TRUE(less(TCIMReference({}, {{"Key", std::int32_t{-10}}}),
                   TCIMReference({}, {{"Key", std::int32_t{-2}}})));
  EXPECT_FALSE(less(std::uint32_t{2}, std::uint32_t{2}));
}

TEST(Log, ErrorsAreSummedUpInOneLine) {
  std::ostringstream err;
  THostLogger logger(err, false);
  auto* const log = TRootObject::GetCoreLogger();
  log->Log(0, "a note");
  log->Log(3, "cpuStatus is 1");
  logger.Summarise();
  EXPECT_EQ(err.str(), "");
  log->Log(3, "first");
  logger.Summarise();
  EXPECT_EQ(err.str(), "havhost: the log has 1 error, the first: first (--verbose shows all)\n");
  err.str("");
  log->Log(3, "second");
  logger.Summarise();
  EXPECT_EQ(err.str(), "havhost: the log has 2 errors, the first: first (--verbose shows all)\n");
}

TEST(Log, VerboseShowsEveryLineAndNoSum) {
  std::ostringstream err;
  THostLogger logger(err, true);
  TRootObject::GetCoreLogger()->Log(0, "a\nnote");
  TRootObject::GetCoreLogger()->Log(3, "cpuStatus is 1");
  logger.Summarise();
  EXPECT_EQ(err.str(), "havhost: log level 0: a\\nnote\nhavhost: log level 3: cpuStatus is 1\n");
}

TEST(Log, QuotedErrorIsNotCountedAgain) {
  std::ostringstream err;
  THostLogger logger(err, false);
  EXPECT_EQ(logger.TakeLastError(), "");
  TRootObject::GetCoreLogger()->Log(3, "the reason");
  EXPECT_EQ(logger.TakeLastError(), "the reason");
  EXPECT_EQ(logger.TakeLastError(), "");
  logger.Summarise();
  EXPECT_EQ(err.str(), "");
}

TEST(Log, LoggerBeforeIsRestored) {
  auto* const before = TRootObject::GetCoreLogger();
  {
    std::ostringstream err;
    const THostLogger logger(err, false);
    EXPECT_EQ(TRootObject::GetCoreLogger(), &logger);
  }
  EXPECT_EQ(TRootObject::GetCoreLogger(), before);
}

TEST(Progress, LineIsRewrittenAndGoes) {
  std::ostringstream out;
  std::ostringstream err;
  const TConsole console{out, err, true};
  {
    TProgressLine progress(console, TProgressLine::TDuration(0));
    progress.Show("reading", 1, 20);
    // Too soon to be worth writing.
    progress.Show("reading", 2, 20);
  }
  EXPECT_EQ(err.str(), "\rreading: 1 of 20\r                \r");
  EXPECT_EQ(out.str(), "");
}

TEST(Progress, ShortWorkAndFilesSeeNothing) {
  std::ostringstream out;
  std::ostringstream err;
  const TConsole terminal{out, err, true};
  TProgressLine(terminal, std::chrono::hours(1)).Show("reading", 1, 2);
  const TConsole file{out, err, false};
  TProgressLine(file, TProgressLine::TDuration(0)).Show("reading", 1, 2);
  EXPECT_EQ(err.str(), "");
}

TEST(Output, StreamThatFailsFailsTheCommand) {
  std::ostringstream err;
  std::ostream broken(nullptr);
  EXPECT_EQ(havhost::Run({"--version"}, {broken, err}), 1);
  EXPECT_EQ(err.str(), "havhost: cannot write the output\n");
}

}  // namespace
}  // namespace havtest
