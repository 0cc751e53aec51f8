// The texts that instances of a class share.
#include "inmem/values/TTextPool.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "inmem/values/TSlotLayout.h"

namespace havtest {
namespace {

using namespace NORVHAV20;

// How many places there are for texts, by the end of their hash, and how many texts fit in each.
constexpr std::size_t kSets = 128;
constexpr std::size_t kWays = 4;
// After how many texts a slot is judged.
constexpr int kWindow = 1024;

std::string_view TextOf(const TCIMValue& value) { return static_cast<std::string_view>(value); }

std::size_t SetOf(const std::string& text) { return std::hash<std::string_view>()(text) % kSets; }

// The `number`th text, counted from 0, that belongs in a set, or in any other.
std::string TextIn(std::size_t set, int number) {
  for (int i = 0;; ++i)
    if (const std::string text = "in " + std::to_string(i); SetOf(text) == set && number-- == 0)
      return text;
}

// Whether a text given to a slot is answered with the memory of this one.
bool Shares(TTextPool& pool, const TCIMValue& pooled, std::size_t slot = 0) {
  const TCIMValue again{std::string(TextOf(pooled))};
  return TextOf(pool.Share(slot, again)).data() == TextOf(pooled).data();
}

// A slot of a pool, with one text that it is given again and again and others that it never was.
class TGivenSlot {
 public:
  TGivenSlot() { m_pool.Share(0, m_known); }

  void GiveKnown(int times) {
    for (; times > 0; --times) Shares(m_pool, m_known);
  }
  // None of them takes the place of the known one.
  void GiveNew(int times) {
    while (times > 0) {
      const std::string text = "new " + std::to_string(m_next++);
      if (SetOf(text) == SetOf(std::string(TextOf(m_known)))) continue;
      m_pool.Share(0, TCIMValue(text));
      --times;
    }
  }
  // Which gives it the known text.
  bool IsLeftAlone() { return !Shares(m_pool, m_known); }

