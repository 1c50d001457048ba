// slider_scale.js - which value belongs to which position of a slider

const kSteps = 1000;
const kManyTimes = 1e4; // from such a ratio of the limits on, equal steps would leave out all small values

const rounded = (value, digits) => String(Number(value.toPrecision(digits)));

/** { least, most, step, toText(position), toPosition(value) } for the limits of an integer or a float. */
export function sliderScale({ type, min, max, increment, representation }) {
  const isInteger = type === 'integer';
  if (min > 0 && (representation === 'Logarithmic' || (!isInteger && max / min >= kManyTimes))) {
    const ratio = Math.log(max / min);
    const step = isInteger ? increment || 1 : 0;
    const exact = (value) => (step ? String(min + Math.round((value - min) / step) * step) : rounded(value, 3));
    return {
      least: 0, most: kSteps, step: 1,
      toText: (position) => {
        if (position <= 0) return String(min);
        return position >= kSteps ? String(max) : exact(min * Math.exp(ratio * position / kSteps));
      },
      toPosition: (value) => kSteps * Math.log(Math.max(min, value) / min) / ratio,
    };
  }
  return {
    least: min, most: max, step: isInteger ? increment || 1 : (max - min) / kSteps,
    toText: (position) => (isInteger ? String(position) : rounded(position, 6)), toPosition: (value) => value,
  };
}
