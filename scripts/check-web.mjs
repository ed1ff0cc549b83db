// Drives the built web programs in a browser, Debian's Chromium by ChromeDriver, against a server on loopback: all
// checks, or those named. It needs Node.js and no package of it.
//   node scripts/check-web.mjs [contracts] [samples] [test] [faults] [page] [bench]
import { spawn } from 'node:child_process';
import { createServer } from 'node:http';
import { mkdtemp, readFile, rm, writeFile, mkdir } from 'node:fs/promises';
import { tmpdir } from 'node:os';
import { extname, join, normalize } from 'node:path';

const folder = new URL('../build/web/bin/', import.meta.url).pathname;
const pause = (seconds) => new Promise((done) => setTimeout(done, 1000 * seconds));

const types = {
  '.html': 'text/html', '.js': 'text/javascript', '.mjs': 'text/javascript', '.css': 'text/css', '.wasm': 'application/wasm',
};

/** The built folder, and what the contracts of the URL session ask for. */
function serve() {
  const server = createServer(async ({ url }, reply) => {
    const path = normalize(new URL(url, 'http://host').pathname).replace(/^\/$/, '/index.html');
    if (path === '/silent') return;
    if (path === '/answer' || path === '/broken') return void reply.writeHead(path === '/broken' ? 500 : 200).end('the answer');
    try {
      const bytes = await readFile(join(folder, path));
      reply.writeHead(200, { 'content-type': types[extname(path)] ?? 'application/octet-stream' }).end(bytes);
    } catch {
      reply.writeHead(404).end();
    }
  });
  return new Promise((done) => server.listen(0, '127.0.0.1', () => done(server)));
}

/** A browser of its own, by the WebDriver protocol. */
class Browser {
  static async start(server) {
    const browser = new Browser();
    browser.server = server;
    browser.profile = await mkdtemp(join(tmpdir(), 'hearing-web-'));
    browser.driver = spawn('chromedriver', ['--port=0'], { stdio: ['ignore', 'pipe', 'inherit'], detached: true });
    const driverPort = await new Promise((done, fail) => {
      browser.driver.on('exit', () => fail(new Error('chromedriver has gone')));
      browser.driver.stdout.on('data', (text) => {
        const found = /successfully on port (\d+)/.exec(text);
        if (found) done(found[1]);
      });
    });
    browser.base = `http://127.0.0.1:${driverPort}/session`;
    browser.page = `http://127.0.0.1:${server.address().port}/`;
    const args = ['--headless', '--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run',
      '--disable-background-networking', '--disable-component-update', '--disable-sync',
      '--autoplay-policy=no-user-gesture-required', `--user-data-dir=${browser.profile}`];
    const { sessionId } = await browser.ask('POST', '', {
      capabilities: { alwaysMatch: { browserName: 'chrome', 'goog:chromeOptions': { args } } },
    });
    browser.base += `/${sessionId}`;
    await browser.ask('POST', '/timeouts', { script: 600000 });
    return browser;
  }

  async ask(method, path, body) {
    const reply = await fetch(this.base + path, { method, body: body && JSON.stringify(body) });
    const { value } = await reply.json();
    if (!reply.ok) throw new Error(`${path}: ${value.message}`);
    return value;
  }

  open(path) { return this.ask('POST', '/url', { url: this.page + path }); }
  run(script, ...args) { return this.ask('POST', '/execute/sync', { script, args }); }
  devtools(cmd, params = {}) { return this.ask('POST', '/goog/cdp/execute', { cmd, params }); }

  async press(key) {
    const keys = { key, code: key, windowsVirtualKeyCode: { Tab: 9, Enter: 13 }[key], text: key === 'Enter' ? '\r' : undefined };
    for (const type of ['keyDown', 'keyUp']) await this.devtools('Input.dispatchKeyEvent', { type, ...keys });
  }

  /** Until a script returns something true, which is given. */
  async until(script, seconds, what = script) {
    const end = Date.now() + 1000 * seconds;
    for (;;) {
      const value = await this.run(script);
      if (value) return value;
      if (Date.now() > end) throw new Error(`${what}: not within ${seconds} s`);
      await pause(0.2);
    }
  }

  async end() {
    await this.ask('DELETE', '').catch(() => {});
    process.kill(-this.driver.pid);
    await rm(this.profile, { recursive: true, force: true, maxRetries: 5 });
  }
}

function expect(holds, otherwise) {
  if (!holds) throw new Error(otherwise);
}

const goOn = `[...document.querySelectorAll("button")].find((one) => one.textContent === "继续测试").click()`;

async function openPage(browser, query) {
  await browser.open(query);
  await browser.until('return window.hearing !== undefined', 60, 'the page');
}

/** A simulated test, by its button. Where the machine is too busy for whole tones, the test waits, and a person goes on. */
async function takeTest(browser, query) {
  await openPage(browser, query);
  await browser.run('[...document.querySelectorAll("button")].at(-1).click()');
  await browser.until('return window.hearing.state.events.some(([event]) => event === "tone")', 60, 'a tone');
  await browser.run(`setInterval(() => {
    const { isWaiting, why } = window.hearing.state;
    if (isWaiting && ['', 'stalled'].includes(why)) ${goOn};
  }, 1000);`);
}

