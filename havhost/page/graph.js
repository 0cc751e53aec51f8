// The association graph: objects as points, the associations between them as lines.
const kMostNodes = 200;
const kMostOfAClass = 12;
const kMostNames = 60;
const kNameSize = 12;  // pixels
const kPalette = 12;

const graph = {
  element: null,
  picture: null,
  centre: null,
  hidden: new Set(),  // names of classes
};

// Neighbours in the order of nearness, until there are enough. No object brings in more than a few
// of one class, lest a hub show nothing but its many like parts.
function around(starts, most) {
  const seen = new Set(starts);
  for (const at of seen) {
    const byClass = new Map();
    for (const {object} of at.links) {
      if (seen.size >= most) return [...seen];
      const brought = byClass.get(object.cls) ?? 0;
      if (object.isLink || seen.has(object) || graph.hidden.has(object.cls.name) ||
          brought >= kMostOfAClass) continue;
      byClass.set(object.cls, brought + 1);
      seen.add(object);
    }
  }
  return [...seen];
}

function linkedObjects() {
  return objects.filter((instance) => instance.links.length && !graph.hidden.has(instance.cls.name));
}

// What is drawn: what surrounds the centre, or the roots of the tree and what surrounds them.
function chosenNodes() {
  if (graph.centre) return around([graph.centre], kMostNodes);
  const linked = linkedObjects();
  if (linked.length <= kMostNodes) return linked;
  const root = linked.find((instance) => !instance.parent) ?? linked[0];
  return around([root], kMostNodes);
}

function chosenLines(nodes) {
  const at = new Map(nodes.map((node, index) => [node.instance, index]));
  const lines = new Map();
  for (const {instance} of nodes)
    for (const {object, association} of instance.links) {
      if (!at.has(object) || object === instance) continue;
      const [source, target] = [at.get(instance), at.get(object)].sort((a, b) => a - b);
      const key = source + ' ' + target;
      if (!lines.has(key)) lines.set(key, {source, target, names: new Set()});
      lines.get(key).names.add(association.cls.label);
    }
  return [...lines.values()];
}

// The same picture each time: from a spiral, not from chance, and at rest before it is shown.
function layOut(nodes, lines) {
  nodes.forEach((node, at) => {
    const angle = at * 2.4;
    node.x = 12 * Math.sqrt(at) * Math.cos(angle);
    node.y = 12 * Math.sqrt(at) * Math.sin(angle);
  });
  const force = d3.layout.force().nodes(nodes).links(lines).size([0, 0])
    .charge(-520).linkDistance(75).gravity(0.12).theta(0.9);
  force.start();
  for (let step = 0; step < 300 && force.alpha() > 0; ++step) force.tick();
  force.stop();
}

const shortened = (text) => text.length > 26 ? text.slice(0, 25) + '…' : text;

// Where there are more classes than colours, the points of the further ones are hollow.
function colourOf(cls) {
  const at = graph.colours.get(cls);
  return `colour-${at % kPalette}${at < kPalette ? '' : '.hollow'}`;
}

function drawNode(node) {
  const {instance} = node;
  node.radius = Math.min(18, 6 + Math.sqrt(instance.links.length) * 1.8);
  const element = document.createElementNS('http://www.w3.org/2000/svg', 'a');
  element.setAttribute('href', objectLink(instance));
  element.setAttribute('class', 'node ' + colourOf(instance.cls).replace('.', ' '));
  element.setAttribute('tabindex', '-1');
  element.setAttribute('aria-label', `${instance.cls.label} ${instance.title}`);
  append(element, [h('circle', {r: node.radius}),
    h('text', {'text-anchor': 'middle'}, shortened(instance.title))]);
  node.element = element;
  return element;
}

