// Trees of classes and of objects: lists in lists, each drawn when it is opened.
const kOpenAtFirst = 60;

function treeList(items, draw, childrenOf, isOpen) {
  const branch = (item) => {
    const children = childrenOf(item);
    if (!children.length) return h('div.leaf', {}, draw(item));
    const row = h('details', {
      open: isOpen(item),
      ontoggle: () => { if (row.open && row.children.length === 1) open(); },
    }, h('summary', {}, draw(item)));
    const open = () => row.append(treeList(children, draw, childrenOf, isOpen));
    if (row.open) open();
    return row;
  };
  return h('div.tree', {}, longList(items, branch, 50));
}

function objectTree() {
  const roots = objects.filter((instance) => !instance.parent);
  const element = section('tree', 'Object tree', 'Each hangs on what it is part of or depends on.');
  const isOpen = (instance) => objects.length <= kOpenAtFirst || !instance.parent;
  const draw = (instance) => [h('a', {href: objectLink(instance)}, instance.title),
    h('small', {}, instance.cls.label,
      instance.children.length > 0 && ` · ${instance.children.length.toLocaleString('en')}`)];
  append(element, treeList(roots, draw, (instance) => instance.children, isOpen));
  return element;
}

function classTree() {
  const element = section('classes', 'Class tree', `${count(classes.length, ['class', 'classes'])}, each below its superclass, with the number of its objects.`);
  const draw = (cls) => [h('a.class-link' + (cls.total ? '' : '.without'), {href: classLink(cls)}, cls.name),
    cls.abstract && h('small', {}, 'abstract'),
    cls.kind !== 'class' && h('small', {}, cls.kind),
    cls.total > 0 && h('span.badge', {}, cls.total.toLocaleString('en'))];
  const isOpen = (cls) => classes.length <= kOpenAtFirst;
  append(element, treeList(topClasses, draw, (cls) => cls.subclasses, isOpen));
  return element;
}
