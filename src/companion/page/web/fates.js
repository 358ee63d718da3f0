// What becomes of a marker, and which reports keep it where it is.

// A marker can go; or is held back, though the reports agree on it; or stays.
const KINDS = ['goes', 'held', 'stays'];

// Each with its kind, what it is called where all of them are counted, and where one is told.
const FATES = [
  ['agreed', 'goes', () => 'judged by every report', 'goes'],
  ['unjudged', 'goes', () => 'not judged by every report', 'goes'],
  ['unsafe', 'held', () => 'not safe to take out', 'goes, but is not safe to take out'],
  ['missing', 'held', (many) => `in ${count(many, 'missing file')}`, 'goes, but the source is missing'],
  ['changed', 'held', (many) => `in ${count(many, 'changed file')}`, 'goes, but the source has changed'],
  ['unreadable', 'held', (many) => `in ${count(many, 'unreadable file')}`, 'goes, but the source cannot be read'],
  ['blocked', 'held', (many) => `in ${count(many, 'file')} with something in the way`, 'goes, but something is in the way'],
  ['unlisted', 'stays', () => 'where a report does not list the line', 'stays'],
  ['differing', 'stays', () => 'where reports list different markers', 'stays'],
  ['dropped', 'stays', () => 'where a report takes out what it does not name', 'stays'],
].map(([name, kind, inAll, alone]) => ({ name, kind, inAll, alone }));

const FATE_NAMES = FATES.map(({ name }) => name);
const KIND_OF_FATE = FATES.map(({ kind }) => KINDS.indexOf(kind));

// Of a source, as the program numbers them.
const STATES = [
  ['', ''],
  ['missing', 'The source is missing, so its lines cannot be shown, and nothing of it can be cleaned.'],
  ['changed', 'The source has changed since the analysis, so its lines are not shown: they may have moved. ' +
    'Nothing of it can be cleaned. Analyze again, and its markers can be judged.'],
  ['unreadable', 'The source cannot be read, so its lines cannot be shown, and nothing of it can be cleaned.'],
  ['blocked', 'Something is in the way of a cleanup of this source, which leaves it as it is.'],
].map(([name, text]) => ({ name, text }));

// An entry of `votes` is a fate, which is "g" (goes), "s" (stays) or "u" with why it is not safe to
// take out; a letter for each report; and the codes that go with each "o" among them
// (src/companion/page/line_votes_text.h).
function readVotes([fate, letters, ...codes]) {
  const says = [...letters];
  const withCodes = says.map((letter) => (letter === 'o' ? letter + codes.shift() : letter));
  const keepers = fate === 's' ? [...says.keys()].filter((report) => 'nopr'.includes(says[report])) : [];
  return { fate: FATE_NAMES.indexOf(fateOf(fate, says)), unsafe: fate[0] === 'u' ? fate.slice(1) : '',
    says: withCodes, keepers };
}

function fateOf(fate, says) {
  if (fate === 's') {
    return says.includes('n') ? 'unlisted' : says.some((letter) => 'op'.includes(letter)) ? 'differing' : 'dropped';
  }
  return fate !== 'g' ? 'unsafe' : says.some((letter) => 'xr'.includes(letter)) ? 'unjudged' : 'agreed';
}

const votes = data.votes.map(readVotes);
const markers = flatMarkers((index, state) => {
  const { fate } = votes[index];
  return state > 0 && FATES[fate].kind !== 'stays' ? FATE_NAMES.indexOf(STATES[state].name) : fate;
});
const isAnyHeld = markers.fate.some((fate) => KIND_OF_FATE[fate] === KINDS.indexOf('held'));
