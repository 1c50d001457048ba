// log.js - the lines of the log, newest last

import { find, make } from './dom.js';
import { on } from './hub.js';
import { onTab } from './tabs.js';

const kMost = 2000;
let lines = [];
let follows = true; // what is added is in sight

const toEnd = () => {
  find('log').scrollTop = find('log').scrollHeight;
};

const wanted = (line) => {
  const filter = find('log-filter').value.toLowerCase();
  return (!find('log-errors').checked || line.level === 0) && line.text.toLowerCase().includes(filter);
};

const entry = (line) => make('li', { 'data-level': line.level },
  make('time', { datetime: line.time.toISOString() }, line.time.toTimeString().slice(0, 8)),
  make('span', {}, line.level === 0 ? make('span', { class: 'unseen' }, 'error: ') : null, line.text));

function append(line) {
  lines.push({ ...line, time: new Date() });
  const log = find('log');
  if (log.clientHeight) follows = log.scrollTop + log.clientHeight >= log.scrollHeight - 30;
  if (wanted(line)) log.append(entry(lines.at(-1)));
  if (lines.length > kMost) lines = lines.slice(-kMost);
  while (log.childElementCount > kMost) log.firstElementChild.remove();
  if (follows) toEnd();
}

function showAll() {
  find('log').replaceChildren(...lines.filter(wanted).map(entry));
  toEnd();
}

export function startLog() {
  on('log', append);
  onTab('log', () => {
    if (follows) toEnd();
  });
  find('log-filter').addEventListener('input', showAll);
  find('log-errors').addEventListener('change', showAll);
  find('log-clear').addEventListener('click', () => {
    lines = [];
    showAll();
  });
}
