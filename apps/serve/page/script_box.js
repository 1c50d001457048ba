// script_box.js - the simulator's fault script

import { getText, putText } from './api.js';
import { find, make, write } from './dom.js';
import { current } from './hub.js';
import { attempt } from './notices.js';
import { onTab } from './tabs.js';

const examples = () => {
  const id = current().camera?.id ?? 'ID';
  return {
    'Unplug for 3 s': `unplug ${id}\nafter 3000 plug ${id}`,
    'One frame in twenty lost': 'frame-random 7 5 drop',
    'Incomplete frames': 'frame-random 7 10 incomplete',
    'Hotter': `set ${id} DeviceTemperature 71.5`,
    'All well': 'clear',
  };
};

function showExamples() {
  find('script-examples').replaceChildren(...Object.entries(examples()).map(([name, text]) =>
    make('button', { type: 'button', onclick: () => {
      find('script').value = text;
      find('script').focus();
    } }, name)));
}

async function run() {
  write(find('script-result'), '');
  await putText('/api/simulator/script', find('script').value);
  write(find('script-result'), 'Done: every line was taken.');
}

export function startScriptBox() {
  onTab('simulator', async () => {
    showExamples();
    if (!find('script').value) {
      find('script').value = await getText('/api/simulator/script').catch(() => '');
    }
  });
  find('script-run').addEventListener('click', () => attempt(find('script-run'), run));
}
