// picture_source.js - where the pictures come from: the preview's stream, or exact parts of the newest frame

import { get, getBlob, send } from './api.js';
import { current, on } from './hub.js';
import { readStream } from './stream.js';

const kLeastWidth = 16;
const kExactPause = 60; // milliseconds between exact parts
const kRetry = 1000;

export class PictureSource {
  #show;
  #part; // gives the part of the image that is seen
  #exact = false;
  #width = 0;
  #running = null; // AbortController of what runs, and what it was started for
  #runs = '';
  #decoding = false;
  #waiting = null;

  /** `show` gets a bitmap, the number of its frame, and of an exact part its place. */
  constructor(show, part) {
    this.#show = show;
    this.#part = part;
    on('state', () => this.#follow());
    on('link', () => this.restart());
    on('camera-closed', () => this.restart());
    document.addEventListener('visibilitychange', () => this.#follow());
  }

  setExact(exact) {
    this.#exact = exact;
    this.#follow();
  }

  /** At least as many pixels as the whole image takes of the screen. Previews are reduced by whole numbers. */
  setWidth(width) {
    const image = current().image?.width ?? width;
    const reduction = Math.max(1, Math.floor(image / Math.max(kLeastWidth, width)));
    this.#width = Math.max(kLeastWidth, Math.ceil(image / reduction));
    this.#follow();
  }

  restart() {
    this.#running?.abort();
    this.#running = null;
    this.#runs = '';
    this.#follow();
  }

  /** A single part while no frames come, for a view that has moved. */
  async refresh() {
    if (this.#exact && !current().grabbing && current().image) await this.#showPart().catch(() => {});
  }

  #wanted() {
    const state = current();
    if (!state.open || !state.grabbing || state.gone || document.hidden) return '';
    return this.#exact ? 'exact' : `stream ${this.#width}`;
  }

  #follow() {
    const wanted = this.#wanted();
    if (wanted === this.#runs) return;
    this.#running?.abort();
    this.#running = null;
    this.#runs = wanted;
    if (!wanted) return;
    const running = new AbortController();
    this.#running = running;
    const work = this.#exact ? this.#runParts(running.signal) : this.#runStream(running.signal);
    work.catch(() => {}).then(() => {
      if (running.signal.aborted) return;
      setTimeout(() => {
        if (this.#running === running) this.restart();
      }, kRetry);
    });
  }

  #runStream(signal) {
    return readStream(`/stream.mjpg?width=${this.#width}&quality=80&rate=30`, signal, (blob, frame) => {
      this.#waiting = { blob, frame, signal };
      if (!this.#decoding) this.#decode();
    });
  }

  // Only the newest is decoded: what came meanwhile is skipped.
  async #decode() {
    this.#decoding = true;
    while (this.#waiting) {
      const { blob, frame, signal } = this.#waiting;
      this.#waiting = null;
      try {
        const bitmap = await createImageBitmap(blob);
        if (signal.aborted) bitmap.close();
        else this.#show(bitmap, frame, null);
      } catch {
        // A picture that is none is left out.
      }
    }
    this.#decoding = false;
  }

  async #runParts(signal) {
    while (!signal.aborted) {
      await this.#showPart(signal);
      await new Promise((resolve) => setTimeout(resolve, kExactPause));
    }
  }

  async #showPart(signal) {
    const part = this.#part();
    if (!part.width || !part.height) return;
    const response = await send('GET', `/tile.png?${new URLSearchParams(part)}`, { signal });
    const frame = Number(response.headers.get('X-Frame'));
    const bitmap = await createImageBitmap(await response.blob());
    if (signal?.aborted) bitmap.close();
    else this.#show(bitmap, frame, part);
  }
}

/** The newest frame's preview while none come by themselves. */
export async function newestPicture() {
  return createImageBitmap(await getBlob('/frame.jpg'));
}

/** The true values of one pixel. */
export const readPixel = (x, y) => get(`/api/pixel?x=${x}&y=${y}`);
