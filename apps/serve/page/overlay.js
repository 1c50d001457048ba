// overlay.js - what is drawn over the image

const kSaturated = 254; // of the shown values: a preview is not exact to the last

/** A canvas as large as the image's preview, with a mark on every saturated pixel. */
export function markSaturated(bitmap, place, view) {
  const canvas = new OffscreenCanvas(bitmap.width, bitmap.height);
  const context = canvas.getContext('2d', { willReadFrequently: true });
  context.drawImage(bitmap, 0, 0);
  const image = context.getImageData(0, 0, bitmap.width, bitmap.height);
  const values = image.data;
  for (let at = 0; at < values.length; at += 4) {
    const saturated = values[at] >= kSaturated || values[at + 1] >= kSaturated || values[at + 2] >= kSaturated;
    values[at] = 255;
    values[at + 1] = 32;
    values[at + 2] = 64;
    values[at + 3] = saturated ? 255 : 0;
  }
  context.putImageData(image, 0, 0);
  if (!place) return canvas;
  const whole = new OffscreenCanvas(view.imageWidth, view.imageHeight);
  whole.getContext('2d').drawImage(canvas, place.x, place.y);
  return whole;
}

// Dark below light: seen on every image.
function strokeTwice(context, path) {
  const ratio = window.devicePixelRatio || 1;
  for (const [style, width] of [['rgb(0 0 0 / 70%)', 3], ['#6ee7ff', 1]]) {
    context.strokeStyle = style;
    context.lineWidth = width * ratio;
    context.beginPath();
    path();
    context.stroke();
  }
}

export function drawCrosshair(context, view, cursor) {
  const [x, y] = view.toView(cursor.x + 0.5, cursor.y + 0.5);
  const gap = Math.max(6, view.scale);
  strokeTwice(context, () => {
    context.moveTo(0, y);
    context.lineTo(x - gap, y);
    context.moveTo(x + gap, y);
    context.lineTo(view.viewWidth, y);
    context.moveTo(x, 0);
    context.lineTo(x, y - gap);
    context.moveTo(x, y + gap);
    context.lineTo(x, view.viewHeight);
    if (cursor.pinned) context.rect(x - gap, y - gap, 2 * gap, 2 * gap);
  });
}

export function drawLine(context, view, line) {
  const ends = [view.toView(line.x1 + 0.5, line.y1 + 0.5), view.toView(line.x2 + 0.5, line.y2 + 0.5)];
  strokeTwice(context, () => {
    context.moveTo(...ends[0]);
    context.lineTo(...ends[1]);
    for (const [x, y] of ends) context.rect(x - 4, y - 4, 8, 8);
  });
}
