// rates.js - the last minute in small plots, and the frame account

import { drawLines } from './chart.js';
import { find, make, write } from './dom.js';
import { on } from './hub.js';

const kSeconds = 60;
const kPerSecond = 2;
const kPlaces = kSeconds * kPerSecond;

const accountRows = [
  ['completed', 'complete'], ['delivered', 'handed over'], ['taken', 'taken'], ['lost', 'lost'],
  ['flushed', 'flushed'], ['damaged', 'damaged'], ['incomplete', 'incomplete'], ['written', 'written'],
];
const bad = ['lost', 'damaged', 'incomplete'];

const places = (value, digits) => (value === null ? '–' : value.toFixed(digits));
const plots = [
  { key: 'rate', name: 'Frames a second', colours: ['trace-1'], text: (rate) => places(rate, 1) },
  { key: 'lost', name: 'Lost, damaged or incomplete', colours: ['red'], text: (lost) => places(lost, 0) },
  { key: 'latency', name: 'Latency p50, p99 in ms', colours: ['trace-1', 'trace-2'], text: (time) => places(time, 2) },
];
const past = { rate: [[]], lost: [[]], latency: [[], []] };

let latest = null;
let lostBefore = null;

const lostOf = (account) => bad.reduce((sum, name) => sum + (account?.[name] ?? 0), 0);
const number = (value) => (typeof value === 'number' ? value : null);

function push(list, value) {
  list.push(value);
  if (list.length > kPlaces) list.shift();
}

function sample() {
  const state = latest;
  const running = state?.grabbing;
  const lost = lostOf(state?.account);
  const newly = running && lostBefore !== null ? Math.max(0, lost - lostBefore) : null;
  lostBefore = running ? lost : null;
  push(past.rate[0], running ? number(state.rate) : null);
  push(past.lost[0], newly);
  push(past.latency[0], running ? number(state.latencyMs?.p50) : null);
  push(past.latency[1], running ? number(state.latencyMs?.p99) : null);
  if (!document.hidden) show();
}

function show() {
  for (const { key, name, colours, text } of plots) {
    const series = past[key];
    const all = series.flat().filter((value) => value !== null);
    const most = Math.max(all.reduce((a, b) => Math.max(a, b), 0) * 1.15, key === 'lost' ? 1 : 1e-3);
    const canvas = find(`rate-${key}`);
    drawLines(canvas, series.map((values, index) => ({
      values: [...Array(kPlaces - values.length).fill(null), ...values], colour: colours[index],
    })), { most });
    const now = series.map((values) => text(values.at(-1) ?? null)).join(' · ');
    write(find(`rate-${key}-now`), now);
    canvas.setAttribute('aria-label', `${name}: ${now}`);
  }
}

function showAccount(account) {
  const present = account ? accountRows.filter(([key]) => key in account) : [];
  find('account').parentElement.hidden = !present.length;
  find('account').replaceChildren(...present.flatMap(([key, name]) => [
    make('dt', {}, name),
    make('dd', { 'data-account': key, 'data-level': bad.includes(key) && account[key] > 0 ? 'bad' : null }, String(account[key])),
  ]));
}

let accountShown = '';

export function startRates() {
  find('rates').replaceChildren(...plots.map(({ key, name }) => make('div', { class: 'rate' },
    make('span', { class: 'name' }, name), make('span', { id: `rate-${key}-now` }, '–'),
    make('canvas', { id: `rate-${key}`, role: 'img', 'aria-label': name }))));
  on('state', (state) => {
    latest = state;
    const account = state.open ? state.account : null;
    const now = JSON.stringify(account);
    if (now !== accountShown) showAccount(account);
    accountShown = now;
  });
  showAccount(null);
  on('link', () => { latest = null; });
  setInterval(sample, 1000 / kPerSecond);
}
