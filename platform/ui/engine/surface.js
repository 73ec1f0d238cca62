// The editor's own functions inside a page. They run in a world of their own, which the page's scripts don't
// see. Arguments and results are JSON. Sent with every call, since a page may be replaced at any time.
(function () {
  'use strict';
  const {body, isFrameset, inert, localReferences, rename, selection, hasSelection, chosenField, elementOf,
         enclosing} = page;
  const {innerHtml, replaceDocument, dropDeclarations, putBody, setBodyHtml, setBodyKeepingCaret, takeNames, stage,
         showStaged, showMore, strays, looks, leaveBase} = bodyText;
  const {insert, paste} = insertion;
  const {command, shapeBlocks, createLink} = commands;
  // Made at the first change of a page.
  const steps = undoHistory.of;

  function caretAt(x, y) {
    const range = document.caretRangeFromPoint(x, y);
    if (!range || !body().contains(range.startContainer))
      return false;
    window.getSelection().removeAllRanges();
    window.getSelection().addRange(range);
    return true;
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

  function selectedText() {
    if (!hasSelection())
      return undefined;
    const holder = inert('');
    holder.appendChild(holder.ownerDocument.importNode(window.getSelection().getRangeAt(0).cloneContents(), true));
    return holder.innerHTML;
  }

  function linkAtCaret() {
    const link = enclosing('a[href]');
    return {href: link ? link.getAttribute('href') : null, selected: hasSelection()};
  }

  // At more of a selection than this nobody looks while it is drawn over a long page.
  const MOST_NODES = 2000;

  function behind(node) {
    while (node && !node.nextSibling)
      node = node.parentNode;
    return node && node.nextSibling;
  }

  // Without asking for a node's place among its siblings, of which there may be very many.
  function* nodesOf(range) {
    const {startContainer, startOffset, endContainer, endOffset} = range;
    const end = endContainer.childNodes[endOffset] || behind(endContainer);
    const walker = document.createTreeWalker(document.documentElement);
    let node = startContainer.childNodes[startOffset] ||
        (startContainer.hasChildNodes() ? behind(startContainer) : startContainer);
    if (node)
      walker.currentNode = node;
    for (let count = 0; node && node !== end && count < MOST_NODES; ++count, node = walker.nextNode())
      yield node;
  }

  function firstFamily(families) {
    return families.split(',')[0].trim().replace(/^(["'])(.*)\1$/, '$2');
  }

  // Whether all text of the selection has the one font, and the one size.
  function evenness(range) {
    const even = {font: true, size: true};
    let first;
    for (const node of nodesOf(range)) {
      if (node.nodeType !== Node.TEXT_NODE || node.data.trim() === '')
        continue;
      const style = getComputedStyle(node.parentElement);
      const seen = {font: firstFamily(style.fontFamily), size: style.fontSize};
      first = first || seen;
      even.font = even.font && seen.font === first.font;
      even.size = even.size && seen.size === first.size;
      if (!even.font && !even.size)
        break;
    }
    return even;
  }

  function hasLink(range) {
    const around = elementOf(range.startContainer);
    if (around && around.closest('a[href]'))
      return true;
    let count = 0;
    for (const node of nodesOf(range)) {
      if (++count === MOST_NODES || (node.localName === 'a' && node.hasAttribute('href')))
        return true;
    }
    return false;
  }

  function caretState(names) {
    const chosen = window.getSelection();
    const range = chosen.rangeCount > 0 ? chosen.getRangeAt(0) : null;
    const even = range && !range.collapsed ? evenness(range) : {font: true, size: true};
    return {
      pressed: names.filter((name) => document.queryCommandState(name)),
      font: even.font ? firstFamily(document.queryCommandValue('fontName')) : '',
      size: even.size ? document.queryCommandValue('fontSize') : '',
      canUndo: steps().canUndo(),
      canRedo: steps().canRedo(),
      hasSelection: hasSelection() || chosenField() !== null,
      inLink: range !== null && hasLink(range),
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
    // It has no cell where those above reach down into it.
    const added = Array.from(Array.from(table.tBodies).pop().rows).pop();
    if (added.cells.length > 0)
      selectCell(added.cells[0]);
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
    separateByParagraphs();
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

  // The command has the page laid out, and is given while that is empty.
  function separateByParagraphs() {
    if (document.queryCommandValue('defaultParagraphSeparator') !== 'p')
      document.execCommand('defaultParagraphSeparator', false, 'p');
  }

  const asStep = (work) => (...args) => steps().change(() => work(...args));

  const FUNCTIONS = {
    designMode: (on) => {
      document.designMode = on ? 'on' : 'off';
      steps().observe(on);
      separateByParagraphs();
      // Left to itself a page that is edited has no caret before the first click, and takes no key.
      if (on && !isFrameset(body())) {
        selection();
        body().focus({preventScroll: true});
      }
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
    writeBack: (html) => takeNames(html) ? localReferences(body()) : steps().change(() => setBodyKeepingCaret(html)),
    // Of a page that has just been loaded or goes out of sight: nothing to be undone.
    loadBodyHtml: (html, isToBeEdited) => {
      window.vorelStaged = undefined;
      // While it is empty: the switch has the engine lay out anew whatever stands there.
      if (isToBeEdited)
        document.designMode = 'on';
      const local = putBody(html);
      if (isToBeEdited)
        firstSight.begin();
      return local;
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
    keysCome: clipboard.keysCome,
    pastesWanted: clipboard.wanted,
    pasteBegins: clipboard.begin,
    pasteEnds: clipboard.end,
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
      if (!bodyText)
        leaveBase();
      if (!isFrameset(body()))
        body().prepend(...(bodyText ? strays() : looks()));
      return true;
    },
    watch: watch,
  };

  // What is asked of a page of which only the beginning may be laid out.
  const ASKED_AT_ONCE =
      ['designMode', 'watch', 'bodyHtml', 'changedHtml', 'references', 'localReferences', 'rename', 'caretState'];

  return function (name, args) {
    try {
      if (!ASKED_AT_ONCE.includes(name))
        firstSight.showAll();
      const value = FUNCTIONS[name](...args);
      return JSON.stringify(value === undefined ? {undefined: true} : {value: value});
    } catch (error) {
      return JSON.stringify({error: String(error)});
    }
  };
})()
