// Charts: how full what has a capacity is, and how caches lie between memory and the cores.

// A capacity and what of it is free, by the names of their properties.
const kCapacities = [
  ['FileSystemSize', 'AvailableSpace', ''],
  ['TotalSize', 'AvailableSize', ''],
  ['SwapSize', 'SwapFreeSize', 'Swap'],
  ['TotalVisibleMemorySize', 'FreePhysicalMemory', 'Memory'],
  ['TotalSwapSpaceSize', 'FreeSpaceInPagingFiles', 'Swap'],
];

function capacitiesOf(instance) {
  return kCapacities.flatMap(([totalName, freeName, what]) => {
    const total = cellOf(instance, totalName);
    const free = cellOf(instance, freeName);
    if (!total || !free || total.isNull || free.isNull || !(Number(total.value) > 0)) return [];
    const used = 1 - Number(free.value) / Number(total.value);
    return [{instance, total, free, what, used: Math.min(1, Math.max(0, used))}];
  });
}

const kBars = 12;

function capacityBar({instance, total, free, what, used}) {
  const percent = Math.round(used * 100);
  const bar = h('span.fill' + (used >= 0.9 ? '.full' : ''));
  bar.style.width = used * 100 + '%';
  return h('li', {}, h('a.bar-name', {href: objectLink(instance)}, instance.title,
    what !== instance.title && h('small', {}, what || instance.cls.label)),
  h('span.bar', {role: 'img', 'aria-label': `${percent} percent used`}, bar),
  h('span.bar-text', {}, h('b', {}, percent + '%'), ` · ${free.text} free of ${total.text}`));
}

function capacityChart() {
  const capacities = objects.flatMap(capacitiesOf).sort((a, b) => b.used - a.used);
  if (!capacities.length) return null;
  const rest = capacities.length - kBars;
  return h('div.chart', {id: 'capacity'}, h('h3', {}, 'Used capacity'),
    h('ul.bars', {}, capacities.slice(0, kBars).map(capacityBar)),
    rest > 0 && h('p.note', {}, `The ${kBars} fullest of ${capacities.length.toLocaleString('en')}.`));
}

const kBoxes = window.innerWidth < 500 ? 8 : 16;

function cachesOf(processor) {
  const byLevel = new Map();
  for (const {object} of processor.links) {
    const level = cellOf(object, 'Level');
    if (!level || level.isNull || !cellOf(object, 'Size')) continue;
    if (!byLevel.has(level.value)) byLevel.set(level.value, new Set());
    byLevel.get(level.value).add(object);
  }
  return [...byLevel].sort(([a], [b]) => b - a).map(([level, caches]) => ({level, caches: [...caches]}));
}

// One box for each of the caches or cores, the width of the processor between them. Where there
// are too many, the last box says how many more.
function boxes(number, style, textOf) {
  const shown = number > kBoxes ? kBoxes - 1 : number;
  return h('div.boxes', {}, Array.from({length: shown}, (_, at) => h('span.box.' + style, {}, textOf(at))),
    number > shown && h('span.box.rest.' + style, {}, '+' + (number - shown)));
}

function cacheRow(cache) {
  const number = Number(cellOf(cache, 'NumberOfCaches')?.value ?? 1) || 1;
  const kind = cellOf(cache, 'CacheType')?.text;
  const size = cellOf(cache, 'Size').text;
  return h('div.cache-row', {},
    h('a.cache-name', {href: objectLink(cache)}, `L${cellOf(cache, 'Level').text} ${kind ?? ''}`,
      h('small', {}, number > 1 ? `${number.toLocaleString('en')} × ${size}` : size)),
    boxes(number, 'level-' + cellOf(cache, 'Level').text, () => number <= 4 ? size : '\u00a0'));
}

function processorPicture(processor) {
  const levels = cachesOf(processor);
  if (!levels.length) return null;
  const cores = Number(cellOf(processor, 'NumberOfCores')?.value ?? 0);
  return h('div.processor', {}, h('p', {}, h('a', {href: objectLink(processor)}, processor.title)),
    levels.map(({caches}) => caches.map(cacheRow)),
    cores > 0 && h('div.cache-row', {}, h('span.cache-name', {}, count(cores, 'core')),
      boxes(cores, 'core', (at) => at)));
}

function cacheChart() {
  const pictures = objects.filter((instance) => cellOf(instance, 'NumberOfCores'))
    .map(processorPicture).filter(Boolean);
  if (!pictures.length) return null;
  return h('div.chart', {id: 'caches'}, h('h3', {}, 'Caches'), pictures.slice(0, 8),
    pictures.length > 8 && h('p.note', {}, `8 of ${pictures.length} processors.`));
}

function chartSection() {
  const charts = [capacityChart(), cacheChart()].filter(Boolean);
  if (!charts.length) return null;
  const element = section('charts', 'At a glance', null);
  element.append(h('div.charts', {}, charts));
  return element;
}
