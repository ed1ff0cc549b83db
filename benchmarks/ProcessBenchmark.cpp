// Ten minutes of a tone of 1000 Hz, 48 kHz, 16 bits, mono, as fast as it goes: our stream as a process, from its start
// to its end, beside programs that make tones.

#include <cmath>
#include <string>
#include <vector>

#include "benchmarks/ChildProcess.h"
#include "benchmarks/Comparison.h"

namespace {

using namespace orn::bench;
using Command = std::vector<std::string>;

constexpr int kPairs = 5;

Work process(const std::string& name, const Command& command) {
  return {name, [command] { return processorSecondsOf(command).value_or(NAN); }};
}

void compareWith(const std::string& program, const Command& command) {
  if (!processorSecondsOf({program, "--version"})) return printMissing(program);
  compare(process("ten minutes of the stream, as a process", {ORN_TONE_PROCESS, "600"}),
          process("the same by " + program, command), kPairs);
}

}  // namespace

int main() {
  compareWith("sox", {"sox", "-D", "-n", "-r", "48000", "-b", "16", "-c", "1", "-t", "raw", "-", "synth", "600", "sine",
                      "1000"});
  compareWith("gst-launch-1.0",
              {"gst-launch-1.0", "-q", "audiotestsrc", "wave=sine", "freq=1000", "samplesperbuffer=3840",
               "num-buffers=7500", "!", "audio/x-raw,format=S16LE,rate=48000,channels=1", "!", "fdsink"});
}
