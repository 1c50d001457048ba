// histogram.js - how often each value occurs in the newest frame

import { get } from './api.js';
import { channelColours, drawLines } from './chart.js';
import { calmly, find, write } from './dom.js';
import { current, on } from './hub.js';

const kBins = 256;
let answer = null;
let asking = false;

function show() {
  const canvas = find('histogram');
  const channels = answer?.channels ?? [];
  const logarithmic = find('histogram-log').checked;
  const shown = (count) => (logarithmic ? Math.log10(1 + count) : count);
  // One tall bin would hide all others: without logarithm the scale ends at the second tallest, thrice.
  const counts = channels.flat().sort((a, b) => b - a);
  const most = logarithmic ? shown(counts[0] ?? 1) : Math.min(counts[0] ?? 1, 3 * (counts[channels.length] || counts[0] || 1));
  const colours = channelColours(channels.length);
  drawLines(canvas, channels.map((values, index) => ({
    values: values.map((count) => Math.min(shown(count), most)), colour: colours[index], fill: true,
  })), { most: most || 1 });
  if (!answer) {
    write(find('histogram-note'), '');
    return;
  }
  const pixels = (channels[0] ?? []).reduce((sum, count) => sum + count, 0);
  const part = pixels ? (100 * answer.saturated / pixels).toFixed(answer.saturated ? 2 : 0) : 0;
  write(find('histogram-note'), `0 to ${2 ** answer.bits - 1} · ${answer.saturated} saturated (${part} %)`);
  canvas.setAttribute('aria-label', describe(channels));
}

function describe(channels) {
  const names = channels.length === 3 ? ['red ', 'green ', 'blue '] : [''];
  const means = channels.map((values, index) => {
    const all = values.reduce((sum, count) => sum + count, 0) || 1;
    const mean = values.reduce((sum, count, bin) => sum + count * (bin + 0.5), 0) / all;
    return `${names[index] ?? ''}mean ${(mean / values.length * 2 ** answer.bits).toFixed(0)}`;
  });
  return `Histogram: ${means.join(', ')}, ${answer.saturated} saturated`;
}

async function ask() {
  if (asking || !current().image || document.hidden) return;
  asking = true;
  try {
    answer = await get(`/api/histogram?bins=${kBins}`);
    show();
  } catch {
    // The next frame asks again.
  }
  asking = false;
}

export function startHistogram() {
  on('image', calmly(330, ask));
  on('camera-closed', () => {
    answer = null;
    show();
  });
  find('histogram-log').addEventListener('change', show);
  new ResizeObserver(show).observe(find('histogram'));
}
