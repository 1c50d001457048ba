// viewport.js - which part of the image is seen, and how large: all view lengths in screen pixels

const kLeast = 1 / 32;
const kMost = 64;

export class Viewport {
  imageWidth = 0;
  imageHeight = 0;
  viewWidth = 1;
  viewHeight = 1;
  scale = 1; // screen pixels for each pixel of the image
  left = 0; // of the view, in pixels of the image
  top = 0;
  whole = true; // the scale follows the size of the view

  setImage(width, height) {
    if (width === this.imageWidth && height === this.imageHeight) return false;
    this.imageWidth = width;
    this.imageHeight = height;
    this.#settle();
    return true;
  }

  setView(width, height) {
    this.viewWidth = Math.max(1, width);
    this.viewHeight = Math.max(1, height);
    this.#settle();
  }

  fit() {
    this.whole = true;
    this.#settle();
  }

  /** The point of the image at (x, y) of the view stays there. */
  zoom(scale, x = this.viewWidth / 2, y = this.viewHeight / 2) {
    const [fixedX, fixedY] = this.toImage(x, y);
    this.whole = false;
    this.scale = Math.min(kMost, Math.max(kLeast, scale));
    this.left = fixedX - x / this.scale;
    this.top = fixedY - y / this.scale;
    this.#hold();
  }

  pan(x, y) {
    this.whole = false;
    this.left -= x / this.scale;
    this.top -= y / this.scale;
    this.#hold();
  }

  /** Moves only as far as is needed to see the pixel. */
  reveal(x, y) {
    const width = this.viewWidth / this.scale;
    const height = this.viewHeight / this.scale;
    this.left = Math.min(x, Math.max(this.left, x + 1 - width));
    this.top = Math.min(y, Math.max(this.top, y + 1 - height));
    this.#hold();
  }

  toImage(x, y) {
    return [this.left + x / this.scale, this.top + y / this.scale];
  }

  toView(x, y) {
    return [(x - this.left) * this.scale, (y - this.top) * this.scale];
  }

  /** The pixels of the image that are seen, at least in part; of more than `most` a side those in the middle. */
  visible(most) {
    const seen = (from, image, view) => {
      const first = Math.max(0, Math.floor(from));
      const count = Math.max(0, Math.min(image, Math.ceil(from + view / this.scale)) - first);
      return count > most ? [first + Math.floor((count - most) / 2), most] : [first, count];
    };
    const [x, width] = seen(this.left, this.imageWidth, this.viewWidth);
    const [y, height] = seen(this.top, this.imageHeight, this.viewHeight);
    return { x, y, width, height };
  }

  #settle() {
    if (this.whole && this.imageWidth && this.imageHeight) {
      this.scale = Math.min(this.viewWidth / this.imageWidth, this.viewHeight / this.imageHeight);
    }
    this.#hold();
  }

  // An image smaller than the view is in its middle; a larger one leaves no empty edge.
  #hold() {
    const held = (at, image, view) => {
      const seen = view / this.scale;
      return seen >= image ? (image - seen) / 2 : Math.min(image - seen, Math.max(0, at));
    };
    this.left = held(this.left, this.imageWidth, this.viewWidth);
    this.top = held(this.top, this.imageHeight, this.viewHeight);
  }
}
