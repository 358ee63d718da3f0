// The charts. What goes is a full stretch of a bar, what stays a hatched one, what is held back empty.

const FEW_BARS = 5;
const DRAWN_AT_ONCE = 30;

function bar(parts, most) {
  const element = make('span', { className: 'bar' }, parts.filter(([, amount]) => amount > 0).map(([className, amount]) => {
    const part = make('span', { className });
    part.style.width = `${100 * amount / most}%`;
    return part;
  }));
  element.setAttribute('aria-hidden', 'true');
  return element;
}

const VERBS = { goes: ['goes', 'go'], held: ['held back', 'held back'], stays: ['stays', 'stay'] };

function verb(kind, amount) {
  return `${number(amount)} ${VERBS[kind][amount === 1 ? 0 : 1]}`;
}

// A row of a chart is { key, label, parts: [[class, amount, makeWords], ...], isChosen, choose, look }.
// One without `choose` is no button; `look`, if there is one, goes into it.
function barRow(row, most) {
  const words = row.parts.filter(([, amount]) => amount > 0).map(([className, amount, said]) =>
    make('span', { className }, said(className, amount)));
  const content = [make('span', { className: 'label' }, row.label), bar(row.parts, most),
    make('span', { className: 'amounts' }, words.flatMap((word) => [word, ' ']))];
  if (!row.choose) {
    return [make('span', { className: 'row' }, content)];
  }
  const button = makeButton({ className: 'row', onclick: row.choose }, content);
  button.dataset.key = row.key;
  button.setAttribute('aria-pressed', String(row.isChosen));
  const look = row.look ? [makeButton({ className: 'look', onclick: row.look, ariaLabel: `Look into ${row.label}` }, '›')] : [];
  return [button, ...look];
}

const wholeCharts = new Set(); // Those of which every bar is asked for.

// Rows that have nothing are left out, but for those that are chosen.
function drawBars(id, all) {
  const list = byId(id);
  all.forEach((row) => { row.length = sum(row.parts.map(([, amount]) => amount)); });
  const rows = all.filter(({ isChosen, length }) => isChosen || length > 0);
  rows.sort((one, other) => other.length - one.length);
  const most = Math.max(1, rows[0]?.length ?? 0);
  const isWhole = wholeCharts.has(id) || rows.length <= FEW_BARS;
  const few = rows.filter((row, index) => isWhole || index < FEW_BARS || row.isChosen);
  const key = list.contains(document.activeElement) ? document.activeElement.dataset.key ?? '' : null;
  list.replaceChildren(...few.map((row, index) => (index < DRAWN_AT_ONCE || row.key === key
    ? make('li', {}, barRow(row, most)) : drawnInSight('li', '', 1.9, () => barRow(row, most)))));
  if (rows.length === 0) {
    list.append(make('li', { className: 'quiet' }, 'No markers.'));
  }
  drawFold(id, rows, isWhole);
  if (key !== null) {
    ([...list.querySelectorAll('[data-key]')].find((button) => button.dataset.key === key) ??
      byId(`${id}-title`)).focus({ preventScroll: true });
  }
}

// The button that folds a chart stands at its head, and so is not moved by what it does.
function drawFold(id, rows, isWhole) {
  const fold = byId(`${id}-fold`);
  fold.hidden = rows.length <= FEW_BARS;
  fold.textContent = isWhole ? `The ${FEW_BARS} longest` : `All ${number(rows.length)}`;
  fold.onclick = () => {
    wholeCharts[isWhole ? 'delete' : 'add'](id);
    drawBars(id, rows);
  };
}

function partsOf(sums, index) {
  return KINDS.map((kind) => [kind, sums[kind][index], verb]);
}

function drawCodes(sums) {
  drawBars('codes', data.codes.map((label, code) => ({ key: label, label, parts: partsOf(sums, code),
    isChosen: view.codes.has(code), choose: () => toggleIn('codes', code) })));
}

function drawKeepers(byVotes) {
  drawBars('keepers', countKept(byVotes).map(({ alone, together }, report) => ({
    key: String(report), label: reportNames[report],
    parts: [['alone', alone, () => `${number(alone)} alone`], ['stays', together, () => `${number(together)} shared`]],
    isChosen: view.keepers.has(report), choose: () => toggleIn('keepers', report),
  })));
}
