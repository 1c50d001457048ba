// feature_text.js - values of features as people write them

const groups = (value, count, radix) => {
  let rest = BigInt(value);
  const parts = [];
  for (let index = 0; index < count; index++) {
    parts.unshift((rest & 255n).toString(radix));
    rest >>= 8n;
  }
  return parts;
};

function integerText(value, representation) {
  switch (representation) {
    case 'HexNumber':
      return `0x${BigInt.asUintN(64, BigInt(value)).toString(16).toUpperCase()}`;
    case 'IPV4Address':
      return groups(value, 4, 10).join('.');
    case 'MACAddress':
      return groups(value, 6, 16).map((part) => part.padStart(2, '0').toUpperCase()).join(':');
    default:
      return String(value);
  }
}

/** Without digits that only the binary form has. */
function realText(value) {
  return Number.isInteger(value) ? String(value) : String(Number(value.toPrecision(10)));
}

/** The value alone, as an editor shows it; empty when there is none. */
export function valueText(feature) {
  const value = feature.value;
  if (value === null || value === undefined) return '';
  if (feature.type === 'integer') return integerText(value, feature.representation);
  if (feature.type === 'float') return realText(Number(value));
  if (feature.type === 'boolean') return value ? 'On' : 'Off';
  return String(value);
}

/** With its unit, for a line of the tree. */
export function shortText(feature) {
  if (feature.type === 'command') return '';
  if (feature.value === null || feature.value === undefined) {
    return feature.access === 'W' ? 'write only' : 'not available';
  }
  const text = valueText(feature);
  const short = text.length > 40 ? `${text.slice(0, 38)}…` : text;
  return feature.unit ? `${short} ${feature.unit}` : short;
}

/** The JSON of what the user has typed. A text that is no value of the type is refused here. */
export function typedJson(feature, text) {
  const given = text.trim();
  switch (feature.type) {
    case 'integer':
      return integerJson(feature, given);
    case 'float': {
      const number = Number(given.replace(',', '.'));
      if (given === '' || !Number.isFinite(number)) throw new Error(`"${given}" is no number.`);
      return JSON.stringify(number);
    }
    case 'boolean':
      return given === 'true' ? 'true' : 'false';
    case 'string':
      return JSON.stringify(text);
    default:
      return JSON.stringify(given);
  }
}

function integerJson(feature, given) {
  if (/^\d{1,3}(\.\d{1,3}){3}$/.test(given)) {
    return given.split('.').reduce((sum, part) => sum * 256n + BigInt(part), 0n).toString();
  }
  if (/^[0-9a-f]{2}(:[0-9a-f]{2}){5}$/i.test(given)) return BigInt(`0x${given.replaceAll(':', '')}`).toString();
  if (/^0x[0-9a-f]+$/i.test(given)) return BigInt.asIntN(64, BigInt(given)).toString();
  if (/^[+-]?\d+$/.test(given)) return BigInt(given).toString();
  throw new Error(`"${given}" is no whole number.`);
}

/** "16 to 1280 px in steps of 4" and the like; empty when nothing is known. */
export function limitsText(feature) {
  if (feature.type === 'string' && feature.maxLength) return `at most ${feature.maxLength} bytes`;
  if (feature.min === undefined || feature.min === null) return '';
  const huge = (value) => Math.abs(Number(value)) >= 2 ** 53;
  const least = huge(feature.min);
  const most = huge(feature.max);
  if (least && most) return '';
  const show = (value) => valueText({ ...feature, value });
  const unit = feature.unit ? ` ${feature.unit}` : '';
  const range = most ? `from ${show(feature.min)}${unit}`
    : least ? `to ${show(feature.max)}${unit}` : `${show(feature.min)} to ${show(feature.max)}${unit}`;
  return Number(feature.increment ?? 1) > 1 ? `${range} in steps of ${feature.increment}` : range;
}

/** What settings files keep can be written at other times, mostly while the camera stands still. */
export function accessText({ access, streamable }) {
  if (access === 'R') return streamable ? 'read only at present' : 'read only';
  return { W: 'write only', RW: 'read and write' }[access] ?? 'not available at present';
}
