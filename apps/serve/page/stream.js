// stream.js - reads the parts of a stream of previews

import { RequestError } from './api.js';

const kLongestHead = 4096;

class Bytes {
  #held = new Uint8Array(1 << 18);
  length = 0;

  add(chunk) {
    if (this.length + chunk.length > this.#held.length) {
      const larger = new Uint8Array(2 * (this.length + chunk.length));
      larger.set(this.#held.subarray(0, this.length));
      this.#held = larger;
    }
    this.#held.set(chunk, this.length);
    this.length += chunk.length;
  }

  take(count) {
    const taken = this.#held.slice(0, count);
    this.#held.copyWithin(0, count, this.length);
    this.length -= count;
    return taken;
  }

  /** Where the empty line ends that ends a head; -1 when it has not come yet. */
  headEnd() {
    const limit = Math.min(this.length, kLongestHead) - 3;
    for (let at = 0; at < limit; at++) {
      if (this.#held[at] === 13 && this.#held[at + 1] === 10 &&
          this.#held[at + 2] === 13 && this.#held[at + 3] === 10) return at + 4;
    }
    return -1;
  }
}

function readHead(bytes) {
  const head = new Headers();
  for (const line of new TextDecoder().decode(bytes).split('\r\n')) {
    const colon = line.indexOf(':');
    if (colon > 0 && !line.startsWith('--')) head.set(line.slice(0, colon).trim(), line.slice(colon + 1).trim());
  }
  return head;
}

/** Passes each picture with the number of its frame, until the stream ends or is given up. */
export async function readStream(address, signal, receive) {
  const response = await fetch(address, { signal, cache: 'no-store' });
  if (!response.ok) throw new RequestError(`The stream was refused with status ${response.status}.`, response.status);
  const reader = response.body.getReader();
  const bytes = new Bytes();
  let head = null;
  for (;;) {
    const { done, value } = await reader.read();
    if (done) return;
    bytes.add(value);
    for (;;) {
      if (!head) {
        const end = bytes.headEnd();
        if (end < 0) {
          if (bytes.length > kLongestHead) throw new RequestError('The stream is not a stream of images.', 0);
          break;
        }
        head = readHead(bytes.take(end));
      }
      const size = Number(head.get('Content-Length') ?? 0);
      if (bytes.length < size) break;
      const picture = bytes.take(size);
      if (size) receive(new Blob([picture], { type: head.get('Content-Type') ?? 'image/jpeg' }), Number(head.get('X-Frame')));
      head = null;
    }
  }
}
