// dom.js - small helpers to find and make elements

export const find = (id) => document.getElementById(id);

/** An element with attributes and children; texts become text nodes, so nothing is read as HTML. */
export function make(name, attributes = {}, ...children) {
  const element = document.createElement(name);
  for (const [key, value] of Object.entries(attributes)) {
    if (value === null || value === undefined || value === false) continue;
    if (key.startsWith('on')) element.addEventListener(key.slice(2), value);
    else element.setAttribute(key, value === true ? '' : value);
  }
  element.append(...children.filter((child) => child !== null && child !== undefined));
  return element;
}

export function icon(name) {
  const space = 'http://www.w3.org/2000/svg';
  const svg = document.createElementNS(space, 'svg');
  const use = document.createElementNS(space, 'use');
  svg.setAttribute('aria-hidden', 'true');
  use.setAttribute('href', `#icon-${name}`);
  svg.append(use);
  return svg;
}

/** Writes a text only when it differs: a screen reader repeats what is written. */
export function write(element, text) {
  if (element.textContent !== text) element.textContent = text;
}

/** Passes `action` on at most every `milliseconds`, the last call always. */
export function calmly(milliseconds, action) {
  let timer = 0;
  let last = 0;
  return () => {
    if (timer) return;
    const wait = Math.max(0, last + milliseconds - performance.now());
    timer = setTimeout(() => {
      timer = 0;
      last = performance.now();
      action();
    }, wait);
  };
}

/** Runs `action` once the calls have stopped for `milliseconds`. */
export function afterwards(milliseconds, action) {
  let timer = 0;
  return (...given) => {
    clearTimeout(timer);
    timer = setTimeout(() => action(...given), milliseconds);
  };
}

/** Hands a text or a blob to the user as a file. */
export function download(content, name) {
  const blob = content instanceof Blob ? content : new Blob([content], { type: 'application/json' });
  const address = URL.createObjectURL(blob);
  make('a', { href: address, download: name }).click();
  setTimeout(() => URL.revokeObjectURL(address), 10000);
}
