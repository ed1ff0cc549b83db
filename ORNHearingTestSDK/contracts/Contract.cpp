#include <ORNHearingTestSDK/contracts/Contract.h>

#include <cstdio>
#include <map>

namespace orn::contract {

int conclude(std::initializer_list<Report> reports) {
  static constexpr const char* words[] = {"passed", "BROKEN", "not checked"};
  std::map<Outcome, int> counts;
  for (const Report& report : reports) {
    for (const Verdict& one : report) {
      ++counts[one.outcome];
      std::printf("%-11s  %s\n", words[static_cast<int>(one.outcome)], one.contract.c_str());
      if (one.outcome != Outcome::Passed) std::printf("%-11s  -> %s\n", "", one.why.c_str());
    }
  }
  std::printf("%d passed, %d broken, %d not checked\n", counts[Outcome::Passed], counts[Outcome::Broken],
              counts[Outcome::NotChecked]);
  return counts[Outcome::Broken] == 0 && counts[Outcome::Passed] > 0 ? 0 : 1;
}

}  // namespace orn::contract
