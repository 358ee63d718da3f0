'use strict';

// What the program put into the page (src/tree/page_data.h), turned into flat arrays: forty thousand
// markers are then counted in a millisecond or two. A marker is known by its index, and those of a
// file follow one another; a file is known by its index, and those of a folder follow one another.

const data = JSON.parse(document.getElementById('data').textContent);

// What is known of a marker, as bits.
const GOES = 1;
const DISAGREES = 2;
const UNNAMED = 4;

// An entry of `votes` is "g" (goes) or "s" (stays), and then what each report says, which begins
// with a letter (src/tree/marker_votes.h).
function namesFile(said) {
  return said !== 'x' && said !== 'r';
}

function bitsOf([fate, ...says]) {
  const unnamed = says.every(namesFile) ? 0 : UNNAMED;
  if (fate === 'g') {
    return GOES | unnamed;
  }
  return unnamed | (says.some((said) => namesFile(said) && said !== 'l') || !unnamed ? DISAGREES : 0);
}

const FIELDS = 4; // of a marker: begin and end in the line's text, code, votes

// The listed lines of a file as [line, [[begin, end, code, votes], ...]].
function* listedLines(flat) {
  for (let at = 0; at < flat.length;) {
    const [line, count] = flat.slice(at, at + 2);
    at += 2;
    const onLine = [];
    for (const end = at + FIELDS * count; at < end; at += FIELDS) {
      onLine.push(flat.slice(at, at + FIELDS));
    }
    yield [line, onLine];
  }
}

function flatMarkers() {
  const bits = data.votes.map(bitsOf);
  const flat = { first: [0], code: [], bits: [] }; // `first` of a file is its first marker.
  for (const [, , lines] of data.files) {
    for (let at = 0; at < lines.length;) {
      const end = at + 2 + FIELDS * lines[at + 1];
      for (at += 2; at < end; at += FIELDS) {
        flat.code.push(lines[at + 2]);
        flat.bits.push(bits[lines[at + 3]]);
      }
    }
    flat.first.push(flat.code.length);
  }
  return { count: flat.code.length, first: Uint32Array.from(flat.first),
    code: Uint32Array.from(flat.code), bits: Uint8Array.from(flat.bits) };
}

// The folders that hold files, each behind the one that it is in; the first is the root. A folder
// has the files from `first` to before `end`, those of the folders below it included.
function foldersOf(files) {
  const folders = [{ path: '', name: '', parent: -1, first: 0, end: files.length, children: [] }];
  const open = [0]; // From the root down to the folder of the file just met.
  files.forEach((file, index) => {
    const names = file.path.split('/').slice(0, -1);
    let depth = 0;
    while (depth < names.length && depth + 1 < open.length &&
           folders[open[depth + 1]].name === names[depth]) {
      depth++;
    }
    open.splice(depth + 1).forEach((folder) => { folders[folder].end = index; });
    for (; depth < names.length; depth++) {
      const parent = open[depth];
      folders[parent].children.push(folders.length);
      open.push(folders.length);
      folders.push({ path: names.slice(0, depth + 1).join('/') || '/', name: names[depth], parent,
        first: index, end: files.length, children: [] });
    }
    file.folder = open[depth];
  });
  return folders;
}

const files = data.files.map(([path, state, lines, hunks]) => ({ path, state, lines, hunks }));
const markers = flatMarkers();
const folders = foldersOf(files);
