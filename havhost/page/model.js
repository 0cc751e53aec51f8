// The report's data: classes, objects (instances that are no association) and their links.
const report = JSON.parse(document.getElementById('data').textContent);
const collator = new Intl.Collator('en', {numeric: true, sensitivity: 'base'});

// A cell as {text, value, isNull}; undefined where the instance has no such property.
function readCell(cell) {
  if (cell === null || cell === undefined) return undefined;
  const [text, value] = Array.isArray(cell) ? cell : [cell, cell];
  return {
    text: Array.isArray(text) ? text.join(', ') : text,
    value,
    isNull: value === null,
  };
}

function valueText(value) {
  if (value === null) return 'NULL';
  return Array.isArray(value) ? '{' + value.map(valueText).join(', ') + '}' : String(value);
}

// "ORVSG_DiskDrive" as "Disk drive".
function labelOf(className) {
  const words = className.replace(/^[^_]*_/, '')
    .replace(/([a-z0-9])([A-Z])/g, '$1 $2')
    .replace(/([A-Z]+)([A-Z][a-z])/g, '$1 $2')
    .split(/[ _]+/)
    .map((word, at) => at === 0 || /^[A-Z0-9]{2,}$/.test(word) ? word : word.toLowerCase());
  return words.join(' ') || className;
}

function qualifierOf(element, name) {
  const found = element.qualifiers.find(([key]) => key.toLowerCase() === name.toLowerCase());
  return found ? found[1] : undefined;
}

const classes = report.classes;
const classByName = new Map();
for (const cls of classes) {
  cls.label = labelOf(cls.name);
  cls.subclasses = [];
  cls.instances = [];
  cls.total = 0;
  cls.description = String(qualifierOf(cls, 'Description') ?? '');
  classByName.set(cls.name, cls);
}
for (const cls of classes) {
  cls.parent = classByName.get(cls.superclass) ?? null;
  if (cls.parent) cls.parent.subclasses.push(cls);
}
const topClasses = classes.filter((cls) => !cls.parent);
const byName = (a, b) => collator.compare(a.name, b.name);

// From the class up to the top.
function lineage(cls) {
  const line = [];
  for (let at = cls; at; at = at.parent) line.push(at);
  return line;
}

// Properties or methods, inherited ones too, each with the class that declares it.
function declarations(cls, kind) {
  const byFolded = new Map();
  for (const owner of lineage(cls))
    for (const decl of owner[kind]) {
      const folded = decl.name.toLowerCase();
      if (!byFolded.has(folded)) byFolded.set(folded, {...decl, origin: owner});
    }
  return [...byFolded.values()].sort(byName);
}

const instances = report.instances;
const byPath = new Map();
for (const instance of instances) {
  instance.cls = classes[instance.class];
  instance.isLink = instance.cls.kind === 'association';
  instance.links = [];
  instance.children = [];
  instance.cls.instances.push(instance);
  byPath.set(instance.path, instance);
}
for (const instance of instances) {
  instance.parent = instances[instance.parent] ?? null;
  instance.via = classes[instance.via] ?? null;
  if (instance.parent) instance.parent.children.push(instance);
  for (const cls of lineage(instance.cls)) ++cls.total;
}
// Classes that are in use come first, and associations after what they link.
const kKinds = ['class', 'association', 'indication'];
const byUse = (a, b) => (b.total > 0) - (a.total > 0) ||
  kKinds.indexOf(a.kind) - kKinds.indexOf(b.kind) || byName(a, b);
for (const cls of classes) cls.subclasses.sort(byUse);
topClasses.sort(byUse);
const objects = instances.filter((instance) => !instance.isLink);
const associations = instances.filter((instance) => instance.isLink);

// The cells of an instance, each with its column's name and type.
function cellsOf(instance) {
  return instance.cls.columns
    .map(([name, type], at) => ({name, type, cell: readCell(instance.cells[at])}))
    .filter(({cell}) => cell);
}

function cellOf(instance, name) {
  const at = instance.cls.columns.findIndex((column) => column[0] === name);
  return at < 0 ? undefined : readCell(instance.cells[at]);
}

// The ends of an association that are in the report, by role.
function endsOf(association) {
  return cellsOf(association)
    .filter(({type, cell}) => type === 'reference' && byPath.has(cell.value))
    .map(({name, cell}) => ({role: name, object: byPath.get(cell.value)}));
}

for (const association of associations) {
  const ends = endsOf(association);
  // Its path names both ends by their keys, which is nothing to read.
  if (ends.length > 1) association.title = ends.map(({object}) => object.title).join(' – ');
  for (const from of ends)
    for (const to of ends)
      if (from !== to) from.object.links.push({...to, association});
}

// All text of an instance, folded, for searching and filtering.
function searchText(instance) {
  instance.folded ??= [instance.title, instance.path, ...cellsOf(instance).map(({cell}) => cell.text)]
    .join('\n').toLowerCase();
  return instance.folded;
}

function matches(text, words) {
  return words.every((word) => text.includes(word));
}

function wordsOf(query) {
  return query.toLowerCase().split(/\s+/).filter(Boolean);
}

function count(number, thing) {
  const [one, many] = Array.isArray(thing) ? thing : [thing, thing + 's'];
  return number.toLocaleString('en') + ' ' + (number === 1 ? one : many);
}
