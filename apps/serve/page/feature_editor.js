// feature_editor.js - the selected feature: what is known of it, and the editor for its type

import { executeFeature, writeFeature } from './api.js';
import { find, make, write } from './dom.js';
import { accessText, limitsText, typedJson, valueText } from './feature_text.js';
import { current, emit } from './hub.js';
import { sliderScale } from './slider_scale.js';
import { Followers } from './synchronisation.js';

/** What settings files keep can mostly be written while the camera stands still, which writing sees to. */
const isLocked = (feature) => current().grabbing && feature.access === 'R' && Boolean(feature.streamable);
const isEditable = (feature) => feature.access.includes('W') || isLocked(feature);

export class FeatureEditor {
  #feature = null;
  #control = null; // what holds the value
  #slider = null;
  #scale = null; // of the slider
  #dirty = false;
  #followers = null;
  #selectorsOf;

  constructor(selectorsOf) {
    this.#selectorsOf = selectorsOf;
  }

  get feature() {
    return this.#feature;
  }

  clear() {
    this.#feature = null;
    find('feature-detail').replaceChildren(make('p', { class: 'hint' }, 'Select a feature to see and change it.'));
  }

  show(feature) {
    this.#feature = feature;
    this.#build();
  }

  /** The feature has changed; what the user is typing stays. */
  update(feature) {
    const before = this.#feature;
    this.#feature = feature;
    if (before.access !== feature.access || this.#shape(before) !== this.#shape(feature)) {
      if (!this.#dirty) this.#rebuild();
      return;
    }
    this.#showFacts();
    if (!this.#dirty) this.#fill();
  }

  /** The camera has been started or stopped, which locks and unlocks. */
  lockChanged() {
    if (this.#feature && !this.#dirty && isEditable(this.#feature) !== Boolean(this.#control)) this.#rebuild();
  }

  focus() {
    this.#control?.focus();
  }

  #shape(feature) {
    return JSON.stringify([String(feature.min), String(feature.max), String(feature.increment), feature.entries]);
  }

  #rebuild() {
    const focused = find('feature-detail').contains(document.activeElement) && document.activeElement.id;
    this.#build();
    if (focused) find(focused)?.focus();
  }

  #build() {
    const feature = this.#feature;
    this.#dirty = false;
    this.#control = null;
    this.#slider = null;
    const title = feature.displayName && feature.displayName !== feature.name
      ? `${feature.displayName} (${feature.name})` : feature.name;
    const detail = find('feature-detail');
    detail.replaceChildren(make('h3', { id: 'feature-title' }, title));
    if (isEditable(feature)) detail.append(this.#makeEditor());
    if (isLocked(feature)) detail.append(make('p', { class: 'hint' }, 'Locked while images come: writing it stops them for a moment.'));
    detail.append(make('p', { id: 'feature-refusal', class: 'refusal', role: 'alert' }));
    const follows = make('div', { class: 'follows' });
    detail.append(follows, make('p', {}, feature.description || feature.toolTip || ''),
      make('dl', { class: 'facts', id: 'feature-facts' }), make('p', { class: 'path' }, feature.path));
    this.#showFacts();
    this.#fill();
    this.#followers = new Followers(feature, follows);
    detail.scrollTop = 0;
  }

  #showFacts() {
    const feature = this.#feature;
    const facts = [['Access', accessText(feature)]];
    if (!isEditable(feature) && feature.type !== 'command') {
      facts.unshift(['Value', `${valueText(feature) || '–'}${feature.unit ? ` ${feature.unit}` : ''}`]);
    }
    const limits = limitsText(feature);
    if (limits) facts.push(['Limits', limits]);
    const entries = (feature.entries ?? []).filter((entry) => entry.available).map((entry) => entry.name);
    if (entries.length && !isEditable(feature)) facts.push(['Entries', entries.join(', ')]);
    if (feature.selects?.length) facts.push(['Selects', feature.selects.join(', ')]);
    const selectors = this.#selectorsOf(feature);
    if (selectors.length) facts.push(['Selected by', selectors.join(', ')]);
    facts.push(['Type', feature.type]);
    if (feature.visibility) facts.push(['For', feature.visibility]);
    find('feature-facts').replaceChildren(...facts.flatMap(([name, text]) => [make('dt', {}, name), make('dd', {}, text)]));
  }

  // ---- editors ----

