// feature_model.js - the features of the open camera's modules, and which of them are wanted

export const keyOf = (feature) => `${feature.module}/${feature.name}`;

const levels = { beginner: 1, expert: 2, guru: 3, invisible: 4 };
const levelOf = (feature) => levels[feature.visibility] ?? 1;

/** The categories between module and name: "/Camera/ImageFormatControl/Width" has one. */
function categoriesOf(feature) {
  const steps = (feature.path ?? '').split('/').filter(Boolean);
  if (steps[0] === feature.module) steps.shift();
  if (steps.at(-1) === feature.name) steps.pop();
  return steps;
}

const searched = (feature) =>
  `${feature.path} ${feature.displayName ?? ''} ${feature.toolTip ?? ''}`.toLowerCase();

export class FeatureModel {
  #features = new Map();
  #expanded = new Set(['/Camera']);

  get size() {
    return this.#features.size;
  }

  replace(features) {
    this.#features = new Map(features.map((feature) => [keyOf(feature), feature]));
  }

  find(key) {
    return this.#features.get(key);
  }

  /** Takes over what has changed; false when the feature is not known. */
  update(feature) {
    const before = this.#features.get(keyOf(feature));
    if (!before) return false;
    this.#features.set(keyOf(feature), { ...before, ...feature });
    return true;
  }

  isExpanded(path) {
    return this.#expanded.has(path);
  }

  setExpanded(path, expanded) {
    if (expanded) this.#expanded.add(path);
    else this.#expanded.delete(path);
  }

  /** Names of the features whose present value says which value this one shows. */
  selectorsOf(feature) {
    return [...this.#features.values()]
      .filter((other) => other.module === feature.module && other.selects?.includes(feature.name))
      .map((other) => other.name);
  }

  /** What is to be shown, from top to bottom: { path, label, level, children | feature, position, setSize }. */
  rows(search, most) {
    const words = search.toLowerCase().split(/\s+/).filter(Boolean);
    const root = { children: new Map(), features: [] };
    let count = 0;
    for (const feature of this.#features.values()) {
      if (levelOf(feature) > most) continue;
      if (words.length && !words.every((word) => searched(feature).includes(word))) continue;
      let node = root;
      for (const step of [feature.module, ...categoriesOf(feature)]) {
        if (!node.children.has(step)) node.children.set(step, { children: new Map(), features: [], total: 0 });
        node = node.children.get(step);
        node.total += 1;
      }
      node.features.push(feature);
      count += 1;
    }
    const rows = [];
    this.#list(root, '', 1, words.length > 0, rows);
    return { rows, count };
  }

  #list(node, path, level, all, rows) {
    const setSize = node.children.size + node.features.length;
    let position = 0;
    for (const [label, child] of node.children) {
      const own = `${path}/${label}`;
      const expanded = all || this.#expanded.has(own);
      rows.push({ path: own, label, level, expanded, total: child.total, position: ++position, setSize });
      if (expanded) this.#list(child, own, level + 1, all, rows);
    }
    for (const feature of node.features) {
      rows.push({ path: keyOf(feature), label: feature.name, level, feature, position: ++position, setSize });
    }
  }
}
