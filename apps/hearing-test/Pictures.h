#pragma once

#include <memory>
#include <string>

#include <ORNHearingTestSDK/results/FinishedTest.h>
#include <ORNHearingTestSDK/screens/AudiogramPicture.h>

namespace orn {

/// Draws finished tests in a program that has no toolkit and no display: it sets up both, and a platform, for as long
/// as it lives.
class Pictures {
 public:
  Pictures();
  ~Pictures();
  Pictures(const Pictures&) = delete;
  Pictures& operator=(const Pictures&) = delete;

  // Each returns the contents of a file.
  std::string audiogram(const FinishedTest& test, PictureFormat format) const;
  std::string report(const FinishedTest& test) const;

 private:
  struct Toolkit;
  std::unique_ptr<Toolkit> toolkit_;
};

}  // namespace orn
