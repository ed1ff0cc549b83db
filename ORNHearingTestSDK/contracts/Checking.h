#pragma once

#include <functional>
#include <span>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

#include <ORNHearingTestSDK/contracts/Contract.h>

// How the contracts are written down: a table of sentences with a function each, which throws what it finds. Nothing
// throws from within a call of the backend, which need not let exceptions through.

namespace orn::contract {

struct Broken {
  std::string why;
};

struct NotChecked {
  std::string why;
};

inline void expect(bool holds, const std::string& otherwise) {
  if (!holds) throw Broken{otherwise};
}

/// A hook of the backend under test; ends the check if there is none.
template <class Hook>
const Hook& needed(const Hook& hook, const char* name) {
  if (!hook) throw NotChecked{std::string("needs the hook ") + name};
  return hook;
}

/// Starts another thread; ends the check on a machine that has only one.
template <class Run>
std::thread newThread(Run run) {
  try {
    return std::thread(std::move(run));
  } catch (const std::system_error& error) {
    throw NotChecked{std::string("needs another thread: ") + error.what()};
  }
}

/// A sentence of the interface's header, and what shows that it holds. Each check gets a backend made for it alone.
template <class Check>
struct Contract {
  const char* says;
  void (*shows)(Check& check);
};

/// Turns what a check throws into an outcome.
Verdict verdictOn(std::string contract, const std::function<void()>& shows);

template <class Check, class Make>
Report checkAll(const std::string& interface, std::span<const Contract<Check>> contracts, const Make& make) {
  Report report;
  for (const Contract<Check>& one : contracts) {
    report.push_back(verdictOn(interface + ": " + one.says, [&] {
      Check check(make());
      one.shows(check);
    }));
  }
  return report;
}

}  // namespace orn::contract
