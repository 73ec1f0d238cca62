// Puts a card in place of each medium that the engine can't play, and of each frame with a file that it doesn't show:
// with its name and kind, in its size, and a click on it asks the program to open the file. Runs in a world of its own in
// every frame of a page that is looked at, never in one that is edited. "kinds" is MediaKinds::AsJson; the program is told
// of a click behind "token", and of the file of a frame that has a card behind "told".
(function (kinds, token, told) {
  'use strict';
  const TEXTS = kinds.texts;
  const TYPES = kinds.types.map(([pattern, name]) => [new RegExp(pattern), name]);
  const SOURCES = ['src', 'data', 'movie', 'url', 'filename', 'file'];
  const FRAMES = 'iframe, frame';
  const TAGS = 'embed, object, bgsound, applet, video, audio, ' + FRAMES;
  const LEAST = {width: 120, height: 60};
  const done = new WeakSet();
  // The engine's own page around a film, as in a frame that shows it.
  const isAlone = /^(video|audio)\//.test(document.contentType);

  function extensionOf(url) {
    const path = url.split(/[?#]/)[0];
    const name = path.slice(path.lastIndexOf('/') + 1);
    return name.includes('.') ? name.slice(name.lastIndexOf('.') + 1).toLowerCase() : '';
  }

  function entry(table, key) {
    return Object.prototype.hasOwnProperty.call(table, key) ? table[key] : null;
  }

  // What the file is, or null for what the engine shows.
  function kindOf(url) {
    const known = entry(kinds.files, extensionOf(url));
    return known && {name: known[0], mayPlay: known[1], isSound: known[2]};
  }

  function filled(text, ...values) {
    return values.reduce((result, value, i) => result.replace('%' + (i + 1), () => value), text);
  }

  function nameOf(url) {
    const name = url.split(/[?#]/)[0].split('/').pop();
    try {
      return decodeURIComponent(name);
    } catch (broken) {
      // Escaped in the code page of old pages.
      const bytes = Uint8Array.from(unescape(name), (c) => c.charCodeAt(0));
      return new TextDecoder('gb18030').decode(bytes);
    }
  }

  function absolute(text) {
    try {
      // A relative path of the other system's spelling.
      return new URL(text.trim().replace(/\\/g, '/'), document.baseURI).href;
    } catch (broken) {
      return '';
    }
  }

  // What a plug-in would have been given, in the order in which plug-ins look.
  function sourceOf(element) {
    const params = Array.from(element.querySelectorAll(':scope > param'));
    for (const name of SOURCES) {
      const param = params.find((p) => (p.getAttribute('name') || '').toLowerCase() === name);
      const text = element.getAttribute(name) || (param && param.getAttribute('value'));
      if (text && text.trim())
        return absolute(text);
    }
    const inner = element.querySelector('embed[src], source[src]');
    return inner ? absolute(inner.getAttribute('src')) : '';
  }

  // The kind of plug-in that an element asks for; empty for none.
  function plugInOf(element) {
    const id = (element.getAttribute('classid') || '').toLowerCase().replace(/^clsid:|[{}\s]/g, '');
    const type = (element.getAttribute('type') || '').toLowerCase();
    const known = TYPES.find(([pattern]) => pattern.test(type));
    return entry(kinds.classes, id) || (known ? known[1] : '') || (id ? TEXTS.plugIn : '');
  }

  function sizeOf(element) {
    const box = element.getBoundingClientRect();
    const side = (name, shown, otherwise) => {
      const text = element.getAttribute(name) || '';
      if (/^\s*\d+(\.\d+)?\s*%/.test(text))
        return text.trim();
      return Math.max(parseFloat(text) || shown || otherwise, LEAST[name]) + 'px';
    };
    return {width: side('width', box.width, 300), height: side('height', box.height, 150)};
  }

  // Music without a place in the page: a card of its own at the rim, which moves nothing.
  function isUnseen(element) {
    const small = (name) => /^[01]$/.test((element.getAttribute(name) || '').trim());
    return element.localName === 'bgsound' || small('width') || small('height') ||
        (element.hasAttribute('hidden') && element.getAttribute('hidden').toLowerCase() !== 'false') ||
        (element.localName === 'audio' && !element.controls) || element.style.display === 'none';
  }

  function card(url, kind, size) {
    const host = document.createElement('span');
    const root = host.attachShadow({mode: 'closed'});
    const button = document.createElement('button');
    const name = nameOf(url);
    const text = url ? filled(TEXTS.named, kind, name) : filled(TEXTS.withoutFile, kind);
    button.type = 'button';
    button.disabled = !url;
    button.title = url ? filled(TEXTS.opensFile, name) : text;
    button.setAttribute('aria-label', text);
    for (const [line, style] of [[url ? '▶' : '', 'font-size:24px;line-height:1'], [name, 'font-weight:bold'],
                                 [url ? filled(TEXTS.opens, kind) : text, 'color:#555']]) {
      const part = document.createElement('div');
      part.textContent = line;
      part.style.cssText = 'overflow:hidden;text-overflow:ellipsis;max-width:100%;' + style;
      if (line)
        button.append(part);
    }
    button.style.cssText = 'all:initial;box-sizing:border-box;width:100%;height:100%;display:flex;gap:4px;' +
        'flex-direction:column;align-items:center;justify-content:center;overflow:hidden;padding:4px;' +
        'font:13px sans-serif;color:#222;background:#eef3f8;border:1px solid #9ab;text-align:center;' +
        'white-space:nowrap;cursor:' + (url ? 'pointer' : 'default');
    const focus = document.createElement('style');
    focus.textContent = 'button:focus-visible{outline:2px solid #1a66c2!important;outline-offset:-3px!important}';
    root.append(focus, button);
    host.style.cssText = 'display:inline-block;vertical-align:bottom;width:' + size.width +
        ';height:' + size.height;
    button.addEventListener('click', (event) => {
      event.preventDefault();
      event.stopPropagation();
      if (event.isTrusted && url)
        console.debug(token + url);
    });
    done.add(host);
    return host;
  }

  function replace(element, url, kind) {
    if (done.has(element) || !element.isConnected)
      return;
    done.add(element);
    if (element.matches(FRAMES))
      console.debug(told + url);
    if (isUnseen(element)) {
      if (!url)
        return;
      const chip = card(url, kind, {width: '220px', height: '76px'});
      chip.style.cssText += ';position:fixed;right:12px;z-index:2147483647;bottom:' + (12 + 84 * unseen++) + 'px';
      element.remove();
      (document.body || document.documentElement).append(chip);
      return;
    }
    if (isAlone)
      return fill(document, url, kind);
    if (element.localName === 'frame')
      return fillFrame(element, url, kind);
    const size = sizeOf(element);
    const place = element.style.position;
    const host = card(url, kind, size);
    if (place === 'absolute' || place === 'fixed') {
      for (const name of ['position', 'left', 'top', 'right', 'bottom', 'z-index', 'width', 'height']) {
        const value = element.style.getPropertyValue(name);
        if (value)
          host.style.setProperty(name, value);
      }
    }
    // The outermost of nested players holds the place for all.
    element.replaceWith(host);
  }
  let unseen = 0;

  // A card that is all there is in a document.
  function fill(page, url, kind) {
    const host = card(url, kind, {width: '100%', height: '100vh'});
    host.style.display = 'block';
    page.body.replaceChildren(host);
    page.body.style.cssText = 'margin:0;height:100vh;overflow:hidden;background:white';
  }

  // Nothing else than a frame has a place among frames.
  function fillFrame(frame, url, kind) {
    frame.addEventListener('load', () => frame.contentDocument && fill(frame.contentDocument, url, kind), {once: true});
    frame.src = 'about:blank';
  }

  // Whether the engine has the decoders is known when it has tried.
  function watchPlayable(element) {
    if (done.has(element))
      return;
    const fail = () => {
      const url = element.currentSrc || sourceOf(element);
      if (url && !/^(blob|data):/.test(url))
        replace(element, url, (kindOf(url) || {name: element.localName === 'audio' ? TEXTS.sound : TEXTS.video}).name);
    };
    const broken = () => element.error || element.networkState === HTMLMediaElement.NETWORK_NO_SOURCE;
    if (broken() && sourceOf(element))
      return fail();
    element.addEventListener('error', () => broken() && fail());
    // A list of sources tells of each, and of the end by the state alone.
    for (const source of element.querySelectorAll('source'))
      source.addEventListener('error', () => setTimeout(() => broken() && fail()));
  }

  // A film that is there is watched within its frame. Of one that isn't the frame is empty, or the engine's own, which
  // nobody may look into.
  function watchFrame(frame, url, kind) {
    const check = () => {
      if (!frame.contentDocument || frame.contentDocument.URL === 'about:blank')
        replace(frame, url, kind);
    };
    if (document.readyState === 'complete')
      frame.addEventListener('load', check, {once: true});
    else
      window.addEventListener('load', check, {once: true});
  }

  // Music behind a page, which the engine has no element for.
  function playBehind(element, url) {
    done.add(element);
    const audio = document.createElement('audio');
    audio.src = url;
    audio.autoplay = true;
    const loop = (element.getAttribute('loop') || '').toLowerCase();
    audio.loop = loop === '-1' || loop === 'infinite';
    element.replaceWith(audio);
    watchPlayable(audio);
  }

  function look(element) {
    if (done.has(element))
      return;
    if (element.localName === 'video' || element.localName === 'audio')
      return watchPlayable(element);
    const url = sourceOf(element);
    const kind = url ? kindOf(url) : null;
    if (element.localName === 'bgsound') {
      if (url && kind && kind.mayPlay)
        playBehind(element, url);
      else if (url)
        replace(element, url, kind ? kind.name : TEXTS.sound);
      return;
    }
    if (element.matches(FRAMES)) {
      if (kind && kind.mayPlay)
        watchFrame(element, url, kind.name);
      else if (kind)
        replace(element, url, kind.name);
      return;
    }
    const plugIn = plugInOf(element);
    if (element.localName === 'applet')
      return replace(element, '', TEXTS.applet);
    if (kind)
      return kind.mayPlay ? playInstead(element, url, kind.isSound) : replace(element, url, kind.name);
    if (plugIn && !isShown(element))
      replace(element, url, plugIn);
  }

  // A player for what the engine may have the decoder of.
  function playInstead(element, url, isSound) {
    if (isUnseen(element))
      return playBehind(element, url);
    const size = sizeOf(element);
    const player = document.createElement(isSound ? 'audio' : 'video');
    player.controls = true;
    player.src = url;
    player.style.cssText = 'width:' + size.width + ';height:' + size.height;
    player.autoplay = /^(true|1|-1)$/i.test(element.getAttribute('autostart') || '');
    done.add(element);
    element.replaceWith(player);
    watchPlayable(player);
  }

  // An object that the engine shows itself, or something of the page's own in place of it.
  function isShown(element) {
    if (element.localName !== 'object')
      return false;
    const rest = Array.from(element.childNodes).filter((node) => !/^(param|embed)$/i.test(node.nodeName));
    return rest.some((node) => node.nodeType === Node.ELEMENT_NODE ? !node.matches('p:empty, br, object') :
                                                                     node.nodeType === Node.TEXT_NODE && node.data.trim());
  }

  function lookBelow(root) {
    if (root.matches && root.matches(TAGS))
      look(root);
    if (root.querySelectorAll)
      root.querySelectorAll(TAGS).forEach((element) => element.isConnected && look(element));
  }

  lookBelow(document);
  // Pages of that time write their players by script.
  new MutationObserver((changes) => {
    for (const change of changes) {
      if (change.type === 'attributes' && change.target.matches(FRAMES))
        look(change.target);
      change.addedNodes.forEach((node) => node.isConnected && lookBelow(node));
    }
  }).observe(document, {subtree: true, childList: true, attributes: true, attributeFilter: ['src']});
})
