// chart.js - lines on a canvas, in the colours of the page

function colour(name) {
  return getComputedStyle(document.documentElement).getPropertyValue(`--${name}`).trim();
}

function prepare(canvas) {
  const ratio = window.devicePixelRatio || 1;
  const width = Math.round(canvas.clientWidth * ratio);
  const height = Math.round(canvas.clientHeight * ratio);
  if (canvas.width !== width) canvas.width = width;
  if (canvas.height !== height) canvas.height = height;
  const context = canvas.getContext('2d');
  context.clearRect(0, 0, width, height);
  return { context, width, height, ratio };
}

function grid({ context, width, height, ratio }, lines) {
  context.strokeStyle = colour('line');
  context.lineWidth = ratio;
  context.beginPath();
  for (let index = 0; index <= lines; index++) {
    const y = Math.round((height - ratio) * index / lines) + ratio / 2;
    context.moveTo(0, y);
    context.lineTo(width, y);
  }
  context.stroke();
}

/** One line for each of `series` ({ values, colour, fill }): null values are gaps. */
export function drawLines(canvas, series, { least = 0, most, lines = 2 } = {}) {
  const area = prepare(canvas);
  if (!area.width || !area.height) return;
  grid(area, lines);
  const { context, width, height, ratio } = area;
  const span = most - least || 1;
  const inset = 1.5 * ratio;
  for (const { values, colour: name, fill } of series) {
    const x = (index) => values.length > 1 ? index * (width - 1) / (values.length - 1) : width / 2;
    const y = (value) => height - inset - (value - least) / span * (height - 2 * inset);
    context.strokeStyle = colour(name);
    context.lineWidth = 1.25 * ratio;
    context.lineJoin = 'round';
    context.beginPath();
    let drawing = false;
    values.forEach((value, index) => {
      if (value === null || value === undefined) {
        drawing = false;
        return;
      }
      if (drawing) context.lineTo(x(index), y(value));
      else context.moveTo(x(index), y(value));
      drawing = true;
    });
    context.stroke();
    if (fill && values.length) {
      context.lineTo(x(values.length - 1), height);
      context.lineTo(x(0), height);
      context.globalAlpha = 0.22;
      context.fillStyle = colour(name);
      context.fill();
      context.globalAlpha = 1;
    }
  }
}

/** Colours of one channel or of three. */
export const channelColours = (count) => (count === 3 ? ['red', 'green', 'blue'] : ['trace-1', 'trace-2', 'green']);
