// Which markers are shown, and how many there are.

// For each fate, code, votes and file whether it is among what is chosen.
const shown = { fate: [], code: [], votes: [], file: [], isInFolders: [] };

function chosen(length, isChosen) {
  return Uint8Array.from({ length }, (_, index) => (isChosen(index) ? 1 : 0));
}

function isKept({ keepers }) {
  return (view.keepers.size === 0 || keepers.some((report) => view.keepers.has(report))) &&
    (!view.isAlone || keepers.length === 1);
}

function readChoice() {
  const { fate, codes, folders: inFolders, state } = view;
  const name = view.name.toLowerCase();
  shown.fate = chosen(FATES.length, (index) => ['all', FATES[index].kind, FATES[index].name].includes(fate));
  shown.code = chosen(data.codes.length, (code) => codes.size === 0 || codes.has(code));
  shown.votes = chosen(votes.length, (index) => isKept(votes[index]));
  shown.file = chosen(files.length, (file) => (state === 0 || files[file].state === state) &&
    (name === '' || files[file].path.toLowerCase().includes(name)));
  shown.isInFolders = new Uint8Array(files.length).fill(inFolders.size === 0 ? 1 : 0);
  inFolders.forEach((folder) => shown.isInFolders.fill(1, folders[folder].first, folders[folder].end));
}

// Of a file that is shown.
function isShown(marker) {
  return shown.fate[markers.fate[marker]] && shown.code[markers.code[marker]] && shown.votes[markers.votes[marker]];
}

function emptySums(size) {
  return Object.fromEntries(KINDS.map((kind) => [kind, new Uint32Array(size)]));
}

// Each chart takes no notice of what is chosen in it, and so says what another choice would give.
function countMarkers() {
  readChoice();
  const sums = { files: emptySums(files.length), codes: emptySums(data.codes.length),
    folders: emptySums(folders.length), votes: new Uint32Array(votes.length) };
  for (let file = 0; file < files.length; file++) {
    if (shown.file[file]) {
      countFile(sums, file);
    }
  }
  // A folder comes behind the one that it is in.
  for (const kind of KINDS) {
    for (let folder = folders.length - 1; folder > 0; folder--) {
      sums.folders[kind][folders[folder].parent] += sums.folders[kind][folder];
    }
  }
  return sums;
}

function countFile(sums, file) {
  const { folder } = files[file];
  const isInFolders = shown.isInFolders[file];
  for (let marker = markers.first[file]; marker < markers.first[file + 1]; marker++) {
    const fate = markers.fate[marker];
    if (!shown.fate[fate]) {
      continue;
    }
    const kind = KINDS[KIND_OF_FATE[fate]];
    const code = markers.code[marker];
    const isCode = shown.code[code];
    const isVotes = shown.votes[markers.votes[marker]];
    if (isVotes && isInFolders) {
      sums.codes[kind][code]++;
    }
    if (isVotes && isCode) {
      sums.folders[kind][folder]++;
      sums.files[kind][file] += isInFolders;
    }
    if (isCode && isInFolders) {
      sums.votes[markers.votes[marker]]++;
    }
  }
}

// How many markers each report keeps, alone and together with others.
function countKept(byVotes) {
  const kept = data.reports.map(() => ({ alone: 0, together: 0 }));
  byVotes.forEach((amount, index) => {
    const { keepers } = votes[index];
    keepers.forEach((report) => { kept[report][keepers.length === 1 ? 'alone' : 'together'] += amount; });
  });
  return kept;
}
