// events.js - what the program sends by itself, and whether it can be reached

import { get, parse } from './api.js';
import { emit, on, setState } from './hub.js';
import { find, write } from './dom.js';

// A browser has six connections to one program for all its pages, so a page out of sight takes none for long.
const kHiddenPause = 30000;

let source = null;
let delay = 500;
let hiding = 0;
let again = 0;

function show(state, text) {
  const link = find('link');
  link.dataset.state = state;
  write(link, text);
}

function receive(name, action) {
  source.addEventListener(name, (event) => action(parse(event.data)));
}

async function explainLoss() {
  try {
    await get('/api/state');
  } catch (error) {
    if (error.status === 401 || error.status === 403) {
      show('lost', 'no permission: open the page with its token');
    }
  }
}

function rest() {
  clearTimeout(again);
  source?.close();
  source = null;
  show('waiting', 'resting');
}

function turn() {
  clearTimeout(hiding);
  if (document.hidden) hiding = setTimeout(rest, kHiddenPause);
  else if (!source) connect();
}

function connect() {
  source = new EventSource('/events');
  source.addEventListener('open', () => {
    delay = 500;
    show('up', 'connected');
    emit('link', true);
  });
  source.addEventListener('error', () => {
    source.close();
    show('lost', 'connection lost, trying again');
    emit('link', false);
    explainLoss();
    again = setTimeout(connect, delay);
    delay = Math.min(delay * 2, 5000);
  });
  receive('state', setState);
  receive('cameras', (cameras) => emit('cameras', cameras.cameras ?? cameras));
  receive('feature', (feature) => emit('feature', feature));
  receive('log', (line) => emit('log', line));
}

export function follow() {
  on('link', (up) => document.body.classList.toggle('lost', !up));
  connect();
  document.addEventListener('visibilitychange', turn);
  window.addEventListener('pagehide', rest);
  window.addEventListener('pageshow', (event) => {
    if (event.persisted) turn();
  });
}
