// The beginning of a large page that is opened to be edited is laid out before the rest, so that it shows at once.
// The page is whole from the first: a style sheet, which is no part of its text, hides for a moment what stands
// further down.
(function () {
  'use strict';
  const {body} = page;
  const LARGE = 200000;
  const FIRST_PIECE = 20000;
  const GROWTH = 4;
  // No frame comes in a window that nobody sees.
  const PATIENCE_MILLISECONDS = 300;
  // What a person does from here on may be about the whole page.
  const DEEDS = ['keydown', 'mousedown', 'wheel', 'beforeinput', 'compositionstart', 'copy', 'cut', 'paste', 'dragenter',
                 'contextmenu'];

  function isText(node) {
    return node.nodeType === Node.TEXT_NODE && node.data.trim() !== '';
  }

  // How many children of the body hold so much text; none where it can't be parted.
  function beginning() {
    let length = 0;
    let count = 0;
    for (const node of body().childNodes) {
      if (isText(node))
        return 0;
      if (node.nodeType !== Node.ELEMENT_NODE)
        continue;
      length += node.textContent.length;
      count += length < FIRST_PIECE ? 1 : 0;
    }
    return length < LARGE ? 0 : count;
  }

  function afterNextFrame(work) {
    let isDone = false;
    const once = () => {
      if (!isDone)
        work();
      isDone = true;
    };
    requestAnimationFrame(() => setTimeout(once));
    setTimeout(once, PATIENCE_MILLISECONDS);
  }

  function begin() {
    let shown = beginning();
    if (shown === 0)
      return;
    const hidden = new CSSStyleSheet();
    const hide = () => hidden.replaceSync('body > :nth-child(n + ' + (shown + 1) + ') { display: none !important; }');
    hide();
    document.adoptedStyleSheets = [hidden];
    window.vorelShowAll = () => {
      document.adoptedStyleSheets = [];
      window.vorelShowAll = null;
      DEEDS.forEach((name) => window.removeEventListener(name, showAll, true));
    };
    DEEDS.forEach((name) => window.addEventListener(name, showAll, {capture: true, passive: true}));
    const showMore = () => {
      if (!window.vorelShowAll)
        return;
      shown *= GROWTH;
      if (shown >= body().childElementCount)
        return showAll();
      hide();
      afterNextFrame(showMore);
    };
    afterNextFrame(showMore);
  }

  function showAll() {
    // Never a plain look: an element of that name would be found.
    if (Object.hasOwn(window, 'vorelShowAll') && window.vorelShowAll)
      window.vorelShowAll();
  }

  return {begin: begin, showAll: showAll};
})()
