// What is told of one object or one class, in a dialog that the address opens: "#/object/PATH",
// "#/class/NAME".
const dialog = document.getElementById('details');

// The superclasses above, as links.
function lineageLinks(cls) {
  return lineage(cls).slice(1).map((above) => [' ← ', h('a', {href: classLink(above)}, above.name)]);
}

function qualifierList(qualifiers) {
  if (!qualifiers.length) return null;
  return h('dl.qualifiers', {}, qualifiers.map(([name, value]) =>
    h('div', {}, h('dt', {}, name), h('dd', {}, qualifierText(value)))));
}

function qualifierText(value) {
  if (value === true) return 'yes';
  if (value === false) return 'no';
  if (value === null) return h('span.none', {}, 'NULL');
  return Array.isArray(value) ? value.join(', ') : String(value);
}

const isDescription = ([name]) => name.toLowerCase() === 'description';

// The declaration of a property, method or parameter in words.
function declDetails(decl, facts) {
  const description = decl.qualifiers.find(isDescription);
  return [
    description && h('p', {}, String(description[1])),
    h('dl.qualifiers', {}, facts.filter(Boolean).map(([name, value]) =>
      h('div', {}, h('dt', {}, name), h('dd', {}, value)))),
    qualifierList(decl.qualifiers.filter((qualifier) => !isDescription(qualifier))),
  ];
}

function propertyRow({name, type, cell}, decl) {
  const body = h('div.more');
  const row = h('details.property', {
    ontoggle: () => {
      if (row.open && !body.firstChild) append(body, declDetails(decl ?? {qualifiers: []}, [
        ['Raw value', h('code', {}, valueText(cell.value))],
        ['Type', h('code', {}, decl ? decl.type : type)],
        decl && ['Declared by', h('a', {href: classLink(decl.origin)}, decl.origin.name)],
      ]));
    },
  }, h('summary', {}, h('span.name', {}, breakable(name), decl && decl.key && h('span.key', {}, 'key')),
    h('span.value', {}, cellContent(cell, type))), body);
  return row;
}

function linkGroups(instance) {
  const groups = new Map();
  for (const link of instance.links) {
    const key = link.association.cls.name + ' ' + link.role;
    if (!groups.has(key)) groups.set(key, []);
    groups.get(key).push(link);
  }
  const inOrder = [...groups].sort(([a], [b]) => collator.compare(a, b)).map(([, links]) => links);
  return inOrder.map((links) => h('div.links', {},
    h('h4', {}, h('a', {href: classLink(links[0].association.cls)}, links[0].association.cls.label),
      h('span.role', {}, links[0].role)),
    longList(links.sort((a, b) => collator.compare(a.object.title, b.object.title)), ({object}) =>
      h('a.object', {href: objectLink(object)}, h('span', {}, object.title),
        h('small', {}, object.cls.label)))));
}

// A list that shows its first ones, and the rest a piece at a time.
function longList(items, draw, first = 20) {
  const list = h('ul');
  const more = h('button', {onclick: () => show(list.children.length + 200)});
  const show = (upTo) => {
    append(list, items.slice(list.children.length, upTo).map((item) => h('li', {}, draw(item))));
    const rest = items.length - list.children.length;
    if (rest) fill(more, `${rest.toLocaleString('en')} more`);
    else more.remove();
  };
  const whole = h('div', {}, list, more);
  show(first);
  return whole;
}

// The objects above it in the tree.
function crumbs(instance) {
  const above = [];
  for (let at = instance.parent; at; at = at.parent) above.unshift(at);
  return above.length > 0 && h('p.crumbs', {}, above.map((at) =>
    [h('a', {href: objectLink(at)}, at.title), ' › ']), h('span', {}, instance.title));
}

function objectDetails(instance) {
  const decls = new Map(declarations(instance.cls, 'properties').map((decl) => [decl.name, decl]));
  const cells = cellsOf(instance);
  const draw = (entry) => propertyRow(entry, decls.get(entry.name));
  const empty = cells.filter(({cell}) => cell.isNull || cell.text === '');
  const withValue = cells.filter((entry) => !empty.includes(entry));
  return [
    crumbs(instance),
    h('code.path', {}, instance.path),
    !instance.isLink && h('p.actions', {}, h('button', {onclick: () => showAround(instance)},
      'Show in the graph')),
    h('h3', {}, 'Properties'),
    withValue.map(draw),
    empty.length > 0 && h('details.empties', {}, h('summary', {}, `${empty.length} without a value`),
      empty.map(draw)),
    instance.links.length > 0 && h('h3', {}, 'Linked to'),
    linkGroups(instance),
  ];
}

