// The editor's own functions inside a page. They run in a world of their own, which the page's scripts don't
// see. Arguments and results are JSON. Sent with every call, since a page may be replaced at any time.
(function (plain) {
  'use strict';
  // Elements of a page hide what a document itself has under their names, also from this world: an image named
  // "body" would be taken for the body, and saved. So each property is had from the prototypes.
  const document = new Proxy(plain, {
    get: (target, name) => {
      const found = propertyOf(target, name);
      return found && found.get ? found.get.call(target) :
          found && typeof found.value === 'function' ? found.value.bind(target) : found && found.value;
    },
    set: (target, name, value) => {
      propertyOf(target, name).set.call(target, value);
      return true;
    },
  });

  function propertyOf(target, name) {
    for (let from = Object.getPrototypeOf(target); from; from = Object.getPrototypeOf(from)) {
      const found = Object.getOwnPropertyDescriptor(from, name);
      if (found)
        return found;
    }
    return undefined;
  }

  const MARK = 'data-vorel-mark';
  // An anchor without a link: the engine unwraps every other element that has no style of its own.
  const HOLDER = 'a[name="vorel-holder"]';
  const URL_ATTRIBUTES = ['src', 'href', 'background', 'data', 'poster'];
  const LOCAL = /^\s*(file:|[a-z]:[\\/])/i;

  function body() {
    if (!document.body)
      throw new Error('no body');
    return document.body;
  }

  // An element of a document without a window: nothing in it loads or runs.
  function inert(html) {
    const holder = document.implementation.createHTMLDocument('').createElement('div');
    holder.innerHTML = html;
    return holder;
  }

  function eachLocal(root, visit) {
    for (const name of URL_ATTRIBUTES) {
      for (const element of root.querySelectorAll('[' + name + ']')) {
        const text = element.getAttribute(name);
        if (LOCAL.test(text))
          visit(element, name, text);
      }
    }
  }

  function localReferences(root) {
    const found = new Set();
    eachLocal(root, (element, name, text) => found.add(text));
    return Array.from(found);
  }

  function rename(root, names) {
    eachLocal(root, (element, name, text) => {
      if (Object.prototype.hasOwnProperty.call(names, text) && names[text] !== text)
        element.setAttribute(name, names[text]);
    });
  }

  // Where the caret stands before the first click: before the first text or object of the page.
  function firstPlace() {
    const range = document.createRange();
    const walker = document.createTreeWalker(body(), NodeFilter.SHOW_ELEMENT | NodeFilter.SHOW_TEXT);
    while (walker.nextNode()) {
      const node = walker.currentNode;
      if (node.nodeType === Node.TEXT_NODE && node.data.trim() !== '') {
        range.setStart(node, 0);
        return range;
      }
      if (node.nodeType === Node.ELEMENT_NODE && node.matches('img, input, embed, object, table, hr, br')) {
        range.setStartBefore(node);
        return range;
      }
    }
    range.setStart(body(), 0);
    return range;
  }

  function selection() {
    const chosen = window.getSelection();
    if (chosen.rangeCount === 0 || !body().contains(chosen.anchorNode)) {
      chosen.removeAllRanges();
      chosen.addRange(firstPlace());
    }
    return chosen;
  }

  // Takes the marks off again. False when an element is missing or has lost an attribute.
  function takeMarksOff(originals) {
    let complete = true;
    const found = new Map(Array.from(body().querySelectorAll('[' + MARK + ']'), (e) => [e.getAttribute(MARK), e]));
    originals.forEach((original, index) => {
      const element = found.get(String(index));
      complete = complete && element !== undefined && element.localName === original.tag &&
                 original.attributes.every(([name, value]) => element.getAttribute(name) === value) &&
                 element.attributes.length === original.attributes.length + 1;
    });
    found.forEach((element) => element.removeAttribute(MARK));
    return complete;
  }

  // The engine's own insertion can be undone, but it tidies the fragment: it drops attributes that it thinks
  // without effect and elements that it thinks dangerous. So each element is marked and looked for. If
  // something is missing, the fragment goes in as a whole inside a holder, which innerHtml takes off again.
  function insert(html, names) {
    const fragment = inert(html);
    rename(fragment, names);
    const whole = fragment.innerHTML;
    const originals = Array.from(fragment.querySelectorAll('*'), (element, index) => {
      const attributes = Array.from(element.attributes, (a) => [a.name, a.value]);
      element.setAttribute(MARK, String(index));
      return {tag: element.localName, attributes: attributes};
    });
    selection();
    const done = document.execCommand('insertHTML', false, fragment.innerHTML);
    if (takeMarksOff(originals))
      return done;
    if (done)
      document.execCommand('undo');
    return insertHeld(whole);
  }

  function insertHeld(whole) {
    const before = new Set(document.querySelectorAll(HOLDER));
    const done = document.execCommand('insertHTML', false, '<a name="vorel-holder">\u00a0</a>');
    const holder = Array.from(document.querySelectorAll(HOLDER)).find((e) => !before.has(e));
    if (!holder) {
      document.execCommand('undo');
      return false;
    }
    holder.innerHTML = whole;
    const range = document.createRange();
    range.setStartAfter(holder);
    window.getSelection().removeAllRanges();
    window.getSelection().addRange(range);
    return done;
  }

  function withoutHolders(root) {
    for (const holder of root.querySelectorAll(HOLDER))
      holder.replaceWith(...holder.childNodes);
    return root.innerHTML;
  }

  // A page of frames has no body; its frames are what there is of it.
  function isFrameset(element) {
    return element.localName === 'frameset';
  }

  // The parser drops the first line break in these, and writing the page would lose one each time.
  function breakFirst(root) {
    return Array.from(root.querySelectorAll('pre, textarea, listing'), (e) => e.firstChild)
        .filter((first) => first && first.nodeType === Node.TEXT_NODE && first.data.startsWith('\n'));
  }

  function innerHtml() {
    if (isFrameset(body()))
      return body().outerHTML;
    if (!body().querySelector(HOLDER) && breakFirst(body()).length === 0)
      return body().innerHTML;
    const copy = inert('');
    copy.replaceChildren(...copy.ownerDocument.importNode(body(), true).childNodes);
    breakFirst(copy).forEach((text) => text.insertData(0, '\n'));
    return withoutHolders(copy);
  }

  function replaceDocument(fresh) {
    document.replaceChild(document.adoptNode(fresh.documentElement), document.documentElement);
    if (window.vorelSettle)
      window.vorelSettle(true);
  }

  function slideFrame() {
    return document.querySelector('frame[name="PPTSld"], iframe[name="PPTSld"]');
  }

  // To an anchor of the page, or to a slide of the presentation that it shows, as a click on a link there would.
  function goTo(name) {
    const frame = slideFrame();
    const links = frame ? Array.from(document.querySelectorAll('a[target="PPTSld"]')) : [];
    const link = links.find((e) => e.getAttribute('href') === name);
    if (link)
      link.click();
    else if (frame)
      frame.contentWindow.location.href = new URL(encodeURIComponent(name), document.URL).href;
    else
      location.hash = '#' + encodeURIComponent(name);
    // Also where it stood there before and has been scrolled away.
    if (!frame && window.vorelSettle)
      window.vorelSettle(true);
    return true;
  }

  // The program writes pages in its own code page, where a page's declaration of another would be untrue.
  function dropDeclarations() {
    document.querySelectorAll('meta[charset], meta[http-equiv="content-type" i]').forEach((e) => e.remove());
  }

  function setBodyHtml(html) {
    const fresh = /<frameset[\s>]/i.test(html) && new DOMParser().parseFromString(html, 'text/html');
    if (fresh && isFrameset(fresh.body)) {
      replaceDocument(fresh);
    } else {
      if (isFrameset(body()))
        document.body = document.createElement('body');
      body().innerHTML = html;
    }
    dropDeclarations();
    // A caret that stood in what is gone stands nowhere: the engine selects nothing from there.
    window.getSelection().removeAllRanges();
    if (document.designMode === 'on')
      selection();
    return localReferences(body());
  }

  // What of the page stands outside of its body, in the page's order.
  function strays() {
    const before = Array.from(document.childNodes).filter((node) => node.nodeType === Node.COMMENT_NODE);
    return before.concat(document.head ? Array.from(document.head.childNodes) : []);
  }

  const FRAGMENTS = {
    insertinputtext: '<input type="text">',
    inserttextarea: '<textarea></textarea>',
    insertinputradio: '<input type="radio">',
    insertinputcheckbox: '<input type="checkbox">',
    insertbutton: '<button type="button">\u6309\u94ae</button>',
    insertparagraph: '<p><br></p>',
  };

  function command(name, value) {
    const lower = name.toLowerCase();
    const chosen = selection();
    if (Object.prototype.hasOwnProperty.call(FRAGMENTS, lower))
      return insert(FRAGMENTS[lower], {});
    if (lower === 'unselect') {
      chosen.collapseToEnd();
      return true;
    }
    if (lower === 'delete' && chosen.isCollapsed)
      return document.execCommand('forwardDelete');
    document.execCommand('styleWithCSS', false, false);
    return document.execCommand(lower, false, value);
  }

  function hasSelection() {
    const chosen = window.getSelection();
    return chosen.rangeCount > 0 && !chosen.isCollapsed && body().contains(chosen.anchorNode);
  }

  function selectedText() {
    if (!hasSelection())
      return undefined;
    const holder = inert('');
    holder.appendChild(holder.ownerDocument.importNode(window.getSelection().getRangeAt(0).cloneContents(), true));
    return withoutHolders(holder);
  }

  function enclosing(tag) {
    const chosen = window.getSelection();
    if (chosen.rangeCount === 0)
      return null;
    const range = chosen.getRangeAt(0);
    const node = range.commonAncestorContainer;
    const element = node.nodeType === Node.ELEMENT_NODE ? node : node.parentElement;
    const around = element && element.closest(tag);
    if (around)
      return around;
    return Array.from(element ? element.querySelectorAll(tag) : []).find((e) => range.intersectsNode(e)) || null;
  }

  function linkAtCaret() {
    const link = enclosing('a[href]');
    return {href: link ? link.getAttribute('href') : null, selected: hasSelection()};
  }

  function createLink(address) {
    const chosen = selection();
    const link = enclosing('a[href]');
    if (link && chosen.isCollapsed) {
      link.setAttribute('href', address);
      return true;
    }
    if (!chosen.isCollapsed)
      return document.execCommand('createLink', false, address);
    const holder = inert('');
    const fresh = holder.ownerDocument.createElement('a');
    fresh.setAttribute('href', address);
    fresh.textContent = address;
    return insert(fresh.outerHTML, {});
  }

  // At more pieces of text than this nobody looks while a selection is drawn over a long page.
  const MAX_PIECES = 1000;

  function firstFamily(families) {
    return families.split(',')[0].trim().replace(/^(["'])(.*)\1$/, '$2');
  }

  // Whether all text of the selection has the one font, and the one size.
  function evenness(range) {
    const even = {font: true, size: true};
    const root = range.commonAncestorContainer;
    const walker = document.createTreeWalker(root, NodeFilter.SHOW_TEXT);
    let first;
    for (let pieces = 0; pieces < MAX_PIECES && (even.font || even.size) && walker.nextNode(); ++pieces) {
      const node = walker.currentNode;
      if (node.data.trim() === '' || !range.intersectsNode(node))
        continue;
      const style = getComputedStyle(node.parentElement);
      const seen = {font: firstFamily(style.fontFamily), size: style.fontSize};
      first = first || seen;
      even.font = even.font && seen.font === first.font;
      even.size = even.size && seen.size === first.size;
    }
    return even;
  }

  function caretState(names) {
    const chosen = window.getSelection();
    const even = chosen.rangeCount > 0 && !chosen.isCollapsed ? evenness(chosen.getRangeAt(0)) : {font: true, size: true};
    return {
      pressed: names.filter((name) => document.queryCommandState(name)),
      font: even.font ? firstFamily(document.queryCommandValue('fontName')) : '',
      size: even.size ? document.queryCommandValue('fontSize') : '',
    };
  }

  // Tab goes through the cells of a table, the last one of which has a new row behind it, and through the levels
  // of a list. Elsewhere it is the engine's, which sets a tab.
  function selectCell(cell) {
    const range = document.createRange();
    range.selectNodeContents(cell);
    const chosen = window.getSelection();
    chosen.removeAllRanges();
    chosen.addRange(range);
    cell.scrollIntoView({block: 'nearest'});
  }

  function goToNextCell(cell, back) {
    const cells = Array.from(cell.closest('table').rows).flatMap((row) => Array.from(row.cells));
    const next = cells[cells.indexOf(cell) + (back ? -1 : 1)];
    if (next) {
      selectCell(next);
      return;
    }
    if (back)
      return;
    const info = tableInfo();
    if (editTable(Object.assign(info, {rows: info.rows + 1})))
      selectCell(enclosing('table').rows[info.rows - 1].cells[0]);
  }

  function onTab(event) {
    const chosen = window.getSelection();
    if (event.key !== 'Tab' || event.altKey || event.ctrlKey || event.metaKey || event.isComposing ||
        document.designMode !== 'on' || chosen.rangeCount === 0)
      return;
    const node = chosen.focusNode;
    const inside = (node.nodeType === Node.ELEMENT_NODE ? node : node.parentElement).closest('td, th, li');
    if (!inside)
      return;
    event.preventDefault();
    if (inside.localName === 'li')
      document.execCommand(event.shiftKey ? 'outdent' : 'indent');
    else
      goToNextCell(inside, event.shiftKey);
  }

  function columnsOf(row) {
    return Array.from(row.cells).reduce((sum, cell) => sum + cell.colSpan, 0);
  }

  const TABLE_ATTRIBUTES = {
    width: 'width', background: 'bgcolor', borderColour: 'bordercolor', border: 'border',
    cellSpacing: 'cellspacing', cellPadding: 'cellpadding',
  };

  function tableInfo() {
    const table = enclosing('table');
    if (!table)
      return undefined;
    const info = {rows: table.rows.length, columns: Math.max(0, ...Array.from(table.rows, columnsOf))};
    for (const [key, attribute] of Object.entries(TABLE_ATTRIBUTES))
      info[key] = table.getAttribute(attribute) || '';
    return info;
  }

  function fitRow(row, wanted) {
    let width = columnsOf(row);
    while (row.cells.length > 0 && width > wanted) {
      const last = row.cells[row.cells.length - 1];
      const dropped = Math.min(last.colSpan, width - wanted);
      if (last.colSpan > dropped)
        last.colSpan -= dropped;
      else
        last.remove();
      width -= dropped;
    }
    for (; width < wanted; ++width)
      row.insertCell(-1).innerHTML = '&nbsp;';
  }

  function editTable(info) {
    const table = enclosing('table');
    if (!table)
      return false;
    for (const [key, attribute] of Object.entries(TABLE_ATTRIBUTES)) {
      if (info[key] !== (table.getAttribute(attribute) || ''))
        table.setAttribute(attribute, info[key]);
    }
    while (table.rows.length > info.rows)
      table.deleteRow(-1);
    while (table.rows.length < info.rows)
      table.insertRow(-1);
    // How many columns of each row are taken by cells of the rows above it.
    const covered = new Array(info.rows).fill(0);
    Array.from(table.rows).forEach((row, index) => {
      fitRow(row, Math.max(0, info.columns - covered[index]));
      for (const cell of row.cells) {
        for (let below = index + 1; below < Math.min(index + cell.rowSpan, info.rows); ++below)
          covered[below] += cell.colSpan;
      }
    });
    return true;
  }

  // Tells the program by a console line that only it knows how to read.
  function watch(token) {
    // Never a plain look: an element of that name would be found.
    if (Object.hasOwn(window, 'vorelWatching'))
      return true;
    window.vorelWatching = true;
    window.vorelChanged = false;
    const tell = () => console.debug(token);
    document.addEventListener('selectionchange', tell);
    document.addEventListener('input', tell);
    document.addEventListener('keydown', onTab);
    new MutationObserver(() => {
      window.vorelChanged = true;
      tell();
    }).observe(plain, {subtree: true, childList: true, characterData: true, attributes: true});
    return true;
  }

  const FUNCTIONS = {
    designMode: (on) => {
      document.designMode = on ? 'on' : 'off';
      return document.designMode === (on ? 'on' : 'off');
    },
    bodyHtml: () => ({html: innerHtml(), local: localReferences(body())}),
    changedHtml: () => {
      if (!window.vorelChanged)
        return undefined;
      window.vorelChanged = false;
      return innerHtml();
    },
    setBodyHtml: setBodyHtml,
    localReferences: (html) => localReferences(inert(html)),
    rename: (names) => {
      rename(body(), names);
      return true;
    },
    references: (selector, attribute) =>
        Array.from(body().querySelectorAll(selector + '[' + attribute + ']'),
                   (e) => ({text: e.getAttribute(attribute), url: String(e[attribute])})),
    insert: insert,
    command: command,
    caretState: caretState,
    hasSelection: hasSelection,
    selectedText: selectedText,
    linkAtCaret: linkAtCaret,
    createLink: createLink,
    tableInfo: tableInfo,
    editTable: editTable,
    goTo: goTo,
    slideFrame: () => {
      const frame = slideFrame();
      if (!frame)
        return undefined;
      try {
        return String(frame.contentWindow.location.href);
      } catch (refused) {
        return frame.src;
      }
    },
    encoding: () => document.contentType !== 'text/html' ? undefined :
        {set: document.characterSet, scripts: document.querySelector('script') !== null},
    replaceDocument: (html) => {
      replaceDocument(new DOMParser().parseFromString(html, 'text/html'));
      return true;
    },
    // Before a page is edited. Where the file is a body's text and nothing else, the parser took what it
    // begins with for a head.
    prepare: (bodyText) => {
      dropDeclarations();
      if (bodyText && !isFrameset(body()))
        body().prepend(...strays());
      return true;
    },
    watch: watch,
  };

  return function (name, args) {
    try {
      const value = FUNCTIONS[name](...args);
      return JSON.stringify(value === undefined ? {undefined: true} : {value: value});
    } catch (error) {
      return JSON.stringify({error: String(error)});
    }
  };
})(document)
