// acquisition.js - the bar at the top: state of the camera, start, stop, single images

import { getBlob, post, send } from './api.js';
import { download, find, write } from './dom.js';
import { current, emit, on } from './hub.js';
import { attempt } from './notices.js';
import { selectTab } from './tabs.js';

function describe(state) {
  if (!state.open) return ['closed', 'closed'];
  if (state.gone) return ['gone', 'unplugged'];
  if (state.recording && !state.recording.done) return ['recording', 'recording'];
  return state.grabbing ? ['grabbing', 'live'] : ['open', 'open'];
}

function show(state) {
  const [key, text] = describe(state);
  const name = state.camera && state.open ? state.camera.userName || state.camera.name : 'No camera';
  write(find('camera-name'), name);
  write(find('camera-state'), text);
  find('camera-state').dataset.state = key;
  document.title = state.open ? `${name} (${text}) – Mivora` : 'Mivora';
  const start = find('start');
  start.disabled = !state.open || (state.gone && !state.grabbing);
  write(start.querySelector('span'), state.grabbing ? 'Stop' : 'Start');
  start.querySelector('use').setAttribute('href', state.grabbing ? '#icon-stop' : '#icon-start');
  start.classList.toggle('primary', !state.grabbing);
  for (const id of ['snap', 'save-png', 'save-tiff', 'record']) {
    find(id).disabled = !state.open || state.gone;
  }
  write(find('reading-rate'), state.grabbing ? state.rate.toFixed(1) : '–');
  const lost = state.open ? state.account?.lost : undefined;
  write(find('reading-lost'), lost === undefined ? '–' : String(lost));
  find('reading-lost').dataset.level = lost > 0 ? 'bad' : '';
  const latency = state.open ? state.latencyMs?.p50 : null;
  write(find('reading-latency'), typeof latency === 'number' ? `${latency.toFixed(2)} ms` : '–');
}

function fileName(ending) {
  const time = new Date().toISOString().replace(/[:.]/g, '-').slice(0, 19);
  return `${current().camera?.name ?? 'image'}-${time}.${ending}`;
}

async function snap() {
  const response = await send('GET', '/snap.png');
  emit('image', {
    bitmap: await createImageBitmap(await response.blob()), frame: Number(response.headers.get('X-Frame') ?? NaN),
  });
}

const save = (ending) => async () => download(await getBlob(`/snap.${ending}`), fileName(ending));

export function startAcquisition() {
  const order = (id, action) => {
    find(id).addEventListener('click', () => attempt(find(id), action));
  };
  order('start', () => post(current().grabbing ? '/api/camera/stop' : '/api/camera/start'));
  order('snap', snap);
  order('save-png', save('png'));
  order('save-tiff', save('tiff'));
  find('record').addEventListener('click', () => {
    selectTab('recording');
    find('recording-name').focus();
  });
  on('state', show);
  show(current());
}
