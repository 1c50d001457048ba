// recording.js - starting, watching and downloading recordings

import { get, post } from './api.js';
import { find, make, write } from './dom.js';
import { current, on } from './hub.js';
import { attempt } from './notices.js';
import { onTab } from './tabs.js';

const kListed = 400; // files of one recording that are listed

function proposedName() {
  const now = new Date(Date.now() - new Date().getTimezoneOffset() * 60000);
  return `recording-${now.toISOString().slice(0, 19).replace(/[T:]/g, '-')}`;
}

async function start() {
  const frames = Number(find('recording-frames').value);
  if (!Number.isInteger(frames) || frames < 0) throw new Error('Frames is a whole number, 0 for until stopped.');
  await post('/api/recording/start', {
    frames, format: find('recording-format').value, name: find('recording-name').value.trim(),
  });
}

function describe(recording) {
  const parts = [`${recording.written} ${recording.wanted ? `of ${recording.wanted} ` : ''}frames written`];
  if (recording.waiting) parts.push(`${recording.waiting} waiting`);
  parts.push(`${recording.lost} lost`);
  let text = parts.join(', ');
  if (recording.done) text = recording.error ? `${text}. ${recording.error}` : `${text}. Done.`;
  return text;
}

let wasDone = true;

function show(state) {
  const recording = state.recording;
  const running = Boolean(recording && !recording.done);
  find('recording-start').disabled = !state.open || state.gone || running;
  find('recording-stop').disabled = !running;
  find('recording-progress').hidden = !recording;
  if (recording) {
    const bar = find('recording-bar');
    if (recording.wanted) {
      bar.max = recording.wanted;
      bar.value = recording.written;
    } else if (running) {
      bar.removeAttribute('value');
    } else {
      bar.max = 1;
      bar.value = 1;
    }
    write(find('recording-text'), describe(recording));
  }
  const done = !running;
  if (done && !wasDone) {
    list();
    find('recording-name').value = proposedName();
  }
  wasDone = done;
}

const size = (bytes) => (bytes === undefined ? '' : bytes < 1e6
  ? ` ${(bytes / 1e3).toFixed(1)} kB` : ` ${(bytes / 1e6).toFixed(1)} MB`);

function link(recording, file) {
  const name = file.name ?? file;
  const address = `/api/recordings/${encodeURIComponent(recording.name)}/${encodeURIComponent(name)}`;
  return make('li', {}, make('a', { href: address, download: name }, name), size(file.bytes));
}

function entry(recording) {
  const files = recording.files ?? [];
  const frames = files.filter((file) => /^frame-/.test(file.name ?? file));
  const others = files.filter((file) => !frames.includes(file));
  const rest = frames.length - kListed;
  return make('details', { 'data-recording': recording.name },
    make('summary', {}, `${recording.name} · ${files.length} files`),
    make('ul', {}, ...[...others, ...frames.slice(0, kListed)].map((file) => link(recording, file))),
    rest > 0 ? make('p', { class: 'hint' }, `and ${rest} more`) : null);
}

async function list() {
  try {
    const answer = await get('/api/recordings');
    const recordings = answer.recordings ?? answer;
    find('recordings').replaceChildren(...(recordings.length ? recordings.map(entry)
      : [make('p', { class: 'hint' }, 'None yet.')]));
  } catch (error) {
    find('recordings').replaceChildren(make('p', { class: 'hint' }, error.message));
  }
}

export function startRecording() {
  find('recording-name').value = proposedName();
  find('recording-form').addEventListener('submit', (event) => {
    event.preventDefault();
    attempt(find('recording-start'), start);
  });
  find('recording-stop').addEventListener('click', () => attempt(find('recording-stop'), () => post('/api/recording/stop')));
  onTab('recording', list);
  on('state', show);
  show(current());
}