 private:
  TTextPool m_pool{1};
  const TCIMValue m_known{"known"};
  int m_next = 0;
};

TEST(TTextPool, AnswersEqualTextsWithTheFirst) {
  TTextPool pool(1);
  const TCIMValue first("vendor");
  EXPECT_EQ(&pool.Share(0, first), &first);
  for (int i = 0; i < 5000; ++i) EXPECT_TRUE(Shares(pool, first));
}

TEST(TTextPool, AnswersEveryTextAsItIs) {
  TTextPool pool(2);
  for (int i = 0; i < 20000; ++i) {
    const TCIMValue text(std::string(static_cast<std::size_t>(i % 7), 'x') +
                         std::to_string(i % 1500));
    ASSERT_EQ(pool.Share(static_cast<std::size_t>(i % 2), text), text);
  }
}

TEST(TTextPool, HasATextOfEveryHash) {
  TTextPool pool(1);
  std::vector<TCIMValue> texts;
  for (std::size_t set = 0; set < kSets; ++set) texts.emplace_back(TextIn(set, 0));
  for (const TCIMValue& text : texts) pool.Share(0, text);
  for (const TCIMValue& text : texts) EXPECT_TRUE(Shares(pool, text)) << TextOf(text);
}

TEST(TTextPool, HasTheFourTextsGivenLastOfThoseThatBelongTogether) {
  for (const std::size_t set : {std::size_t{0}, std::size_t{1}, kSets - 1}) {
    TTextPool pool(1);
    std::vector<TCIMValue> texts;
    for (int i = 0; i < 10; ++i) texts.emplace_back(TextIn(set, i));
    for (std::size_t given = 0; given < texts.size(); ++given) {
      pool.Share(0, texts[given]);
      for (std::size_t i = given < kWays ? 0 : given + 1 - kWays; i <= given; ++i)
        EXPECT_TRUE(Shares(pool, texts[i])) << set << ' ' << given << ' ' << i;
    }
    EXPECT_FALSE(Shares(pool, texts[texts.size() - 1 - kWays]));
  }
}

TEST(TTextPool, TellsTextsApartWhoseHashesAgree) {
  // They agree in all bits that are kept, with the hash of libstdc++ on 64 bits.
  TTextPool pool(1);
  const TCIMValue one("text 60510");
  const TCIMValue other("text 703989");
  pool.Share(0, one);
  EXPECT_EQ(&pool.Share(0, other), &other);
  EXPECT_TRUE(Shares(pool, one));
  EXPECT_TRUE(Shares(pool, other));
}

TEST(TTextPool, GoesOnWithASlotOfWhichAQuarterWasThere) {
  TGivenSlot slot;
  slot.GiveNew(kWindow - 1 - kWindow / 4);
  slot.GiveKnown(kWindow / 4);
  EXPECT_FALSE(slot.IsLeftAlone());
}

TEST(TTextPool, LeavesASlotAloneOfWhichLessThanAQuarterWasThere) {
  TGivenSlot slot;
  slot.GiveNew(kWindow - 1 - (kWindow / 4 - 1));
  slot.GiveKnown(kWindow / 4 - 1);
  EXPECT_TRUE(slot.IsLeftAlone());
  slot.GiveKnown(2 * kWindow);
  EXPECT_TRUE(slot.IsLeftAlone());
}

TEST(TTextPool, JudgesASlotOnlyAfterManyTexts) {
  TGivenSlot slot;
  slot.GiveNew(kWindow - 3);
  EXPECT_FALSE(slot.IsLeftAlone());
  slot.GiveNew(1);
  EXPECT_TRUE(slot.IsLeftAlone());
}

TEST(TTextPool, JudgesASlotAnewAfterAsManyTexts) {
  TGivenSlot slot;
  slot.GiveKnown(kWindow - 1);
  slot.GiveKnown(kWindow / 4 - 1);
  slot.GiveNew(kWindow - (kWindow / 4 - 1) - 1);
  EXPECT_FALSE(slot.IsLeftAlone());  // the last of the window, and the one that saves it
  slot.GiveKnown(kWindow / 4 - 1);
  slot.GiveNew(kWindow - (kWindow / 4 - 1));
  EXPECT_TRUE(slot.IsLeftAlone());
}

TEST(TTextPool, GoesOnWithASlotForAsLongAsHalfIsThere) {
  TGivenSlot slot;
  for (int i = 0; i < 3 * kWindow; ++i) {
    slot.GiveNew(1);
    slot.GiveKnown(1);
  }
  EXPECT_FALSE(slot.IsLeftAlone());
}

TEST(TTextPool, JudgesEachSlotByItself) {
  TTextPool pool(2);
  const TCIMValue shared("shared");
  pool.Share(1, shared);
  for (int i = 0; i < 5000; ++i) {
    pool.Share(0, TCIMValue("new " + std::to_string(i)));
    pool.Share(1, TCIMValue("shared"));
  }
  EXPECT_FALSE(Shares(pool, shared, 0));
  const TCIMValue now = pool.Share(1, TCIMValue("shared"));
  EXPECT_TRUE(Shares(pool, now, 1));
}

TEST(TTextPool, IsMadeForALayoutWithManyTextsAndGivenNothingElse) {
  const TSlotLayout layout({{"a", {}}, {"b", {}}});
  const TCIMValue first("vendor");
  EXPECT_EQ(&layout.Share(0, first), &first);
  EXPECT_NE(TextOf(layout.Share(0, TCIMValue("vendor"))).data(), TextOf(first).data());
  for (int i = 0; i < 2 * kWindow; ++i) layout.Share(0, first);
  for (const TCIMValue& other : {TCIMValue::Null(kCIMString), TCIMValue(), TCIMValue(true),
                                 TCIMValue(kCIMString, {TCIMValue("vendor")})})
    EXPECT_EQ(&layout.Share(0, other), &other);
  EXPECT_EQ(TextOf(layout.Share(0, TCIMValue("vendor"))).data(), TextOf(first).data());
}

}  // namespace
}  // namespace havtest
