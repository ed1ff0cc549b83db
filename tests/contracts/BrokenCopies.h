#pragma once

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "ContractExpectations.h"

namespace orn::contract {

/// A backend that breaks one contract, told by the beginning of its sentence, and keeps all others.
template <class UnderTest>
struct BrokenCopy {
  std::string contract;
  std::function<UnderTest()> make;
};

/// The suite names just that contract of each copy, and there is a copy for every contract.
template <class UnderTest>
void expectNamed(const std::string& interface, Report (*check)(const std::function<UnderTest()>&),
                 const std::vector<BrokenCopy<UnderTest>>& copies) {
  std::set<std::string> named;
  for (const auto& [contract, make] : copies) {
    const Report report = check(make);
    EXPECT_THAT(thoseOf(report, Outcome::Broken),
                testing::ElementsAre(testing::StartsWith(interface + ": " + contract)));
    for (const std::string& one : thoseOf(report, Outcome::Broken)) named.insert(one);
  }
  for (const Verdict& one : check(copies.front().make)) {
    EXPECT_TRUE(named.contains(one.contract)) << one.contract << " has no broken copy";
  }
}

}  // namespace orn::contract
