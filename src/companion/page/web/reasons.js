// Why a line goes or stays: what the reports say of it, those first that disagree.

const MOST_NAMES = 3;

const reportNames = shortened(data.reports.map(([path]) => visibleName(path)));

// What is said by one report and by more, of one marker and of more; in the order of telling.
const SAYINGS = {
  n: () => ['does not list the line', 'do not list the line'],
  o: (codes) => [`lists only ${codes} there`, `list only ${codes} there`],
  p: (_, it) => [`lists ${it} at another place`, `list ${it} at another place`],
  r: () => ['does not name the file, and takes out all that it does not name',
    'do not name the file, and take out all that they do not name'],
  x: () => ['does not name the file', 'do not name the file'],
  l: (_, it) => [`lists ${it}`, `list ${it}`],
};

// The names of some reports, of which many are folded behind a button.
function whoSay(reports, isRest) {
  const names = reports.map((report) => reportNames[report]);
  if (names.length <= MOST_NAMES) {
    return [listed(names)];
  }
  const front = isRest ? 0 : MOST_NAMES;
  const folded = names.slice(front);
  const fold = makeButton({ className: 'fold', onclick() {
    const unfolded = make('span', { tabIndex: -1 }, listed(folded));
    fold.replaceWith(unfolded);
    unfolded.focus();
  } }, isRest ? `${number(folded.length)} others` : `${number(folded.length)} more`);
  return front === 0 ? [fold] : [`${names.slice(0, front).join(', ')} and `, fold];
}

function allReports(amount) {
  return ['the report', 'both reports'][amount - 1] ?? `all ${number(amount)} reports`;
}

// As text and elements, such as: board does not list the line; 7 others list it
function reasons(says, amount) {
  const reportsBySaying = grouped(says.keys(), (report) => says[report]);
  const order = ([saying]) => Object.keys(SAYINGS).indexOf(saying[0]);
  const told = [...reportsBySaying].sort((one, other) => order(one) - order(other));
  return told.flatMap(([saying, reports], index) => {
    const [one, many] = SAYINGS[saying[0]](saying.slice(1), amount === 1 ? 'it' : 'them');
    const who = reports.length === says.length ? [allReports(says.length)]
      : whoSay(reports, index > 0 && index === told.length - 1);
    return [index > 0 ? '; ' : '', ...who, ` ${reports.length === 1 ? one : many}`];
  });
}