// Marks a node and what it is linked to; with none, nothing is faint.
function mark(picture, node) {
  const near = new Set([node]);
  for (const line of picture.lines) {
    const isNear = line.source === node || line.target === node;
    if (isNear) near.add(line.source).add(line.target);
    line.element.classList.toggle('near', isNear);
  }
  for (const other of picture.nodes) {
    other.element.classList.toggle('near', Boolean(node) && near.has(other));
    other.element.classList.toggle('far', Boolean(node) && !near.has(other));
  }
}

// The nearest node in the direction of an arrow key.
function neighbour(nodes, from, [dx, dy]) {
  let best = null;
  for (const node of nodes) {
    const x = node.x - from.x;
    const y = node.y - from.y;
    const along = x * dx + y * dy;
    if (node === from || along <= 0) continue;
    const cost = along + 2 * Math.abs(x * dy - y * dx);
    if (!best || cost < best.cost) best = {node, cost};
  }
  return best && best.node;
}

const kArrows = {ArrowLeft: [-1, 0], ArrowRight: [1, 0], ArrowUp: [0, -1], ArrowDown: [0, 1]};

function listen(picture, node) {
  const {element} = node;
  element.addEventListener('mouseenter', () => mark(picture, node));
  element.addEventListener('mouseleave', () => mark(picture, null));
  element.addEventListener('focus', () => {
    for (const other of picture.nodes) other.element.setAttribute('tabindex', other === node ? 0 : -1);
    mark(picture, node);
  });
  element.addEventListener('blur', () => mark(picture, null));
  element.addEventListener('keydown', (event) => {
    const direction = kArrows[event.key];
    const next = direction && neighbour(picture.nodes, node, direction);
    if (direction) event.preventDefault();
    if (next) next.element.focus();
  });
}

function place(picture) {
  for (const {element, source, target} of picture.lines)
    for (const [name, value] of [['x1', source.x], ['y1', source.y], ['x2', target.x], ['y2', target.y]])
      element.setAttribute(name, value.toFixed(1));
  for (const {element, x, y} of picture.nodes)
    element.setAttribute('transform', `translate(${x.toFixed(1)},${y.toFixed(1)})`);
}

function letDrag(picture, node) {
  let moved = false;
  d3.select(node.element).call(d3.behavior.drag()
    .on('dragstart', () => { moved = false; d3.event.sourceEvent.stopPropagation(); })
    .on('drag', () => {
      moved = true;
      node.x += d3.event.dx;
      node.y += d3.event.dy;
      place(picture);
    }));
  node.element.addEventListener('click', (event) => { if (moved) event.preventDefault(); });
}

const span = (values) => Math.max(...values) - Math.min(...values);
const middle = (values) => (Math.max(...values) + Math.min(...values)) / 2;

// Brings the picture nearer to the shape of its frame.
function stretch(nodes, {width, height}) {
  const shape = (span(nodes.map(({x}) => x)) + 1) / (span(nodes.map(({y}) => y)) + 1);
  const factor = Math.min(1.8, Math.max(0.5, Math.sqrt(width / height / shape)));
  for (const node of nodes) {
    node.x *= factor;
    node.y /= factor;
  }
}

// Pushes apart what covers another's name; `size` is that of the names.
function makeRoom(nodes, size) {
  const half = (node) => Math.max(node.radius, halfName(node, size)) + 3;
  for (let round = 0, moved = true; round < 80 && moved; ++round) {
    moved = false;
    for (const [at, a] of nodes.entries())
      for (const b of nodes.slice(at + 1)) {
        const x = half(a) + half(b) - Math.abs(a.x - b.x);
        const y = (a.radius + b.radius + size * 2 + 4) / 1.5 - Math.abs(a.y - b.y);
        if (x <= 0 || y <= 0) continue;
        moved = true;
        const by = Math.min(x / 3, y) / 2 + 0.5;
        const axis = x / 3 < y ? 'x' : 'y';
        const sign = a[axis] < b[axis] ? -1 : 1;
        a[axis] += sign * by * (axis === 'x' ? 3 : 1);
        b[axis] -= sign * by * (axis === 'x' ? 3 : 1);
      }
  }
}

