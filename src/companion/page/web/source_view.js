// An opened file: the listed lines as they stand in the source, a few around them, the markers
// marked, and below each what the reports say.

const LINES_AT_ONCE = 100;

// Where the listed lines of a file begin in its flat array. Kept once made: a file may have many.
function startsOf(file) {
  const known = files[file];
  if (!known.starts) {
    known.starts = { line: [], at: [] };
    eachLine(known.lines, (line, index, at) => {
      known.starts.line.push(line);
      known.starts.at.push(at - LINE_HEAD);
    });
  }
  return known.starts;
}

// What is said of a line, if it is listed: { votes, at, end }, where `at` and `end` are places of
// markers in the file's flat array. Where some of its markers go and some stay, there are several.
function sayingsOf(file, number) {
  const { line, at } = startsOf(file);
  const flat = files[file].lines;
  let [low, high] = [0, line.length];
  while (low < high) {
    const middle = (low + high) >> 1;
    [low, high] = line[middle] < number ? [middle + 1, high] : [low, middle];
  }
  const sayings = [];
  for (; line[low] === number; low++) {
    const begin = at[low] + LINE_HEAD;
    sayings.push({ votes: flat[at[low] + 2], at: begin, end: begin + FIELDS * flat[at[low] + 1] });
  }
  return sayings;
}

// The numbers of the lines that have a marker that is shown.
function shownLines(file) {
  const wanted = new Set();
  eachLine(files[file].lines, (line, index, at, end, first) => {
    let marker = markers.first[file] + first;
    for (; at < end && !isShown(marker); at += FIELDS) {
      marker++;
    }
    if (at < end) {
      wanted.add(line);
    }
  });
  return wanted;
}

// The line's text with its markers as elements. Where reports disagree, places may overlap; then
// what an earlier marker has taken is not given to a later one.
function markedText(text, sayings, flat) {
  const places = sayings.flatMap(({ votes: index, at, end }) => {
    const goes = KIND_OF_FATE[votes[index].fate] === 0;
    const some = [];
    for (; at < end; at += FIELDS) {
      some.push({ begin: flat[at], end: flat[at + 1], goes });
    }
    return some;
  }).sort((one, other) => one.begin - other.begin);
  const parts = [];
  let from = 0;
  for (const { begin, end, goes } of places) {
    const start = Math.max(from, begin);
    if (start < end) {
      parts.push(visible(text.slice(from, start)),
        make(goes ? 'del' : 'mark', { className: goes ? 'goes' : 'stays' }, visible(text.slice(start, end))));
      from = end;
    }
  }
  return [...parts, visible(text.slice(from))];
}

// A code that is there more than once is said once, with how often.
function codesOf(flat, at, end) {
  const times = new Map();
  for (; at < end; at += FIELDS) {
    const code = data.codes[flat[at + 2]];
    times.set(code, (times.get(code) ?? 0) + 1);
  }
  return listed([...times].map(([code, often]) => code + (often > 1 ? ` (${number(often)} times)` : '')));
}

// Such as: V501 stays: board does not list the line; 7 others list it
function saidOf(file, { votes: index, at, end }) {
  const { says, unsafe, fate } = votes[index];
  const { kind, alone } = FATES[files[file].state > 0 && KIND_OF_FATE[fate] < 2
    ? FATE_NAMES.indexOf(STATES[files[file].state].name) : fate];
  const amount = (end - at) / FIELDS;
  const words = amount === 1 ? alone : alone.replace(/^goes/, 'go').replace(/^stays/, 'stay').replace('but is', 'but are');
  return make('li', {},
    make('strong', { className: kind }, `${codesOf(files[file].lines, at, end)} ${words}`),
    unsafe ? ` (${visible(unsafe)})` : '', ': ', reasons(says, amount), '.');
}

function copyButton(place) {
  return makeButton({ className: 'copy', ariaLabel: `Copy ${place}`, onclick: () => copy(place) }, 'copy');
}

// A listed line and what is said of it; `text` is null where the line cannot be shown.
function listedLine(file, line, text, sayings) {
  const link = make('a', { className: 'line-number', href: addressOf({ ...view, file, line }) }, String(line));
  link.dataset.line = line;
  const shownText = text === null ? 'not shown' : markedText(text, sayings, files[file].lines);
  return make('div', { className: 'place' },
    make('div', { className: 'line listed' }, link, make('code', {}, shownText),
      copyButton(visibleName(`${files[file].path}:${line}`))),
    make('ul', { className: 'said' }, sayings.map((saying) => saidOf(file, saying))));
}

function plainLine(line, text) {
  return make('div', { className: 'line' }, make('span', { className: 'line-number' }, String(line)),
    make('code', {}, visible(text)));
}

// What is to be shown of the source, as stretches of lines that follow one another: [first, texts].
// Those around nothing that is wanted are left out; a line that has no text is a stretch of its own.
function stretchesOf(file) {
  const stretches = [];
  const left = shownLines(file);
  const { hunks } = files[file];
  for (let at = 0; at < hunks.length; at += 2) {
    const texts = hunks[at + 1].split('\n');
    for (let from = 0; from < texts.length; from += LINES_AT_ONCE) {
      const some = texts.slice(from, from + LINES_AT_ONCE);
      const first = hunks[at] + from;
      let isWanted = false;
      for (let line = first; line < first + some.length; line++) {
        isWanted = left.delete(line) || isWanted;
      }
      if (isWanted) {
        stretches.push([first, some]);
      }
    }
  }
  left.forEach((line) => stretches.push([line, [null]]));
  return stretches;
}

// Stretches in groups of so many lines that one is drawn in an instant.
function piecesOf(file) {
  const pieces = [];
  for (const stretch of stretchesOf(file)) {
    const [first, { length }] = stretch;
    if (pieces.length === 0 || pieces.at(-1).length + length > LINES_AT_ONCE) {
      pieces.push({ first, length: 0, stretches: [] });
    }
    const piece = pieces.at(-1);
    piece.stretches.push(stretch);
    piece.length += length;
    piece.end = first + length;
  }
  const drawLine = (line, text) => {
    const sayings = sayingsOf(file, line);
    return sayings.length > 0 ? listedLine(file, line, text, sayings) : plainLine(line, text);
  };
  const drawStretch = ([first, texts]) =>
    make('div', { className: 'hunk' }, texts.map((text, index) => drawLine(first + index, text)));
  return pieces.map(({ first, end, length, stretches }) => ({ first, end,
    element: drawnInSight('div', 'piece', 1.4 * length + 2 * stretches.length, () => stretches.map(drawStretch)) }));
}

// The element of an opened file, which knows its pieces.
function sourceView(file) {
  const { state, inTheWay } = files[file];
  const notes = state > 0 ? [make('p', { className: 'notice' }, STATES[state].text + (inTheWay && ` In the way: ${inTheWay}.`))] : [];
  const view = make('div', { className: 'source' }, notes);
  const pieces = piecesOf(file);
  pieces.slice(0, 1).forEach(({ element }) => drawNow(element));
  view.append(...pieces.map(({ element }) => element));
  return { view, pieces };
}
