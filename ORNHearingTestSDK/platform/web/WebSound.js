// The page's half of the web backend's sound: one AudioContext with one AudioWorkletNode, and the watch over what may
// stop it. A program opens it by Module.ornSound.open(), in the user gesture that a browser asks for.

mergeInto(LibraryManager.library, {
  $ORNSound__deps: ['orn_web_reported', 'orn_web_available', 'orn_web_heard'],
  $ORNSound__postset: 'Module["ornSound"] = ORNSound;',
  $ORNSound: {
    kLongestStall: 0.5, // seconds
    context: null,
    node: null,
    ear: null,
    unsent: [], // messages from before there was a node
    isConnected: false,
    isFrozen: false,
    isStalled: false,
    told: 'closed', // why(), as the program was last told
    base: null, // one moment on both clocks, the page's and the sound's

    /** Opens the sound, or goes on after a suspension; resolves when it sounds. */
    open: async function(workletUrl = 'OutputWorklet.js') {
      if (!this.context) await this.make(workletUrl);
      await this.context.resume();
      this.isStalled = false; // as far as anybody knows yet
      this.base = null;
      this.update();
    },

    make: async function(workletUrl) {
      this.context = new AudioContext({ sampleRate: 48000, latencyHint: 'interactive' });
      await this.context.audioWorklet.addModule(workletUrl);
      this.node = new AudioWorkletNode(this.context, 'orn-output', { numberOfInputs: 0, outputChannelCount: [2] });
      this.node.port.onmessage = ({ data }) => {
        for (const report of data) _orn_web_reported(...report);
      };
      for (const message of this.unsent.splice(0)) this.post(message);
      const update = () => this.update();
      this.context.addEventListener('statechange', update);
      document.addEventListener('visibilitychange', update);
      for (const event of ['freeze', 'resume']) {
        document.addEventListener(event, () => {
          this.isFrozen = event === 'freeze';
          update();
        });
      }
      // The output has changed: nobody knows to which one, and at which level it is.
      if (navigator.mediaDevices) navigator.mediaDevices.addEventListener('devicechange', () => {
        this.tell('changed');
        update();
      });
      setInterval(() => this.watch(), 100);
    },

    /** Why nothing sounds; the empty text where it does. */
    why: function() {
      if (!this.context) return 'closed';
      if (this.context.state !== 'running') return this.context.state; // suspended, interrupted, closed
      if (document.hidden) return 'hidden';
      if (this.isFrozen) return 'frozen';
      return this.isStalled ? 'stalled' : '';
    },

    update: function() {
      this.tell(this.why());
    },

    tell: function(why) {
      if (why === this.told) return;
      this.told = why;
      this.base = null;
      // What the audio thread has not been told yet to stop must not go on when the output is back.
      if (why !== '') {
        this.node.disconnect();
        this.isConnected = false;
      }
      _orn_web_available(why === '' ? 1 : 0);
    },

    /** If the sound's clock falls behind the page's, it stood still: what was to sound meanwhile did not. */
    watch: function() {
      const page = performance.now() / 1000, sound = this.context.currentTime;
      if (this.context.state !== 'running' || document.hidden || this.isFrozen) {
        this.base = null; // the clock may stand still
        this.isStalled = false;
      } else if (!this.base) {
        this.base = { page, sound };
      } else if (this.isStalled) {
        this.isStalled = sound === this.base.sound;
      } else if (page - this.base.page - (sound - this.base.sound) > this.kLongestStall) {
        this.isStalled = true;
      } else if (page - this.base.page > 5) {
        this.base = { page, sound }; // since no two clocks run alike
      }
      this.update();
    },

    connect: function() {
      if (this.isConnected) return;
      this.isConnected = true;
      this.node.connect(this.context.destination);
      if (this.ear) this.node.connect(this.ear);
    },

    post: function(message, transfer = []) {
      if (this.node) this.node.port.postMessage(message, transfer);
      else this.unsent.push(message);
    },
  },

  orn_web_why__deps: ['$ORNSound'],
  orn_web_why: function() { return ['', 'closed', 'suspended', 'interrupted', 'hidden', 'frozen', 'stalled'].indexOf(ORNSound.why()); },
  orn_web_watch__deps: ['$ORNSound'],
  orn_web_watch: function() { if (ORNSound.context) ORNSound.watch(); },
  orn_web_make__deps: ['$ORNSound'],
  orn_web_make: function(id) { return ORNSound.post({ id, does: 'make' }); },
  orn_web_drop__deps: ['$ORNSound'],
  orn_web_drop: function(id) { return ORNSound.post({ id, does: 'drop' }); },
  orn_web_play__deps: ['$ORNSound'],
  orn_web_play: function(id) {
    ORNSound.connect();
    ORNSound.post({ id, does: 'play' });
  },
  orn_web_pause__deps: ['$ORNSound'],
  orn_web_pause: function(id) { return ORNSound.post({ id, does: 'pause' }); },
  orn_web_clear__deps: ['$ORNSound'],
  orn_web_clear: function(id, turn) { return ORNSound.post({ id, does: 'clear', turn }); },
  orn_web_gain__deps: ['$ORNSound'],
  orn_web_gain: function(id, left, right) { return ORNSound.post({ id, does: 'gain', gain: [left, right] }); },
  orn_web_feed__deps: ['$ORNSound'],
  orn_web_feed: function(id, at, count, isLast) {
    const samples = HEAP16.slice(at >> 1, (at >> 1) + count);
    ORNSound.post({ id, does: 'feed', samples, isLast: isLast !== 0 }, [samples.buffer]);
  },
  orn_web_listen__deps: ['$ORNSound', 'malloc', 'free'],
  orn_web_listen: function() {
    if (ORNSound.ear || !ORNSound.context) return;
    ORNSound.ear = new AudioWorkletNode(ORNSound.context, 'orn-ear');
    ORNSound.ear.connect(ORNSound.context.destination);
    if (ORNSound.isConnected) ORNSound.node.connect(ORNSound.ear);
    ORNSound.ear.port.onmessage = ({ data: { samples, time } }) => {
      const at = _malloc(samples.byteLength);
      HEAP16.set(samples, at >> 1);
      _orn_web_heard(at, samples.length, ORNSound.context.currentTime - time);
      _free(at);
    };
  },
});
