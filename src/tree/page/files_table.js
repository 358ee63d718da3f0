// The table of files, a page of it at a time.

const FILES_AT_ONCE = 50;
const MOST_PRINTED = 1000;

const table = { rows: [], sums: null, page: 0, sort: 'path', isDown: false, opened: new Set() };

function drawTable(sums) {
  table.sums = sums;
  table.rows = [...files.keys()].filter((file) => sums.goes[file] + sums.stays[file] > 0);
  table.page = 0;
  sortRows();
  drawShown();
  drawPage();
}

function sortRows() {
  const by = table.sums[table.sort];
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
  const named = data.votes[files[file].lines[5]].slice(1).filter(namesFile).length;
  const notes = [STATE_NOTES[files[file].state]];
  if (named < data.reports.length) {
    notes.push(`named by ${number(named)} of ${count(data.reports.length, 'report')}`);
  }
  return notes.filter(Boolean).join('; ');
}

function fileRow(file) {
  const button = make('button', { type: 'button', className: 'file', id: `file-${file}`,
    onclick: () => toggle(file, button) }, visible(files[file].path));
  button.setAttribute('aria-expanded', 'false');
  const note = noteOf(file);
  const row = make('tr', {},
    make('th', { scope: 'row' }, button, ...(note ? [make('span', { className: 'note' }, note)] : [])),
    ...['goes', 'stays'].map((fate) => {
      const amount = table.sums[fate][file];
      return make('td', { className: `number ${amount > 0 ? fate : 'none'}` }, number(amount));
    }));
  const rows = [row];
  if (table.opened.has(file)) {
    rows.push(openedRow(file, button));
  }
  return rows;
}

function openedRow(file, button) {
  const row = make('tr', { className: 'opened', id: `source-${file}` },
    make('td', { colSpan: 3 }, sourceView(file)));
  button.setAttribute('aria-expanded', 'true');
  button.setAttribute('aria-controls', row.id);
  return row;
}

function toggle(file, button) {
  if (table.opened.delete(file)) {
    byId(`source-${file}`).remove();
    button.setAttribute('aria-expanded', 'false');
    button.removeAttribute('aria-controls');
  } else {
    table.opened.add(file);
    button.closest('tr').after(openedRow(file, button));
  }
}

function drawPage(first = table.page * FILES_AT_ONCE, most = FILES_AT_ONCE) {
  const rows = table.rows.slice(first, first + most);
  byId('table').tBodies[0].replaceChildren(...rows.flatMap(fileRow));
  byId('table').hidden = rows.length === 0;
  for (const button of byId('table').tHead.querySelectorAll('button')) {
    const isSorted = button.dataset.sort === table.sort;
    button.parentElement.setAttribute('aria-sort',
      isSorted ? (table.isDown ? 'descending' : 'ascending') : 'none');
  }
  drawPager(first, rows.length);
}

function drawPager(first, length) {
  const turn = (label, page) => make('button', { type: 'button',
    disabled: page < 0 || page * FILES_AT_ONCE >= table.rows.length,
    onclick() {
      table.page = page;
      drawPage();
      byId('files').scrollIntoView();
      byId('files').focus({ preventScroll: true });
    } }, label);
  const isWhole = length === table.rows.length;
  byId('pager').replaceChildren(...(isWhole ? [] : [
    turn('Previous files', table.page - 1),
    make('span', {}, `${number(first + 1)} to ${number(first + length)} of ${number(table.rows.length)}`),
    turn('Next files', table.page + 1)]));
}

function drawShown() {
  const sum = (by) => table.rows.reduce((total, file) => total + by[file], 0);
  const [goes, stays] = [sum(table.sums.goes), sum(table.sums.stays)];
  byId('shown').textContent = table.rows.length === 0
    ? 'No markers are like that.'
    : `${count(goes + stays, 'marker')} in ${count(table.rows.length, 'file')}${described()}: ` +
      `${number(goes)} ${goes === 1 ? 'goes' : 'go'}, ${number(stays)} ${stays === 1 ? 'stays' : 'stay'}.`;
}

function described() {
  const chosen = [
    filter.fate !== 'all' && byId('filter').querySelector('input:checked').parentElement.textContent.trim(),
    filter.code >= 0 && data.codes[filter.code],
    filter.folder > 0 && `in ${visible(folders[filter.folder].path)}`,
    filter.name !== '' && `name has “${visible(filter.name)}”`,
  ].filter(Boolean);
  return chosen.length > 0 ? ` (${chosen.join('; ')})` : '';
}

// On paper there is nothing to turn: all that is shown is printed, within reason.
addEventListener('beforeprint', () => drawPage(0, MOST_PRINTED));
addEventListener('afterprint', () => drawPage());
