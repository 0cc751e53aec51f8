#include "inmem/model/TClassSet.h"

#include <gtest/gtest.h>

#include "support/Repository.h"

namespace {

using namespace havtest;

using Classes = TClassSet::TClasses;

struct TClassSetOf : testing::Test {
  ClassPtr Make() { return repository.Allocate("Any" + std::to_string(m_made++)); }
  Classes Make(std::size_t count) {
    Classes classes;
    for (std::size_t i = 0; i < count; ++i) classes.push_back(Make());
    return classes;
  }
  static Classes Rest(TClassSet::TWalk& walk) {
    Classes rest;
    while (walk.Next()) rest.push_back(walk.Current());
    return rest;
  }

  Repository repository;

 private:
  int m_made = 0;
};

TEST_F(TClassSetOf, AnySizeHasEachClassOnceInTheOrderInWhichItCame) {
  for (const std::size_t count : {1u, 16u, 17u, 200u}) {
    TClassSet many;
    const Classes classes = Make(count);
    for (int time = 0; time < 2; ++time)
      for (const auto& cls : classes) many.Add(cls);
    EXPECT_EQ(many.All(), classes);
    EXPECT_EQ(many.Size(), count);
    EXPECT_TRUE(many.Contains(classes.back().get()));
    EXPECT_FALSE(many.Contains(Make().get()));
    EXPECT_FALSE(many.Contains(nullptr));
  }
}

TEST_F(TClassSetOf, AnySizeLosesWhatIsRemovedAndKeepsTheOrder) {
  for (const std::size_t count : {5u, 16u, 200u}) {
    TClassSet many;
    Classes classes = Make(count);
    for (const auto& cls : classes) many.Add(cls);
    for (std::size_t i = 0; classes.size() > 2; i = (i + 7) % classes.size()) {
      const auto place = classes.begin() + static_cast<std::ptrdiff_t>(i % classes.size());
      EXPECT_TRUE(many.Remove(place->get()));
      EXPECT_FALSE(many.Remove(place->get()));
      EXPECT_FALSE(many.Contains(place->get()));
      classes.erase(place);
      ASSERT_EQ(many.All(), classes);
      ASSERT_EQ(many.Size(), classes.size());
    }
    const auto last = Make();
    many.Add(last);
    classes.push_back(last);
    EXPECT_EQ(many.All(), classes);
  }
}

TEST_F(TClassSetOf, AWalkVisitsWhatWasThereWhateverBecomesOfIt) {
  const Classes classes = Make(40);
  {
    TClassSet walked;
    for (const auto& cls : classes) walked.Add(cls);
    TClassSet::TWalk changed(walked);
    TClassSet::TWalk second(walked);
    changed.Prepare();
    second.Prepare();
    ASSERT_EQ(changed.Next(), classes[0].get());
    walked.Add(Make());
    for (std::size_t i = 0; i < 30; ++i) walked.Remove(classes[i].get());
    EXPECT_TRUE(changed.Covers(classes[5].get()));
    EXPECT_EQ(Rest(changed), Classes(classes.begin() + 1, classes.end()));
    EXPECT_EQ(Rest(second), classes);
    EXPECT_EQ(changed.Next(), nullptr);
  }
  TClassSet emptied;
  for (const auto& cls : classes) emptied.Add(cls);
  TClassSet::TWalk walk(emptied);
  walk.Prepare();
  emptied.TakeAll();
  EXPECT_EQ(emptied.Size(), 0u);
  EXPECT_EQ(Rest(walk), classes);
}

TEST_F(TClassSetOf, AWalkOutlivesTheSet) {
  const Classes classes = Make(3);
  auto walked = std::make_unique<TClassSet>();
  for (const auto& cls : classes) walked->Add(cls);
  TClassSet::TWalk walk(*walked);
  walk.Prepare();
  walked.reset();
  EXPECT_EQ(Rest(walk), classes);
}

}  // namespace
