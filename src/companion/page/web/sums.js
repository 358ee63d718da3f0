// The sums of the whole, each of which is a choice.

const KIND_WORDS = { goes: () => 'can go', held: () => 'agreed on, but held back',
  stays: (amount) => (amount === 1 ? 'stays' : 'stay') };

function fateTitle(fate) {
  return { goes: 'can go', held: 'held back', stays: 'stays' }[fate] ??
    FATES[FATE_NAMES.indexOf(fate)].inAll(0).replace(/^in 0 /, 'in ');
}

// How many markers each fate has, and in how many files.
function countFates() {
  const counts = FATES.map(() => ({ amount: 0, files: 0 }));
  const last = FATES.map(() => -1);
  for (let file = 0; file < files.length; file++) {
    for (let marker = markers.first[file]; marker < markers.first[file + 1]; marker++) {
      const fate = markers.fate[marker];
      counts[fate].amount++;
      counts[fate].files += last[fate] === file ? 0 : 1;
      last[fate] = file;
    }
  }
  return counts;
}

function sumButton(fate, amount, words, className) {
  const button = makeButton({ className: `fact ${className}`, disabled: amount === 0,
    onclick: () => choose({ fate: view.fate === fate ? 'all' : fate }) }, make('strong', {}, number(amount)), ` ${words}`);
  button.dataset.fate = fate;
  return button;
}

function drawSums() {
  const counts = countFates();
  const bars = KINDS.map((kind, index) => {
    const own = [...FATES.keys()].filter((fate) => KIND_OF_FATE[fate] === index && counts[fate].amount > 0);
    const amount = sum(own.map((fate) => counts[fate].amount));
    if (kind !== 'held' || amount > 0) {
      byId('sums').append(make('div', {}, sumButton(kind, amount, KIND_WORDS[kind](amount), kind), own.map((fate) =>
        sumButton(FATES[fate].name, counts[fate].amount, FATES[fate].inAll(counts[fate].files), ''))));
    }
    return [kind, amount];
  });
  byId('whole').append(bar(bars, Math.max(1, markers.count)));
}

function markSums() {
  for (const button of byId('sums').querySelectorAll('button')) {
    button.setAttribute('aria-pressed', String(button.dataset.fate === view.fate));
  }
}
