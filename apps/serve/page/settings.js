// settings.js - saving, comparing and loading the settings of the open camera

import { getText, postText } from './api.js';
import { download, find, make, write } from './dom.js';
import { current, on } from './hub.js';
import { attempt, notify } from './notices.js';

function table(headings, rows) {
  return make('table', {},
    make('thead', {}, make('tr', {}, ...headings.map((text) => make('th', { scope: 'col' }, text)))),
    make('tbody', {}, ...rows.map((row) => make('tr', {}, ...row.map((text) => make('td', {}, text))))));
}

async function chosenText() {
  const [file] = find('settings-file').files;
  if (!file) throw new Error('Choose a settings file first.');
  return file.text();
}

const shown = (value) => (value === null || value === undefined ? '(none)' : String(value));

function showLoaded(answer) {
  const changed = answer.changed ?? [];
  const refused = answer.refused ?? [];
  const parts = [make('p', {}, `${changed.length} written, ${answer.same} as they were, ${refused.length} refused.`)];
  if (changed.length) {
    parts.push(table(['Setting', 'before', 'now'],
      changed.map((entry) => [entry.setting, shown(entry.from), shown(entry.to)])));
  }
  if (refused.length) {
    parts.push(make('h3', {}, 'Refused'), table(['Setting', 'value', 'reason'],
      refused.map((entry) => [entry.setting, shown(entry.value), entry.reason])));
  }
  find('settings-result').replaceChildren(...parts);
}

function showDifferences(answer) {
  const rows = answer.differences.map((entry) => [entry.setting, shown(entry.camera), shown(entry.file)]);
  find('settings-result').replaceChildren(rows.length
    ? table(['Setting', 'camera', 'file'], rows)
    : make('p', {}, 'The camera has all settings as the file has them.'));
}

async function save() {
  download(await getText('/api/settings'), `${current().camera.name}-settings.json`);
  notify('The settings of the camera were saved.');
}

export function startSettings() {
  const buttons = ['settings-save', 'settings-compare', 'settings-load'].map(find);
  const order = (id, action) => {
    find(id).addEventListener('click', () => {
      write(find('settings-result'), '');
      attempt(find(id), action);
    });
  };
  order('settings-save', save);
  order('settings-compare', async () => showDifferences(await postText('/api/settings/diff', await chosenText())));
  order('settings-load', async () => showLoaded(await postText('/api/settings', await chosenText())));
  on('state', (state) => {
    for (const button of buttons) button.disabled = !state.open || state.gone;
  });
}
