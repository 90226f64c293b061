#include "platform/LateAnswers.h"

#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>

namespace brackwell {
namespace {

using std::chrono::steady_clock;
constexpr std::chrono::seconds LongEnough{30};

/// Calls wait at it until it is opened.
class Gate {
 public:
  ~Gate() { Open(); }
  void Open() {
    if (!std::exchange(mIsOpen, true)) mPromise.set_value();
  }
  std::shared_future<void> Way() const { return mWay; }

 private:
  bool mIsOpen = false;
  std::promise<void> mPromise;
  std::shared_future<void> mWay = mPromise.get_future().share();
};

TEST(LateAnswers, AnAnswerThatComes) {
  LateAnswers<int> answers;
  const auto answer = answers.Ask("a", [] { return 7; });
  ASSERT_TRUE(LateAnswers<int>::IsHere(answer, steady_clock::now() + LongEnough));
  EXPECT_EQ(answer.get(), 7);
}

TEST(LateAnswers, AnErrorComesAsOne) {
  LateAnswers<int> answers;
  const auto answer = answers.Ask("a", []() -> int { throw std::runtime_error("no"); });
  ASSERT_TRUE(LateAnswers<int>::IsHere(answer, steady_clock::now() + LongEnough));
  EXPECT_THROW(answer.get(), std::runtime_error);
}

TEST(LateAnswers, OneThatDoesNotComeIsNotWaitedFor) {
  Gate gate;
  LateAnswers<int> answers;
  const auto answer = answers.Ask("a", [way = gate.Way()] {
    way.wait();
    return 1;
  });
  EXPECT_FALSE(LateAnswers<int>::IsHere(answer, steady_clock::now() + std::chrono::milliseconds(20)));
  EXPECT_FALSE(LateAnswers<int>::IsHere({}, steady_clock::now()));
}

TEST(LateAnswers, ACallThatIsStillOutIsNotMadeAgain) {
  Gate gate;
  const auto calls = std::make_shared<std::atomic<int>>(0);
  LateAnswers<int> answers;
  const auto call = [way = gate.Way(), calls] {
    const int number = ++*calls;
    way.wait();
    return number;
  };
  const auto first = answers.Ask("a", call);
  const auto again = answers.Ask("a", call);
  const auto other = answers.Ask("b", call);
  gate.Open();
  for (const auto& answer : {first, again, other})
    ASSERT_TRUE(LateAnswers<int>::IsHere(answer, steady_clock::now() + LongEnough));
  EXPECT_EQ(*calls, 2);
  EXPECT_EQ(first.get(), again.get());
  ASSERT_TRUE(LateAnswers<int>::IsHere(answers.Ask("a", call), steady_clock::now() + LongEnough));
  EXPECT_EQ(*calls, 3);
}

TEST(LateAnswers, ACallMayOutliveWhoAsked) {
  Gate gate;
  LateAnswers<int>::Future answer;
  {
    LateAnswers<int> answers;
    answer = answers.Ask("a", [way = gate.Way()] {
      way.wait();
      return 3;
    });
  }
  gate.Open();
  ASSERT_TRUE(LateAnswers<int>::IsHere(answer, steady_clock::now() + LongEnough));
  EXPECT_EQ(answer.get(), 3);
}

}  // namespace
}  // namespace brackwell
