// The chart of folders. Which folder is looked into is no choice: it only says whose parts are shown.

const looked = { folder: 0 };

// The folder as it is worth showing: one that holds a single folder and no file says nothing new.
function worthShowing(folder) {
  const { first, end, children } = folders[folder];
  const only = children.length === 1 ? folders[children[0]] : null;
  return only && only.first === first && only.end === end ? worthShowing(children[0]) : folder;
}

function folderName(folder, above = 0) {
  return `${visibleName(folders[folder].path.slice(folders[above].path.length).replace(/^\/(?=.)/, ''))}/`;
}

function drawFolders(sums) {
  const current = worthShowing(looked.folder);
  const here = emptySums(1);
  KINDS.forEach((kind) => { here[kind][0] = sums[kind][current]; });
  const rows = folders[current].children.map((child) => {
    KINDS.forEach((kind) => { here[kind][0] -= sums[kind][child]; });
    const folder = worthShowing(child);
    return { key: folders[folder].path, label: folderName(folder, current), parts: partsOf(sums, child),
      isChosen: view.folders.has(folder), choose: () => toggleIn('folders', folder),
      look: folders[folder].children.length > 0 ? () => lookInto(folder, sums) : null };
  });
  drawBars('folders', [...rows, { label: 'files right here', parts: partsOf(here, 0) }]);
  drawTrail(current, sums);
}

function lookInto(folder, sums) {
  looked.folder = folder;
  drawFolders(sums);
  (byId('trail').hidden ? byId('folders-title') : byId('trail').lastChild).focus();
}

// The way from the root down to the folder, each step a button.
function drawTrail(current, sums) {
  const steps = [];
  for (let folder = current; folder >= 0; folder = folders[folder].parent) {
    steps.unshift(folder);
  }
  const isTop = worthShowing(0) === current;
  byId('trail').hidden = isTop;
  byId('trail').replaceChildren(...steps.flatMap((folder) => {
    const name = folder === 0 ? 'All' : visibleName(folders[folder].name) || '/';
    if (folder === current) {
      return [make('span', { tabIndex: -1 }, isTop ? 'All' : name)];
    }
    return worthShowing(folder) === current ? [`${name} / `]
      : [makeButton({ onclick: () => lookInto(folder, sums) }, name), ' / '];
  }));
}
