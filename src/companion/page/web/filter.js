// Which markers are shown, and how many there are.

// For each fate, code, votes and file whether it is among what is chosen.
const shown = { fate: [], code: [], votes: [], file: [], isInFolders: [] };

function chosen(length, isChosen) {
  return new Uint8Array(length).map((_, index) => (isChosen(index) ? 1 : 0));
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

function byKind(sums) {
  return FATES.map(({ kind }) => sums[kind]);
}

// Each chart takes no notice of what is chosen in it, and so says what another choice would give.
function countMarkers() {
  readChoice();
  const sums = { files: emptySums(files.length), codes: emptySums(data.codes.length),
    folders: emptySums(folders.length), votes: new Uint32Array(votes.length) };
  countInto(sums);
  // A folder comes behind the one that it is in.
  for (const kind of KINDS) {
    for (let folder = folders.length - 1; folder > 0; folder--) {
      sums.folders[kind][folders[folder].parent] += sums.folders[kind][folder];
    }
  }
  return sums;
}

// What is used for each marker is at hand: a first look at forty thousand is not yet compiled.
function countInto(sums) {
  const { first, fate: fates, code: codes, votes: says } = markers;
  const { fate: isFate, code: isCode, votes: isVotes } = shown;
  const [byFile, byCode, byFolder] = [sums.files, sums.codes, sums.folders].map(byKind);
  for (let file = 0; file < files.length; file++) {
    const { folder } = files[file];
    const isInFolders = shown.isInFolders[file];
    for (let marker = first[file], end = shown.file[file] ? first[file + 1] : 0; marker < end; marker++) {
      const fate = fates[marker];
      if (isFate[fate]) {
        const [code, said] = [codes[marker], says[marker]];
        byCode[fate][code] += isVotes[said] & isInFolders;
        byFolder[fate][folder] += isVotes[said] & isCode[code];
        byFile[fate][file] += isVotes[said] & isCode[code] & isInFolders;
        sums.votes[said] += isCode[code] & isInFolders;
      }
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
