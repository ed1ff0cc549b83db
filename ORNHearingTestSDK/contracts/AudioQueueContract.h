#pragma once

#include <ORNHearingTestSDK/contracts/AudioUnderTest.h>
#include <ORNHearingTestSDK/contracts/Contract.h>

namespace orn::contract {

Report checkAudioQueue(const std::function<AudioUnderTest()>& make);

}  // namespace orn::contract
