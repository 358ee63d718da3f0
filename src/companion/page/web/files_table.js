// The table of files, a page of it at a time. Those with the most markers come first.

const FILES_AT_ONCE = 50;
const MOST_PRINTED = 1000;
const MOST_PIECES_PRINTED = 100; // of opened files

// `opened` has for each opened file what sourceView gave last, or null where it is not on this page.
const table = { columns: 5, rows: [], sums: null, all: null, longest: 1, page: 0, sort: 'all', isDown: true, opened: new Map() };

function drawTable(sums) {
  table.sums = sums;
  table.all = sums.goes.map((goes, file) => goes + sums.held[file] + sums.stays[file]);
  table.longest = table.all.reduce((one, other) => Math.max(one, other), 1);
  table.rows = [...files.keys()].filter((file) => table.all[file] > 0);
  table.page = 0;
  sortRows();
  drawPage();
}

function sortRows() {
  const by = table.sort === 'all' ? table.all : table.sums[table.sort];
  const sign = table.isDown ? -1 : 1;
  table.rows.sort((one, other) => (by ? sign * (by[one] - by[other]) || one - other : sign * (one - other)));
}

function sortBy(column) {
  // Names are first wanted upwards, numbers downwards.
  table.isDown = table.sort === column ? !table.isDown : column !== 'path';
  table.sort = column;
  sortRows();
  table.page = 0;
  drawPage();
}

function noteOf(file) {
  const { says } = votes[files[file].lines[2]];
  const named = says.filter((said) => !'xr'.includes(said)).length;
  return [
    files[file].inTheWay || ['', 'missing', 'changed since the analysis', 'cannot be read'][files[file].state],
    named < says.length && `named by ${number(named)} of ${count(says.length, 'report')}`,
  ].filter(Boolean).join('; ');
}

function fileRow(file, most) {
  const button = makeButton({ className: 'file', id: `file-${file}`, onclick: () => toggle(file, true) },
    visibleName(files[file].path));
  button.setAttribute('aria-expanded', 'false');
  const note = noteOf(file);
  return make('tr', {},
    make('th', { scope: 'row' }, button, note ? [make('span', { className: 'note' }, note)] : []),
    make('td', { className: 'of' }, bar(KINDS.map((kind) => [kind, table.sums[kind][file]]), most)),
    KINDS.map((kind) => {
      const amount = table.sums[kind][file];
      return make('td', { className: `number ${kind} ${amount > 0 ? '' : 'none'}` }, number(amount));
    }));
}

function openFile(file) {
  const button = byId(`file-${file}`);
  const source = sourceView(file);
  const row = make('tr', { className: 'opened', id: `source-${file}` }, make('td', { colSpan: table.columns }, source.view));
  table.opened.set(file, source);
  button.closest('tr').after(row);
  button.setAttribute('aria-expanded', 'true');
  button.setAttribute('aria-controls', row.id);
}

function toggle(file) {
  if (!table.opened.has(file)) {
    openFile(file);
    return;
  }
  table.opened.delete(file);
  byId(`source-${file}`).remove();
  byId(`file-${file}`).setAttribute('aria-expanded', 'false');
  byId(`file-${file}`).removeAttribute('aria-controls');
  forgetUndrawn();
}

function drawPage(first = table.page * FILES_AT_ONCE, most = FILES_AT_ONCE) {
  const rows = table.rows.slice(first, first + most);
  const hadFocus = document.activeElement.id;
  byId('table').tBodies[0].replaceChildren(...rows.map((file) => fileRow(file, table.longest)));
  rows.filter((file) => table.opened.has(file)).forEach(openFile);
  forgetUndrawn();
  byId('table').hidden = rows.length === 0;
  byId('none').hidden = rows.length > 0;
  for (const button of byId('table').tHead.querySelectorAll('button')) {
    const isSorted = button.dataset.sort === table.sort;
    button.parentElement.setAttribute('aria-sort', isSorted ? (table.isDown ? 'descending' : 'ascending') : 'none');
  }
  if (hadFocus.startsWith('file-')) {
    (byId(hadFocus) ?? byId('files')).focus({ preventScroll: true });
  }
  drawPager(first, rows.length);
}

function turnTo(page) {
  table.page = page;
  drawPage();
}

function drawPager(first, amount) {
  const turn = (label, page) => makeButton({
    disabled: page < 0 || page * FILES_AT_ONCE >= table.rows.length,
    onclick() {
      turnTo(page);
      byId('files').scrollIntoView();
      byId('files').focus({ preventScroll: true });
    } }, label);
  const isWhole = amount === table.rows.length;
  byId('pager').replaceChildren(...(isWhole ? [] : [
    turn('Previous files', table.page - 1),
    make('span', {}, `${number(first + 1)} to ${number(first + amount)} of ${number(table.rows.length)}`),
    turn('Next files', table.page + 1)]));
}

// On paper there is nothing to turn or to scroll: all that is shown is printed, within reason.
addEventListener('beforeprint', () => {
  drawPage(0, MOST_PRINTED);
  [...undrawn.keys()].slice(0, MOST_PIECES_PRINTED).forEach(drawNow);
  byId('printed').textContent = `${number(Math.min(MOST_PRINTED, table.rows.length))} of ${count(table.rows.length, 'file')}, ` +
    `${number(table.opened.size)} of them opened; from the reports ${listed(data.reports.map(([path]) => visibleName(path)))}.` +
    (undrawn.size > 0 ? ' Of very long ones only the front is printed.' : '');
});
addEventListener('afterprint', () => drawPage());
