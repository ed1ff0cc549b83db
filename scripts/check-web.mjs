// Drives the built web programs in a browser, Debian's Chromium by ChromeDriver, against a server on loopback: all
// checks, or those named. Nothing but what Node.js brings along.
//   node scripts/check-web.mjs [contracts] [samples] [test] [faults] [pictures] [bench]
import { spawn } from 'node:child_process';
import { createServer } from 'node:http';
import { mkdtemp, readFile, rm, writeFile, mkdir } from 'node:fs/promises';
import { tmpdir } from 'node:os';
import { extname, join, normalize } from 'node:path';

const folder = new URL('../build/web/bin/', import.meta.url).pathname;
const pause = (seconds) => new Promise((done) => setTimeout(done, 1000 * seconds));

export const types = {
  '.html': 'text/html; charset=utf-8', '.js': 'text/javascript', '.mjs': 'text/javascript', '.css': 'text/css',
  '.svg': 'image/svg+xml', '.wasm': 'application/wasm', '.json': 'application/json',
};

/** The built folder, and what the contracts of the URL session ask for. */
function serve() {
  const server = createServer(async ({ url }, reply) => {
    const asked = normalize(new URL(url, 'http://host').pathname);
    const path = asked === '/' ? '/index.html' : asked;
    if (path === '/silent') return;
    if (path === '/answer' || path === '/broken') {
      return void reply.writeHead(path === '/broken' ? 500 : 200).end('the answer');
    }
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
  static async start(port) {
    const browser = new Browser();
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
    browser.page = `http://127.0.0.1:${port}/`;
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
};

/** Opens the page and takes a simulated test with it, as its button does. */
async function takeTest(browser, query) {
  await browser.open(query);
  await browser.until('return window.hearing !== undefined', 60, 'the page');
  await browser.run('[...document.querySelectorAll("button")].at(-1).click()');
  await browser.until('return window.hearing.state.events.some(([event]) => event === "tone")', 60, 'a tone');
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

const tones = 'return window.hearing.state.events.filter(([event]) => event === "tone").length';
const goOn = `[...document.querySelectorAll("button")].find((one) => one.textContent === "继续测试").click()`;

Object.assign(checks, {
  /** In virtual time: the samples of whole tests are those of every other platform. */
  async samples(browser) {
    await browser.open('samples.html');
    const lines = await browser.until('return window.ended && window.lines', 300, 'the tests');
    const expected = (await readFile(join(folder, 'samples.txt'), 'utf8')).trim().split('\n');
    console.log(lines.join('\n'));
    expect(lines.join('\n') === expected.join('\n'), `the samples are others than\n${expected.join('\n')}`);
  },

  async test(browser) {
    await takeTest(browser, '?hz=1000,4000&left=35&right=20');
    await expectTruth(browser, 35, 20, 400);
  },

  /** What takes the sound away in mid-tone, one after another: the page says why it waits, and no threshold is wrong. */
  async faults(browser) {
    const waits = async (what, why) => {
      await browser.until('return window.hearing.state.isWaiting', 30, what);
      const told = await browser.run('return [window.hearing.state.why, document.getElementById("text").textContent]');
      expect(told[0] === why && told[1].length > 0, `${what}: the page says ${told}`);
      await browser.run(goOn);
      await browser.until('return !window.hearing.state.isWaiting', 30, `${what}: it does not go on`);
    };
    await takeTest(browser, '?hz=1000&left=35&right=20');

    await browser.run('window.hearing.module.ornSound.context.suspend()');
    await waits('a suspended context', 'suspended');

    await browser.run(`Object.defineProperty(document, 'hidden', { get: () => window.isHidden, configurable: true });
      window.isHidden = true; document.dispatchEvent(new Event('visibilitychange'));
      setTimeout(() => { window.isHidden = false; document.dispatchEvent(new Event('visibilitychange')); }, 2000);`);
    await pause(2.5);
    await waits('a hidden page', 'hidden');

    await browser.devtools('Page.setWebLifecycleState', { state: 'frozen' });
    await pause(9);
    await browser.devtools('Page.setWebLifecycleState', { state: 'active' });
    await waits('a frozen page', 'frozen');

    // Longer than the audio thread has samples for: it runs dry, which is a lapse, and the tone comes again.
    const before = await browser.run(`${tones.replace('return ', 'const count = ')};
      const lapses = window.hearing.module.lapses();
      for (const end = performance.now() + 5000; performance.now() < end;);
      return [lapses, count];`);
    await browser.until(`return window.hearing.module.lapses() > ${before[0]}`, 10, 'a starved main thread is no lapse');
    await expectTruth(browser, 35, 20, 300);
  },

  /** The page at a phone's size, light and dark, and at the limits of width: nothing is wider than the window. */
  async pictures(browser) {
    const shots = new URL('../build/web/pictures/', import.meta.url).pathname;
    await mkdir(shots, { recursive: true });
    await takeTest(browser, '?hz=1000&left=35&right=20');
    await browser.until('return Object.keys(window.hearing.state.ears.right).length > 0', 120, 'a threshold');
    for (const [width, scheme] of [[390, 'light'], [390, 'dark'], [320, 'light'], [1280, 'dark']]) {
      await browser.devtools('Emulation.setDeviceMetricsOverride', { width, height: 844, deviceScaleFactor: 2, mobile: width < 800 });
      await browser.devtools('Emulation.setEmulatedMedia', { features: [{ name: 'prefers-color-scheme', value: scheme }] });
      await pause(0.5);
      expect(await browser.run('return document.documentElement.scrollWidth <= window.innerWidth'), `wider than ${width}`);
      await writeFile(`${shots}${width}-${scheme}.png`, Buffer.from(await browser.ask('GET', '/screenshot'), 'base64'));
    }
  },

  /** Load to ready, and from the press to silence as it leaves the output. */
  async bench(browser) {
    await takeTest(browser, '?hz=1000&left=100&right=100');
    await pause(1.5);
    const silence = await browser.run(`return new Promise((done) => {
      const { ear } = window.hearing.module.ornSound;
      const hears = ear.port.onmessage;
      let pressed = 0;
      ear.port.onmessage = (event) => {
        hears(event);
        if (pressed && event.data.every((sample) => sample === 0)) done(performance.now() - pressed);
      };
      setTimeout(() => { pressed = performance.now(); document.querySelector('button.main').click(); }, 500);
    });`);
    console.log(`web: load to ready ${(await browser.run('return window.hearing.readyAt')).toFixed(0)} ms, ` +
      `press to silence ${silence.toFixed(0)} ms`);
  },
});

const server = await serve();
let failures = 0;
for (const name of process.argv.length > 2 ? process.argv.slice(2) : Object.keys(checks)) {
  const start = Date.now();
  let browser;
  try {
    browser = await Browser.start(server.address().port);
    await checks[name](browser);
    console.log(`${name}: passed in ${((Date.now() - start) / 1000).toFixed(1)} s`);
  } catch (error) {
    ++failures;
    console.error(`${name}: ${error.message}`);
  } finally {
    await browser?.end();
  }
}
server.close();
server.closeAllConnections();
process.exitCode = failures > 0 ? 1 : 0;
