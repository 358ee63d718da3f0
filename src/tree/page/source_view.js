// An opened file: the listed lines as they stand in the source, a few around them, the markers
// marked, and below each what the reports say.

const LINES_AT_ONCE = 100;

// The listed lines of a file by number, as { number, markers, isShown }.
function linesOf(file) {
  const lines = new Map();
  let marker = markers.first[file];
  for (const [number, onLine] of listedLines(files[file].lines)) {
    const line = lines.get(number) ?? { number, markers: [], isShown: false };
    lines.set(number, line);
    for (const [begin, end, code, votes] of onLine) {
      const [fate, ...says] = data.votes[votes];
      line.markers.push({ begin, end, code: data.codes[code], votes, goes: fate === 'g', says });
      line.isShown = isShown(marker++) || line.isShown;
    }
  }
  return lines;
}

// The line's text with its markers as elements. Where reports disagree, places may overlap; then
// what an earlier marker has taken is not given to a later one.
function markedText(text, onLine) {
  const parts = [];
  let from = 0;
  for (const { begin, end, goes } of [...onLine].sort((one, other) => one.begin - other.begin)) {
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
function codesOf(group) {
  const times = new Map();
  group.forEach(({ code }) => times.set(code, (times.get(code) ?? 0) + 1));
  return listed([...times].map(([code, often]) => code + (often > 1 ? ` (${number(often)} times)` : '')));
}

// What is said of those markers of a line of which the same is said.
function saidOf(group) {
  const [{ goes, says }] = group;
  const fate = `${goes ? 'go' : 'stay'}${group.length > 1 ? '' : goes ? 'es' : 's'}`;
  return make('li', {},
    make('strong', { className: goes ? 'goes' : 'stays' }, `${codesOf(group)} ${fate}`), ' ',
    sentences(says, group.length).join(' '));
}

function saidList(line) {
  const groups = new Map();
  for (const marker of line.markers) {
    const group = groups.get(marker.votes) ?? [];
    group.push(marker);
    groups.set(marker.votes, group);
  }
  return make('ul', { className: 'said' }, [...groups.values()].map(saidOf));
}

function sourceLine(number, text, line) {
  const shown = make('div', { className: line ? 'line listed' : 'line' },
    make('span', { className: 'line-number' }, String(number)),
    make('code', {}, line ? markedText(text, line.markers) : visible(text)));
  return line ? [shown, saidList(line)] : [shown];
}

// A stretch of lines from the source, of which some are listed.
function hunkView(first, texts, lines) {
  return make('div', { className: 'hunk' }, texts.flatMap((shown, index) =>
    sourceLine(first + index, shown, lines.get(first + index))));
}

// For a source whose lines cannot be shown, or a line that it does not have.
function bareView(line) {
  return make('div', { className: 'hunk' }, make('p', { className: 'bare' }, `Line ${line.number}`), saidList(line));
}

// What is to be shown, in order, each as a function that makes it.
function piecesOf(file, lines) {
  const { hunks } = files[file];
  const pieces = [];
  const left = new Map(lines);
  for (let at = 0; at < hunks.length; at += 2) {
    const texts = hunks[at + 1].split('\n');
    for (let from = 0; from < texts.length; from += LINES_AT_ONCE) {
      const first = hunks[at] + from;
      const some = texts.slice(from, from + LINES_AT_ONCE);
      if (some.some((text, index) => lines.get(first + index)?.isShown)) {
        pieces.push(() => hunkView(first, some, lines));
      }
      some.forEach((text, index) => left.delete(first + index));
    }
  }
  left.forEach((line) => line.isShown && pieces.push(() => bareView(line)));
  return pieces;
}

function sourceView(file) {
  const view = make('div', { className: 'source' });
  const { state } = files[file];
  if (state > 0) {
    view.append(make('p', { className: 'notice' }, STATES[state]));
  }
  const pieces = piecesOf(file, linesOf(file));
  addPieces(view, pieces);
  return view;
}

function addPieces(view, pieces) {
  const now = pieces.splice(0, LINES_AT_ONCE);
  view.append(...now.map((piece) => piece()));
  if (pieces.length > 0) {
    const more = make('button', { type: 'button', className: 'more', onclick() {
      more.remove();
      addPieces(view, pieces);
    } }, `Show more of this file (${count(pieces.length, 'place')} left)`);
    view.append(more);
  }
}
