// From marker to marker by the keyboard, and to the one that the address points at.

// Opens the file, turns to its page, and puts the focus on the line.
function goTo(file, line) {
  const row = table.rows.indexOf(file);
  if (row < 0) {
    return;
  }
  const page = Math.floor(row / FILES_AT_ONCE);
  if (page !== table.page) {
    turnTo(page);
  }
  if (!table.opened.has(file)) {
    openFile(file);
  }
  const piece = table.opened.get(file).pieces.find(({ first, end }) => first <= line && line < end);
  if (piece) {
    drawNow(piece.element);
  }
  const target = piece?.element.querySelector(`[data-line="${line}"]`) ?? byId(`file-${file}`);
  document.querySelector('[aria-current]')?.removeAttribute('aria-current');
  target.setAttribute('aria-current', 'true');
  target.scrollIntoView({ block: 'center' });
  target.focus({ preventScroll: true });
}

// The line that follows the one pointed at, or is before it; of this file or of another.
function placeBeside(step) {
  const row = table.rows.indexOf(view.file);
  if (row >= 0) {
    const lines = [...shownLines(view.file)].filter((line) => step * (line - view.line) > 0);
    if (lines.length > 0) {
      return { file: view.file, line: lines.at(step > 0 ? 0 : -1) };
    }
  }
  const file = row < 0 ? table.rows.at(step > 0 ? 0 : -1) : table.rows[row + step];
  return file === undefined ? null : { file, line: [...shownLines(file)].at(step > 0 ? 0 : -1) };
}

function goBeside(step) {
  const place = placeBeside(step);
  if (!place) {
    announce(step > 0 ? 'That was the last marker.' : 'That was the first marker.');
    return;
  }
  Object.assign(view, place);
  writeAddress(false);
  goTo(place.file, place.line);
}

const KEYS = {
  n: () => goBeside(1),
  p: () => goBeside(-1),
  '?': () => byId('keys').showModal(),
};

document.addEventListener('keydown', (event) => {
  const isTyping = event.target.matches('input:not([type=checkbox]), textarea') || byId('keys').open;
  if (!isTyping && !event.ctrlKey && !event.altKey && !event.metaKey && byId('use-keys').checked && KEYS[event.key]) {
    event.preventDefault();
    KEYS[event.key]();
  }
});
