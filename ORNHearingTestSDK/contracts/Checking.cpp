#include <ORNHearingTestSDK/contracts/Checking.h>

#include <exception>
#include <utility>

namespace orn::contract {

Verdict verdictOn(std::string contract, const std::function<void()>& shows) {
  try {
    shows();
    return {std::move(contract), Outcome::Passed, {}};
  } catch (const Broken& broken) {
    return {std::move(contract), Outcome::Broken, broken.why};
  } catch (const NotChecked& notChecked) {
    return {std::move(contract), Outcome::NotChecked, notChecked.why};
  } catch (const std::exception& error) {
    return {std::move(contract), Outcome::Broken, std::string("an exception came out: ") + error.what()};
  }
}

}  // namespace orn::contract
