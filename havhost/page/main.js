// The page: its parts, and how one gets to them.
const main = document.getElementById('main');

// The system that the inventory is of, when there is one root that all hangs on.
function system() {
  const roots = objects.filter((instance) => !instance.parent && instance.children.length);
  return roots.length === 1 ? roots[0] : null;
}

function collectedAt() {
  const times = objects.map((instance) => cellOf(instance, 'DateTimeOfCollection'))
    .filter((cell) => cell && !cell.isNull).map((cell) => cell.text).sort();
  return times.length ? times[times.length - 1].replace(/\.\d+/, '') : null;
}

function drawHead() {
  const title = system() ? system().title : report.namespace;
  document.title = title + ' · Report';
  document.getElementById('title').textContent = title;
  const collected = collectedAt();
  append(document.getElementById('subtitle'), [
    [system() && report.namespace, count(objects.length, 'object'),
     collected && 'collected ' + collected].filter(Boolean).join(' · ')]);
  append(document.getElementById('foot'), ['Made by ' + report.program + ' with D3 ' + d3.version]);
}

// Classes with objects, in the order in which the tree meets them; associations last.
function shownClasses() {
  const shown = [...new Set(instances.map((instance) => instance.cls))];
  return shown.filter((cls) => cls.kind !== 'association')
    .concat(shown.filter((cls) => cls.kind === 'association'));
}

function card(cls) {
  const titles = cls.instances.slice(0, 3).map((instance) => instance.title);
  const rest = cls.instances.length - titles.length;
  return h('a.card', {href: '#' + sectionId(cls)},
    h('span.card-name', {}, cls.label),
    h('span.card-number', {}, cls.instances.length.toLocaleString('en')),
    h('span.card-titles', {}, titles.map((title) => h('span', {}, title)),
      rest > 0 && h('span.none', {}, `and ${rest.toLocaleString('en')} more`)));
}

function overview(shown) {
  const element = section('overview', 'Overview', null);
  const ofObjects = shown.filter((cls) => cls.kind !== 'association');
  if (!ofObjects.length)
    element.append(h('p.empty', {}, classes.length
      ? 'The namespace holds classes, but no object.' : 'The namespace is empty.'));
  const cards = h('div.cards', {}, ofObjects.slice(0, 24).map(card));
  element.append(cards);
  if (ofObjects.length > 24)
    element.append(h('p.note', {}, `24 of ${ofObjects.length} classes with objects; all are below.`));
  return element;
}

function drawContents(shown) {
  const item = (id, text, number) => h('li', {}, h('a', {href: '#' + id}, h('span', {}, text),
    number !== undefined && h('span.badge', {}, number.toLocaleString('en'))));
  const parts = [...main.querySelectorAll(':scope > section:not(.of-class)')].map((part) =>
    item(part.id, part.querySelector('h2').textContent));
  const list = (kind) => shown.filter((cls) => (cls.kind === 'association') === kind)
    .map((cls) => item(sectionId(cls), cls.label, cls.instances.length));
  append(document.getElementById('contents'), [h('ul', {}, parts),
    list(false).length > 0 && [h('p', {}, 'Objects'), h('ul', {}, list(false))],
    list(true).length > 0 && [h('p', {}, 'Associations'), h('ul', {}, list(true))]]);
}

// Where the contents are one line, they move along.
function markCurrent(link) {
  const contents = document.getElementById('contents');
  link.setAttribute('aria-current', 'true');
  contents.scrollLeft = link.offsetLeft - contents.clientWidth / 2 + link.offsetWidth / 2;
}

// Marks in the contents which part is being read.
function followReading() {
  const links = new Map([...document.querySelectorAll('#contents a')].map((link) =>
    [link.getAttribute('href').slice(1), link]));
  const watcher = new IntersectionObserver((entries) => {
    for (const {target, isIntersecting} of entries)
      if (isIntersecting)
        for (const [id, link] of links)
          if (id === target.id) markCurrent(link);
          else link.removeAttribute('aria-current');
  }, {rootMargin: '-15% 0px -75% 0px'});
  for (const part of main.querySelectorAll(':scope > section')) watcher.observe(part);
}

function drawPage() {
  const shown = shownClasses();
  drawHead();
  append(main, [overview(shown), chartSection(), objects.length > 0 && objectTree(),
    objects.length > 0 && graphSection(), classTree(), shown.map(classSection)]);
  drawContents(shown);
  followReading();
  startSearch();
  followAddress();
}

drawPage();
