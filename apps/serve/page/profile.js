// profile.js - the values along a line

import { get } from './api.js';
import { channelColours, drawLines } from './chart.js';
import { calmly, find, write } from './dom.js';
import { current, on } from './hub.js';
import { setLine } from './live_view.js';

const fields = ['x1', 'y1', 'x2', 'y2'];
let line = null;
let answer = null;
let asking = false;

function show() {
  const channels = answer?.channels ?? [];
  const colours = channelColours(channels.length);
  // A contract without bits: the tallest value says how many there are.
  const tallest = channels.flat().reduce((most, value) => Math.max(most, value), 1);
  const most = 2 ** (answer?.bits ?? Math.max(8, Math.ceil(Math.log2(tallest + 1)))) - 1;
  drawLines(find('profile'), channels.map((values, index) => ({ values, colour: colours[index] })), { most });
  if (!channels.length) {
    write(find('profile-note'), '');
    return;
  }
  const values = channels.flat();
  const low = values.reduce((a, b) => Math.min(a, b), Infinity);
  const high = values.reduce((a, b) => Math.max(a, b), -Infinity);
  write(find('profile-note'), `${channels[0].length} pixels · ${low} to ${high}`);
  find('profile').setAttribute('aria-label', `Line profile: ${channels[0].length} pixels from ${low} to ${high}`);
}

async function ask() {
  if (asking || !line || !current().image || document.hidden) return;
  asking = true;
  try {
    answer = await get(`/api/profile?${new URLSearchParams(line)}`);
    show();
  } catch {
    // The next frame asks again.
  }
  asking = false;
}

const askCalmly = calmly(330, ask);

function showEnds() {
  for (const name of fields) {
    const field = find(`profile-${name}`);
    if (document.activeElement !== field) field.value = line[name];
  }
}

function moveEnds() {
  const ends = Object.fromEntries(fields.map((name) => [name, Number(find(`profile-${name}`).value)]));
  if (Object.values(ends).every(Number.isFinite)) setLine(ends);
}

export function startProfile() {
  on('line', ({ x1, y1, x2, y2 }) => {
    line = { x1, y1, x2, y2 };
    showEnds();
    askCalmly();
  });
  on('image', askCalmly);
  on('camera-closed', () => {
    line = null;
    answer = null;
    show();
  });
  for (const name of fields) find(`profile-${name}`).addEventListener('change', moveEnds);
  new ResizeObserver(show).observe(find('profile'));
}
