// events.js - what the program sends by itself, and whether it can be reached

import { get, parse } from './api.js';
import { emit, on, setState } from './hub.js';
import { find, write } from './dom.js';

let source = null;
let delay = 500;

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
    setTimeout(connect, delay);
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
  window.addEventListener('pagehide', () => source.close());
  window.addEventListener('pageshow', (event) => {
    if (event.persisted) connect();
  });
}
