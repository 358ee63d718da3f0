// What is chosen, which stands in the page's address, such as
// #fate=stays&code=V502&in=src/a&file=src/a.cpp:103

const view = {
  fate: 'all', // or a kind, or the name of a fate
  codes: new Set(),
  folders: new Set(),
  keepers: new Set(), // reports that keep a marker
  isAlone: false, // whether only those markers count that a single report keeps
  state: 0, // of the source; 0 for any
  name: '', // what the name of a file holds
  file: -1, // the one that is pointed at
  line: 0,
};

function encoded(text) {
  return encodeURIComponent(text).replaceAll('%2F', '/').replaceAll('%3A', ':').replaceAll('%2C', ',');
}

function addressOf({ fate, codes, folders: inFolders, keepers, isAlone, state, name, file, line }) {
  return '#' + [
    ...(fate === 'all' ? [] : [['fate', fate]]),
    ...(codes.size === 0 ? [] : [['code', [...codes].map((code) => data.codes[code]).join()]]),
    ...[...inFolders].map((folder) => ['in', folders[folder].path]),
    ...[...keepers].map((report) => ['kept-by', data.reports[report][0]]),
    ...(isAlone ? [['alone', '1']] : []),
    ...(state === 0 ? [] : [['source', STATES[state].name]]),
    ...(name === '' ? [] : [['name', name]]),
    ...(file < 0 ? [] : [['file', files[file].path + (line > 0 ? `:${line}` : '')]]),
  ].map(([key, value]) => `${key}=${encoded(value)}`).join('&');
}

function placesOf(names, known) {
  return new Set(names.map((name) => known.indexOf(name)).filter((place) => place >= 0));
}

function placeOfFile(asked) {
  const [, path, line] = /^(.*):(\d+)$/s.exec(asked) ?? [];
  const whole = files.findIndex((file) => file.path === asked);
  return whole >= 0 || !path ? { file: whole, line: 0 }
    : { file: files.findIndex((file) => file.path === path), line: Number(line) };
}

// The code that somebody means by V501, v501 or 501; -1 when there is none.
function codeNamed(text) {
  return data.codes.indexOf(`V${text.trim().replace(/^v/i, '').padStart(3, '0')}`);
}

// What the address does not name, or nobody knows, is not chosen.
function readAddress() {
  const asked = new URLSearchParams(location.hash.slice(1).replaceAll('+', '%2B'));
  const fate = asked.get('fate') ?? 'all';
  const codes = asked.getAll('code').flatMap((list) => list.split(',')).map(codeNamed);
  Object.assign(view, {
    fate: [...KINDS, ...FATE_NAMES].includes(fate) ? fate : 'all',
    codes: new Set(codes.filter((code) => code >= 0)),
    folders: placesOf(asked.getAll('in'), folders.map(({ path }) => path)),
    keepers: placesOf(asked.getAll('kept-by'), data.reports.map(([path]) => path)),
    isAlone: asked.has('alone'),
    state: Math.max(0, STATES.findIndex(({ name }) => name !== '' && name === asked.get('source'))),
    name: asked.get('name') ?? '',
  }, placeOfFile(asked.get('file') ?? ''));
}

// Each choice is a step to go back; the same one is not.
function writeAddress(isStep) {
  const address = addressOf(view);
  if (address !== (location.hash || '#')) {
    history[isStep ? 'pushState' : 'replaceState'](null, '', address);
  }
}

function isEverything() {
  const { fate, codes, folders: inFolders, keepers, isAlone, state, name } = view;
  return fate === 'all' && codes.size + inFolders.size + keepers.size === 0 && !isAlone && state === 0 && name === '';
}
