// tabs.js - the tools beside the image, one at a time

import { find } from './dom.js';
import { on } from './hub.js';

const tabs = () => [...document.querySelectorAll('[role="tab"]')];

function select(tab, focus) {
  for (const other of tabs()) {
    const chosen = other === tab;
    other.setAttribute('aria-selected', String(chosen));
    other.tabIndex = chosen ? 0 : -1;
    find(other.getAttribute('aria-controls')).hidden = !chosen;
  }
  if (focus) tab.focus();
  tab.dispatchEvent(new CustomEvent('chosen'));
}

export const selectTab = (name) => select(find(`tab-${name}`), false);
/** Runs when the user turns to a tool. */
export const onTab = (name, action) => find(`tab-${name}`).addEventListener('chosen', action);

function move(event) {
  const all = tabs().filter((tab) => !tab.hidden);
  const at = all.indexOf(document.activeElement);
  const next = { ArrowRight: at + 1, ArrowLeft: at - 1, Home: 0, End: all.length - 1 }[event.key];
  if (next === undefined || at < 0) return;
  event.preventDefault();
  select(all[(next + all.length) % all.length], true);
}

export function startTabs() {
  for (const tab of tabs()) tab.addEventListener('click', () => select(tab, false));
  document.querySelector('[role="tablist"]').addEventListener('keydown', move);
  on('state', (state) => {
    const simulator = find('tab-simulator');
    simulator.hidden = !state.simulatorControl;
    if (simulator.hidden && simulator.getAttribute('aria-selected') === 'true') selectTab('features');
  });
  selectTab('features');
}
