// live_view.js - draws the live image, and moves it by pointer, touch and keyboard

import { afterwards, find, write } from './dom.js';
import { current, emit, on } from './hub.js';
import { drawCrosshair, drawLine, markSaturated } from './overlay.js';
import { newestPicture, PictureSource } from './picture_source.js';
import { followPointers } from './pointers.js';
import { Viewport } from './viewport.js';

const kZoomStep = 1.25;
const kMostPart = 4096; // pixels of the width and height of an exact part

const view = new Viewport();
const cursor = { x: 0, y: 0, known: false, pinned: false };
const line = { x1: 0, y1: 0, x2: 0, y2: 0, known: false, chosen: false };
const pressed = { exact: false, crosshair: false, saturation: false, 'profile-line': false };
let canvas;
let context;
let source;
let preview = null; // bitmap of the whole image
let part = null; // bitmap of an exact part, and its place
let marks = null; // canvas with the saturated pixels of the preview
let frameNumber = null;
let pending = false;

function draw() {
  pending = false;
  context.setTransform(1, 0, 0, 1, 0, 0);
  context.clearRect(0, 0, canvas.width, canvas.height);
  if (!view.imageWidth) return;
  const [x, y] = view.toView(0, 0);
  const width = view.imageWidth * view.scale;
  const height = view.imageHeight * view.scale;
  context.imageSmoothingEnabled = view.scale < 2;
  context.imageSmoothingQuality = 'medium';
  if (preview) context.drawImage(preview, x, y, width, height);
  if (isExact() && part) drawPart();
  if (pressed.saturation && marks) context.drawImage(marks, x, y, width, height);
  if (pressed['profile-line'] && line.known) drawLine(context, view, line);
  if (pressed.crosshair && cursor.known) drawCrosshair(context, view, cursor);
}

function drawPart() {
  const [x, y] = view.toView(part.place.x, part.place.y);
  context.imageSmoothingEnabled = view.scale < 1;
  context.drawImage(part.bitmap, x, y, part.place.width * view.scale, part.place.height * view.scale);
}

// A preview has saturated pixels that are none in the frame, and the other way round.
const isExact = () => pressed.exact || pressed.saturation;

function redraw() {
  if (pending) return;
  pending = true;
  requestAnimationFrame(draw);
}

// ---- pictures ----

function adoptSize(bitmap) {
  const image = current().image;
  if (view.setImage(image?.width ?? bitmap.width, image?.height ?? bitmap.height)) sizeChanged();
}

function receive(bitmap, frame, place) {
  if (place) {
    part?.bitmap.close();
    part = { bitmap, place };
    if (pressed.saturation) marks = markSaturated(bitmap, place, view);
  } else {
    preview?.close();
    preview = bitmap;
    part = null; // of an older frame
    adoptSize(bitmap);
    if (pressed.saturation) marks = markSaturated(bitmap, null, view);
  }
  if (Number.isFinite(frame)) {
    frameNumber = frame;
    canvas.dataset.frame = String(frame);
    write(find('live-frame'), `frame ${frame}`);
    emit('image', null);
  }
  redraw();
}

function sizeChanged() {
  part = null;
  marks = null;
  const fits = Math.max(line.x1, line.x2) < view.imageWidth && Math.max(line.y1, line.y2) < view.imageHeight;
  if (!line.chosen || !fits) {
    const middle = Math.floor(view.imageHeight / 2);
    setLine({ x1: 0, y1: middle, x2: view.imageWidth - 1, y2: middle });
    line.chosen = false;
  }
  cursor.x = Math.min(cursor.x, view.imageWidth - 1);
  cursor.y = Math.min(cursor.y, view.imageHeight - 1);
  canvas.dataset.size = `${view.imageWidth}x${view.imageHeight}`;
  viewChanged();
}

async function showNewest() {
  if (!current().image || current().grabbing) return;
  const bitmap = await newestPicture().catch(() => null);
  if (bitmap) receive(bitmap, NaN, null);
}

// ---- the view ----

const askAnew = afterwards(250, () => {
  source.setWidth(view.imageWidth * view.scale);
  source.refresh();
});

function viewChanged() {
  write(find('zoom'), `${Math.round(view.scale * 100)} %`);
  find('fit').setAttribute('aria-pressed', String(view.whole));
  askAnew();
  redraw();
}

function resize() {
  const ratio = window.devicePixelRatio || 1;
  canvas.width = Math.max(1, Math.round(canvas.clientWidth * ratio));
  canvas.height = Math.max(1, Math.round(canvas.clientHeight * ratio));
  view.setView(canvas.width, canvas.height);
  viewChanged();
}

function zoomBy(factor, x, y) {
  view.zoom(view.scale * factor, x, y);
  viewChanged();
}

function press(name, on) {
  pressed[name] = on;
  find(name).setAttribute('aria-pressed', String(on));
  if (name === 'saturation') marks = on && preview ? markSaturated(preview, null, view) : null;
  source.setExact(isExact());
  source.refresh();
  redraw();
}

function oneToOne() {
  view.zoom(1, canvas.width / 2, canvas.height / 2);
  press('exact', true);
  viewChanged();
}

function fit() {
  view.fit();
  press('exact', false);
  viewChanged();
}

