'use strict';

// What the program put into the page (src/companion/page/page_data.h), turned into flat arrays: forty
// thousand markers are then counted in a millisecond or two. A marker is known by its index, and those
// of a file follow one another; a file is known by its index, and those of a folder follow one another.

const data = JSON.parse(document.getElementById('data').textContent);

const LINE_HEAD = 3; // of a listed line: number, count of markers, votes
const FIELDS = 3; // of a marker: begin and end in the line's text, code

const IN_THE_WAY = 4; // The state of a source for which the program tells what is in the way.

const files = data.files.map(([path, state, lines, hunks]) => (typeof state === 'string'
  ? { path, state: IN_THE_WAY, inTheWay: state, lines, hunks } : { path, state, inTheWay: '', lines, hunks }));
const folders = foldersOf(files);

// Calls visit(line, votes, at, end, first) for each listed line of a file: its markers are the fields
// from `at` to before `end`, and the first of them is the file's marker number `first`.
function eachLine(flat, visit) {
  let first = 0;
  for (let at = 0; at < flat.length;) {
    const begin = at + LINE_HEAD;
    const end = begin + FIELDS * flat[at + 1];
    visit(flat[at], flat[at + 2], begin, end, first);
    first += flat[at + 1];
    at = end;
  }
}

// `first` of a file is its first marker.
function flatMarkers(fateOf) {
  const flat = { first: [0], code: [], votes: [], fate: [] };
  for (const { state, lines } of files) {
    eachLine(lines, (line, votes, at, end) => {
      const fate = fateOf(votes, state);
      for (; at < end; at += FIELDS) {
        flat.code.push(lines[at + 2]);
        flat.votes.push(votes);
        flat.fate.push(fate);
      }
    });
    flat.first.push(flat.code.length);
  }
  return { count: flat.code.length, first: Uint32Array.from(flat.first), code: Uint32Array.from(flat.code),
    votes: Uint32Array.from(flat.votes), fate: Uint8Array.from(flat.fate) };
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

