// The text of a page's body, out of the page and into it.
(function () {
  'use strict';
  const {body, isFrameset, inert, eachRelative, localReferences, rename, selection} = page;

  const DECLARATION = 'meta[charset], meta[http-equiv="content-type" i]';

  // The parser drops the first line break in these, and writing the page would lose one each time.
  function breakFirst(root) {
    return Array.from(root.querySelectorAll('pre, textarea, listing'), (e) => e.firstChild)
        .filter((first) => first && first.nodeType === Node.TEXT_NODE && first.data.startsWith('\n'));
  }

  // One by one: a call takes no more than some hundred thousand.
  function moveChildren(from, to) {
    while (from.firstChild)
      to.append(from.firstChild);
  }

  // Nothing ends this element, not even its own end tag: written and read it would swallow what comes behind.
  function endless(root) {
    return Array.from(root.querySelectorAll('plaintext'));
  }

  function endingLike(element) {
    const preformatted = element.ownerDocument.createElement('pre');
    moveChildren(element, preformatted);
    return preformatted;
  }

  function innerHtml() {
    if (isFrameset(body()))
      return body().outerHTML;
    if (breakFirst(body()).length === 0 && endless(body()).length === 0)
      return body().innerHTML;
    const copy = inert('');
    moveChildren(copy.ownerDocument.importNode(body(), true), copy);
    endless(copy).forEach((element) => element.replaceWith(endingLike(element)));
    breakFirst(copy).forEach((text) => text.insertData(0, '\n'));
    return copy.innerHTML;
  }

  function replaceDocument(fresh) {
    document.replaceChild(document.adoptNode(fresh.documentElement), document.documentElement);
    if (window.vorelSettle)
      window.vorelSettle(true);
  }

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
    let behind = null;
    while (old.length > 0 && next.length > 0 && old[old.length - 1].isEqualNode(next[next.length - 1])) {
      behind = old.pop();
      next.pop();
    }
    let same = 0;
    while (same < old.length && same < next.length && old[same].isEqualNode(next[same]))
      ++same;
    const gone = old.slice(same);
    const come = next.slice(same);
    const isLike = (node, index) => node.nodeType === Node.ELEMENT_NODE && !node.matches('template, form') &&
                                    node.nodeName === come[index].nodeName;
    const isKept = (node, index) => isLike(node, index) || node.isEqualNode(come[index]);
    if (gone.length === come.length && gone.every(isKept)) {
      gone.forEach((node, index) => {
        if (!isLike(node, index))
          return;
        patchAttributes(node, come[index]);
        patch(node, come[index]);
        if (node.matches('input, textarea, option'))
          undoHistory.showField(node);
      });
    } else {
      gone.length === old.length && !behind ? element.replaceChildren() : gone.forEach((node) => node.remove());
      const whole = document.createDocumentFragment();
      come.forEach((node) => whole.append(node));
      element.insertBefore(whole, behind);
    }
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

  function putBody(html) {
    const fresh = /<frameset[\s>]/i.test(html) && new DOMParser().parseFromString(html, 'text/html');
    if (fresh && isFrameset(fresh.body)) {
      replaceDocument(fresh);
    } else {
      if (isFrameset(body()))
        document.body = document.createElement('body');
      if (body().hasChildNodes())
        patch(body(), inert(html));
      else
        body().innerHTML = html;
    }
    dropDeclarations();
    return localReferences(body());
  }

  function setBodyHtml(html) {
    // Whoever asks for the caret has the page laid out.
    if (document.designMode !== 'on')
      return putBody(html);
    const chosen = window.getSelection();
    const {anchorNode, focusNode} = chosen;
    const local = putBody(html);
    // A caret that stood in what is gone stands nowhere: the engine selects nothing from there.
    if (anchorNode !== chosen.anchorNode || focusNode !== chosen.focusNode || !anchorNode) {
      chosen.removeAllRanges();
      selection();
    }
    return local;
  }

  // The new values of attributes, by their names and old values, where two texts differ in nothing else.
  function newNames(old, fresh) {
    const names = new Map();
    const [elements, others] = [old, fresh].map((root) => Array.from(root.querySelectorAll('*')));
    elements.forEach((element, index) => {
      for (const attribute of others[index] ? element.attributes : []) {
        const value = others[index].getAttributeNS(attribute.namespaceURI, attribute.localName);
        if (value !== null && value !== attribute.value)
          names.set(attribute.localName + '=' + attribute.value, value);
      }
    });
    return elements.length === others.length ? names : new Map();
  }

  // Gives the references of the page the names that they have in the text. False where it differs in more.
  function takeNames(html) {
    const own = innerHtml();
    if (own === html)
      return true;
    const names = newNames(inert(own), inert(html));
    if (names.size > 0)
      undoHistory.of().rename(body(), names);
    return innerHtml() === html;
  }

  // The caret stays behind as much text as before, whatever else is another.
  function setBodyKeepingCaret(html) {
    const {anchorNode, anchorOffset, isCollapsed} = window.getSelection();
    const length = isCollapsed && body().contains(anchorNode) ? textBefore(anchorNode, anchorOffset) : -1;
    const local = setBodyHtml(html);
    const chosen = window.getSelection();
    const place = length < 0 || chosen.anchorNode === anchorNode ? null : placeBehind(length);
    if (place)
      chosen.collapse(...place);
    return local;
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

  // A base goes with the head of its document, and would lead astray what comes into the page's own folder: its
  // relative references are told without it. A name stays as it was written.
  function leaveBase() {
    const base = document.querySelector('base[href]');
    if (!base)
      return;
    const own = new URL('.', document.URL).href;
    const folder = new URL('.', document.baseURI).href;
    const before = folder.startsWith(own) ? decodeURI(folder.slice(own.length)) : null;
    eachRelative(document, (element, name, text) => {
      const isBelow = before !== null && /^[^/\\?]/.test(text);
      element.setAttribute(name, isBelow ? before + text : new URL(text, document.baseURI).href);
    });
    base.remove();
  }

  // What gives a whole document its looks; saved is the body alone.
  function looks() {
    return document.head ? document.head.querySelectorAll('style, link[rel~="stylesheet" i]') : [];
  }

  return {
    innerHtml: innerHtml,
    replaceDocument: replaceDocument,
    dropDeclarations: dropDeclarations,
    putBody: putBody,
    setBodyHtml: setBodyHtml,
    setBodyKeepingCaret: setBodyKeepingCaret,
    takeNames: takeNames,
    textBefore: textBefore,
    placeBehind: placeBehind,
    stage: stage,
    showStaged: showStaged,
    showMore: showMore,
    strays: strays,
    looks: looks,
    leaveBase: leaveBase,
  };
})()
