// What to do with what is shown: the command that cleans just that, and its markers as a table.

const MOST_FILES = 500; // in a command

// A name as the command's pattern for it. A sign that is not seen is not to be copied either.
function patternOf(path) {
  return path.replace(/[*?[\\]/g, '\\$&').replace(HIDDEN_IN_TEXT, '*').replaceAll('\ufffd', '*');
}

function quoted(word) {
  return /^[\w./,=:@%+-]+$/.test(word) ? word : `'${word.replaceAll('\'', '\'\\\'\'')}'`;
}

// The files that can go, where they are not just those of the chosen folders. Of several globs of
// paths a command takes what matches any, so that folders cannot narrow those of the page itself.
function chosenFiles() {
  const goes = table.rows.filter((file) => table.sums.goes[file] > 0);
  const isNarrowed = view.folders.size > 0 && data.filters[2].length > 0;
  return isNarrowed || view.name !== '' || !['all', 'goes'].includes(view.fate) ? goes : null;
}

const OPTIONS = ['--code', '--without-code', '--path', '--without'];

// `filters` has the values of each option, as data.filters does of those that the page was made with.
function filterWords(filters) {
  return filters.flatMap((values, index) => values.flatMap((value) => [OPTIONS[index], value]));
}

// Of the view. A command refuses a code to be left out that the chosen paths do not have.
function viewFilters(some) {
  const [codes, withoutCodes, paths, withoutPaths] = data.filters;
  const folderPaths = [...view.folders].map((folder) => folders[folder].path);
  const chosenPaths = (some?.map((file) => files[file].path) ?? folderPaths).map(patternOf);
  const isByPath = chosenPaths.length > 0;
  const isByCode = view.codes.size > 0 || (isByPath && withoutCodes.length > 0);
  return [isByCode ? [data.codes.filter((_, code) => shown.code[code]).join()] : codes, isByCode ? [] : withoutCodes,
    isByPath ? chosenPaths : paths, withoutPaths];
}

// The command; or, where there is none, an empty text. `why` tells the reason.
function command() {
  const goes = sum(table.rows.map((file) => table.sums.goes[file]));
  if (goes === 0) {
    return { text: '', why: 'Nothing of this can be cleaned.' };
  }
  const some = chosenFiles();
  if (some && some.length > MOST_FILES) {
    return { text: '', why: `No command can say this: it would name ${number(some.length)} files.` };
  }
  const words = ['qln-fp-tree', 'clean', ...(isAnyHeld ? ['--skip'] : []), '-r', data.typed,
    ...filterWords(viewFilters(some)), ...data.reports.map(([report]) => report)];
  return { text: words.map(quoted).join(' '), why: '' };
}

const chips = {
  fate: () => (view.fate === 'all' ? [] : [[fateTitle(view.fate), { fate: 'all' }]]),
  codes: () => [...view.codes].map((code) => [data.codes[code], { codes: without(view.codes, code) }]),
  folders: () => [...view.folders].map((folder) => [folderName(folder), { folders: without(view.folders, folder) }]),
  keepers: () => [...view.keepers].map((report) =>
    [`kept by ${reportNames[report]}`, { keepers: without(view.keepers, report) }]),
  isAlone: () => (view.isAlone ? [['kept by one report alone', { isAlone: false }]] : []),
  state: () => (view.state > 0 ? [[`sources that are ${STATES[view.state].name}`, { state: 0 }]] : []),
  name: () => (view.name === '' ? [] : [[`name has “${visibleName(view.name)}”`, { name: '' }]]),
};

function without(set, one) {
  return new Set([...set].filter((other) => other !== one));
}

// The strip that stays in sight.
function drawStrip() {
  const amounts = Object.fromEntries(KINDS.map((kind) => [kind, sum(table.rows.map((file) => table.sums[kind][file]))]));
  const told = KINDS.filter((kind) => kind !== 'held' || amounts.held > 0).map((kind) => verb(kind, amounts[kind]));
  byId('shown').textContent = table.rows.length === 0 ? 'No markers are like that.'
    : `${count(sum(Object.values(amounts)), 'marker')} in ${count(table.rows.length, 'file')}: ${told.join(', ')}.`;
  const hadFocus = byId('chips').contains(document.activeElement);
  byId('chips').replaceChildren(...Object.values(chips).flatMap((of) => of()).map(([label, changes]) =>
    makeButton({ className: 'chip', ariaLabel: `No longer only ${label}`, onclick: () => choose(changes) }, `${label} ✕`)));
  if (hadFocus) {
    (byId('chips').firstChild ?? byId('strip')).focus({ preventScroll: true });
  }
  byId('show-all').disabled = isEverything();
  const { text, why } = command();
  byId('command').textContent = why || visible(text);
  byId('command').className = why && 'why';
  byId('copy-command').disabled = text === '';
  byId('copy-command').onclick = () => copy(text);
}

// A path that begins like a formula would be one for some programs that read such tables.
function csvField(value) {
  const text = visibleName(String(value));
  const safe = /^[=+@-]/.test(text) ? `./${text}` : text;
  return /[",]/.test(safe) ? `"${safe.replaceAll('"', '""')}"` : safe;
}

function csv() {
  const rows = [['file', 'line', 'code', 'fate', 'why', 'kept by']];
  for (const file of table.rows) {
    eachLine(files[file].lines, (line, index, at, end, first) => {
      for (let marker = markers.first[file] + first; at < end; at += FIELDS, marker++) {
        if (isShown(marker)) {
          const { name, kind } = FATES[markers.fate[marker]];
          rows.push([files[file].path, line, data.codes[markers.code[marker]], kind, name,
            votes[index].keepers.map((report) => reportNames[report]).join('; ')]);
        }
      }
    });
  }
  return rows.map((row) => `${row.map(csvField).join()}\r\n`).join('');
}

function saveCsv() {
  const address = URL.createObjectURL(new Blob([csv()], { type: 'text/csv' }));
  make('a', { href: address, download: 'markers.csv' }).click();
  setTimeout(() => URL.revokeObjectURL(address), 1000);
}
