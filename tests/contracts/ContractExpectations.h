#pragma once

#include <csignal>
#include <functional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <sys/resource.h>

#include <ORNHearingTestSDK/contracts/Contract.h>

namespace orn::contract {

/// The names of the contracts with one outcome.
inline std::vector<std::string> thoseOf(const Report& report, Outcome outcome) {
  std::vector<std::string> names;
  for (const Verdict& one : report) {
    if (one.outcome == outcome) names.push_back(one.contract);
  }
  return names;
}

/// Expects that nothing is broken, and that only contracts with these parts in their names are not checked.
inline void expectKept(const Report& report, const std::vector<std::string>& notChecked = {}) {
  EXPECT_FALSE(thoseOf(report, Outcome::Passed).empty());
  for (const Verdict& one : report) EXPECT_NE(one.outcome, Outcome::Broken) << one.contract << "\n  -> " << one.why;
  std::vector<testing::Matcher<std::string>> names;
  for (const std::string& part : notChecked) names.push_back(testing::HasSubstr(part));
  EXPECT_THAT(thoseOf(report, Outcome::NotChecked), testing::ElementsAreArray(names));
}

/// Makes a call while no file can grow beyond 1000 bytes.
inline void withFullDisk(const std::function<void()>& call) {
  rlimit before{};
  getrlimit(RLIMIT_FSIZE, &before);
  const rlimit small{1000, before.rlim_max};
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  setrlimit(RLIMIT_FSIZE, &small);
  call();
  setrlimit(RLIMIT_FSIZE, &before);
  std::signal(SIGXFSZ, handler);
}

}  // namespace orn::contract
