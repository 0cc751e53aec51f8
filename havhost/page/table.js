// The instances of one class: a table to sort, filter and page through, or a sheet for one.
const kRowsPerPage = 25;
// Properties that say when something was looked at, not what it is.
const kBookkeeping = new Set(['datetimeofcollection']);

const isNumberType = (type) => /^([us]int|real)(8|16|32|64)$/.test(type);

// The columns of a class with what the table needs to know of their cells.
function columnsOf(cls) {
  const decls = new Map(declarations(cls, 'properties').map((decl) => [decl.name, decl]));
  return cls.columns.map(([name, type], at) => {
    const cells = cls.instances.map((instance) => readCell(instance.cells[at]));
    const present = cells.filter((cell) => cell && !cell.isNull);
    return {
      name, type, at,
      description: decls.has(name) ? qualifierOf(decls.get(name), 'Description') : null,
      isEmpty: present.every((cell) => cell.text === ''),
      isTitle: cls.instances.every((instance, i) => !cells[i] || cells[i].text === instance.title),
      // Named values sort by their names.
      isQuantity: isNumberType(type) && present.every((cell) => /^[-+.\d]/.test(cell.text)),
    };
  });
}

const isShownAtFirst = (column) =>
  !column.isEmpty && !column.isTitle && !kBookkeeping.has(column.name.toLowerCase());

function compareCells(a, b, column) {
  if (column.isQuantity) {
    const difference = Number(a.value) - Number(b.value);
    if (difference) return difference;
  }
  return collator.compare(a.text, b.text);
}

// What has no value stands last in either direction.
function sortRows(rows, column, isDescending) {
  const keyed = rows.map((row) => [row, column ? readCell(row.cells[column.at]) : {text: row.title}]);
  const isMissing = (cell) => !cell || cell.isNull;
  return keyed.sort(([rowA, a], [rowB, b]) => {
    if (isMissing(a) || isMissing(b)) return isMissing(a) - isMissing(b);
    const order = compareCells(a, b, column ?? {});
    return (isDescending ? -order : order) || collator.compare(rowA.path, rowB.path);
  }).map(([row]) => row);
}

class ClassTable {
  constructor(cls) {
    this.cls = cls;
    this.columns = columnsOf(cls);
    this.shown = this.columns.filter(isShownAtFirst);
    this.titleName = cls.kind === 'association' ? 'Link' : 'Object';
    this.sort = {column: null, isDescending: false};
    this.query = '';
    this.page = 0;
    this.showsRaw = false;
    this.table = h('table');
    this.pager = h('div.pager');
    this.status = h('p.status', {role: 'status'});
    this.element = h('div.class-table', {}, this.tools(),
      h('div.scroll', {tabindex: 0, role: 'region', 'aria-label': cls.label + ' table'}, this.table),
      h('div.below', {}, this.status, this.pager));
    this.draw();
  }

  tools() {
    const hidden = this.columns.length - this.shown.length;
    const filter = h('input.filter', {
      type: 'search', placeholder: 'Filter', 'aria-label': 'Filter ' + this.cls.label,
      oninput: (event) => { this.query = event.target.value; this.page = 0; this.draw(); },
    });
    return h('div.tools', {}, filter,
      hidden > 0 && this.toggle(`All ${this.columns.length} columns`, (isOn) => {
        this.shown = isOn ? this.columns : this.columns.filter(isShownAtFirst);
        if (this.sort.column && !this.shown.includes(this.sort.column))
          this.sort = {column: null, isDescending: false};
      }),
      this.toggle('Raw values', (isOn) => { this.showsRaw = isOn; }));
  }

  toggle(text, change) {
    return h('label.toggle', {}, h('input', {
      type: 'checkbox',
      onchange: (event) => { change(event.target.checked); this.draw(); },
    }), text);
  }

  rows() {
    const words = wordsOf(this.query);
    const found = words.length
      ? this.cls.instances.filter((row) => matches(searchText(row), words))
      : this.cls.instances;
    return sortRows(found, this.sort.column, this.sort.isDescending);
  }

