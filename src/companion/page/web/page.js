// Puts the page together, and keeps it with what is chosen.

// What is left out of the sources, by how many lines are shown around each that is listed.
const AROUND_WORDS = ['no others', 'only the one before it', 'only one before and one behind it'].map((words) =>
  ` For the page’s size, each line is shown with ${words}.`);

function drawFrame() {
  const narrowed = filterWords(data.filters);
  document.title = `${visibleName(data.root)}: markers that go and stay`;
  byId('made-of').replaceChildren(`${count(markers.count, 'marker')} in ${count(files.length, 'file')} of `,
    make('code', {}, visibleName(data.root)), `, from ${count(data.reports.length, 'report')}. Made ${data.made}.`,
    narrowed.length > 0 ? ` Narrowed to ${narrowed.map(visible).join(' ')}.` : '', AROUND_WORDS[sum(data.around)] ?? '');
  byId('maker').textContent = `Made by qln-fp-tree ${data.version}. Nothing on this page comes from the network, and nothing is sent.`;
  if (!isAnyHeld) {
    byId('table').classList.add('none-held');
    table.columns--;
  }
  byId('none').textContent = markers.count === 0 ? 'No report lists a redundant marker.' : 'No markers are like that.';
  byId('charts').open = matchMedia('(min-width: 36rem)').matches;
  drawWarnings();
  drawSums();
  drawNotices();
  drawReports();
  const options = (id, names) => byId(id).append(...names.map((value) => make('option', { value })));
  options('code-names', [...data.codes].sort((one, other) => one.localeCompare(other, 'en', { numeric: true })));
  options('folder-names', folders.slice(1).map(({ path }) => path));
}

function draw() {
  const sums = countMarkers();
  markSums();
  drawCodes(sums.codes);
  drawFolders(sums.folders);
  drawKeepers(sums.votes);
  drawTable(sums.files);
  drawStrip();
  const { name, alone } = byId('filter').elements;
  name.value = view.name;
  alone.checked = view.isAlone;
}

// Every choice passes here.
function choose(changes, isStep = true) {
  Object.assign(view, { file: -1, line: 0 }, changes);
  writeAddress(isStep);
  draw();
}

function toggleIn(choice, one) {
  choose({ [choice]: view[choice].has(one) ? without(view[choice], one) : new Set([...view[choice], one]) });
}

function showAll() {
  history.pushState(null, '', '#');
  follow();
}

function follow() {
  readAddress();
  draw();
  if (view.file >= 0) {
    goTo(view.file, view.line);
  }
}

// A field that adds what is typed into it to what is chosen.
function addFrom(field, choice, placeOf) {
  field.addEventListener('change', () => {
    const place = placeOf(field.value);
    if (place >= 0) {
      choose({ [choice]: new Set([...view[choice], place]) });
      field.value = '';
    } else if (field.value !== '') {
      announce(`None is named ${field.value}.`);
    }
  });
}

function listen() {
  const form = byId('filter');
  const { name, alone, code, folder } = form.elements;
  name.addEventListener('input', () => choose({ name: name.value }, false));
  alone.addEventListener('change', () => choose({ isAlone: alone.checked }));
  addFrom(code, 'codes', codeNamed);
  addFrom(folder, 'folders', (path) => folders.findIndex((one) => one.path === path.replace(/(?<=.)\/$/, '')));
  form.addEventListener('submit', (event) => event.preventDefault());
  byId('show-all').onclick = showAll;
  byId('csv').onclick = saveCsv;
  byId('show-keys').onclick = KEYS['?'];
  byId('close-keys').onclick = () => byId('keys').close();
  document.querySelector('.skip').addEventListener('click', (event) => {
    event.preventDefault(); // Its address would be one of a view.
    byId('files').scrollIntoView();
    byId('files').focus();
  });
  for (const button of byId('table').tHead.querySelectorAll('button')) {
    button.addEventListener('click', () => sortBy(button.dataset.sort));
  }
  addEventListener('hashchange', follow);
}

drawFrame();
listen();
for (const part of document.querySelectorAll('main, footer')) {
  part.hidden = false;
}
follow();
setTimeout(countMarkers, 200); // Has the browser compile it before somebody waits for it.
