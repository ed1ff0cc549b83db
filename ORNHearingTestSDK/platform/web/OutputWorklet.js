// The audio thread of the web backend: it adds up streams of 16-bit mono samples, each with a gain for each channel, as
// platform/StereoGain.h does, and counts what it could not play. It holds what each stream was fed, so a stream that
// stops goes on with its very next sample.

const kReportEvery = 8; // blocks of the graph, 128 frames each

const half = Math.fround(0.49999997);

function scaled(sample, gain) {
  if (gain === 1) return sample;
  const value = Math.min(Math.max(Math.fround(sample * gain), -32768), 32767);
  return Math.trunc(Math.fround(value + (value < 0 ? -half : half)));
}

class Stream {
  blocks = []; // of samples; the first one goes on at `at`
  at = 0;
  turn = 0;
  gain = [1, 1];
  isPlaying = false;
  isLast = false; // nothing follows what is held
  hasPlayed = false; // since it was started or last ran dry
  played = 0;
  dry = 0;
  hasEnded = false;

  mixInto(sums) {
    for (let i = 0; i < sums[0].length && this.isPlaying; ++i) {
      if (this.blocks.length === 0) return this.runDry();
      const sample = this.blocks[0][this.at++];
      for (const channel of [0, 1]) sums[channel][i] += this.gain[channel] === 0 ? 0 : scaled(sample, this.gain[channel]);
      this.hasPlayed = true;
      ++this.played;
      if (this.at < this.blocks[0].length) continue;
      this.blocks.shift();
      this.at = 0;
    }
    if (this.isPlaying && this.isLast && this.blocks.length === 0) this.runDry();
  }

  runDry() {
    if (this.isLast) {
      this.isPlaying = false;
      this.hasEnded = true;
    } else if (this.hasPlayed) {
      ++this.dry;
      this.isPlaying = false; // until the main thread has heard of it
    }
    this.hasPlayed = false;
  }
}

class OutputProcessor extends AudioWorkletProcessor {
  streams = new Map();
  sums = [new Int32Array(128), new Int32Array(128)];
  blocks = 0;

  constructor() {
    super();
    this.port.onmessage = ({ data }) => this.take(data);
  }

  take({ id, does, samples, isLast, gain, turn }) {
    if (does === 'make') this.streams.set(id, new Stream());
    const stream = this.streams.get(id);
    if (!stream) return;
    if (does === 'drop') this.streams.delete(id);
    if (does === 'gain') stream.gain = gain;
    if (does === 'play') stream.isPlaying = true;
    if (does === 'pause') stream.isPlaying = stream.hasPlayed = false;
    if (does === 'clear') Object.assign(stream, { blocks: [], at: 0, played: 0, isLast: false, turn });
    if (does === 'feed') {
      if (samples.length > 0) stream.blocks.push(samples);
      stream.isLast = isLast;
    }
  }

  process(inputs, [output]) {
    for (const sum of this.sums) sum.fill(0);
    for (const stream of this.streams.values()) stream.mixInto(this.sums);
    for (const channel of [0, 1]) {
      const sums = this.sums[channel];
      for (let i = 0; i < sums.length; ++i) output[channel][i] = Math.min(Math.max(sums[i], -32768), 32767) / 32768;
    }
    if (++this.blocks % kReportEvery === 0) this.report();
    return true;
  }

  /** Reports how far each playing stream has come, and which streams ran dry or ended. */
  report() {
    const reports = [];
    for (const [id, stream] of this.streams) {
      if (!stream.isPlaying && stream.dry === 0 && !stream.hasEnded) continue;
      reports.push([id, stream.turn, stream.played, stream.dry, stream.hasEnded ? 1 : 0]);
      stream.dry = 0;
      stream.hasEnded = false;
    }
    if (reports.length > 0) this.port.postMessage(reports);
  }
}

/** Passes on what leaves another node, as interleaved 16-bit samples. */
class EarProcessor extends AudioWorkletProcessor {
  process([input]) {
    const samples = new Int16Array(2 * 128);
    for (let i = 0; i < samples.length && input.length > 0; ++i) samples[i] = input[i % 2][i >> 1] * 32768;
    this.port.postMessage({ samples, time: currentTime }, [samples.buffer]);
    return true;
  }
}

registerProcessor('orn-output', OutputProcessor);
registerProcessor('orn-ear', EarProcessor);
