// Elements. Text becomes text nodes only, whatever it holds.
const svgTags = new Set(['svg', 'g', 'circle', 'line', 'path', 'rect', 'text']);

// h('a.button', {href, onclick}, children...): an element with classes, attributes and
// listeners. Children are elements, texts, lists of those, or nothing (null, false).
function h(tag, attributes, ...children) {
  const [name, ...styles] = tag.split('.');
  const element = svgTags.has(name)
    ? document.createElementNS('http://www.w3.org/2000/svg', name)
    : document.createElement(name);
  if (styles.length) element.setAttribute('class', styles.join(' '));
  for (const [key, value] of Object.entries(attributes ?? {}))
    if (key.startsWith('on')) element.addEventListener(key.slice(2), value);
    else if (value === true) element.setAttribute(key, '');
    else if (value !== false && value !== null && value !== undefined)
      element.setAttribute(key, value);
  append(element, children);
  return element;
}

function append(element, children) {
  for (const child of [children].flat(Infinity))
    if (child instanceof Node) element.appendChild(child);
    else if (child !== null && child !== undefined && child !== false)
      element.appendChild(document.createTextNode(String(child)));
  return element;
}

function fill(element, ...children) {
  element.replaceChildren();
  return append(element, children);
}

const objectLink = (instance) => '#/object/' + encodeURIComponent(instance.path);
const classLink = (cls) => '#/class/' + encodeURIComponent(cls.name);
const sectionId = (cls) => 'class-' + cls.name;

// A name that may break where a new word begins in it.
function breakable(name) {
  return name.split(/(?<=[a-z0-9_])(?=[A-Z])/).flatMap((word, at) => at ? [h('wbr'), word] : [word]);
}

// What a cell shows: text, links where it holds references, faint where there is no value.
function cellContent(cell, type) {
  if (!cell) return null;
  if (type && type.startsWith('reference') && !cell.isNull)
    return [cell.value].flat().map((path, at) => {
      const target = byPath.get(path);
      return [at ? ', ' : null,
              target ? h('a', {href: objectLink(target)}, target.title) : String(path)];
    });
  if (cell.isNull || cell.text === '') return h('span.none', {}, cell.text || 'empty');
  return cell.text;
}

// Calls `draw` when the element comes near the part of the page that is seen.
const awaited = new Map();
const observer = new IntersectionObserver((entries) => {
  for (const entry of entries) if (entry.isIntersecting) drawNow(entry.target);
}, {rootMargin: '600px'});

function whenSeen(element, draw) {
  awaited.set(element, draw);
  observer.observe(element);
}

function drawNow(element) {
  const draw = awaited.get(element);
  if (!draw) return;
  awaited.delete(element);
  observer.unobserve(element);
  draw();
}

function section(id, title, note) {
  return h('section', {id, 'aria-labelledby': id + '-title'},
    h('div.heading', {}, h('h2', {id: id + '-title'}, title), note && h('p.note', {}, note)));
}