/** To its end, and what it found must be true. A simulated listener hears to the decibel; levels come in steps of 5. */
async function expectTruth(browser, left, right, seconds) {
  const result = await browser.until('return window.hearing.state.result', seconds, 'the result');
  for (const [ear, truth] of [[result.left, left], [result.right, right]]) {
    for (const [hz, db] of Object.entries(ear.thresholds)) {
      expect(db === truth, `${hz} Hz: ${db} dB instead of ${truth}`);
    }
  }
  expect(result.level === 'level not verified' && result.calibration === 'sample', 'the result claims more than it knows');
}

/** What happens in the page when a tone begins ("tone") or the listener is about to press ("heard"), of any level or one. */
function at(browser, event, what, level = null) {
  return browser.run(`const [name, level] = arguments;
    const { state, module } = window.hearing;
    const busy = (milliseconds) => { for (const end = performance.now() + milliseconds; performance.now() < end;); };
    const onEvent = (name, does, level = null) => {
      state.events.push = (one) => {
        Array.prototype.push.call(state.events, one);
        if (one[0] !== name || (level !== null && state.tone.db !== level)) return;
        delete state.events.push;
        does();
      };
    };
    return new Promise((done, fail) => {
      setTimeout(() => fail(new Error('no ' + name + ' after ' + JSON.stringify(state.events))), 60000);
      onEvent(name, () => setTimeout(() => done((() => { ${what} })())), level);
    });`, event, level);
}

/** Every button can be reached by the keyboard, and a screen reader is told all that there is. */
async function expectReachable(browser, texts) {
  const buttons = await browser.run('return [...document.querySelectorAll("button")].map((one) => one.textContent)');
  for (const text of texts) expect(buttons.includes(text), `no button ${text} among ${buttons}`);
  const reached = new Set();
  for (let i = 0; i <= buttons.length; ++i) {
    await browser.press('Tab');
    reached.add(await browser.run('return document.activeElement.textContent'));
  }
  for (const text of buttons) expect(reached.has(text), `the keyboard does not reach ${text}`);
  const { nodes } = await browser.devtools('Accessibility.getFullAXTree');
  const named = (role) => nodes.filter((one) => one.role?.value === role && one.name?.value).map((one) => one.name.value);
  expect(named('button').join() === buttons.join(), `a screen reader is told of ${named('button')}`);
  const [title, text] = await browser.run('return ["title", "text"].map((id) => document.getElementById(id).textContent)');
  expect(named('heading').includes(title) && named('image').some((name) => name.includes('听力图')), 'a part has no name');
  const spoken = named('StaticText').join('').replaceAll('\n', '');
  expect(spoken.includes(text.replaceAll('\n', '')), `the text is not told: ${text}`);
  expect(nodes.some((one) => one.role?.value === 'status'), 'nothing is told as it changes');
}

/** As it looks, at the limits of width and at a phone's, light and dark: nothing is wider than the window. */
async function pictures(browser, name) {
  const shots = new URL('../build/web/pictures/', import.meta.url).pathname;
  await mkdir(shots, { recursive: true });
  for (const width of [320, 390, 1280]) {
    await browser.devtools('Emulation.setDeviceMetricsOverride', { width, height: 844, deviceScaleFactor: 2, mobile: width < 800 });
    for (const scheme of ['light', 'dark']) {
      await browser.devtools('Emulation.setEmulatedMedia', { features: [{ name: 'prefers-color-scheme', value: scheme }] });
      await pause(0.5);
      expect(await browser.run('return document.documentElement.scrollWidth <= window.innerWidth'), `wider than ${width}`);
      await writeFile(`${shots}${name}-${width}-${scheme}.png`, Buffer.from(await browser.ask('GET', '/screenshot'), 'base64'));
    }
  }
}