  draw() {
    const rows = this.rows();
    const pages = Math.max(1, Math.ceil(rows.length / kRowsPerPage));
    this.page = Math.min(this.page, pages - 1);
    const first = this.page * kRowsPerPage;
    const seen = rows.slice(first, first + kRowsPerPage);
    fill(this.table, h('thead', {}, h('tr', {}, this.header(null, this.titleName),
      this.shown.map((column) => this.header(column, column.name)))),
    h('tbody', {}, seen.map((row) => this.row(row))));
    this.drawStatus(rows.length, first, seen.length);
    this.drawPager(pages);
  }

  header(column, name) {
    const isSorted = this.sort.column === column;
    const direction = isSorted ? (this.sort.isDescending ? 'descending' : 'ascending') : 'none';
    return h('th' + (column && column.isQuantity ? '.number' : ''),
      {scope: 'col', 'aria-sort': direction},
      h('button', {
        onclick: () => this.sortBy(column),
        'data-column': name,
        title: column && column.description,
      }, h('span', {}, breakable(name)), h('span.arrow', {'aria-hidden': 'true'})));
  }

  sortBy(column) {
    this.sort = {
      column,
      isDescending: this.sort.column === column ? !this.sort.isDescending : false,
    };
    this.page = 0;
    this.draw();
    // The header was drawn anew under the one who pressed it.
    const name = column ? column.name : this.titleName;
    this.table.querySelector(`[data-column="${CSS.escape(name)}"]`).focus();
  }

  row(instance) {
    return h('tr', {}, h('th', {scope: 'row'}, h('a', {href: objectLink(instance)}, instance.title)),
      this.shown.map((column) => {
        const cell = readCell(instance.cells[column.at]);
        const raw = this.showsRaw && cell && valueText(cell.value) !== cell.text
          ? h('span.raw', {}, valueText(cell.value)) : null;
        return h('td' + (column.isQuantity ? '.number' : ''), {},
          cellContent(cell, column.type), raw);
      }));
  }

  drawStatus(found, first, seen) {
    const all = this.cls.instances.length;
    if (!found) {
      fill(this.status, `Nothing matches “${this.query.trim()}”.`);
    } else {
      const range = seen < found ? `${first + 1}–${first + seen} of ` : '';
      const ofAll = found < all ? ` of ${all.toLocaleString('en')}` : '';
      const things = this.cls.kind === 'association' ? 'link' : 'object';
      fill(this.status, range + (ofAll ? found.toLocaleString('en') + ofAll : count(found, things)));
    }
  }

  drawPager(pages) {
    if (pages === 1) return fill(this.pager);
    const step = (text, by) => h('button', {
      disabled: this.page + by < 0 || this.page + by >= pages,
      onclick: () => {
        this.page += by;
        this.draw();
        const again = [...this.pager.querySelectorAll('button')].find((button) =>
          button.textContent === text && !button.disabled);
        (again ?? this.pager.querySelector('button:enabled')).focus();
      }, 
    }, text);
    return fill(this.pager, step('Previous', -1), step('Next', 1));
  }
}

// One instance reads better downwards.
function sheet(instance) {
  const shown = columnsOf(instance.cls).filter(isShownAtFirst);
  return h('div.sheet', {},
    h('p.sheet-title', {}, h('a', {href: objectLink(instance)}, instance.title)),
    h('dl', {}, shown.map((column) => h('div', {}, h('dt', {title: column.description},
      breakable(column.name)),
      h('dd', {}, cellContent(readCell(instance.cells[column.at]), column.type))))));
}

function classSection(cls) {
  const element = section(sectionId(cls), cls.label, null);
  element.classList.add('of-class');
  element.querySelector('.heading').append(
    h('a.class-name', {href: classLink(cls)}, cls.name),
    h('p.note', {}, cls.description));
  const body = h('div.waiting');
  element.append(body);
  whenSeen(element, () => {
    const one = cls.instances.length === 1 && !cls.instances[0].isLink;
    body.replaceWith(one ? sheet(cls.instances[0]) : new ClassTable(cls).element);
  });
  return element;
}
