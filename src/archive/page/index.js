'use strict';
// The list of e-mails: what is shown follows from `chosen` and is made anew by show(). Only rows in view are in
// the document. Every text goes into it as text. For old browsers nothing newer than ECMAScript 2015 is used.
(function () {
  var byId = function (id) { return document.getElementById(id); };
  var data = JSON.parse(byId('data').textContent);
  // The places of a row's values, as the program writes them.
  var FOLDER = 0, FILE = 1, DATE = 2, FROM = 3, TO = 4, SUBJECT = 5, SIZE = 6, CLIP = 7;
  var rows = data.rows, folders = data.folders;
  var columns = [['date', 'Date', DATE], ['from', 'From', FROM], ['to', 'To', TO], ['subject', 'Subject', SUBJECT],
    ['clip', '', CLIP], ['size', 'Size', SIZE]];
  var kMostPrinted = 5000;
  var chosen = {folder: '', year: null, words: [], column: DATE, down: true};
  var shown = [], active = 0, narrow = window.matchMedia('(max-width: 700px)');
  var scroller = byId('scroller'), body = byId('rows');

  var number = new Intl.NumberFormat();
  var years = rows.map(function (row) { return row[DATE] === null ? null : new Date(row[DATE] * 1000).getFullYear(); });

  function make(parent, tag, className, text) {
    var element = document.createElement(tag);
    if (className) element.className = className;
    if (text !== undefined) element.textContent = text;
    parent.appendChild(element);
    return element;
  }

  // Letters without their marks, in lower case: "Muller" finds "Müller".
  function plain(text) {
    text = text.toLowerCase();
    return /[^\x00-\x7f]/.test(text) ? text.normalize('NFD').replace(/[\u0300-\u036f]/g, '') : text;
  }
  var haystacks = [];
  function haystack(i) {
    if (haystacks[i] === undefined) {
      var row = rows[i];
      haystacks[i] = plain(row[FROM] + '\n' + row[TO] + '\n' + row[SUBJECT] + '\n' + folders[row[FOLDER]].name + '\n' +
        row[FILE]);
    }
    return haystacks[i];
  }
  function prepare(from) { // the haystacks while nobody waits
    var end = Math.min(from + 2000, rows.length);
    for (var i = from; i < end; ++i) haystack(i);
    if (end < rows.length) setTimeout(prepare, 0, end);
  }

  // Orders by column: row numbers, ascending. Texts are compared as the reader's language does.
  var orders = {};
  function orderBy(column) {
    if (orders[column]) return orders[column];
    var compare = new Intl.Collator(undefined, {numeric: true, sensitivity: 'base'}).compare;
    var order = rows.map(function (row, i) { return i; });
    var textual = column === FROM || column === TO || column === SUBJECT;
    order.sort(function (a, b) {
      var x = rows[a][column], y = rows[b][column];
      if (x === null || y === null) return (x === null ? 0 : 1) - (y === null ? 0 : 1) || a - b;
      return (textual ? compare(x, y) : x - y) || a - b;
    });
    return orders[column] = order;
  }

  function isBelow(folder, above) {
    return above === '' || folder === above || folder.lastIndexOf(above + '\\', 0) === 0;
  }

  function choose() {
    var inFolder = folders.map(function (folder) { return isBelow(folder.name, chosen.folder); });
    var order = orderBy(chosen.column), counts = {}, i, k, w;
    shown = [];
    for (k = 0; k < order.length; ++k) {
      i = chosen.down ? order[order.length - 1 - k] : order[k];
      if (!inFolder[rows[i][FOLDER]]) continue;
      for (w = 0; w < chosen.words.length; ++w)
        if (haystack(i).indexOf(chosen.words[w]) < 0) break;
      if (w < chosen.words.length) continue;
      counts[years[i]] = (counts[years[i]] || 0) + 1;
      if (chosen.year === null || years[i] === chosen.year) shown.push(i);
    }
    return counts;
  }

  function show() {
    showYears(choose());
    active = 0;
    scroller.scrollTop = 0;
    byId('count').textContent = number.format(shown.length) + (shown.length === 1 ? ' e-mail' : ' e-mails');
    byId('none').hidden = shown.length > 0;
    byId('list').hidden = shown.length === 0;
    body.textContent = '';
    drawRows();
  }

  // A bar for each year that has e-mails; the whole store's years stay, so that bars do not jump.
  var bars = [];
  function makeYears() {
    var met = {}, all;
    years.forEach(function (year) { if (year !== null) met[year] = true; });
    all = Object.keys(met).map(Number).sort(function (a, b) { return a - b; });
    bars = all.map(function (year) {
      var bar = make(byId('years'), 'button', 'year');
      bar.type = 'button';
      make(make(bar, 'span', 'room'), 'span', 'bar');
      make(bar, 'span', '', String(year));
      bar.addEventListener('click', function () {
        chosen.year = chosen.year === year ? null : year;
        show();
      });
      return {year: year, button: bar, bar: bar.firstChild.firstChild};
    });
  }
  function showYears(counts) {
    var most = bars.reduce(function (m, each) { return Math.max(m, counts[each.year] || 0); }, 1);
    bars.forEach(function (each) {
      var count = counts[each.year] || 0;
      each.bar.style.height = count ? Math.max(4, 100 * count / most) + '%' : '0';
      each.button.setAttribute('aria-pressed', String(chosen.year === each.year));
      each.button.title = each.year + ': ' + number.format(count);
      each.button.setAttribute('aria-label', each.year + ', ' + number.format(count) + ' e-mails');
    });
  }

  // Rows.
  function height() { return narrow.matches ? 58 : 32; }

  // The text with what is searched for marked.
  function put(parent, text) {
    var lower = text.toLowerCase(), at = 0;
    while (lower.length === text.length && chosen.words.length) {
      var next = -1, word = '';
      for (var w = 0; w < chosen.words.length; ++w) {
        var found = lower.indexOf(chosen.words[w], at);
        if (found >= 0 && (next < 0 || found < next)) { next = found; word = chosen.words[w]; }
      }
      if (next < 0) break;
      parent.appendChild(document.createTextNode(text.slice(at, next)));
      make(parent, 'mark', '', text.slice(next, next + word.length));
      at = next + word.length;
    }
    parent.appendChild(document.createTextNode(text.slice(at)));
  }

  function timeOf(seconds) { // in the reader's own time
    var at = new Date(seconds * 1000), two = function (part) { return ('0' + part).slice(-2); };
    return at.getFullYear() + '-' + two(at.getMonth() + 1) + '-' + two(at.getDate()) + ' ' + two(at.getHours()) + ':' + two(at.getMinutes());
  }
  function nameOf(address) { // "Ann <ann@x>" is Ann
    var bracket = address.indexOf(' <');
    return bracket > 0 && address.indexOf(';') < 0 ? address.slice(0, bracket) : address;
  }
  function sizeOf(bytes) {
    if (bytes < 1000) return bytes + ' B';
    return bytes < 1000000 ? number.format(Math.round(bytes / 1000)) + ' kB' : number.format(Math.round(bytes / 100000) / 10) + ' MB';
  }
  function hrefOf(row) {
    try {
      return folders[row[FOLDER]].path + encodeURIComponent(row[FILE]);
    } catch (unpaired) { // half a character in the name, which no address can hold
      return null;
    }
  }

  function makeRow(place) {
    var row = rows[shown[place]], element = make(body, 'div', 'row'), cell, link;
    element.setAttribute('role', 'row');
    element.setAttribute('aria-rowindex', place + 2);
    element.style.top = place * height() + 'px';
    columns.forEach(function (column) {
      cell = make(element, 'div', column[0]);
      cell.setAttribute('role', 'cell');
      if (column[2] === DATE) {
        cell.textContent = row[DATE] === null ? '' : timeOf(row[DATE]);
      } else if (column[2] === SIZE) {
        cell.textContent = sizeOf(row[SIZE]);
      } else if (column[2] === SUBJECT) {
        link = make(cell, 'a');
        put(link, row[SUBJECT] || '(no subject)');
        link.title = row[SUBJECT];
        if (hrefOf(row) !== null) link.href = hrefOf(row);
        link.tabIndex = place === active ? 0 : -1;
        if (folders[row[FOLDER]].name !== chosen.folder) make(cell, 'span', 'where', folders[row[FOLDER]].label);
      } else if (column[2] === CLIP) {
        if (row[CLIP]) cell.appendChild(clip());
      } else {
        put(cell, nameOf(row[column[2]]));
        cell.title = row[column[2]];
      }
    });
    return element;
  }
  function clip() {
    var svg = document.createElementNS('http://www.w3.org/2000/svg', 'svg');
    var use = document.createElementNS('http://www.w3.org/2000/svg', 'use');
    svg.setAttribute('role', 'img');
    svg.setAttribute('aria-label', 'has an attachment');
    use.setAttribute('href', '#clip');
    svg.appendChild(use);
    return svg;
  }

  // Those in view and a few around; those that stay are not made anew, so that the focus stays.
  function drawRows() {
    byId('titles').style.paddingRight = 16 + scroller.offsetWidth - scroller.clientWidth + 'px'; // above the scroll bar
    var first = Math.max(0, Math.floor(scroller.scrollTop / height()) - 8);
    var end = Math.min(shown.length, Math.ceil((scroller.scrollTop + scroller.clientHeight) / height()) + 8);
    draw(first, end);
  }
  function draw(first, end) {
    var there = {};
    body.style.height = shown.length * height() + 'px';
    byId('list').setAttribute('aria-rowcount', shown.length + 1);
    Array.prototype.slice.call(body.children).forEach(function (element) {
      var place = element.getAttribute('aria-rowindex') - 2;
      if ((place < first || place >= end) && !element.contains(document.activeElement)) body.removeChild(element);
      else there[place] = true;
    });
    for (var place = first; place < end; ++place)
      if (!there[place]) makeRow(place);
  }
  function linkAt(place) { return body.querySelector('[aria-rowindex="' + (place + 2) + '"] a'); }
  function go(place) {
    if (!shown.length) return;
    var before = linkAt(active), top;
    active = Math.max(0, Math.min(shown.length - 1, place));
    if (before) before.tabIndex = -1;
    top = active * height();
    if (top < scroller.scrollTop) scroller.scrollTop = top;
    else if (top + height() > scroller.scrollTop + scroller.clientHeight) scroller.scrollTop = top + height() - scroller.clientHeight;
    drawRows();
    linkAt(active).tabIndex = 0;
    linkAt(active).focus({preventScroll: true});
  }

  // Titles.
  function makeTitles() {
    columns.forEach(function (column) {
      var title = make(byId('titles'), 'div', column[0]), button;
      title.setAttribute('role', 'columnheader');
      if (!column[1]) return;
      button = make(title, 'button');
      button.type = 'button';
      button.addEventListener('click', function () {
        if (chosen.column === column[2]) chosen.down = !chosen.down;
        else chosen.down = column[2] === DATE || column[2] === SIZE;
        chosen.column = column[2];
        showTitles();
        show();
      });
    });
    showTitles();
  }
  function showTitles() {
    columns.forEach(function (column, i) {
      var title = byId('titles').children[i], sorted = chosen.column === column[2];
      if (sorted) title.setAttribute('aria-sort', chosen.down ? 'descending' : 'ascending');
      else title.removeAttribute('aria-sort');
      if (column[1]) title.firstChild.textContent = column[1] + (sorted ? chosen.down ? ' \u25be' : ' \u25b4' : '');
    });
  }

  // Folders: a tree by the levels of their names. Directories without e-mails of their own have a place, too.
  var items = Object.create(null); // by name: a folder may be called "constructor"
  function makeTree() {
    var counts = Object.create(null);
    rows.forEach(function (row) {
      var levels = folders[row[FOLDER]].name.split('\\');
      for (var name = ''; ; name = name ? name + '\\' + levels.shift() : levels.shift()) {
        counts[name] = (counts[name] || 0) + 1;
        if (!levels.length || folders[row[FOLDER]].name === '') break;
      }
    });
    addItem(byId('tree'), '', 'All folders', counts['']);
    folders.forEach(function (folder) {
      var levels = folder.name.split('\\'), name = '', parent = '';
      if (folder.name === '') return;
      levels.forEach(function (level) {
        parent = name;
        name = name ? name + '\\' + level : level;
        if (!items[name]) addItem(listOf(parent), name, level, counts[name] || 0);
      });
    });
    select('');
    items[''].tabIndex = 0;
  }
  function listOf(name) {
    if (name === '') return byId('tree');
    var item = items[name], list = item.lastChild;
    if (list.tagName === 'UL') return list;
    item.setAttribute('aria-expanded', 'true');
    item.querySelector('.twist').textContent = '\u25be';
    list = make(item, 'ul');
    list.setAttribute('role', 'group');
    return list;
  }
  function addItem(list, name, label, count) {
    var item = make(list, 'li'), line = make(item, 'div', 'folder');
    item.setAttribute('role', 'treeitem');
    item.tabIndex = -1;
    make(line, 'span', 'twist').setAttribute('aria-hidden', 'true');
    make(line, 'span', 'label', label).title = name;
    make(line, 'span', 'number', number.format(count));
    line.addEventListener('click', function (event) {
      if (event.target.className === 'twist' && item.hasAttribute('aria-expanded')) return expand(item, item.getAttribute('aria-expanded') === 'false');
      select(name);
      show();
    });
    item.folder = name;
    items[name] = item;
  }
  function expand(item, open) {
    item.setAttribute('aria-expanded', String(open));
    item.querySelector('.twist').textContent = open ? '\u25be' : '\u25b8';
  }
  function select(name) {
    Object.keys(items).forEach(function (each) { items[each].setAttribute('aria-selected', String(each === name)); });
    chosen.folder = name;
    byId('choose').textContent = name === '' ? 'All folders' : name;
    openFolders(false);
  }
  function openFolders(open) {
    document.querySelector('nav').className = open ? 'open' : '';
    byId('choose').setAttribute('aria-expanded', String(open));
  }
  function treeKeys(event) {
    var visible = Array.prototype.filter.call(byId('tree').querySelectorAll('[role=treeitem]'),
      function (item) { return item.offsetParent !== null; });
    var item = document.activeElement, at = visible.indexOf(item), to = -1, open = item.getAttribute('aria-expanded');
    if (at < 0) return;
    if (event.key === 'ArrowDown') to = at + 1;
    else if (event.key === 'ArrowUp') to = at - 1;
    else if (event.key === 'Home') to = 0;
    else if (event.key === 'End') to = visible.length - 1;
    else if (event.key === 'ArrowRight') { if (open === 'false') expand(item, true); else if (open) to = at + 1; }
    else if (event.key === 'ArrowLeft') {
      if (open === 'true') expand(item, false);
      else to = visible.indexOf(item.parentNode.parentNode);
    } else if (event.key === 'Enter' || event.key === ' ') {
      select(item.folder);
      show();
    } else return;
    event.preventDefault();
    if (to < 0 || to >= visible.length) return;
    item.tabIndex = -1;
    visible[to].tabIndex = 0;
    visible[to].focus();
  }

  function listKeys(event) {
    var page = Math.max(1, Math.floor(scroller.clientHeight / height()) - 1);
    var steps = {ArrowDown: 1, ArrowUp: -1, PageDown: page, PageUp: -page, Home: -rows.length, End: rows.length};
    if (!(event.key in steps) || event.ctrlKey || event.altKey) return;
    event.preventDefault();
    go(active + steps[event.key]);
  }

  function search() {
    chosen.words = plain(byId('search').value).split(/\s+/).filter(Boolean);
    show();
  }
  function showAll() {
    chosen.year = null;
    byId('search').value = '';
    select('');
    search();
    byId('search').focus();
  }

  makeYears();
  makeTitles();
  makeTree();
  byId('search').addEventListener('input', search);
  byId('search').addEventListener('keydown', function (event) {
    if (event.key === 'ArrowDown') { event.preventDefault(); go(0); }
    if (event.key === 'Escape' && this.value) { this.value = ''; search(); }
  });
  byId('tree').addEventListener('keydown', treeKeys);
  byId('choose').addEventListener('click', function () { openFolders(this.getAttribute('aria-expanded') === 'false'); });
  byId('all').addEventListener('click', showAll);
  scroller.addEventListener('keydown', listKeys);
  scroller.addEventListener('scroll', function () { requestAnimationFrame(drawRows); });
  window.addEventListener('resize', function () { body.textContent = ''; drawRows(); });
  document.addEventListener('keydown', function (event) {
    if (event.key === '/' && document.activeElement !== byId('search')) { event.preventDefault(); byId('search').focus(); }
  });
  window.addEventListener('beforeprint', function () {
    body.textContent = '';
    draw(0, Math.min(shown.length, kMostPrinted));
    if (shown.length > kMostPrinted) byId('count').textContent += ', the first ' + number.format(kMostPrinted) + ' of them here';
  });
  window.addEventListener('afterprint', show);

  document.title = document.querySelector('h1').textContent = 'E-mails of ' + data.store;
  byId('about').textContent = 'made by Quillbox on ' + data.made;
  show();
  setTimeout(prepare, 0, 0);
}());
