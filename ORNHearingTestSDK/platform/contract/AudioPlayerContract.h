#pragma once

#include <ORNHearingTestSDK/platform/contract/AudioUnderTest.h>
#include <ORNHearingTestSDK/platform/contract/Contract.h>

namespace orn::contract {

Report checkAudioPlayer(const std::function<AudioUnderTest()>& make);

}  // namespace orn::contract
