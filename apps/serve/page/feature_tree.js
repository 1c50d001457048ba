// feature_tree.js - the tree of features: only the rows in sight are elements

import { icon, make } from './dom.js';
import { accessText, shortText } from './feature_text.js';

const kMargin = 6; // rows beyond the edges

export class FeatureTree {
  #element;
  #inner = make('div', { role: 'none' });
  #rows = [];
  #shown = new Map(); // index: element
  #active = 0;
  #selected = '';
  #choose;
  #expand;

  /** `choose(feature)` when the user selects one, `expand(path, expanded)` for modules and categories. */
  constructor(element, choose, expand) {
    this.#element = element;
    this.#choose = choose;
    this.#expand = expand;
    element.append(this.#inner);
    element.addEventListener('scroll', () => this.#render());
    element.addEventListener('keydown', (event) => this.#key(event));
    element.addEventListener('click', (event) => this.#click(event));
    new ResizeObserver(() => this.#render()).observe(element);
  }

  setRows(rows) {
    const path = this.#rows[this.#active]?.path;
    this.#rows = rows;
    this.#active = Math.max(0, rows.findIndex((row) => row.path === path));
    this.#inner.style.height = `${rows.length * this.#height()}px`;
    this.#renew();
  }

  /** One feature has a new value. */
  update(key, feature) {
    const index = this.#rows.findIndex((row) => row.feature && row.path === key);
    if (index < 0) return;
    const changed = shortText(this.#rows[index].feature) !== shortText(feature);
    this.#rows[index].feature = feature;
    const before = this.#shown.get(index);
    if (!before) return;
    const element = this.#make(this.#rows[index], index);
    if (changed) {
      element.classList.add('changed');
      setTimeout(() => element.classList.remove('changed'), 1500);
    }
    before.replaceWith(element);
    this.#shown.set(index, element);
  }

  #height() {
    return parseFloat(getComputedStyle(document.documentElement).getPropertyValue('--row')) || 26;
  }

  #renew() {
    this.#inner.replaceChildren();
    this.#shown.clear();
    this.#render();
  }

  #render() {
    const height = this.#height();
    const first = Math.max(0, Math.floor(this.#element.scrollTop / height) - kMargin);
    const last = Math.min(this.#rows.length, Math.ceil((this.#element.scrollTop + this.#element.clientHeight) / height) + kMargin);
    for (const [index, element] of this.#shown) {
      if ((index < first || index >= last) && index !== this.#active) {
        element.remove();
        this.#shown.delete(index);
      }
    }
    const wanted = [...Array(Math.max(0, last - first)).keys()].map((offset) => first + offset);
    if (this.#active < this.#rows.length) wanted.push(this.#active);
    for (const index of wanted) {
      if (this.#shown.has(index)) continue;
      const element = this.#make(this.#rows[index], index);
      this.#shown.set(index, element);
      this.#inner.append(element);
    }
    const active = this.#shown.get(this.#active);
    if (active) this.#element.setAttribute('aria-activedescendant', active.id);
    else this.#element.removeAttribute('aria-activedescendant');
  }

  #make(row, index) {
    const feature = row.feature;
    const element = make('div', {
      id: `row-${index}`, class: index === this.#active ? 'row active' : 'row', role: 'treeitem',
      'data-path': row.path, 'data-index': index, 'data-access': feature?.access ?? null,
      'aria-level': row.level, 'aria-posinset': row.position, 'aria-setsize': row.setSize,
      'aria-expanded': feature ? null : String(row.expanded),
      'aria-selected': feature ? String(row.path === this.#selected) : null,
    });
    element.style.transform = `translateY(${index * this.#height()}px)`;
    element.append(make('span', { class: 'twist', 'aria-hidden': 'true' }, feature ? '' : row.expanded ? '▾' : '▸'),
      make('span', { class: 'label' }, row.label));
    if (!feature) {
      element.append(make('span', { class: 'tally' }, String(row.total)));
      return element;
    }
    element.append(make('span', { class: 'leader' }));
    const text = feature.type === 'command' ? 'command' : shortText(feature);
    element.append(make('span', { class: 'value', title: text }, text));
    if (feature.access === 'R') element.append(icon('lock'));
    if (feature.access !== 'RW') element.append(make('span', { class: 'unseen' }, accessText(feature)));
    return element;
  }

  #moveTo(index, choose) {
    if (index < 0 || index >= this.#rows.length) return;
    const height = this.#height();
    const before = this.#shown.get(this.#active);
    this.#active = index;
    before?.classList.remove('active');
    const top = index * height;
    if (top < this.#element.scrollTop) this.#element.scrollTop = top;
    if (top + height > this.#element.scrollTop + this.#element.clientHeight) {
      this.#element.scrollTop = top + height - this.#element.clientHeight;
    }
    this.#render();
    this.#shown.get(index)?.classList.add('active');
    if (choose) this.#select(this.#rows[index]);
  }

  #select(row) {
    if (!row.feature) return;
    this.#selected = row.path;
    for (const element of this.#shown.values()) {
      if (element.hasAttribute('aria-selected')) {
        element.setAttribute('aria-selected', String(element.dataset.path === row.path));
      }
    }
    this.#choose(row.feature);
  }

  #toggle(row, expanded) {
    if (row.feature || row.expanded === expanded) return false;
    this.#expand(row.path, expanded);
    return true;
  }

  #click(event) {
    const element = event.target.closest('.row');
    if (!element) return;
    const row = this.#rows[Number(element.dataset.index)];
    this.#moveTo(Number(element.dataset.index), true);
    if (!row.feature) this.#toggle(row, !row.expanded);
  }

  #parentOf(index) {
    for (let at = index - 1; at >= 0; at--) {
      if (this.#rows[at].level < this.#rows[index].level) return at;
    }
    return index;
  }

  #key(event) {
    const row = this.#rows[this.#active];
    if (!row || event.altKey || event.ctrlKey || event.metaKey) return;
    const page = Math.max(1, Math.floor(this.#element.clientHeight / this.#height()) - 1);
    const to = {
      ArrowDown: this.#active + 1, ArrowUp: this.#active - 1, Home: 0, End: this.#rows.length - 1,
      PageDown: Math.min(this.#rows.length - 1, this.#active + page), PageUp: Math.max(0, this.#active - page),
    }[event.key];
    if (to !== undefined) {
      this.#moveTo(to, true);
    } else if (event.key === 'ArrowRight') {
      if (!this.#toggle(row, true) && !row.feature) this.#moveTo(this.#active + 1, true);
    } else if (event.key === 'ArrowLeft') {
      if (!this.#toggle(row, false)) this.#moveTo(this.#parentOf(this.#active), true);
    } else if (event.key === 'Enter' || event.key === ' ') {
      if (!this.#toggle(row, !row.expanded)) this.#choose(row.feature, true);
    } else {
      return;
    }
    event.preventDefault();
  }
}