const checks = {
  async contracts(browser) {
    await browser.open('contracts.html');
    try {
      await browser.until('return window.result !== undefined', 420, 'the contracts');
    } finally {
      console.log((await browser.run('return window.lines ?? []')).join('\n'));
    }
    expect((await browser.run('return window.result')) === 0, 'a contract is broken');
  },

  /** In virtual time: the samples of whole tests are those of every other platform. */
  async samples(browser) {
    await browser.open('samples.html');
    const lines = await browser.until('return window.ended && window.lines', 300, 'the tests');
    const expected = await readFile(new URL('../tests/web/samples.txt', import.meta.url), 'utf8');
    expect(`${lines.join('\n')}\n` === expected, `the samples are\n${lines.join('\n')}\ninstead of\n${expected}`);
  },

  async test(browser) {
    await takeTest(browser, '?hz=1000,4000&left=35&right=20');
    await expectTruth(browser, 35, 20, 400);
  },

  /** What takes the sound away in mid-tone, one after another: the page says why it waits, and no threshold is wrong. */
  async faults(browser) {
    const waits = async (what, why, ends = '') => {
      await browser.until(`return window.hearing.state.isWaiting && window.hearing.state.why === "${why}"`, 30, what);
      expect(await browser.run('return document.getElementById("text").textContent.length > 0'), `${what}: nothing is said`);
      await browser.run(ends);
      await browser.run(goOn);
      await browser.until('return !window.hearing.state.isWaiting', 30, `${what}: it does not go on`);
    };
    await takeTest(browser, '?hz=1000&left=35&right=20');

    // Longer than the audio thread has samples for: it runs dry, which is a lapse, and the tone comes again.
    const before = await at(browser, 'tone', 'const lapses = module.lapses(); busy(5000); return lapses;');
    await browser.until(`return window.hearing.module.lapses() > ${before}`, 10, 'a starved main thread is no lapse');

    // A main thread that is starved until a tone has run dry, before it comes to the press, and again when it has just fed
    // the tone: what has been heard must not sound again, since a press for that would be the next tone's.
    const sounded = await at(browser, 'heard', `const sound = module.ornSound;
      busy(3300);
      const { post } = sound, since = sound.context.currentTime;
      let end = Infinity, delay = 300;
      const sounded = [];
      sound.post = (message, ...rest) => {
        if (message.does === 'pause' || message.does === 'gain') end = Math.min(end, sound.context.currentTime);
        post.call(sound, message, ...rest);
        busy(delay);
        delay = 0;
      };
      sound.ear.port.addEventListener('message', ({ data: { samples, time } }) => {
        if (samples.some((one) => one !== 0)) sounded.push(time);
      });
      return new Promise((told) => onEvent('tone', () => setTimeout(() => {
        sound.post = post;
        told(sounded.filter((time) => time > since && time < end).map((time) => [since, time, end]));
      }, 2000)));`, 20);
    expect(sounded.length === 0, `a tone that has been heard sounds again: ${sounded}`);

    await at(browser, 'tone', 'module.ornSound.context.suspend();');
    await pause(1); // as long as a person takes to look, and longer than a clock may stand still
    await waits('a suspended context', 'suspended');

    await at(browser, 'tone', `Object.defineProperty(document, 'hidden', { get: () => window.isHidden, configurable: true });
      window.isHidden = true; document.dispatchEvent(new Event('visibilitychange'));`);
    await pause(2);
    await waits('a hidden page', 'hidden', `window.isHidden = false; document.dispatchEvent(new Event('visibilitychange'));`);

    await at(browser, 'tone', '');
    await browser.devtools('Page.setWebLifecycleState', { state: 'frozen' });
    await pause(9);
    await browser.devtools('Page.setWebLifecycleState', { state: 'active' });
    await waits('a frozen page', 'frozen');

    await expectTruth(browser, 35, 20, 300);
  },

  /** By the keyboard and to a screen reader, at the limits of width, light and dark, and without a network. */
  async page(browser) {
    await openPage(browser, '');
    await browser.until('return navigator.serviceWorker.controller !== null', 60, 'the service worker');
    browser.server.close();
    browser.server.closeAllConnections();
    await openPage(browser, '');
    await expectReachable(browser, ['开始', '模拟测听者试测']);

    await browser.run('document.querySelector("button").focus()');
    await browser.press('Enter');
    await browser.until('return document.querySelectorAll("button").length > 2', 30, 'the channel check');
    await expectReachable(browser, ['左', '右', '两侧', '没听到', '再听一次']);

    await takeTest(browser, '?hz=1000&left=35&right=20');
    await browser.until('return window.hearing.state.isLeft', 120, 'the other ear');
    await expectReachable(browser, ['听到了']);
    await pictures(browser, 'test');
    await expectTruth(browser, 35, 20, 200);
    await expectReachable(browser, ['再测一次']);
    await pictures(browser, 'result');
  },

  /** Load to ready, and from the press to silence as it leaves the output. */
  async bench(browser) {
    await takeTest(browser, '?hz=1000&left=100&right=100');
    await pause(1.5);
    const silence = await browser.run(`return new Promise((done) => {
      let pressed = 0;
      window.hearing.module.ornSound.ear.port.addEventListener('message', ({ data: { samples } }) => {
        if (pressed && samples.every((one) => one === 0)) done(performance.now() - pressed);
      });
      setTimeout(() => { pressed = performance.now(); document.querySelector('button.main').click(); }, 500);
    });`);
    console.log(`web: load to ready ${(await browser.run('return window.hearing.readyAt')).toFixed(0)} ms, ` +
      `press to silence ${silence.toFixed(0)} ms`);
  },
};

for (const name of process.argv.length > 2 ? process.argv.slice(2) : Object.keys(checks)) {
  const start = Date.now();
  const server = await serve();
  let browser;
  try {
    browser = await Browser.start(server);
    await checks[name](browser);
    console.log(`${name}: passed in ${((Date.now() - start) / 1000).toFixed(1)} s`);
  } catch (error) {
    process.exitCode = 1;
    console.error(`${name}: ${error.message}`);
  } finally {
    await browser?.end();
    server.close();
    server.closeAllConnections();
  }
}