const halfName = (node, size) => shortened(node.instance.title).length * size * 0.29;

// What one unit of the layout is on the screen when all is shown, with room for the names.
function scaleOf(nodes, {width, height}) {
  const room = Math.min(width / 5, 2 * Math.max(...nodes.map((node) => halfName(node, kNameSize))));
  return Math.min((width - room - 10) / (span(nodes.map(({x}) => x)) + 1),
    (height - 120) / (span(nodes.map(({y}) => y)) + 1), 1.8);
}

// Names the objects, those with most links first, unless the name would cover another or a point, or
// leave the frame: then it is shown when its object is pointed at.
function chooseNames(nodes, scale, left, right) {
  const taken = nodes.map((node) => ({x: node.x * scale, y: node.y * scale, half: 2, node}));
  for (const node of [...nodes].sort((a, b) => b.radius - a.radius)) {
    const [x, y, half] = [node.x * scale, node.y * scale + node.radius + 10, halfName(node, kNameSize)];
    const isFree = x - half > left && x + half < right && taken.every((other) => other.node === node ||
      Math.abs(other.y - y) > 13 || Math.abs(other.x - x) > other.half + half);
    node.element.classList.toggle('unnamed', !isFree);
    if (isFree) taken.push({x, y, half});
  }
}

// Shows the whole picture, above the buttons. Names keep their size however much is shown.
function fitView({svg, nodes}) {
  const frame = svg.getBoundingClientRect();
  const scale = scaleOf(nodes, frame);
  const [wide, high] = [frame.width / scale, frame.height / scale];
  const left = middle(nodes.map(({x}) => x)) - wide / 2;
  svg.setAttribute('viewBox', [left, middle(nodes.map(({y}) => y)) + 26 / scale - high / 2, wide, high]
    .map((x) => x.toFixed(1)).join(' '));
  svg.style.setProperty('--name-size', kNameSize / scale + 'px');
  chooseNames(nodes, scale, left * scale, (left + wide) * scale);
  for (const {element, radius} of nodes) {
    const shown = radius * Math.min(Math.max(1, 0.7 / scale), Math.max(0.8, 1.2 / scale));
    element.querySelector('circle').setAttribute('r', shown.toFixed(1));
    element.querySelector('text').setAttribute('y', (shown + 13 / scale).toFixed(1));
  }
}

// Gives the picture the shape of its frame, which has to be on the page.
function settle(picture) {
  const frame = picture.svg.getBoundingClientRect();
  stretch(picture.nodes, frame);
  if (picture.nodes.length <= kMostNames)
    makeRoom(picture.nodes, kNameSize / Math.max(0.6, scaleOf(picture.nodes, frame)));
  place(picture);
  fitView(picture);
}

// Wheel and touch belong to the page: buttons zoom, and the mouse drags.
function letZoom(svg, stage) {
  const zoom = d3.behavior.zoom().scaleExtent([0.3, 6])
    .on('zoom', () => stage.setAttribute('transform',
      `translate(${zoom.translate()}) scale(${zoom.scale()})`));
  d3.select(svg).call(zoom).on('wheel.zoom', null).on('mousewheel.zoom', null)
    .on('MozMousePixelScroll.zoom', null).on('touchstart.zoom', null).on('dblclick.zoom', null);
  const by = (factor) => {
    const [left, top, width, height] = svg.getAttribute('viewBox').split(' ').map(Number);
    const scale = Math.min(6, Math.max(0.3, zoom.scale() * factor));
    const middle = [left + width / 2, top + height / 2];
    const move = zoom.translate().map((t, i) => middle[i] - (middle[i] - t) * scale / zoom.scale());
    zoom.scale(scale).translate(move).event(d3.select(stage));
  };
  return {by, reset: () => zoom.scale(1).translate([0, 0]).event(d3.select(stage))};
}

