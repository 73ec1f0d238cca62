// The viewer of a presentation. Its address always says which slide shows: "frame.htm#slide0003.htm". Pages on a disk
// may not look into each other, so the slide, and the page around the viewer, are spoken to by messages.
(function () {
  'use strict';
  var root = document.documentElement;
  var links = Array.prototype.slice.call(document.querySelectorAll('#outline a'));
  var names = links.map(function (link) { return link.getAttribute('href'); });
  var view = document.getElementById('view');
  var count = document.getElementById('count');
  var previous = document.getElementById('previousButton');
  var next = document.getElementById('nextButton');
  var outline = document.getElementById('outlineButton');
  var fullLink = document.getElementById('fullButton');
  var alwaysFull = root.classList.contains('full');
  var exitText = '退出全屏';
  var fullText = fullLink.textContent;
  var current = -1;
  var turning = 0;

  function indexOfAddress() {
    return names.indexOf(location.hash.slice(1).toLowerCase());
  }

  function isFull() {
    return root.classList.contains('full');
  }

  function mark(index) {
    if (current >= 0) links[current].removeAttribute('aria-current');
    current = index;
    links[index].setAttribute('aria-current', 'true');
    links[index].scrollIntoView({ block: 'nearest' });
    count.textContent = index + 1 + ' / ' + names.length;
    previous.disabled = index === 0;
    next.disabled = index === names.length - 1;
    fullLink.href = fullLink.href.replace(/#.*|$/, '#' + names[index]);
    if (location.hash !== '#' + names[index]) location.replace('#' + names[index]);
    if (window.parent !== window) window.parent.postMessage({ torvane: 'shown', name: names[index] }, '*');
  }

  function show(index) {
    if (index < 0 || index >= names.length || index === current) return;
    mark(index);
    turning = Date.now() + 1500;
    view.contentWindow.location.replace(names[index] + (isFull() ? '#full' : ''));
  }

  function press(key) {
    if (key === 'ArrowRight' || key === 'ArrowDown' || key === 'PageDown' || key === ' ') show(current + 1);
    else if (key === 'ArrowLeft' || key === 'ArrowUp' || key === 'PageUp') show(current - 1);
    else if (key === 'Home') show(0);
    else if (key === 'End') show(names.length - 1);
    else if (key === 'Escape' && alwaysFull) location.href = fullLink.href;
  }

  function setFull(on) {
    root.classList.toggle('full', on);
    fullLink.textContent = on ? exitText : fullText;
    view.contentWindow.postMessage({ torvane: 'mode', full: on }, '*');
    view.focus();
  }

  links.forEach(function (link, index) {
    link.addEventListener('click', function (event) {
      if (event.ctrlKey || event.shiftKey || event.metaKey) return;
      event.preventDefault();
      show(index);
    });
  });
  previous.addEventListener('click', function () { show(current - 1); });
  next.addEventListener('click', function () { show(current + 1); });
  outline.addEventListener('click', function () {
    outline.setAttribute('aria-pressed', String(!root.classList.toggle('narrow')));
  });
  // Where the browser gives no full screen, the page of that name fills its window.
  fullLink.addEventListener('click', function (event) {
    if (alwaysFull || !document.fullscreenEnabled) return;
    event.preventDefault();
    if (document.fullscreenElement) document.exitFullscreen();
    else root.requestFullscreen().catch(function () { location.href = fullLink.href; });
  });
  document.addEventListener('fullscreenchange', function () { setFull(!!document.fullscreenElement); });

  document.addEventListener('keydown', function (event) {
    if (event.ctrlKey || event.altKey || event.metaKey) return;
    if (!/^(Arrow(Left|Right)|PageUp|PageDown|Home|End|Escape| )$/.test(event.key)) return;
    if (event.key === ' ' && event.target.closest('a, button')) return;
    if (event.key !== 'Escape') event.preventDefault();
    press(event.key);
  });

  window.addEventListener('message', function (event) {
    var data = event.data;
    if (!data || typeof data !== 'object') return;
    if (data.torvane === 'key' && (event.source === view.contentWindow || event.source === window.parent)) {
      press(data.key);
    } else if (data.torvane === 'slide' && event.source === view.contentWindow) {
      view.contentWindow.postMessage({ torvane: 'mode', full: isFull() }, '*');
      // A link within a slide may have led to another one. While the viewer itself turns pages quickly, slides that
      // were passed over tell of themselves too late to count.
      var index = names.indexOf(data.name);
      if (index >= 0 && index !== current && Date.now() > turning) mark(index);
    }
  });
  window.addEventListener('hashchange', function () { show(indexOfAddress()); });

  root.classList.add('script');
  show(Math.max(indexOfAddress(), 0));
  view.addEventListener('load', function () {
    if (document.activeElement === document.body) view.focus();
  });
})();
