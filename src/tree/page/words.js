// Words, numbers and elements.

const grouped = new Intl.NumberFormat('en');

function number(count) {
  return grouped.format(count);
}

function count(amount, one, many = `${one}s`) {
  return `${number(amount)} ${amount === 1 ? one : many}`;
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

// Text with its control characters visible, one for one, and without those that change the
// direction of writing: they could make a line look like another.
function visible(text) {
  return text
    .replace(/[\0-\x08\x0a-\x1f]/g, (one) => String.fromCharCode(0x2400 + one.charCodeAt(0)))
    .replace(/[\x7f-\x9f\u200e\u200f\u2028-\u202e\u2066-\u2069]/g, '\ufffd');
}

function byId(id) {
  return document.getElementById(id);
}

function listed(names) {
  return names.length < 2 ? names.join() : `${names.slice(0, -1).join(', ')} and ${names.at(-1)}`;
}

// Paths without the folders at the front, and the names at the end, that all of them have.
function shortened(paths) {
  const parts = paths.map((path) => path.split('/'));
  for (const [at, drop] of [[0, 'shift'], [-1, 'pop']]) {
    while (parts.every((names) => names.length > 1 && names.at(at) === parts[0].at(at))) {
      parts.forEach((names) => names[drop]());
    }
  }
  return parts.map((names) => names.join('/'));
}

const reportNames = shortened(data.reports.map(([path]) => visible(path)));

// What is said of one marker by one report; of more markers; by more reports; by those of more.
const LISTS = ['lists it', 'lists them', 'list it', 'list them'];
const WORDS = {
  l: () => LISTS,
  m: (codes) => LISTS.map((words) => words + (codes ? ` with ${codes}` : ' alone')),
  p: () => LISTS.map((words) => `${words} in another place`),
  o: (codes) => both('lists', 'list', ` other markers there: ${codes}`),
  n: () => both('does', 'do', ' not list the line'),
  x: () => both('does', 'do', ' not name the file'),
  r: () => both('does', 'do', ' not name the file, and so takes it out of the cleanup'),
};

function both(one, many, rest) {
  return [one + rest, one + rest, many + rest, many + rest];
}

// What the reports say of so many markers, a sentence for each thing that is said, such as
// "a.json and b.json list it."
function sentences(says, amount) {
  const form = amount === 1 ? 0 : 1;
  const order = (said) => Object.keys(WORDS).indexOf(said[0]);
  return [...new Set(says)].sort((one, other) => order(one) - order(other)).map((said) => {
    const words = WORDS[said[0]](said.slice(1));
    const who = reportNames.filter((name, report) => says[report] === said);
    if (who.length > 1 && who.length === says.length) {
      return `${who.length === 2 ? 'Both' : `All ${number(who.length)}`} reports ${words[2 + form]}.`;
    }
    return `${listed(who)} ${words[form + (who.length === 1 ? 0 : 2)]}.`;
  });
}

const STATES = [
  '',
  'The source is missing, so its lines cannot be shown. A cleanup passes it over.',
  'The source has changed since the analysis, so its lines are not shown: they may have moved. ' +
    'A cleanup leaves it alone. Analyze again, and its markers can be judged.',
  'The source cannot be read, so its lines cannot be shown. A cleanup passes it over.',
];
const STATE_NOTES = ['', 'missing', 'changed since the analysis', 'cannot be read'];
