// The audiogram as SVG: frequencies across, levels down, a circle for the right ear and a cross for the left one.

export const kHz = [125, 250, 500, 1000, 2000, 4000, 8000];
const width = 360, height = 290, left = 34, top = 22, right = 10, bottom = 8;
const x = (hz) => left + ((kHz.indexOf(Number(hz)) + 0.5) * (width - left - right)) / kHz.length;
const y = (db) => top + ((db + 10) * (height - top - bottom)) / 110;

const mark = (hz, db, isLeft) => isLeft
  ? `<path class="left" d="M${x(hz) - 5} ${y(db) - 5}l10 10m0 -10l-10 10"/>`
  : `<circle class="right" cx="${x(hz)}" cy="${y(db)}" r="6"/>`;

function line(thresholds, isLeft) {
  const points = kHz.filter((hz) => hz in thresholds).map((hz) => `${x(hz)},${y(thresholds[hz])}`);
  return `<polyline class="${isLeft ? 'left' : 'right'}" points="${points.join(' ')}"/>`;
}

/** In words, as the screens say it. */
export function summary(thresholds, isLeft) {
  const parts = kHz.filter((hz) => hz in thresholds && thresholds[hz] !== -1).map((hz) => `${hz}赫兹${thresholds[hz]}分贝`);
  return `${isLeft ? '左耳' : '右耳'}听力图：${parts.join('，') || '没有结果'}`;
}

/** `ears` holds the thresholds of `left` and `right`; `now` is the cell of the tone that sounds, if one does. */
export function board(ears, now) {
  let content = '';
  for (const hz of kHz) {
    content += `<path class="grid" d="M${x(hz)} ${top}V${height - bottom}"/>`;
    content += `<text x="${x(hz)}" y="${top - 8}" text-anchor="middle">${hz < 1000 ? hz : `${hz / 1000}k`}</text>`;
  }
  for (let db = -10; db <= 100; db += 10) {
    content += `<path class="grid" d="M${left} ${y(db)}H${width - right}"/>`;
    content += `<text x="${left - 6}" y="${y(db) + 4}" text-anchor="end">${db}</text>`;
  }
  if (now) content += `<circle class="now" cx="${x(now.hz)}" cy="${y(now.db)}" r="9"/>`;
  for (const isLeft of [false, true]) {
    const thresholds = ears[isLeft ? 'left' : 'right'];
    content += line(thresholds, isLeft);
    for (const [hz, db] of Object.entries(thresholds)) content += mark(hz, db, isLeft);
  }
  const words = `${summary(ears.right, false)}。${summary(ears.left, true)}`;
  return `<svg viewBox="0 0 ${width} ${height}" role="img" aria-label="${words}">${content}</svg>`;
}