// ---- cursor and line ----

const inside = (value, end) => Math.min(end - 1, Math.max(0, Math.floor(value)));

function moveCursor(x, y) {
  if (!view.imageWidth) return;
  cursor.x = inside(x, view.imageWidth);
  cursor.y = inside(y, view.imageHeight);
  cursor.known = true;
  emit('cursor', cursor);
  redraw();
}

/** The line of the profile, whoever moves it. */
export function setLine(ends) {
  for (const key of ['x1', 'x2']) line[key] = inside(ends[key], view.imageWidth || Infinity);
  for (const key of ['y1', 'y2']) line[key] = inside(ends[key], view.imageHeight || Infinity);
  line.known = true;
  line.chosen = true;
  emit('line', { ...line });
  redraw();
}

function hover(x, y) {
  if (!cursor.pinned) moveCursor(...view.toImage(x, y));
}

function click(x, y) {
  cursor.pinned = !cursor.pinned && pressed.crosshair;
  moveCursor(...view.toImage(x, y));
}

function drag(x, y, fromX, fromY, startX, startY) {
  if (!pressed['profile-line']) {
    view.pan(x - fromX, y - fromY);
    viewChanged();
    return;
  }
  const [x1, y1] = view.toImage(startX, startY);
  const [x2, y2] = view.toImage(x, y);
  setLine({ x1, y1, x2, y2 });
}

const keys = {
  '+': () => zoomBy(kZoomStep),
  '=': () => zoomBy(kZoomStep),
  '-': () => zoomBy(1 / kZoomStep),
  0: fit,
  1: oneToOne,
  e: () => press('exact', !pressed.exact),
  c: () => press('crosshair', !pressed.crosshair),
  s: () => press('saturation', !pressed.saturation),
  p: () => press('profile-line', !pressed['profile-line']),
  Enter: () => { cursor.pinned = !cursor.pinned; },
};

function key(event) {
  const arrow = { ArrowLeft: [-1, 0], ArrowRight: [1, 0], ArrowUp: [0, -1], ArrowDown: [0, 1] }[event.key];
  if (event.altKey || event.metaKey || (event.ctrlKey && !arrow)) return;
  if (arrow && event.ctrlKey) {
    view.pan(-40 * arrow[0], -40 * arrow[1]);
    viewChanged();
  } else if (arrow) {
    const step = event.shiftKey ? 10 : 1;
    if (!pressed.crosshair) press('crosshair', true);
    if (!cursor.known) {
      const seen = view.visible(Infinity);
      cursor.x = seen.x + Math.floor(seen.width / 2);
      cursor.y = seen.y + Math.floor(seen.height / 2);
    }
    cursor.pinned = true;
    moveCursor(cursor.x + step * arrow[0], cursor.y + step * arrow[1]);
    view.reveal(cursor.x, cursor.y);
    redraw();
  } else if (keys[event.key]) {
    keys[event.key]();
  } else {
    return;
  }
  event.preventDefault();
}

// ---- notes in place of an image ----

let reachable = true;

function note(state) {
  const element = find('stage-note');
  let text = '';
  if (!reachable) text = 'The program cannot be reached. The page goes on when it is back.';
  else if (!state.open) text = 'Open a camera to see its images.';
  else if (state.gone) text = 'The camera has been unplugged. It goes on when it returns.';
  else if (!state.grabbing && !preview) text = 'Start the camera, or snap an image.';
  element.dataset.level = state.gone || !reachable ? 'bad' : '';
  write(element, text);
}

function follow(state) {
  note(state);
  const image = state.open ? state.image : null;
  write(find('live-size'), image ? `${image.width} × ${image.height} ${image.pixelFormat}` : '');
  if (image && view.setImage(image.width, image.height)) sizeChanged();
}

function forget() {
  preview?.close();
  preview = null;
  part = null;
  marks = null;
  line.known = false;
  line.chosen = false;
  cursor.known = false;
  cursor.pinned = false;
  view.setImage(0, 0);
  delete canvas.dataset.frame;
  write(find('live-frame'), '');
  redraw();
}

/** Number of the frame that is shown, null without one. */
export const shownFrame = () => frameNumber;

export function startLiveView() {
  canvas = find('live');
  context = canvas.getContext('2d');
  source = new PictureSource(receive, () => view.visible(kMostPart));
  new ResizeObserver(resize).observe(canvas);
  followPointers(canvas, { hover, click, drag, zoom: zoomBy });
  canvas.addEventListener('keydown', key);
  for (const name of Object.keys(pressed)) find(name).addEventListener('click', () => press(name, !pressed[name]));
  find('fit').addEventListener('click', fit);
  find('one-to-one').addEventListener('click', oneToOne);
  find('zoom-in').addEventListener('click', () => zoomBy(kZoomStep));
  find('zoom-out').addEventListener('click', () => zoomBy(1 / kZoomStep));
  on('state', follow);
  on('link', (up) => {
    reachable = up;
    note(current());
  });
  on('camera-closed', forget);
  on('camera-opened', showNewest);
  on('image', (snapped) => {
    if (snapped) receive(snapped.bitmap, snapped.frame, null);
  });
  follow(current());
}
