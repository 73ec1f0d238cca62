// The page, its selection, and its references.
(function () {
  'use strict';
  const OBJECTS = 'img, input, textarea, select, button, embed, object, iframe, video, audio, table, hr, marquee';
  const URL_ATTRIBUTES = ['src', 'href', 'background', 'data', 'poster'];
  const LOCAL = /^\s*(file:|[a-z]:[\\/])/i;

  function body() {
    if (!document.body)
      throw new Error('no body');
    return document.body;
  }

  // A page of frames has no body; its frames are what there is of it.
  function isFrameset(element) {
    return element.localName === 'frameset';
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

  // References that rest on where the page stands; a mere place of the page is none.
  function eachRelative(root, visit) {
    for (const name of URL_ATTRIBUTES) {
      for (const element of root.querySelectorAll('[' + name + ']')) {
        const text = element.getAttribute(name);
        if (text !== '' && !text.startsWith('#') && !/^[a-z][a-z0-9+.-]*:/i.test(text))
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

  function hasSelection() {
    const chosen = window.getSelection();
    return chosen.rangeCount > 0 && !chosen.isCollapsed && body().contains(chosen.anchorNode);
  }

  // The words chosen in a field are none of the page's selection.
  function chosenField() {
    const field = document.activeElement;
    return field && /^(input|textarea)$/.test(field.localName) && field.selectionStart !== field.selectionEnd ? field : null;
  }

  // The engine takes the square of its time to empty a selection of very many elements.
  const MANY = 2000;
  const ALONE = 'img, input, textarea, select, button, embed, object, iframe, video, audio, hr, marquee';
  const LINES = 'p, div, h1, h2, h3, h4, h5, h6, pre, li, td, th, body';
  const TABLE_PARTS = 'table, caption, thead, tbody, tfoot, tr, td, th';

  function isBetween(line, common) {
    return line !== common && common.contains(line);
  }

  function isInPartOfTable(line, common) {
    for (let e = line; isBetween(e, common); e = e.parentElement) {
      if (e.matches(TABLE_PARTS))
        return true;
    }
    return false;
  }

  // Of very many elements, from the beginning of a line to the end of one, so that nothing of these is left to join.
  function isLargeAndChosen() {
    const chosen = window.getSelection();
    if (chosen.rangeCount === 0 || chosen.isCollapsed)
      return false;
    const range = chosen.getRangeAt(0);
    const common = elementOf(range.commonAncestorContainer);
    if (!body().contains(common) || common.querySelectorAll('*').length < MANY)
      return false;
    const [first, last] = [range.startContainer, range.endContainer].map((node) => elementOf(node).closest(LINES));
    const [before, behind] = [document.createRange(), document.createRange()];
    before.setStart(first, 0);
    before.setEnd(range.startContainer, range.startOffset);
    behind.setStart(range.endContainer, range.endOffset);
    behind.setEnd(last, last.childNodes.length);
    return ![first, last].some((line) => isInPartOfTable(line, common)) && [before, behind].every((rest) =>
        rest.toString().trim() === '' && !rest.cloneContents().querySelector(ALONE));
  }

  function isEmptyLine(node) {
    return node.textContent.trim() === '' && (!node.querySelector || !node.querySelector(':not(br)'));
  }

  // Leaves what is outside of the selection, and the line in which it begins with all that is around that.
  function emptyChosen() {
    const chosen = window.getSelection();
    const range = chosen.getRangeAt(0);
    const [start, end] = [range.startContainer, range.endContainer];
    const [first, common] = [elementOf(start).closest(LINES), elementOf(range.commonAncestorContainer)];
    const place = range.cloneRange();
    place.collapse(true);
    chosen.removeAllRanges();
    range.deleteContents();
    for (let node of [end, start]) {
      while (node !== first && !node.contains(common) && isEmptyLine(node)) {
        const parent = node.parentNode;
        node.remove();
        node = parent;
      }
    }
    const line = first === body() ? document.createElement('p') : null;
    const held = document.createElement('br');
    place.insertNode(line || held);
    if (line)
      line.append(held);
    chosen.collapse(held.parentNode, Array.from(held.parentNode.childNodes).indexOf(held));
  }

  function deleteSelection() {
    if (!isLargeAndChosen())
      return document.execCommand('delete');
    emptyChosen();
    return true;
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

  return {
    body: body,
    isFrameset: isFrameset,
    inert: inert,
    URL_ATTRIBUTES: URL_ATTRIBUTES,
    eachRelative: eachRelative,
    localReferences: localReferences,
    rename: rename,
    selection: selection,
    setCaret: setCaret,
    elementOf: elementOf,
    isEmpty: isEmpty,
    hasSelection: hasSelection,
    chosenField: chosenField,
    isLargeAndChosen: isLargeAndChosen,
    emptyChosen: emptyChosen,
    deleteSelection: deleteSelection,
    enclosing: enclosing,
  };
})()
