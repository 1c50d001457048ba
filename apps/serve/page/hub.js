// hub.js - what the parts of the page tell one another, and the state that the program reported last

const hub = new EventTarget();

/** Names: state, cameras, feature, log, link, image, cursor, line, camera-opened, camera-closed. */
export const on = (name, handler) => hub.addEventListener(name, (event) => handler(event.detail));
export const emit = (name, detail) => hub.dispatchEvent(new CustomEvent(name, { detail }));

const nothing = {
  camera: null, open: false, grabbing: false, gone: false, image: null, account: null, rate: 0,
  latencyMs: null, recording: null, simulatorControl: false,
};

let state = nothing;

export const current = () => state;

const identityOf = (of) => (of.open && of.camera ? of.camera.id : null);

export function setState(next) {
  const before = identityOf(state);
  state = { ...nothing, ...next };
  state.open ||= state.gone; // the program opens a camera that has gone again when it is back
  const now = identityOf(state);
  if (before !== now && before !== null) emit('camera-closed');
  emit('state', state);
  if (before !== now && now !== null) emit('camera-opened');
}
