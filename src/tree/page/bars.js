// The bars of a chart: what goes is a full stretch, what stays a hatched one.

const FEW_BARS = 8;

function bar(goes, stays, most) {
  const stretch = (className, share) => {
    const part = make('span', { className });
    part.style.width = `${100 * share}%`;
    return part;
  };
  const element = make('span', { className: 'bar' },
    stretch('goes', goes / most), stretch('stays', stays / most));
  element.setAttribute('aria-hidden', 'true');
  return element;
}

function fates(goes, stays) {
  return make('span', { className: 'fates' },
    make('span', { className: goes > 0 ? 'goes' : 'none' }, `${number(goes)} ${goes === 1 ? 'goes' : 'go'}`), ' ',
    make('span', { className: stays > 0 ? 'stays' : 'none' }, `${number(stays)} ${stays === 1 ? 'stays' : 'stay'}`));
}

// A row of a chart is { label, goes, stays, isChosen, choose }; one without `choose` is no button.
function barRow(row, most) {
  const content = [make('span', { className: 'label' }, row.label),
    bar(row.goes, row.stays, most), fates(row.goes, row.stays)];
  if (!row.choose) {
    return make('li', {}, make('span', { className: 'row' }, ...content));
  }
  const button = make('button', { type: 'button', className: 'row', onclick: row.choose }, ...content);
  button.setAttribute('aria-pressed', String(Boolean(row.isChosen)));
  return make('li', {}, button);
}

const wholeCharts = new Set(); // Those of which every bar is asked for.

function drawBars(list, rows) {
  rows.sort((one, other) => other.goes + other.stays - one.goes - one.stays);
  const most = Math.max(1, ...rows.slice(0, 1).map((row) => row.goes + row.stays));
  const isWhole = wholeCharts.has(list.id) || rows.length <= FEW_BARS + 1;
  const shown = rows.filter((row, index) => isWhole || index < FEW_BARS || row.isChosen);
  const hadFocus = list.contains(document.activeElement)
    ? [...list.querySelectorAll('button')].indexOf(document.activeElement) : -1;
  list.replaceChildren(...shown.map((row) => barRow(row, most)));
  if (rows.length === 0) {
    list.append(make('li', { className: 'quiet' }, 'No markers.'));
  }
  if (rows.length > FEW_BARS + 1) {
    list.append(make('li', {}, make('button', { type: 'button', className: 'more', onclick() {
      wholeCharts[isWhole ? 'delete' : 'add'](list.id);
      drawBars(list, rows);
    } }, isWhole ? `Show the ${FEW_BARS} longest only` : `Show all ${number(rows.length)}`)));
  }
  if (hadFocus >= 0) {
    list.querySelectorAll('button')[Math.min(hadFocus, shown.length - 1)]?.focus();
  }
}

function drawCodes(sums) {
  const rows = data.codes.map((label, code) => ({
    label, goes: sums.goes[code], stays: sums.stays[code], isChosen: filter.code === code,
    choose: () => setFilter({ code: filter.code === code ? -1 : code }),
  }));
  drawBars(byId('codes'), rows.filter((row) => row.goes + row.stays > 0 || row.isChosen));
}

// The folder as it is worth showing: one that holds a single folder and no file says nothing new.
function worthShowing(folder) {
  const { first, end, children } = folders[folder];
  const only = children.length === 1 ? folders[children[0]] : null;
  return only && only.first === first && only.end === end ? worthShowing(children[0]) : folder;
}

function drawFolders(sums) {
  const current = worthShowing(filter.folder);
  const here = { label: 'files in this folder itself', goes: sums.goes[current], stays: sums.stays[current] };
  const rows = folders[current].children.map((child) => {
    const folder = worthShowing(child);
    here.goes -= sums.goes[child];
    here.stays -= sums.stays[child];
    const label = visible(folders[folder].path.slice(folders[current].path.length).replace(/^\//, ''));
    return { label: `${label}/`, goes: sums.goes[child], stays: sums.stays[child],
      choose: () => setFilter({ folder }) };
  });
  drawBars(byId('folders'), [...rows, here].filter((row) => row.goes + row.stays > 0));
  drawTrail(current);
}

// The way from the root down to the folder, each step a button.
function drawTrail(current) {
  const steps = [];
  for (let folder = current; folder >= 0; folder = folders[folder].parent) {
    steps.unshift(folder);
  }
  byId('trail').replaceChildren(...steps.flatMap((folder, index) => {
    const name = folder === 0 ? 'All folders' : visible(folders[folder].name) || '/';
    if (folder === current) {
      return [make('span', {}, name)];
    }
    if (worthShowing(folder) === current) {
      return [`${name} / `];
    }
    return [make('button', { type: 'button', onclick: () => setFilter({ folder }) }, name), ' / '];
  }));
}
