// The page: start, channel check, test and result, one after the other in the same places.
import { board, kHz, summary } from './board.mjs';
import make from './hearing_web.mjs';

const at = (id) => document.getElementById(id);
const query = new URLSearchParams(location.search);
const hzs = query.get('hz') ?? '';
const everywhere = (db) => Object.fromEntries(kHz.map((hz) => [hz, Number(db)]));

// The simulated listener's thresholds in dB HL; the address may give an ear's, one for all frequencies.
const simulated = {
  left: query.has('left') ? everywhere(query.get('left')) : { 125: 15, 250: 20, 500: 25, 1000: 30, 2000: 35, 4000: 50, 8000: 60 },
  right: query.has('right') ? everywhere(query.get('right')) : { 125: 10, 250: 10, 500: 15, 1000: 20, 2000: 25, 4000: 35, 8000: 40 },
};

const whys = {
  suspended: '浏览器暂停了声音', interrupted: '声音被别的程序打断了', hidden: '页面不在前台', frozen: '页面被系统冻结了',
  stalled: '声音停住了', closed: '声音没有打开', '': '声音输出改变了，或者没有播放完整',
};
const findings = [
  ['声音正常', '左右声道都正确，可以进入测试了。'],
  ['左右声道反了', '左耳的声音在右耳响起，右耳的声音在左耳响起，这样测出的结果左右颠倒。请把耳机左右对调，然后再查一次。'],
  ['左右声道没有分开', '一只耳朵听到了另一只耳朵的声音，这样无法分别测试两只耳朵。请检查声音设置，然后再查一次。'],
  ['有声音没有听到', '请检查耳机是否戴好、连接好，然后再查一次。'],
];

/** All titles, texts and buttons are set here. */
function show(title, text, choices = [], keepsFocus = false) {
  at('title').textContent = title;
  at('text').textContent = text;
  at('choices').replaceChildren(...choices.map(([label, does, isMain]) => {
    const button = document.createElement('button');
    button.textContent = label;
    if (isMain) button.className = 'main';
    button.addEventListener('click', does);
    return button;
  }));
  if (!keepsFocus) (at('choices').querySelector('.main') ?? at('title')).focus();
}

let module, page, isSimulated = false;
const state = { ears: { left: {}, right: {} }, tone: null, events: [], result: null, isWaiting: false, why: '' };

function draw() { at('board').innerHTML = board(state.ears, state.tone); }

const happens = {
  tone: (tone) => {
    state.tone = tone;
    at('progress').value = tone.progress;
    draw();
  },
  threshold: ({ hz, db, isLeft }) => {
    state.ears[isLeft ? 'left' : 'right'][hz] = db;
    draw();
  },
  earDone: () => {
    state.tone = null;
    draw();
    if (isSimulated) return void setTimeout(() => startEar(true), 500);
    show('右耳测试完成', '接下来测试左耳。', [['开始左耳', () => startEar(true), true]]);
  },
  done: (result) => {
    state.tone = null;
    state.result = result;
    at('progress').hidden = true;
    draw();
    showResult(result);
  },
  waits: () => {
    state.isWaiting = true;
    state.why = module.ornSound.why();
    showWaiting();
  },
  outputBack: () => { if (state.isWaiting) showWaiting(); },
};

function showWaiting() {
  show('测试在等待', `${whys[state.why]}。没有播放完整的声音不计入结果，会重新播放。`, [['继续测试', goOn, true]]);
}

async function goOn() {
  await module.ornSound.open();
  state.why = module.ornSound.why();
  if (state.why !== '') return showWaiting();
  state.isWaiting = false;
  showTest();
  page.goOn();
}

function showResult(result) {
  const sentence = (ear, name) => `您的${name}的平均听力损失为${ear.loss}分贝，${ear.verdict}`;
  const truth = isSimulated ? `\n模拟测听者的真实听阈——${summary(simulated.right, false)}。${summary(simulated.left, true)}。` : '';
  show('测试结果', [
    sentence(result.right, '右耳'), sentence(result.left, '左耳'),
    `${summary(result.right.thresholds, false)}。`, `${summary(result.left.thresholds, true)}。`,
    `级别未经核实（level not verified）；校准：示例（sample）。${truth}`,
  ].join('\n'), [['再测一次', () => location.reload()]]);
}

function showTest() {
  const ear = state.isLeft ? '左耳' : '右耳';
  show(`正在测试${ear}`, isSimulated ? '模拟测听者正在听。' : '听到声音就按下面的按钮，或者按空格键，再轻的声音也算。',
    [['听到了', press, true]]);
  at('progress').hidden = false;
}

const press = (event) => page.press(performance.now() - event.timeStamp);

function startEar(isLeft) {
  state.isLeft = isLeft;
  showTest();
  page.startEar(isLeft);
}

function askWhere(note = '') {
  const answer = (where) => () => {
    if (!page.answerCheck(where)) return askWhere('声音没有播放完整，请再听一次。');
    const finding = page.checkFinding();
    if (finding < 0) return playCheck();
    const [title, text] = findings[finding];
    const choices = [['再查一次', start]];
    if (finding === 0) choices.unshift(['进入测试', () => startEar(false), true]);
    if (finding === 3) choices.push(['仍然进入测试', () => startEar(false)]);
    show(title, text, choices);
  };
  show('声音检查', note || '您在哪一侧听到了声音？', [
    ['左', answer(0)], ['右', answer(1)], ['两侧', answer(2)], ['没听到', answer(3)], ['再听一次', playCheck],
  ]);
}

function playCheck() {
  askWhere(page.playCheck() ? '' : `${whys[module.ornSound.why()]}，请再听一次。`);
}

function newPage() {
  page?.delete();
  Object.assign(state, { ears: { left: {}, right: {} }, tone: null, events: [], result: null, isWaiting: false });
  page = new module.HearingPage(hzs, (event, what) => {
    state.events.push([event, JSON.parse(what)]);
    happens[event]?.(JSON.parse(what));
  });
  draw();
}

async function start() {
  await module.ornSound.open();
  isSimulated = false;
  newPage();
  playCheck();
}

async function simulate() {
  await module.ornSound.open();
  isSimulated = true;
  newPage();
  page.invite(JSON.stringify(simulated.left), JSON.stringify(simulated.right));
  startEar(false);
}

// During a test the space bar is a press wherever the focus is.
document.addEventListener('keydown', (event) => {
  if (event.key !== ' ' || event.repeat || event.target.tagName === 'BUTTON' || at('progress').hidden) return;
  event.preventDefault();
  press(event);
});

draw();
show('听力测试', '正在打开…');
navigator.serviceWorker?.register('offline.js').catch(() => {});
module = await make();
show('听力测试', '请戴好耳机，到安静的地方，把系统音量调到最大。开始后先检查左右声道。',
  [['开始', start, true], ['模拟测听者试测', simulate]]);
window.hearing = { module, state, readyAt: performance.now() };
