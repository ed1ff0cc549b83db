#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "ContractExpectations.h"

// Copies of a backend, each of which breaks one contract in a way that a check could overlook: something comes at
// another time, or on another thread, or not at all. That concerns the loop and the sound.

namespace orn::contract {

/// The one contract that copies of a backend break at present; empty for none.
inline std::string brokenContract;

/// Whether that contract's sentence begins like this. A copy asks it where it would keep the contract.
inline bool breaks(std::string_view beginning) {
  const std::size_t sentence = brokenContract.find(": ");
  return sentence != std::string::npos && std::string_view(brokenContract).substr(sentence + 2).starts_with(beginning);
}

/// Breaks one contract of an interface after the other, and the suite notices each. A crude copy may break more.
template <class UnderTest>
void expectEachNamed(Report (*check)(const std::function<UnderTest()>&), const std::function<UnderTest()>& make) {
  for (const std::string& contract : thoseOf(check(make), Outcome::Passed)) {
    brokenContract = contract;
    EXPECT_THAT(thoseOf(check(make), Outcome::Broken), testing::Contains(contract));
    brokenContract.clear();
  }
}

/// Puts a broken part in the place of a real one, which it holds.
template <class Broken, class UnderTest, class Part>
UnderTest brokenIn(UnderTest copy, std::shared_ptr<Part> UnderTest::*part) {
  const auto broken = std::make_shared<Broken>();
  broken->real = std::exchange(copy.*part, broken);
  return copy;
}

}  // namespace orn::contract
