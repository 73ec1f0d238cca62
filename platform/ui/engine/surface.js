// The editor's own functions inside a page. They run in a world of their own, which the page's scripts don't
// see. Arguments and results are JSON. Sent with every call, since a page may be replaced at any time.
(function () {
  'use strict';
  const PARAGRAPHS = 'p, h1, h2, h3, h4, h5, h6';
  const BLOCKS = PARAGRAPHS + ', table, ul, ol, dl, div, center, blockquote, pre, hr, form, fieldset, address';
  const OBJECTS = 'img, input, textarea, select, button, embed, object, iframe, video, audio, table, hr, marquee';
  // Made at the first change of a page.
  const steps = undoHistory.of;
  const MARK = 'data-vorel-mark';
  const URL_ATTRIBUTES = ['src', 'href', 'background', 'data', 'poster'];
  const LOCAL = /^\s*(file:|[a-z]:[\\/])/i;

  function body() {
    if (!document.body)
      throw new Error('no body');
    return document.body;
  }

  // An element of a document without a window: nothing in it loads or runs. The parser reads some tables
  // another way where the page has no document type.
  function inert(html) {
    const isStrict = document.compatMode === 'CSS1Compat';
    const fresh = isStrict ? document.implementation.createHTMLDocument('') :
                             new DOMParser().parseFromString('', 'text/html');
    const holder = fresh.createElement('div');
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
      if (node.nodeType === Node.ELEMENT_NODE && node.matches(OBJECTS + ', br')) {
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

  function setCaret(place) {
    const range = document.createRange();
    place(range);
    range.collapse(true);
    window.getSelection().removeAllRanges();
    window.getSelection().addRange(range);
    undoHistory.show(range.startContainer);
  }

  function elementOf(node) {
    return node.nodeType === Node.ELEMENT_NODE ? node : node.parentElement;
  }

  function isEmpty(element) {
    return element.textContent === '' && !element.querySelector(OBJECTS);
  }

  // Empties the selection: the place where something may come in. Not between the parts of a table or a list.
  function emptiedPlace() {
    const chosen = selection();
    let range = chosen.getRangeAt(0);
    const isWithinText = range.startContainer === range.endContainer && range.startContainer.nodeType === Node.TEXT_NODE;
    // The engine joins what is left of two paragraphs, but also makes blanks hard.
    if (!range.collapsed && !isWithinText)
      document.execCommand('delete');
    range = chosen.getRangeAt(0).cloneRange();
    range.deleteContents();
    const inner = elementOf(range.startContainer);
    // What holds an empty line open.
    if (inner.childNodes.length === 1 && inner.firstChild.localName === 'br')
      inner.firstChild.remove();
    while (elementOf(range.startContainer).matches('table, thead, tbody, tfoot, tr, colgroup, ul, ol, dl, select'))
      range.setStartBefore(elementOf(range.startContainer));
    range.collapse(true);
    return range;
  }

  // Parts an element at a place inside of it, and moves the place between the two.
  function part(range, element) {
    const tail = range.cloneRange();
    tail.setEndAfter(element);
    const rest = tail.extractContents();
    const behind = rest.firstElementChild;
    element.after(rest);
    range.setStartAfter(element);
    range.collapse(true);
    for (const piece of [element, behind]) {
      if (isEmpty(piece))
        piece.remove();
    }
  }

  // The fragment stands in the page as it is. The engine's own insertion would drop what it thinks dangerous or
  // without effect. A paragraph gives way to what may not stand in it, and a link to another.
  function insert(html, names) {
    const fragment = inert(html);
    rename(fragment, names);
    const nodes = Array.from(document.importNode(fragment, true).childNodes);
    if (nodes.length === 0)
      return true;
    if (nodes.length === 1 && nodes[0].localName === 'br')
      return document.execCommand('insertLineBreak');
    const range = emptiedPlace();
    for (const [inside, around] of [[BLOCKS, PARAGRAPHS], ['a', 'a']]) {
      const outer = fragment.querySelector(inside) && elementOf(range.startContainer).closest(around);
      if (outer && body().contains(outer))
        part(range, outer);
    }
    nodes.slice().reverse().forEach((node) => range.insertNode(node));
    setCaret((caret) => caret.setStartAfter(nodes[nodes.length - 1]));
    return true;
  }

  // Here the engine may join what begins and ends the fragment with the paragraphs around it. What it keeps
  // gets its attributes back, and what it adds to keep the looks of the place where that stood goes.
  function paste(html, names) {
    const fragment = inert(html);
    rename(fragment, names);
    const wanted = Array.from(fragment.querySelectorAll('*'), (element, index) => {
      const attributes = Array.from(element.attributes, (a) => [a.name, a.value]);
      element.setAttribute(MARK, String(index));
      return attributes;
    });
    selection();
    const done = document.execCommand('insertHTML', false, fragment.innerHTML);
    for (const element of body().querySelectorAll('[' + MARK + ']')) {
      const attributes = wanted[Number(element.getAttribute(MARK))];
      element.removeAttribute(MARK);
      for (const [name, value] of attributes)
        element.setAttribute(name, value);
    }
    return done;
  }

  function caretAt(x, y) {
    const range = document.caretRangeFromPoint(x, y);
    if (!range || !body().contains(range.startContainer))
      return false;
    window.getSelection().removeAllRanges();
    window.getSelection().addRange(range);
    return true;
  }

  function insertParagraph() {
    insert('<p><br></p>', {});
    const chosen = window.getSelection();
    chosen.collapse(chosen.anchorNode.childNodes[chosen.anchorOffset - 1], 0);
    return true;
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

  // Nothing ends this element, not even its own end tag: written and read it would swallow what comes behind.
  function endless(root) {
    return Array.from(root.querySelectorAll('plaintext'));
  }

  function endingLike(element) {
    const preformatted = element.ownerDocument.createElement('pre');
    preformatted.replaceChildren(...element.childNodes);
    return preformatted;
  }

  function innerHtml() {
    if (isFrameset(body()))
      return body().outerHTML;
    if (breakFirst(body()).length === 0 && endless(body()).length === 0)
      return body().innerHTML;
    const copy = inert('');
    copy.replaceChildren(...copy.ownerDocument.importNode(body(), true).childNodes);
    endless(copy).forEach((element) => element.replaceWith(endingLike(element)));
    breakFirst(copy).forEach((text) => text.insertData(0, '\n'));
    return copy.innerHTML;
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

  const DECLARATION = 'meta[charset], meta[http-equiv="content-type" i]';

  // The program writes pages in its own code page, where a page's declaration of another would be untrue.
  function dropDeclarations() {
    document.querySelectorAll(DECLARATION).forEach((e) => e.remove());
  }

  function patchAttributes(element, fresh) {
    for (const attribute of Array.from(element.attributes)) {
      if (!fresh.hasAttributeNS(attribute.namespaceURI, attribute.localName))
        element.removeAttributeNode(attribute);
    }
    for (const attribute of fresh.attributes) {
      if (element.getAttributeNS(attribute.namespaceURI, attribute.localName) !== attribute.value)
        element.setAttributeNodeNS(attribute.cloneNode());
    }
  }

  // Makes the children of an element those of another, and leaves what is the same alone: the caret stays, and
  // pictures need not be loaded again.
  function patch(element, fresh) {
    const old = Array.from(element.childNodes);
    const next = Array.from(fresh.childNodes);
    const isSame = (a, b) => a !== undefined && b !== undefined && a.isEqualNode(b);
    let behind = null;
    for (; isSame(old[old.length - 1], next[next.length - 1]); next.pop())
      behind = old.pop();
    while (isSame(old[0], next[0])) {
      old.shift();
      next.shift();
    }
    const isLike = (node, index) => node.nodeType === Node.ELEMENT_NODE && !node.matches('template, form') &&
                                    node.nodeName === next[index].nodeName;
    if (old.length === next.length && old.every(isLike)) {
      old.forEach((node, index) => {
        patchAttributes(node, next[index]);
        patch(node, next[index]);
      });
    } else {
      old.forEach((node) => node.remove());
      next.forEach((node) => element.insertBefore(node, behind));
    }
  }

  function setBodyHtml(html) {
    const chosen = window.getSelection();
    const {anchorNode, focusNode} = chosen;
    const fresh = /<frameset[\s>]/i.test(html) && new DOMParser().parseFromString(html, 'text/html');
    if (fresh && isFrameset(fresh.body)) {
      replaceDocument(fresh);
    } else {
      if (isFrameset(body()))
        document.body = document.createElement('body');
      patch(body(), inert(html));
    }
    dropDeclarations();
    // A caret that stood in what is gone stands nowhere: the engine selects nothing from there.
    if (anchorNode !== chosen.anchorNode || focusNode !== chosen.focusNode || !anchorNode) {
      chosen.removeAllRanges();
      if (document.designMode === 'on')
        selection();
    }
    return localReferences(body());
  }

  // A page to be looked at comes piece by piece, each larger than the last, so that its beginning shows at once.
  const FIRST_PIECE = 20000;

  function* grow(target, source, piece) {
    while (source.firstChild) {
      const node = source.removeChild(source.firstChild);
      if (node.nodeType === Node.ELEMENT_NODE && node.childNodes.length > 1 &&
          node.textContent.length > piece.size) {
        const shell = document.importNode(node, false);
        target.append(shell);
        yield* grow(shell, node, piece);
        continue;
      }
      piece.done += node.textContent.length;
      target.append(document.adoptNode(node));
      if (piece.done < piece.size)
        continue;
      yield;
      piece.done = 0;
      piece.size *= 2;
    }
  }

  function stage(html) {
    if (isFrameset(body()) || /<frameset[\s>]/i.test(html)) {
      window.vorelStaged = undefined;
      return {local: setBodyHtml(html)};
    }
    window.vorelStaged = inert(html);
    window.vorelStaged.querySelectorAll(DECLARATION).forEach((e) => e.remove());
    return {local: localReferences(window.vorelStaged)};
  }

  function showStaged(names) {
    const staged = window.vorelStaged;
    rename(staged || body(), names);
    if (!staged)
      return false;
    body().replaceChildren();
    window.scrollTo(0, 0);
    window.vorelStaged = grow(body(), staged, {size: FIRST_PIECE, done: 0});
    return showMore();
  }

  // Whether there is still more.
  function showMore() {
    const more = window.vorelStaged !== undefined && !window.vorelStaged.next().done;
    if (!more)
      window.vorelStaged = undefined;
    return more;
  }

  // What of the page stands outside of its body, in the page's order.
  function strays() {
    const before = Array.from(document.childNodes).filter((node) => node.nodeType === Node.COMMENT_NODE);
    return before.concat(document.head ? Array.from(document.head.childNodes) : []);
  }

  // What gives a whole document its looks; saved is the body alone.
  function looks() {
    return document.head ? document.head.querySelectorAll('style, link[rel~="stylesheet" i]') : [];
  }

  const FRAGMENTS = {
    insertinputtext: '<input type="text">',
    inserttextarea: '<textarea></textarea>',
    insertinputradio: '<input type="radio">',
    insertinputcheckbox: '<input type="checkbox">',
    insertbutton: '<button type="button">\u6309\u94ae</button>',
  };

  function command(name, value) {
    const lower = name.toLowerCase();
    const chosen = selection();
    if (Object.prototype.hasOwnProperty.call(FRAGMENTS, lower))
      return insert(FRAGMENTS[lower], {});
    if (lower === 'insertparagraph')
      return insertParagraph();
    if (lower === 'undo')
      return steps().undo();
    if (lower === 'redo')
      return steps().redo();
    if (lower === 'unlink' && chosen.isCollapsed)
      return unlinkAtCaret(chosen);
    if (lower === 'unselect') {
      chosen.collapseToEnd();
      steps().goOn();
      return true;
    }
    // A command within another is refused by the engine, and ours is within that of cutting.
    if (lower === 'cut')
      return document.execCommand('copy') && document.execCommand('delete');
    if (lower === 'delete' && chosen.isCollapsed)
      return document.execCommand('forwardDelete');
    document.execCommand('styleWithCSS', false, false);
    if (lower === 'fontname')
      return setFont(chosen, value);
    return /list$|dent$/.test(lower) ? shapeBlocks(chosen, lower) : document.execCommand(lower, false, value);
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
    return holder.innerHTML;
  }

  function enclosing(tag) {
    const chosen = window.getSelection();
    if (chosen.rangeCount === 0)
      return null;
    const range = chosen.getRangeAt(0);
    const node = range.commonAncestorContainer;
    const element = elementOf(node);
    const around = element && element.closest(tag);
    if (around)
      return around;
    return Array.from(element ? element.querySelectorAll(tag) : []).find((e) => range.intersectsNode(e)) || null;
  }

  function linkAtCaret() {
    const link = enclosing('a[href]');
    return {href: link ? link.getAttribute('href') : null, selected: hasSelection()};
  }

  // How much of the page's text stands before a place, and the place behind so much of it.
  function textBefore(node, offset) {
    const range = document.createRange();
    range.setStart(body(), 0);
    range.setEnd(node, offset);
    return range.toString().length;
  }

  function placeBehind(length) {
    const walker = document.createTreeWalker(body(), NodeFilter.SHOW_TEXT);
    let left = length;
    while (walker.nextNode()) {
      if (left <= walker.currentNode.length)
        return [walker.currentNode, left];
      left -= walker.currentNode.length;
    }
    return null;
  }

  // Lists and indents. The engine forgets where in the paragraph the caret stood, and leaves lists inside of
  // paragraphs, which no parser does.
  function shapeBlocks(chosen, name) {
    const caret = chosen.isCollapsed && chosen.anchorNode.nodeType === Node.TEXT_NODE ?
        textBefore(chosen.anchorNode, chosen.anchorOffset) : -1;
    const done = document.execCommand(name);
    const ends = [chosen.anchorNode, chosen.anchorOffset, chosen.focusNode, chosen.focusOffset];
    body().querySelectorAll('p > ul, p > ol').forEach(takeOut);
    const place = caret < 0 ? null : placeBehind(caret);
    if (place)
      chosen.collapse(...place);
    else if (ends[0].isConnected && ends[2].isConnected)
      chosen.setBaseAndExtent(...ends);
    // The lines of a list that ends are paragraphs.
    if (chosen.anchorNode.nodeType === Node.TEXT_NODE && chosen.anchorNode.parentElement === body())
      document.execCommand('formatBlock', false, 'p');
    return done;
  }

  // Parts a paragraph around the list inside of it. What the paragraph said of its text stays around the list.
  function takeOut(list) {
    const before = list.parentElement;
    const behind = before.cloneNode(false);
    while (list.nextSibling)
      behind.append(list.nextSibling);
    const around = document.createElement('div');
    Array.from(before.attributes, (a) => around.setAttributeNode(a.cloneNode()));
    before.after(list, behind);
    if (around.attributes.length > 0) {
      list.replaceWith(around);
      around.append(list);
    }
    for (const paragraph of [before, behind]) {
      if (!paragraph.hasChildNodes())
        paragraph.remove();
    }
  }

  // Some of the names that are offered are no names to the engine. They stand in the page all the same.
  function setFont(chosen, name) {
    if (window.CSS.supports('font-family', name))
      return document.execCommand('fontName', false, name);
    // What is typed next takes a name that the engine knows.
    if (chosen.isCollapsed)
      return document.execCommand('fontName', false, inert(name).textContent.replace(/\s/g, ' '));
    const done = document.execCommand('fontName', false, 'vorel-font');
    body().querySelectorAll('font[face="vorel-font"]').forEach((element) => element.setAttribute('face', name));
    return done;
  }

  // The engine takes links off what is selected alone.
  function unlinkAtCaret(chosen) {
    const link = enclosing('a[href]');
    if (!link)
      return false;
    const {anchorNode, anchorOffset} = chosen;
    chosen.selectAllChildren(link);
    const done = document.execCommand('unlink');
    if (anchorNode.isConnected)
      chosen.collapse(anchorNode, anchorOffset);
    return done;
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
    const table = cell.closest('table');
    tables.fit(table, Object.assign(tables.info(table), {rows: table.rows.length + 1}));
    selectCell(Array.from(table.tBodies).pop().lastElementChild.cells[0]);
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
    steps().change(() => inside.localName === 'li' ? shapeBlocks(chosen, event.shiftKey ? 'outdent' : 'indent') :
                                                     goToNextCell(inside, event.shiftKey));
  }

  function tableAtCaret() {
    const chosen = window.getSelection();
    return chosen.rangeCount === 0 ? null : tables.chosen(chosen.getRangeAt(0)) || enclosing('table');
  }

  function tableInfo() {
    const table = tableAtCaret();
    return table ? tables.info(table) : undefined;
  }

  function editTable(info) {
    const table = tableAtCaret();
    if (table)
      tables.fit(table, info);
    return table !== null;
  }

  // Tells the program by console lines that only it knows how to read.
  function watch(token, mark) {
    // Never a plain look: an element of that name would be found.
    if (Object.hasOwn(window, 'vorelWatching'))
      return true;
    window.vorelWatching = true;
    typing.listen();
    window.vorelChanged = false;
    clipboard.watch(token, mark);
    const tell = () => console.debug(token);
    document.addEventListener('selectionchange', tell);
    document.addEventListener('input', tell);
    document.addEventListener('keydown', onTab);
    steps().onChange = () => {
      window.vorelChanged = true;
      tell();
    };
    return true;
  }

  const asStep = (work) => (...args) => steps().change(() => work(...args));

  const FUNCTIONS = {
    designMode: (on) => {
      document.designMode = on ? 'on' : 'off';
      steps().clear();
      document.execCommand('defaultParagraphSeparator', false, 'p');
      return document.designMode === (on ? 'on' : 'off');
    },
    bodyHtml: () => ({html: innerHtml(), local: localReferences(body())}),
    changedHtml: () => {
      if (!window.vorelChanged)
        return undefined;
      window.vorelChanged = false;
      return innerHtml();
    },
    setBodyHtml: asStep(setBodyHtml),
    // Of a page that has just been loaded or goes out of sight: nothing to be undone.
    loadBodyHtml: (html) => {
      window.vorelStaged = undefined;
      return setBodyHtml(html);
    },
    stage: stage,
    showStaged: showStaged,
    showMore: showMore,
    localReferences: (html) => localReferences(inert(html)),
    rename: (names) => {
      steps().changeAside(() => rename(body(), names));
      return true;
    },
    references: (selector, attribute) =>
        Array.from(body().querySelectorAll(selector + '[' + attribute + ']'),
                   (e) => ({text: e.getAttribute(attribute), url: String(e[attribute])})),
    insert: asStep(insert),
    paste: asStep(paste),
    ownCopy: (html, mark) => clipboard.own(inert(html), mark),
    caretAt: caretAt,
    command: asStep(command),
    caretState: caretState,
    hasSelection: hasSelection,
    selectedText: selectedText,
    linkAtCaret: linkAtCaret,
    createLink: asStep(createLink),
    tableInfo: tableInfo,
    editTable: asStep(editTable),
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
      if (!isFrameset(body()))
        body().prepend(...(bodyText ? strays() : looks()));
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
})()
