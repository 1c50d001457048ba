// readout.js - the true value of the pixel under the pointer

import { find, write } from './dom.js';
import { current, on } from './hub.js';
import { readPixel } from './picture_source.js';

const kPause = 120; // milliseconds between two questions

let cursor = null;
let asking = false;
let stale = false;

function text(pixel) {
  const most = pixel.bits ? ` of ${2 ** pixel.bits - 1}` : '';
  const names = pixel.values.length === 3 ? ['R ', 'G ', 'B '] : [''];
  const values = pixel.values.map((value, index) => `${names[index] ?? ''}${value}`).join(' ');
  return `x ${pixel.x}  y ${pixel.y}  value ${values}${most}`;
}

async function ask() {
  if (asking) {
    stale = true;
    return;
  }
  if (!cursor || !current().image || document.hidden) return;
  asking = true;
  stale = false;
  const { x, y } = cursor;
  try {
    const pixel = await readPixel(x, y);
    const output = find('pixel');
    write(output, text({ x, y, ...pixel }));
    output.dataset.frame = String(pixel.frame);
    output.dataset.values = pixel.values.join(',');
  } catch {
    write(find('pixel'), `x ${x}  y ${y}`);
  }
  await new Promise((resolve) => setTimeout(resolve, kPause));
  asking = false;
  if (stale) ask();
}

export function startReadout() {
  on('cursor', (now) => {
    cursor = { x: now.x, y: now.y };
    // Frame by frame the values would be read aloud without end: only a move of the keyboard is.
    find('pixel').setAttribute('aria-live', document.activeElement === find('live') ? 'polite' : 'off');
    ask();
  });
  on('image', ask);
  on('camera-closed', () => {
    cursor = null;
    write(find('pixel'), 'x –  y –');
  });
}
