// Words, numbers and elements.

const digits = new Intl.NumberFormat('en');

function number(count) {
  return digits.format(count);
}

function count(amount, one, many = `${one}s`) {
  return `${number(amount)} ${amount === 1 ? one : many}`;
}

function sum(numbers) {
  return numbers.reduce((total, one) => total + one, 0);
}

function grouped(all, keyOf) {
  const groups = new Map();
  for (const one of all) {
    const key = keyOf(one);
    groups.get(key)?.push(one) ?? groups.set(key, [one]);
  }
  return groups;
}

// Makes an element. Text is only ever added as text, so that no source can become part of the page.
// Many children are given as an array: a call takes only so many arguments.
function make(tag, properties, ...children) {
  const element = Object.assign(document.createElement(tag), properties);
  for (const child of children.flat()) {
    element.append(child);
  }
  return element;
}

function makeButton(properties, ...children) {
  return make('button', { type: 'button', ...properties }, ...children);
}

function byId(id) {
  return document.getElementById(id);
}

// A control character has a picture; of others that are not seen, or turn text, the number is shown.
function shownSign(sign) {
  const point = sign.codePointAt(0);
  if (point < 0x20 || point === 0x7f) {
    return String.fromCharCode(point === 0x7f ? 0x2421 : 0x2400 + point);
  }
  return `<U+${point.toString(16).toUpperCase().padStart(4, '0')}>`;
}

// Blanks that are none, what turns text, and what has no width.
const HIDDEN = String.raw`\p{Cf}\p{Zl}\p{Zp}\p{Default_Ignorable_Code_Point}\u00a0\u1680\u2000-\u200a\u202f\u205f\u3000`;
const HIDDEN_IN_TEXT = new RegExp(`[${HIDDEN}\\0-\\x08\\x0a-\\x1f\\x7f-\\x9f]`, 'gu');
const HIDDEN_IN_NAMES = new RegExp(`[${HIDDEN}\\0-\\x1f\\x7f-\\x9f]|^ +| +$| (?= )`, 'gu');

// Text of a source with nothing in it that is not seen.
function visible(text) {
  return text.replace(HIDDEN_IN_TEXT, shownSign);
}

// Names also show those blanks that a browser would leave out.
function visibleName(name) {
  return name.replace(HIDDEN_IN_NAMES, (sign) =>
    (sign[0] === ' ' ? '\u2423'.repeat(sign.length) : shownSign(sign)));
}

function listed(names) {
  return names.length < 2 ? names.join() : `${names.slice(0, -1).join(', ')} and ${names.at(-1)}`;
}

// Names without the words, and the signs between them, that all have at their front and end.
function shortened(names) {
  if (names.length === 1) {
    return [names[0].split('/').at(-1)];
  }
  const parts = names.map((name) => name.split(/([^\p{L}\p{N}]+)/u));
  for (const [at, drop] of [[0, 'shift'], [-1, 'pop']]) {
    while (parts.every((words) => words.length > 1 && words.at(at) === parts[0].at(at))) {
      parts.forEach((words) => words[drop]());
    }
  }
  return parts.map((words) => words.join(''));
}

const announced = { timer: 0 };

// Tells what was done, to whoever sees the page and whoever hears it.
function announce(text) {
  byId('told').textContent = text;
  clearTimeout(announced.timer);
  announced.timer = setTimeout(() => { byId('told').textContent = ''; }, 4000);
}

// The newer way to copy is not there on a page from a server without encryption.
function copy(text) {
  const hadFocus = document.activeElement;
  const field = make('textarea', { value: text, className: 'unseen' });
  document.body.append(field);
  field.select();
  const isDone = document.execCommand('copy');
  field.remove();
  hadFocus?.focus({ preventScroll: true });
  announce(isDone ? `Copied: ${visibleName(text)}` : 'The browser does not allow to copy.');
}
