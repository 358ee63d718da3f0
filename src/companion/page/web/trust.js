// Whether the page can be trusted: what is wrong with its reports, and with the sources.

// Reports that name less than half of what the one in the middle does.
function farFewer() {
  const named = data.reports.map(([, amount]) => amount).sort((one, other) => one - other);
  const middle = named[Math.floor(named.length / 2)];
  return [...data.reports.keys()].filter((report) => 2 * data.reports[report][1] < middle);
}

function drawWarnings() {
  const isWarnedOf = (report) => data.warnings.some((text) => text.endsWith(data.reports[report][0]));
  const few = farFewer().filter((report) => !isWarnedOf(report)).map((report) =>
    `${reportNames[report]} names ${count(data.reports[report][1], 'file')}, far fewer than the others: was it cut short?`);
  const warnings = [...data.warnings.map(visible), ...few];
  byId('warnings').hidden = warnings.length === 0;
  byId('warnings-title').textContent = data.warnings.length > 0 ? 'These numbers cannot be trusted' : 'Can these numbers be trusted?';
  byId('warnings').querySelector('ul').append(...warnings.map((text) => make('li', {}, text)));
}

// Sources that are not as they were analyzed; each kind of them can be listed.
function drawNotices() {
  const notice = (...content) => byId('notices').append(make('p', { className: 'notice' }, ...content));
  STATES.forEach(({ name }, state) => {
    const amount = files.filter((file) => file.state === state).length;
    if (state > 0 && amount > 0) {
      const [are, have] = amount === 1 ? ['is', 'has'] : ['are', 'have'];
      const words = { changed: `${have} changed since the analysis`, blocked: `${have} something in the way of a cleanup` };
      notice(`${count(amount, 'source')} ${words[name] ?? `${are} ${name}`}. `,
        makeButton({ onclick: () => choose({ state }) }, amount === 1 ? 'Show it' : 'Show them'));
    }
  });
  for (const [first, pairs] of grouped(data.equal, (pair) => pair[1])) {
    const equal = [first, ...pairs.map(([report]) => report)].map((report) => reportNames[report]);
    notice(`${listed(equal)} say the same: their builds may agree, or one report may be a copy in another’s place.`);
  }
  if (files.length > 0 && files.every(({ state }) => STATES[state].name === 'missing')) {
    notice('No source is there at all: this looks like the wrong folder. Nothing goes.');
  }
}

function drawReports() {
  byId('reports').querySelector('summary').textContent =
    data.reports.length === 1 ? 'The report' : `The ${number(data.reports.length)} reports`;
  byId('reports').querySelector('tbody').append(...data.reports.map(([path, named, markers]) =>
    make('tr', {}, make('th', { scope: 'row' }, visibleName(path)),
      make('td', { className: 'number' }, number(named)),
      make('td', { className: 'number' }, number(markers)))));
}
