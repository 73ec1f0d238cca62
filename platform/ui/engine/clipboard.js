// Copying, pasting and dragging. Left to itself the engine copies how a text looks in styles of its own and
// pastes whatever it is given. So the page's markup is copied as it stands, and what is pasted is for the program
// to read and to clean.
(function () {
  'use strict';
  // Beside a reference that was made absolute stands the one of the page.
  const OWN = 'data-vorel-own-';
  const LOOKS = 'b, strong, i, em, u, s, strike, font, span, sub, sup, code, tt, big, small, a';
  const MOST_TYPED = 200;
  // What the caret steps over besides characters.
  const STOPS = 'p, div, h1, h2, h3, h4, h5, h6, li, td, th, br, img';
  const FRAMES = 'table, thead, tbody, tfoot, tr, ul, ol, dl, pre';

  // The markup that is being dragged within the page.
  let dragged = null;

  function isField(target) {
    return target instanceof Element && target.closest('input, textarea, select') !== null;
  }

  function wrap(holder, element) {
    const around = holder.ownerDocument.importNode(element, false);
    around.append(...holder.childNodes);
    holder.append(around);
  }

  // What is selected, in what it needs around it: a row its table, an item its list, a word its looks.
  function selected(range) {
    const holder = document.implementation.createHTMLDocument('').createElement('div');
    holder.append(holder.ownerDocument.importNode(range.cloneContents(), true));
    // A selection of whole lines ends at the beginning of the next, which is none of it.
    const last = holder.lastElementChild;
    if (holder.childElementCount > 1 && last.matches('p, div, h1, h2, h3, h4, h5, h6, li') && !last.firstChild)
      last.remove();
    const common = range.commonAncestorContainer;
    let around = common.nodeType === Node.ELEMENT_NODE ? common : common.parentElement;
    for (; around && around !== document.body && around.matches(LOOKS + ', ' + FRAMES); around = around.parentElement)
      wrap(holder, around);
    return holder;
  }

  function address() {
    return document.baseURI.replace(/#.*/, '');
  }

  // For other pages and other programs the references are those of the whole machine.
  function makeAbsolute(holder) {
    page.eachRelative(holder, (element, name, text) => {
      element.setAttribute(OWN + name, text);
      // Names of places stand in a page as they are, and are not to come back with escapes.
      const place = text.includes('#') ? text.slice(text.indexOf('#')) : '';
      const path = text.slice(0, text.length - place.length);
      element.setAttribute(name, new URL(path, document.baseURI).href + place);
    });
  }

  function offer(transfer, holder, mark) {
    makeAbsolute(holder);
    const about = document.createElement('meta');
    about.setAttribute('name', mark);
    about.setAttribute('content', address());
    transfer.setData('text/html', about.outerHTML + holder.innerHTML);
  }

  function put(event, mark) {
    const chosen = window.getSelection();
    if (isField(event.target) || chosen.rangeCount === 0 || chosen.isCollapsed)
      return;
    offer(event.clipboardData, selected(chosen.getRangeAt(0)), mark);
    event.clipboardData.setData('text/plain', chosen.toString());
    event.preventDefault();
    if (event.type === 'cut')
      undoHistory.of().change(page.deleteSelection);
  }

  function erase(event) {
    if (/^delete(Content|Word|SoftLine|HardLine)/.test(event.inputType) && !isField(event.target) &&
        page.isLargeAndChosen())
      undoHistory.of().instead(event, page.emptyChosen);
  }

  // A picture or a link need not be selected to be dragged.
  function rangeOfDrag(target) {
    const chosen = window.getSelection();
    if (chosen.rangeCount > 0 && !chosen.isCollapsed)
      return chosen.getRangeAt(0);
    const element = target.nodeType === Node.ELEMENT_NODE ? target : target.parentElement;
    const range = document.createRange();
    range.selectNode(element.closest('a') || element);
    return range;
  }

  function beginDrag(event, mark) {
    dragged = null;
    if (isField(event.target))
      return;
    const range = rangeOfDrag(event.target);
    const holder = selected(range);
    dragged = holder.innerHTML;
    offer(event.dataTransfer, holder, mark);
    if (range.toString() !== '')
      event.dataTransfer.setData('text/plain', range.toString());
  }

  // The engine takes what is dragged away by itself; what it puts in is ours, as it stood. A field takes words.
  function drop(event) {
    if (event.inputType !== 'insertFromDrop' || dragged === null || isField(event.target))
      return;
    const html = dragged;
    undoHistory.of().instead(event, () => insertion.paste(html, {}));
  }

  // Whether one place of the caret is another, though it may be told by another node.
  function isReached(from, to) {
    const rest = from.cloneRange();
    if (rest.compareBoundaryPoints(Range.START_TO_START, to) >= 0)
      return true;
    rest.setEnd(to.startContainer, to.startOffset);
    return rest.toString() === '' && !rest.cloneContents().querySelector(STOPS);
  }

  // By how many steps the caret comes from one place to the other: one goes over a character of several units, or
  // over the end of a paragraph. None when it does not come there, and then it stays.
  function stepsTo(from, to, most) {
    const chosen = window.getSelection();
    chosen.collapse(from.startContainer, from.startOffset);
    for (let n = 1; n <= most; ++n) {
      chosen.modify('move', 'forward', 'character');
      if (isReached(chosen.getRangeAt(0), to))
        return n;
    }
    chosen.collapse(to.startContainer, to.startOffset);
    return 0;
  }

  // Where something is to be pasted, and what stands there to be replaced. The text before a picture tells where
  // that began even when it has given way to what is typed.
  function placeOf(range) {
    const {startContainer, startOffset} = range;
    const before = startContainer.nodeType === Node.ELEMENT_NODE ? startContainer.childNodes[startOffset - 1] : null;
    if (!range.collapsed && before && before.nodeType === Node.TEXT_NODE)
      range.setStart(before, before.length);
    return {range: range, told: toldOf(range)};
  }

  function toldOf(range) {
    return [range.startContainer, range.startOffset, range.endContainer, range.endOffset, range.toString()];
  }

  // A new paragraph in front of the one in which the caret begins takes the caret's place along, and what is to be
  // pasted there: it belongs in front.
  function keepPlaces() {
    let places = [];
    const isAtCaret = (place) => {
      const chosen = window.getSelection();
      return place.collapsed && chosen.anchorNode === place.startContainer &&
          chosen.anchorOffset === place.startOffset;
    };
    document.addEventListener('beforeinput', (event) => {
      places = event.inputType === 'insertParagraph' ? window.vorelPlaces.filter((e) => e && isAtCaret(e.range)) : [];
    });
    document.addEventListener('input', (event) => {
      if (event.inputType !== 'insertParagraph')
        return;
      for (const place of places.map((e) => e.range).filter(isAtCaret)) {
        const node = place.startContainer;
        const paragraph = (node.nodeType === Node.ELEMENT_NODE ? node : node.parentElement).closest(STOPS);
        const before = paragraph && paragraph.previousElementSibling;
        if (before && before.matches(STOPS))
          place.setStart(before, 0);
        place.collapse(true);
      }
    });
  }

  return {
    // Tells a wish to paste by the token with a word behind it.
    watch: (token, mark) => {
      let middle = false;
      // One for each wish that the program has not yet come to. Set here, so that no element of that name is found.
      window.vorelPlaces = [];
      // Of these the ones at the place where it pastes now.
      window.vorelPlacesBehind = [];
      window.vorelKeys = 0;
      const tell = (event, what) => {
        if (isField(event.target))
          return;
        event.preventDefault();
        const chosen = window.getSelection();
        window.vorelPlaces.push(chosen.rangeCount > 0 ? placeOf(chosen.getRangeAt(0).cloneRange()) : undefined);
        console.debug(token + what);
      };
      document.addEventListener('copy', (event) => put(event, mark));
      document.addEventListener('cut', (event) => put(event, mark));
      document.addEventListener('dragstart', (event) => beginDrag(event, mark));
      document.addEventListener('dragend', () => dragged = null);
      document.addEventListener('beforeinput', drop);
      document.addEventListener('beforeinput', erase);
      document.addEventListener('mousedown', (event) => middle = event.button === 1, true);
      document.addEventListener('keydown', (event) => {
        middle = false;
        ++window.vorelKeys;
        if (event.ctrlKey && event.shiftKey && !event.altKey && event.code === 'KeyV')
          tell(event, '-paste-text');
      }, true);
      document.addEventListener('paste', (event) => tell(event, middle ? '-paste-selection' : '-paste'), true);
      keepPlaces();
    },

    // Whether all keys are here that the page was given. What is missing the last time never comes.
    keysCome: (given, isLastTime) => {
      if (isLastTime)
        window.vorelKeys = given;
      return window.vorelKeys >= given;
    },

    // How many wishes the program has not yet come to.
    wanted: () => Object.hasOwn(window, 'vorelPlaces') ? window.vorelPlaces.length : 0,

    // Until the program knows of the wish the person may have typed on: what is pasted comes before that. Back
    // to where it was to be; how many steps of the caret stand behind it.
    begin: () => {
      const {range: place, told} = window.vorelPlaces.shift() || {};
      const chosen = window.getSelection();
      if (!place || chosen.rangeCount === 0 || !document.body.contains(place.commonAncestorContainer))
        return 0;
      window.vorelPlacesBehind = window.vorelPlaces.filter((e) => e).map((e) => e.range)
          .filter((range) => range.compareBoundaryPoints(Range.START_TO_START, place) === 0);
      if (!place.collapsed) {
        // Nothing has been typed in place of what it is to replace.
        if (toldOf(place).every((each, index) => each === told[index])) {
          chosen.removeAllRanges();
          chosen.addRange(place);
          return 0;
        }
        // Otherwise it reaches over what was never selected.
        place.collapse(true);
      }
      if (!chosen.isCollapsed)
        return 0;
      const typed = place.cloneRange();
      typed.collapse(true);
      const now = chosen.getRangeAt(0);
      if (now.compareBoundaryPoints(Range.START_TO_START, typed) <= 0)
        return 0;
      typed.setEnd(now.startContainer, now.startOffset);
      const length = typed.toString().length;
      if (length > MOST_TYPED || isReached(place, now))
        return 0;
      // In a large page each step takes its time.
      const steps = stepsTo(place, now.cloneRange(), length + typed.cloneContents().querySelectorAll(STOPS).length);
      if (steps > 0)
        chosen.collapse(place.startContainer, place.startOffset);
      return steps;
    },

    // The places that come behind what was pasted, and the caret behind what was typed.
    end: (steps) => {
      const chosen = window.getSelection();
      for (const range of window.vorelPlacesBehind.splice(0)) {
        range.setStart(chosen.anchorNode, chosen.anchorOffset);
        range.collapse(true);
      }
      for (let n = 0; n < steps; ++n)
        chosen.modify('move', 'forward', 'character');
      return true;
    },

    // The markup of a copy of our own: in its own page with the references as they stood there.
    own: (root, mark) => {
      const about = root.querySelector('meta[name="' + mark + '"]');
      const isSamePage = about !== null && about.getAttribute('content') === address();
      root.querySelectorAll('meta').forEach((e) => e.remove());
      for (const name of page.URL_ATTRIBUTES) {
        for (const element of root.querySelectorAll('[' + OWN + name + ']')) {
          if (isSamePage)
            element.setAttribute(name, element.getAttribute(OWN + name));
          element.removeAttribute(OWN + name);
        }
      }
      return root.innerHTML;
    },
  };
})()