  #makeEditor() {
    const feature = this.#feature;
    const form = make('form', { class: 'editor', autocomplete: 'off' });
    form.addEventListener('submit', (event) => {
      event.preventDefault();
      if (feature.type === 'command') this.#write(() => executeFeature(feature));
      else this.#apply(this.#control.value);
    });
    const makers = {
      command: () => this.#makeCommand(form), boolean: () => this.#makeSwitch(form),
      enumeration: () => this.#makeList(form),
    };
    (makers[feature.type] ?? (() => this.#makeField(form)))();
    return form;
  }

  #makeCommand(form) {
    this.#control = make('button', { type: 'submit', class: 'primary', id: 'feature-execute' }, `Execute ${this.#feature.name}`);
    form.append(this.#control);
  }

  #makeSwitch(form) {
    this.#control = make('button', { type: 'button', role: 'switch', class: 'switch', id: 'feature-value', 'aria-labelledby': 'feature-title' });
    this.#control.addEventListener('click', () => this.#apply(String(this.#control.getAttribute('aria-checked') !== 'true')));
    form.append(this.#control, make('span', { id: 'feature-switch-text' }));
  }

  #makeList(form) {
    const options = (this.#feature.entries ?? []).map((entry) =>
      make('option', { value: entry.name, disabled: !entry.available }, entry.name));
    this.#control = make('select', { class: 'entry', id: 'feature-value', 'aria-labelledby': 'feature-title' }, ...options);
    // Keys go through the entries one by one: what is chosen is written only when it is applied.
    this.#control.addEventListener('change', () => this.#edited());
    this.#control.addEventListener('keydown', (event) => {
      if (event.key === 'Enter') form.requestSubmit();
    });
    form.append(this.#control);
    this.#addButtons(form);
  }

  #makeField(form) {
    const feature = this.#feature;
    const number = feature.type === 'integer' || feature.type === 'float';
    this.#control = make('input', {
      class: 'entry', id: 'feature-value', spellcheck: 'false', 'aria-labelledby': 'feature-title',
      'aria-describedby': 'feature-refusal feature-facts', inputmode: number && feature.type === 'float' ? 'decimal' : null,
    });
    this.#control.addEventListener('input', () => this.#edited());
    form.append(this.#control);
    if (feature.unit) form.append(make('span', { class: 'unit' }, feature.unit));
    this.#addButtons(form);
    if (number && this.#hasSlider()) form.append(this.#makeSlider());
  }

  #addButtons(form) {
    this.#control.addEventListener('keydown', (event) => {
      if (event.key === 'Escape') this.#revert();
    });
    form.append(make('button', { type: 'submit', id: 'feature-apply' }, 'Apply'),
      make('button', { type: 'button', id: 'feature-revert', onclick: () => this.#revert() }, 'Revert'));
  }

  #edited() {
    this.#dirty = true;
    this.#moveSlider();
    this.#preview();
  }

  #hasSlider() {
    const { min, max, representation } = this.#feature;
    const bounded = (value) => typeof value === 'number' && Math.abs(value) < 2 ** 40;
    return bounded(min) && bounded(max) && max > min && !/Hex|Address|PureNumber/.test(representation ?? '');
  }

  #makeSlider() {
    const feature = this.#feature;
    this.#scale = sliderScale(feature);
    const { least, most, step } = this.#scale;
    this.#slider = make('input', { type: 'range', id: 'feature-slider', min: least, max: most, step, 'aria-label': `${feature.name} slider` });
    this.#slider.addEventListener('input', () => {
      this.#control.value = this.#scale.toText(Number(this.#slider.value));
      this.#dirty = true;
      this.#nameSlider();
      this.#preview();
    });
    this.#slider.addEventListener('change', () => this.#apply(this.#control.value));
    const end = (value) => String(Number(Number(value).toPrecision(8)));
    return make('span', { class: 'slider' }, end(feature.min), this.#slider, end(feature.max));
  }

  #moveSlider() {
    const value = Number(this.#control.value);
    if (!this.#slider || !Number.isFinite(value)) return;
    this.#slider.value = this.#scale.toPosition(value);
    this.#nameSlider();
  }

  #nameSlider() {
    this.#slider.setAttribute('aria-valuetext', `${this.#control.value} ${this.#feature.unit ?? ''}`.trim());
  }

  #fill() {
    const feature = this.#feature;
    if (!this.#control || feature.type === 'command') return;
    if (feature.type === 'boolean') {
      this.#control.setAttribute('aria-checked', String(Boolean(feature.value)));
      write(find('feature-switch-text'), feature.value ? 'On' : 'Off');
    } else {
      this.#control.value = feature.type === 'enumeration' ? feature.value ?? '' : valueText(feature);
    }
    this.#moveSlider();
  }

  // ---- writing ----

  #refuse(text) {
    write(find('feature-refusal'), text);
    this.#control?.setAttribute('aria-invalid', String(text !== ''));
  }

  #revert() {
    this.#dirty = false;
    this.#refuse('');
    this.#fill();
    this.#followers.preview(undefined);
  }

  #preview() {
    this.#refuse('');
    try {
      this.#followers.preview(typedJson(this.#feature, this.#control.value));
    } catch {
      this.#followers.preview(undefined);
    }
  }

  #apply(text) {
    const feature = this.#feature;
    try {
      const json = typedJson(feature, text);
      this.#write(() => writeFeature(feature, json, isLocked(this.#feature)));
    } catch (error) {
      this.#refuse(error.message);
    }
  }

  async #write(action) {
    const feature = this.#feature;
    this.#refuse('');
    this.#control.classList.add('busy');
    try {
      const answer = await action();
      this.#dirty = false;
      if (answer.name) emit('feature', answer);
      this.#followers.preview(undefined);
    } catch (error) {
      if (this.#feature !== feature && this.#feature?.path !== feature.path) return;
      // What was typed or chosen stays, to be mended; a switch shows what is.
      if (feature.type === 'boolean') this.#fill();
      this.#refuse(error.message);
    } finally {
      this.#control?.classList.remove('busy');
    }
  }
}
