// Puts the page together, and keeps it with the filter.

function drawSums() {
  let goes = 0;
  markers.bits.forEach((bits) => { goes += bits & GOES; });
  const stays = markers.count - goes;
  const fact = (className, amount, words) => make('p', { className: `fact ${className}` },
    make('strong', {}, number(amount)), ` ${words}`);
  byId('sums').append(
    fact('goes', goes, goes === 1 ? 'marker goes' : 'markers go'),
    fact('stays', stays, stays === 1 ? 'marker stays' : 'markers stay'),
    bar(goes, stays, Math.max(1, markers.count)));
}

function addGoing(sum, file) {
  const { first, bits } = markers;
  return sum + bits.slice(first[file], first[file + 1]).filter((known) => known & GOES).length;
}

function drawNotices() {
  const notice = (text) => byId('notices').append(make('p', { className: 'notice' }, text));
  const silent = data.reports.filter(([, named]) => named === 0).map(([path]) => visible(path));
  if (silent.length > 0) {
    notice(`${listed(silent)} ${silent.length === 1 ? 'names' : 'name'} no file at all. Is the name right, and the report whole?`);
  }
  const bad = [...files.keys()].filter((file) => files[file].state > 0);
  if (bad.length > 0) {
    const [are, them] = bad.length === 1 ? ['is', 'it'] : ['are', 'them'];
    notice(`${count(bad.length, 'source')} ${are} missing or not as analyzed. A cleanup passes ` +
      `${them} over, with ${count(bad.reduce(addGoing, 0), 'marker')} said to go here.`);
  }
}

function drawReports() {
  byId('reports').querySelector('summary').textContent =
    data.reports.length === 1 ? 'The report' : `The ${number(data.reports.length)} reports`;
  byId('reports').querySelector('tbody').append(...data.reports.map(([path, named, markers]) =>
    make('tr', {}, make('th', { scope: 'row' }, visible(path)),
      make('td', { className: 'number' }, number(named)),
      make('td', { className: 'number' }, number(markers)))));
}

function drawFrame() {
  document.title = `${visible(data.root)}: markers that go and stay`;
  byId('made-of').append(`${count(markers.count, 'marker')} in ${count(files.length, 'file')} of `,
    make('code', {}, visible(data.root)), `, from ${count(data.reports.length, 'report')}. Made ${data.made}.`);
  byId('maker').textContent = `Made by qln-fp-tree ${data.version}. Nothing on this page comes from the network, and nothing is sent.`;
  drawSums();
  drawNotices();
  drawReports();
}

function fillChoices() {
  const { code, folder } = byId('filter').elements;
  const byName = data.codes.map((name, index) => [name, index]).sort(([one], [other]) =>
    one.localeCompare(other, 'en', { numeric: true }));
  code.append(new Option('all', -1), ...byName.map(([name, index]) => new Option(name, index)));
  folder.append(new Option('all', 0));
  folders.slice(1).forEach(({ path }, index) => folder.append(new Option(visible(path), index + 1)));
}

function drawFiltered() {
  const sums = countMarkers();
  drawCodes(sums.codes);
  drawFolders(sums.folders);
  drawTable(sums.files);
}

// Changes the filter from elsewhere than its form.
function setFilter(changes) {
  Object.assign(filter, changes);
  const { code, folder } = byId('filter').elements;
  code.value = filter.code;
  folder.value = filter.folder;
  drawFiltered();
}

function readFilter() {
  const { fate, code, folder, name } = byId('filter').elements;
  Object.assign(filter, { fate: fate.value, code: Number(code.value), folder: Number(folder.value),
    name: name.value.toLowerCase() });
  drawFiltered();
}

function listen() {
  const form = byId('filter');
  form.addEventListener('input', readFilter);
  form.addEventListener('submit', (event) => event.preventDefault());
  form.addEventListener('reset', () => setTimeout(readFilter)); // It has its new values only then.
  for (const button of byId('table').tHead.querySelectorAll('button')) {
    button.addEventListener('click', () => sortBy(button.dataset.sort));
  }
}

drawFrame();
fillChoices();
listen();
drawFiltered();
