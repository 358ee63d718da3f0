// Which markers are shown, and how many there are.

const BITS_OF_FATE = { all: 0, goes: GOES, disagrees: DISAGREES, unnamed: UNNAMED };

const filter = { fate: 'all', code: -1, folder: 0, name: '' };

function hasName(file) {
  return filter.name === '' || files[file].path.toLowerCase().includes(filter.name);
}

function hasFate(marker) {
  const bits = BITS_OF_FATE[filter.fate];
  return bits === 0 || (markers.bits[marker] & bits) !== 0;
}

function isShown(marker) {
  return hasFate(marker) && (filter.code < 0 || markers.code[marker] === filter.code);
}

function emptySums(size) {
  return { goes: new Uint32Array(size), stays: new Uint32Array(size) };
}

// The markers by file and by folder are those shown; the markers by code are those that would be
// shown with any code, and the folders' take no notice of which folder is chosen. So each chart
// says what another choice in it would give.
function countMarkers() {
  const sums = {
    files: emptySums(files.length),
    codes: emptySums(data.codes.length),
    folders: emptySums(folders.length),
  };
  const { first, end } = folders[filter.folder];
  for (let file = 0; file < files.length; file++) {
    if (hasName(file)) {
      countFile(sums, file, file >= first && file < end);
    }
  }
  // A folder comes behind the one that it is in.
  for (let folder = folders.length - 1; folder > 0; folder--) {
    sums.folders.goes[folders[folder].parent] += sums.folders.goes[folder];
    sums.folders.stays[folders[folder].parent] += sums.folders.stays[folder];
  }
  return sums;
}

function countFile(sums, file, isInFolder) {
  const folder = files[file].folder;
  for (let marker = markers.first[file]; marker < markers.first[file + 1]; marker++) {
    if (!hasFate(marker)) {
      continue;
    }
    const fate = markers.bits[marker] & GOES ? 'goes' : 'stays';
    const code = markers.code[marker];
    if (isInFolder) {
      sums.codes[fate][code]++;
    }
    if (filter.code < 0 || filter.code === code) {
      sums.folders[fate][folder]++;
      sums.files[fate][file] += isInFolder ? 1 : 0;
    }
  }
}
