// Put into every page and frame. Links into a course are lower-cased by rule, and old pages escape the bytes of the
// code page, while the engine tells letter case and knows UTF-8 alone: where no anchor has the very name that the
// address's fragment says, the page is moved to the one that is meant.
(function () {
  'use strict';
  const lower = (text) => text.replace(/[A-Z]/g, (letter) => letter.toLowerCase());

  function decoded(fragment, encoding) {
    const bytes = fragment.replace(/%([0-9a-f]{2})/gi, (all, code) => String.fromCharCode(parseInt(code, 16)));
    return new TextDecoder(encoding).decode(Uint8Array.from(bytes, (c) => c.charCodeAt(0)));
  }

  function named(name) {
    return document.getElementById(name) || document.querySelector('a[name="' + CSS.escape(name) + '"]');
  }

  // The engine has gone to those itself.
  function exact(fragment) {
    return named(fragment) || named(decoded(fragment, 'utf-8'));
  }

  function meant(fragment) {
    const code = decoded(fragment, 'gb18030');
    const wanted = [fragment, decoded(fragment, 'utf-8'), code].map(lower);
    // A form's own fields may stand in the place of its properties.
    const get = Element.prototype.getAttribute;
    const says = (e, name) => wanted.includes(lower(get.call(e, name) || ''));
    return named(code) || Array.from(document.querySelectorAll('[id], a[name]')).find(
        (e) => says(e, 'id') || (e.localName === 'a' && says(e, 'name'))) || null;
  }

  function settle(always) {
    const fragment = location.hash.slice(1);
    if (fragment === '')
      return;
    const known = exact(fragment);
    const place = known || meant(fragment);
    if (place && (always || !known))
      place.scrollIntoView();
  }

  // For the editor's own functions, which may have put another document in the page's place.
  window.vorelSettle = settle;
  settle(false);
  window.addEventListener('load', () => settle(false));
  window.addEventListener('hashchange', () => settle(false));
  // A second step to the same place is no change.
  document.addEventListener('click', (event) => {
    if (event.target instanceof Element && event.target.closest('a[href*="#"]'))
      setTimeout(settle, 0, false);
  });
})();
