// pointers.js - mouse, pen and fingers on the image: hovering, clicking, dragging, zooming

const kClick = 4; // pixels that a click may move

/** Calls hover(x, y), click(x, y), drag(x, y, fromX, fromY, startX, startY), zoom(factor, x, y), in screen pixels. */
export function followPointers(canvas, actions) {
  const down = new Map(); // id: last place
  let start = null;
  let moved = false;

  const place = (event) => {
    const ratio = canvas.width / Math.max(1, canvas.clientWidth);
    const box = canvas.getBoundingClientRect();
    return { x: (event.clientX - box.left) * ratio, y: (event.clientY - box.top) * ratio };
  };

  const pinch = (event, now) => {
    const other = [...down].find(([id]) => id !== event.pointerId)[1];
    const before = down.get(event.pointerId);
    const distance = (a) => Math.max(1, Math.hypot(a.x - other.x, a.y - other.y));
    actions.zoom(distance(now) / distance(before), (now.x + other.x) / 2, (now.y + other.y) / 2);
  };

  canvas.addEventListener('pointerdown', (event) => {
    if (event.button !== 0) return;
    canvas.setPointerCapture(event.pointerId);
    start = place(event);
    moved = down.size > 0;
    down.set(event.pointerId, start);
  });

  canvas.addEventListener('pointermove', (event) => {
    const now = place(event);
    const before = down.get(event.pointerId);
    if (!before) {
      if (event.pointerType !== 'touch') actions.hover(now.x, now.y);
      return;
    }
    moved ||= Math.hypot(now.x - start.x, now.y - start.y) > kClick;
    if (!moved) return;
    if (down.size > 1) pinch(event, now);
    else actions.drag(now.x, now.y, before.x, before.y, start.x, start.y);
    down.set(event.pointerId, now);
  });

  const up = (event) => {
    if (!down.delete(event.pointerId)) return;
    const now = place(event);
    if (event.type === 'pointerup' && !moved) actions.click(now.x, now.y);
  };
  canvas.addEventListener('pointerup', up);
  canvas.addEventListener('pointercancel', up);

  canvas.addEventListener('wheel', (event) => {
    event.preventDefault();
    const { x, y } = place(event);
    const lines = event.deltaMode === 1 ? 16 : 1;
    actions.zoom(Math.exp(-event.deltaY * lines * 0.0016), x, y);
  }, { passive: false });
}
