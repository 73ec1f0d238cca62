// One slide. Within the viewer it tells which slide shows and hands the keys on; alone it turns the pages itself.
// Pages on a disk may not look into each other, so all is said by messages.
(function () {
  'use strict';
  var root = document.documentElement;
  var framed = window.parent !== window;
  var full = false;

  function tell(message) {
    window.parent.postMessage(message, '*');
  }

  function canScroll() {
    return root.scrollHeight > root.clientHeight + 4;
  }

  function turn(key) {
    var back = key === 'ArrowLeft' || key === 'PageUp';
    var link = document.getElementById(back ? 'previous' : 'next');
    if (key !== 'Home' && key !== 'End' && link.href) location.href = link.href;
  }

  document.addEventListener('keydown', function (event) {
    if (event.ctrlKey || event.altKey || event.metaKey || event.defaultPrevented) return;
    if (!/^(Arrow(Left|Right|Up|Down)|PageUp|PageDown|Home|End|Escape| )$/.test(event.key)) return;
    var sideways = event.key === 'ArrowLeft' || event.key === 'ArrowRight';
    if (!sideways && !full && canScroll()) return;
    if (event.key === ' ' && event.target.closest('a, summary')) return;
    if (!full && (event.key === 'ArrowUp' || event.key === 'ArrowDown')) return;
    if (event.key !== 'Escape') event.preventDefault();
    if (framed) tell({ torvane: 'key', key: event.key });
    else turn(event.key);
  });

  document.getElementById('picture').addEventListener('click', function () {
    if (full) tell({ torvane: 'key', key: 'PageDown' });
  });

  window.addEventListener('message', function (event) {
    if (event.source !== window.parent || !event.data || event.data.torvane !== 'mode') return;
    full = event.data.full === true;
    root.classList.toggle('full', full);
  });

  if (framed) {
    root.classList.add('framed');
    // Said in the address too, so that no bright page flashes up between two slides.
    full = location.hash === '#full';
    root.classList.toggle('full', full);
    tell({ torvane: 'slide', name: location.pathname.split('/').pop().toLowerCase() });
  }
})();
