// synchronisation.js - which features follow the selected one, and what a write would change

import { followersOf } from './api.js';
import { afterwards, make } from './dom.js';

const kPause = 200;

const nameOf = (entry) => (typeof entry === 'string' ? entry : `${entry.module}/${entry.name ?? entry.feature}`);
const textOf = (value) => (value === null || value === undefined ? '–' : String(value));

export class Followers {
  #feature;
  #element;
  #followers = [];
  #question = 0;
  #ask = afterwards(kPause, (json) => this.#read(json));

  constructor(feature, element) {
    this.#feature = feature;
    this.#element = element;
    this.#read(undefined);
  }

  /** Shows what a write of this value would change; undefined for none. */
  preview(json) {
    if (this.#followers.length) this.#ask(json);
  }

  async #read(json) {
    const question = ++this.#question;
    try {
      const answer = await followersOf(this.#feature, json);
      if (question === this.#question) this.#show(answer, json !== undefined);
    } catch {
      if (question === this.#question) this.#element.replaceChildren();
    }
  }

  #show(answer, asked) {
    this.#followers = answer.followers ?? [];
    if (!this.#followers.length) {
      this.#element.replaceChildren();
      return;
    }
    const parts = [make('p', {}, `Followed by ${this.#followers.map(nameOf).join(', ')}.`)];
    if (asked && answer.reason) parts.push(make('p', { class: 'refusal' }, answer.reason));
    else if (asked && answer.changes?.length) parts.push(this.#table(answer.changes));
    this.#element.replaceChildren(...parts);
  }

  #table(changes) {
    return make('table', {},
      make('caption', { class: 'unseen' }, 'What this write would change'),
      make('thead', {}, make('tr', {}, ...['A write changes', 'from', 'to'].map((text) => make('th', { scope: 'col' }, text)))),
      make('tbody', {}, ...changes.map((change) => make('tr', {},
        make('td', {}, nameOf(change.feature ?? change)), make('td', {}, textOf(change.from)), make('td', {}, textOf(change.to))))));
  }
}
