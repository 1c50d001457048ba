// cameras.js - the list of cameras, which come and go

import { post } from './api.js';
import { find, make } from './dom.js';
import { current, on } from './hub.js';
import { attempt } from './notices.js';

let cameras = [];

export async function openCamera(id) {
  const state = current();
  if (state.open) await post('/api/camera/close');
  await post('/api/camera/open', { camera: id });
}

const isOpen = (camera) => current().open && current().camera?.id === camera.id;

function accessOf(camera) {
  if (isOpen(camera)) return current().gone ? 'gone' : 'open';
  return camera.access;
}

function row(camera) {
  const open = isOpen(camera);
  const access = accessOf(camera);
  const button = make('button', {
    type: 'button', 'data-camera': camera.id,
    'aria-label': `${open ? 'Close' : 'Open'} ${camera.name}, serial number ${camera.serialNumber}`,
  }, open ? 'Close' : 'Open');
  button.addEventListener('click', () => attempt(button, () =>
    open ? post('/api/camera/close') : openCamera(camera.id)));
  return make('li', { 'data-access': access, 'data-open': String(open) },
    make('span', { class: 'dot', 'aria-hidden': 'true' }),
    make('strong', { title: camera.extendedId }, camera.userName || camera.name),
    button,
    make('small', {}, `${camera.serialNumber} · ${access}`),
    make('small', {}, `${camera.transportLayer} · ${camera.interface}`));
}

let shown = '';

function show() {
  const state = current();
  const list = [...cameras];
  if (state.open && state.camera && !list.some((camera) => camera.id === state.camera.id)) {
    list.unshift(state.camera); // unplugged: it is not listed any more
  }
  const now = JSON.stringify([list, state.open, state.gone, state.camera?.id]);
  if (now === shown) return;
  shown = now;
  const focused = document.activeElement?.dataset?.camera;
  find('cameras').replaceChildren(...(list.length ? list.map(row)
    : [make('li', { class: 'none' }, 'No camera is connected.')]));
  if (focused) find('cameras').querySelector(`[data-camera="${CSS.escape(focused)}"]`)?.focus();
}

export function startCameras() {
  on('cameras', (list) => {
    cameras = list;
    show();
  });
  on('state', show);
}