function declRow(decl, cls, signature, parameters) {
  const body = h('div.more');
  const row = h('details.property', {
    ontoggle: () => {
      if (row.open && !body.firstChild) append(body, [declDetails(decl, [
        decl.default !== undefined && ['Default', h('code', {}, valueText(decl.default))],
        decl.origin !== cls && ['Declared by', h('a', {href: classLink(decl.origin)}, decl.origin.name)],
      ]), parameters]);
    },
  }, h('summary', {}, h('span.name', {}, breakable(decl.name), decl.key && h('span.key', {}, 'key')),
    h('code.value', {}, signature)), body);
  return row;
}

function methodRow(method, cls) {
  const signature = `${method.type} (${method.parameters.map((parameter) =>
    parameter.type + ' ' + parameter.name).join(', ')})`;
  return declRow(method, cls, signature, method.parameters.map((parameter) =>
    [h('h4', {}, parameter.name), declDetails(parameter, [['Type', h('code', {}, parameter.type)]])]));
}

function classDetails(cls) {
  const properties = declarations(cls, 'properties');
  const methods = declarations(cls, 'methods');
  const qualifiers = cls.qualifiers.filter((qualifier) => !isDescription(qualifier));
  return [
    h('p.crumbs', {}, (cls.abstract ? 'abstract ' : '') + cls.kind + ' ', h('code', {}, cls.name),
      lineageLinks(cls)),
    cls.description && h('p', {}, cls.description),
    cls.instances.length > 0 && h('p.actions', {}, h('a.button', {href: '#' + sectionId(cls)},
      'Show ' + count(cls.instances.length, 'object'))),
    cls.subclasses.length > 0 && [h('h3', {}, 'Subclasses'),
      longList(cls.subclasses, (subclass) => h('a', {href: classLink(subclass)}, subclass.name))],
    properties.length > 0 && h('h3', {}, 'Properties'),
    properties.map((property) => declRow(property, cls, property.type)),
    methods.length > 0 && h('h3', {}, 'Methods'),
    methods.map((method) => methodRow(method, cls)),
    qualifiers.length > 0 && h('h3', {}, 'Qualifiers'),
    qualifierList(qualifiers),
  ];
}

function openDialog(kind, title, content) {
  fill(dialog, h('div.dialog-head', {}, h('div', {}, h('p.kind', {}, kind),
    h('h2', {id: 'details-title', tabindex: -1}, title)),
  h('button.close', {'aria-label': 'Close', onclick: () => dialog.close()}, '×')),
  h('div.dialog-body', {}, content));
  if (!dialog.open) dialog.showModal();
  document.getElementById('details-title').focus();
  dialog.scrollTop = 0;
}

// The address that the open dialog shows.
let shownAddress = '';

// Leaves the page where it is: only the address forgets what was open, unless it has gone on to
// something else since the dialog was closed.
function forgetAddress() {
  if (location.hash === shownAddress && !dialog.open)
    history.replaceState(null, '', location.pathname + location.search);
}

function followAddress() {
  shownAddress = location.hash;
  const [, kind, name] = /^#\/(object|class)\/(.*)$/s.exec(location.hash) ?? [];
  if (!kind) {
    dialog.close();
    return;
  }
  let key;
  try { key = decodeURIComponent(name); } catch { key = name; }
  if (kind === 'object' && byPath.has(key)) {
    const instance = byPath.get(key);
    openDialog(instance.cls.label, instance.title, objectDetails(instance));
  } else if (kind === 'class' && classByName.has(key)) {
    const cls = classByName.get(key);
    openDialog('Class', cls.label, classDetails(cls));
  } else {
    openDialog('Not in this report', key, h('p.empty', {}, 'The report holds nothing of this name.'));
  }
}

dialog.addEventListener('close', forgetAddress);
// A click beside the dialog is one on its backdrop, which counts as the dialog itself.
dialog.addEventListener('click', (event) => { if (event.target === dialog) dialog.close(); });
window.addEventListener('hashchange', followAddress);
