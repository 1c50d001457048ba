// api.js - requests to the program that serves this page

export class RequestError extends Error {
  constructor(message, status) {
    super(message);
    this.status = status;
  }
}

/** JSON whose integers beyond 2^53 stay exact, as BigInt, where the browser passes the source. */
export function parse(text) {
  return JSON.parse(text, (key, value, context) => {
    const inexact = typeof value === 'number' && !Number.isSafeInteger(value);
    return inexact && /^-?\d+$/.test(context?.source ?? '') ? BigInt(context.source) : value;
  });
}

async function reasonOf(response) {
  const text = await response.text().catch(() => '');
  try {
    return parse(text).error || text;
  } catch {
    return text || `The program refused this with status ${response.status}.`;
  }
}

export async function send(method, path, { body, type, signal } = {}) {
  let response;
  try {
    response = await fetch(path, {
      method, body, signal, cache: 'no-store', headers: type ? { 'Content-Type': type } : {},
    });
  } catch (error) {
    if (error.name === 'AbortError') throw error;
    throw new RequestError('The program does not respond: it has ended, or cannot be reached.', 0);
  }
  if (!response.ok) throw new RequestError(await reasonOf(response), response.status);
  return response;
}

const read = async (response) => parse(await (await response).text());

export const get = (path, signal) => read(send('GET', path, { signal }));
export const post = (path, value = {}) =>
  read(send('POST', path, { body: JSON.stringify(value), type: 'application/json' }));
export const postText = (path, body) => read(send('POST', path, { body, type: 'text/plain' }));
export const putText = (path, body) => read(send('PUT', path, { body, type: 'text/plain' }));
export const getText = async (path) => (await send('GET', path)).text();
export const getBlob = async (path, signal) => (await send('GET', path, { signal })).blob();

const featurePath = (feature) =>
  `/api/features/${encodeURIComponent(feature.module)}/${encodeURIComponent(feature.name)}`;

export const readFeature = (feature) => get(featurePath(feature));
/** `json` is the value as JSON: an integer of 64 bits has no other exact form. With `restart` the camera stands
    still for the moment when it would not take the value otherwise. */
export const writeFeature = (feature, json, restart) =>
  read(send('PUT', featurePath(feature), { body: `{"value":${json},"restart":${restart}}`, type: 'application/json' }));
export const executeFeature = (feature) => post(`${featurePath(feature)}/execute`);

export function followersOf(feature, json) {
  const query = new URLSearchParams({ feature: `${feature.module}/${feature.name}` });
  if (json !== undefined) query.set('value', json);
  return get(`/api/synchronisation?${query}`);
}