function drawPicture(instances) {
  const nodes = instances.map((instance) => ({instance}));
  const lines = chosenLines(nodes);
  layOut(nodes, lines);
  const picture = {nodes, lines};
  const stage = h('g');
  for (const line of lines) {
    line.element = h('line.line');
    stage.append(line.element);
  }
  for (const node of nodes) stage.append(drawNode(node));
  const svg = h('svg.picture', {role: 'group', 'aria-label': 'Graph of objects and associations'}, stage);
  for (const node of nodes) {
    listen(picture, node);
    letDrag(picture, node);
  }
  nodes[0].element.setAttribute('tabindex', '0');
  return Object.assign(picture, {svg, zoom: letZoom(svg, stage)});
}

function legend() {
  const names = [...graph.colours.keys()];
  return h('div.legend', {role: 'group', 'aria-label': 'Classes in the graph'}, names.map((cls) =>
    h('button.' + colourOf(cls), {
      'aria-pressed': graph.hidden.has(cls.name) ? 'false' : 'true',
      onclick: (event) => {
        if (!graph.hidden.delete(cls.name)) graph.hidden.add(cls.name);
        const at = [...event.currentTarget.parentNode.children].indexOf(event.currentTarget);
        drawGraph();
        graph.element.querySelectorAll('.legend button')[at].focus();
      },
    }, h('span.dot', {'aria-hidden': 'true'}), cls.label)));
}

function graphNote(shown) {
  const all = linkedObjects().length;
  const few = `, at most ${kMostOfAClass} of a class at each`;
  if (graph.centre) return `${count(shown, 'object')} around ${graph.centre.title}${few}.`;
  if (shown < all)
    return `${shown} of ${all.toLocaleString('en')} linked objects: those nearest to the root${few}. ` +
      '“Show in the graph” on an object draws what surrounds it.';
  return `${count(shown, 'object')}. Choose one for its details; arrow keys go from one to the next.`;
}

function drawGraph() {
  const nodes = chosenNodes();
  const button = (text, label, act) => h('button', {'aria-label': label, onclick: act}, text);
  const body = graph.element.querySelector('.graph-body');
  if (!nodes.length) {
    graph.picture = null;
    fill(body, legend(), h('p.empty', {}, 'All classes of the graph are hidden.'));
    return;
  }
  graph.picture = drawPicture(nodes);
  const {svg, zoom} = graph.picture;
  fill(body, legend(), h('div.frame', {}, svg, h('div.zoom', {},
    button('+', 'Larger', () => zoom.by(1.4)), button('−', 'Smaller', () => zoom.by(1 / 1.4)),
    button('⟲', 'Whole picture', zoom.reset))),
  h('p.note', {role: 'status'}, graphNote(nodes.length)),
  graph.centre && h('p', {}, h('button', {
    onclick: () => { graph.centre = null; drawGraph(); },
  }, 'Show all')));
  settle(graph.picture);
}

// Draws what surrounds an object, and goes there.
function showAround(instance) {
  graph.centre = instance;
  graph.hidden.delete(instance.cls.name);
  dialog.close();
  drawNow(graph.element);
  drawGraph();
  graph.element.scrollIntoView();
  graph.element.querySelector('.node').focus({preventScroll: true});
}

function graphSection() {
  const linked = objects.filter((instance) => instance.links.length);
  graph.element = section('graph', 'Association graph', null);
  const byNumber = [...new Set(linked.map((instance) => instance.cls))]
    .sort((a, b) => b.instances.length - a.instances.length || byName(a, b));
  graph.colours = new Map(byNumber.map((cls, at) => [cls, at]));
  graph.element.append(h('div.graph-body'));
  if (!linked.length) {
    graph.element.querySelector('.graph-body').append(
      h('p.empty', {}, 'No association links these objects.'));
    return graph.element;
  }
  whenSeen(graph.element, drawGraph);
  window.addEventListener('resize', () => graph.picture && fitView(graph.picture));
  return graph.element;
}
