// How fragments and what is pasted come into a page.
(function () {
  'use strict';
  const {body, isFrameset, inert, rename, selection, setCaret, elementOf, isEmpty, isLargeAndChosen, emptyChosen,
         deleteSelection} = page;

  const PARAGRAPHS = 'p, h1, h2, h3, h4, h5, h6';
  const BLOCKS = PARAGRAPHS + ', table, ul, ol, dl, div, center, blockquote, pre, hr, form, fieldset, address';
  const MARK = 'data-vorel-mark';
  const MOST_TO_JOIN = 500;
  const MOST_AROUND = 2000;
  const LONGEST_TO_JOIN = 100000;

  // Empties the selection: the place where something may come in. Not between the parts of a table or a list.
  function emptiedPlace() {
    const chosen = selection();
    let range = chosen.getRangeAt(0);
    const isWithinText = range.startContainer === range.endContainer && range.startContainer.nodeType === Node.TEXT_NODE;
    // The engine joins what is left of two paragraphs, but also makes blanks hard.
    if (!range.collapsed && !isWithinText)
      deleteSelection();
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
    if (isFrameset(body()))
      return false;
    const fragment = inert(html);
    rename(fragment, names);
    const nodes = Array.from(document.importNode(fragment, true).childNodes);
    if (nodes.length === 0)
      return true;
    if (nodes.length === 1 && nodes[0].localName === 'br')
      return document.execCommand('insertLineBreak');
    const range = emptiedPlace();
    // Nothing that is clicked may stand in a button.
    const button = fragment.querySelector('a, button, input, select, textarea') &&
        elementOf(range.startContainer).closest('button');
    if (button) {
      range.setStartAfter(button);
      range.collapse(true);
    }
    for (const [inside, around] of [[BLOCKS, PARAGRAPHS], ['a', 'a']]) {
      const outer = fragment.querySelector(inside) && elementOf(range.startContainer).closest(around);
      if (outer && body().contains(outer))
        part(range, outer);
    }
    // All at once: one by one a great many would take the square of their time.
    const whole = document.createDocumentFragment();
    nodes.forEach((node) => whole.append(node));
    range.insertNode(whole);
    setCaret((caret) => caret.setStartAfter(nodes[nodes.length - 1]));
    return true;
  }

  // What is typed behind it goes on in its last paragraph.
  function insertAsItStands(html) {
    const done = insert(html, {});
    const {anchorNode, anchorOffset} = window.getSelection();
    const last = done && anchorNode.nodeType === Node.ELEMENT_NODE ? anchorNode.childNodes[anchorOffset - 1] : null;
    if (last && last.nodeType === Node.ELEMENT_NODE && last.matches(PARAGRAPHS))
      setCaret((caret) => caret.setStart(last, last.childNodes.length));
    return done;
  }

  // Here the engine joins what begins and ends the fragment with the paragraphs around it, and what it keeps gets
  // its attributes back. Its work grows with the square of the paragraphs, so that many go in as they are, and so do
  // few among very many lines that stand in no paragraph, where it takes seconds; and for a fragment without any it
  // would part the paragraph that takes it.
  function paste(html, names) {
    if (isFrameset(body()))
      return false;
    const fragment = inert(html);
    rename(fragment, names);
    const {anchorNode} = selection();
    if (!fragment.querySelector(BLOCKS) || html.length > LONGEST_TO_JOIN ||
        fragment.querySelectorAll('*').length > MOST_TO_JOIN || elementOf(anchorNode).childNodes.length > MOST_AROUND)
      return insertAsItStands(fragment.innerHTML);
    const wanted = Array.from(fragment.querySelectorAll('*'), (element, index) => {
      const attributes = Array.from(element.attributes, (a) => a.cloneNode());
      element.setAttribute(MARK, String(index));
      return attributes;
    });
    if (isLargeAndChosen())
      emptyChosen();
    const done = document.execCommand('insertHTML', false, fragment.innerHTML);
    for (const element of body().querySelectorAll('[' + MARK + ']')) {
      const attributes = wanted[Number(element.getAttribute(MARK))];
      element.removeAttribute(MARK);
      // As they are: the parser takes names that no script may give.
      attributes.forEach((attribute) => element.setAttributeNodeNS(attribute.cloneNode()));
    }
    return done;
  }

  function insertParagraph() {
    insert('<p><br></p>', {});
    const chosen = window.getSelection();
    chosen.collapse(chosen.anchorNode.childNodes[chosen.anchorOffset - 1], 0);
    return true;
  }

  return {insert: insert, paste: paste, insertParagraph: insertParagraph};
})()
