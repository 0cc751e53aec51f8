// Search over everything: objects by all their texts, classes by name and description.
const kMostFound = 40;
const searchBox = document.getElementById('search');
const foundList = document.getElementById('found');

function rank(text, query) {
  const at = text.toLowerCase().indexOf(query);
  return at < 0 ? 2 : at === 0 ? 0 : 1;
}

function find(query) {
  const words = wordsOf(query);
  if (!words.length) return [];
  const folded = words.join(' ');
  const found = instances.filter((instance) => matches(searchText(instance), words))
    .map((instance) => ({name: instance.title, kind: instance.cls.label, href: objectLink(instance),
                         order: rank(instance.title, folded) + (instance.isLink ? 3 : 0)}));
  for (const cls of classes)
    if (matches((cls.name + ' ' + cls.label + ' ' + cls.description).toLowerCase(), words))
      found.push({name: cls.name, kind: 'class', href: classLink(cls),
                  order: Math.min(rank(cls.name, folded), rank(cls.label, folded)) + 0.5});
  return found.sort((a, b) => a.order - b.order || collator.compare(a.name, b.name));
}

function drawFound() {
  const query = searchBox.value.trim();
  const found = query ? find(query) : [];
  foundList.hidden = !query;
  searchBox.setAttribute('aria-expanded', String(Boolean(query)));
  const options = found.slice(0, kMostFound).map(({name, kind, href}, at) =>
    h('a.option', {href, role: 'option', id: 'option-' + at, tabindex: -1},
      h('span', {}, name), h('small', {}, kind)));
  fill(foundList, h('div', {role: 'listbox', 'aria-label': 'Found'}, options),
    query && h('p.note', {role: 'status'}, !found.length ? `Nothing matches “${query}”.`
      : found.length > kMostFound ? `The first ${kMostFound} of ${found.length.toLocaleString('en')}.`
        : `${found.length} found.`));
  choose(options.length ? 0 : -1);
}

function choose(at) {
  const options = [...foundList.querySelectorAll('.option')];
  options.forEach((option, i) => option.setAttribute('aria-selected', String(i === at)));
  if (options[at]) {
    searchBox.setAttribute('aria-activedescendant', options[at].id);
    options[at].scrollIntoView({block: 'nearest'});
  } else {
    searchBox.removeAttribute('aria-activedescendant');
  }
}

function closeSearch() {
  foundList.hidden = true;
  searchBox.setAttribute('aria-expanded', 'false');
}

function onSearchKey(event) {
  const options = [...foundList.querySelectorAll('.option')];
  const at = options.findIndex((option) => option.getAttribute('aria-selected') === 'true');
  const keys = {
    ArrowDown: () => choose(Math.min(at + 1, options.length - 1)),
    ArrowUp: () => choose(Math.max(at - 1, 0)),
    Enter: () => options[at] && options[at].click(),
    Escape: () => { searchBox.value = ''; closeSearch(); },
  };
  if (!keys[event.key] || foundList.hidden) return;
  event.preventDefault();
  keys[event.key]();
}

function startSearch() {
  let timer = 0;
  searchBox.addEventListener('input', () => {
    clearTimeout(timer);
    timer = setTimeout(drawFound, instances.length > 2000 ? 200 : 0);
  });
  searchBox.addEventListener('keydown', onSearchKey);
  searchBox.addEventListener('focus', () => { if (searchBox.value.trim()) drawFound(); });
  foundList.addEventListener('click', closeSearch);
  document.addEventListener('click', (event) => {
    if (!event.target.closest('.search')) closeSearch();
  });
  document.addEventListener('keydown', (event) => {
    const isTyping = /^(INPUT|TEXTAREA|SELECT)$/.test(event.target.tagName);
    if (event.key !== '/' || isTyping || dialog.open || event.ctrlKey || event.metaKey) return;
    event.preventDefault();
    searchBox.focus();
  });
}
