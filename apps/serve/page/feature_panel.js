// feature_panel.js - tree and editor together, kept as the camera has them

import { get } from './api.js';
import { afterwards, calmly, find, write } from './dom.js';
import { FeatureEditor } from './feature_editor.js';
import { FeatureModel, keyOf } from './feature_model.js';
import { FeatureTree } from './feature_tree.js';
import { current, on } from './hub.js';
import { notify } from './notices.js';

const model = new FeatureModel();
let tree;
let editor;
let loading = 0;

function showRows() {
  const search = find('feature-search').value;
  const { rows, count } = model.rows(search, Number(find('feature-visibility').value));
  tree.setRows(rows);
  write(find('feature-count'), model.size ? `${count} of ${model.size} features` : 'No camera is open.');
}

async function load() {
  const turn = ++loading;
  if (!current().open) return;
  try {
    const answer = await get('/api/features');
    if (turn !== loading) return;
    model.replace(answer.features);
    showRows();
    const selected = editor.feature && model.find(keyOf(editor.feature));
    if (selected) editor.update(selected);
  } catch (error) {
    if (turn === loading && current().open && !current().gone) notify(error.message, 'bad');
  }
}

function forget() {
  loading += 1;
  model.replace([]);
  editor.clear();
  showRows();
}

// Most changes leave the arrangement alone; a feature that becomes visible arrives with the list.
function change(feature) {
  if (!model.update(feature)) return;
  const key = keyOf(feature);
  const now = model.find(key);
  tree.update(key, now);
  if (editor.feature && keyOf(editor.feature) === key) editor.update(now);
}

export function startFeatures() {
  editor = new FeatureEditor((feature) => model.selectorsOf(feature));
  tree = new FeatureTree(find('tree'), (feature, enter) => {
    if (!editor.feature || keyOf(editor.feature) !== keyOf(feature)) editor.show(model.find(keyOf(feature)));
    if (enter) editor.focus();
  }, (path, expanded) => {
    model.setExpanded(path, expanded);
    showRows();
  });
  find('feature-search').addEventListener('input', afterwards(120, showRows));
  find('feature-visibility').addEventListener('change', showRows);
  on('feature', change);
  on('camera-opened', load);
  on('camera-closed', forget);
  showRows();
  // What changed while nothing could be heard.
  const again = calmly(500, load);
  let gone = false;
  let grabbing = false;
  on('link', (up) => {
    if (up && current().open) again();
  });
  on('state', (state) => {
    if (gone && !state.gone && state.open) again();
    if (grabbing !== state.grabbing) editor.lockChanged();
    gone = state.gone;
    grabbing = state.grabbing;
  });
}
